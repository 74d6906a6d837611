#include "reports/edit_word.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "reports/output_cell.h"
#include "support/failure.h"

namespace tessaly {
namespace {

std::string FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const FatalError& error) {
    return error.Text;
  }
  return "none";
}

TEST(EditWord, FillsARowFromLeftToRight) {
  EditWord row("\x0F ####.## ###.# ### (\\    \\)! & end\x0F");
  row.EditSingle(0).EditDouble(-12.25).EditLong(7).EditText("Rater").EditText("xy").EditText("any width");
  EXPECT_EQ(row.Line(), "\x0F     .00 -12.3   7 (Rater )x any width end\x0F");
}

TEST(EditWord, TokensOfTheTemplate) {
  EXPECT_EQ(EditWord("\\   ").EditText("abcdef").Line(), "abcd") << "no second backslash: the rest of the template";
  EXPECT_EQ(EditWord("\\\\").EditText("abc").Line(), "ab");
  EXPECT_EQ(EditWord("#,###").EditLong(1234).Line(), " 1234");
  EXPECT_EQ(EditWord(".##").EditLong(5).Line(), ". 5") << "a point begins no number";
  EXPECT_EQ(EditWord("## \\ \\").EditText("a").Line(), "## a  ") << "a passed field is literal text";
  EXPECT_EQ(EditWord("! #").EditLong(5).Line(), "! 5");
  EXPECT_EQ(EditWord("&!").EditText("").EditText("\xC3\xA9").Line(), "\xC3\xA9");
  EXPECT_EQ(EditWord("tail #").Line(), "tail #");
}

TEST(EditWord, NumbersThatDoNotFit) {
  EXPECT_EQ(EditWord("###").EditInteger(1234).Line(), "234");
  EXPECT_EQ(EditWord("###").EditInteger(-32768).Line(), "768");
  EXPECT_EQ(EditWord("#####").EditInteger(-123).Line(), " -123");
  EXPECT_EQ(EditWord("###.#").EditInteger(12).Line(), " 12.0");
  EXPECT_EQ(EditWord("####").EditLong(123456).Line(), "12E4");
  EXPECT_EQ(EditWord("##.##").EditLong(12).Line(), "12.00");
  EXPECT_EQ(EditWord("###.##").EditSingle(-123.45f).Line(), "-123.4");
}

TEST(EditWord, FailsWithoutAField) {
  EXPECT_EQ(FailureOf([] { EditWord("## ").EditText("Ann"); }), "Failure (12)! Edit word missing for: Ann");
  EXPECT_EQ(FailureOf([] { EditWord("").EditSingle(0.5f); }), "Failure (13)! Edit word missing for:  .5");
  EXPECT_EQ(FailureOf([] { EditWord("\\ \\").EditDouble(-1); }), "Failure (13)! Edit word missing for-1");
  EXPECT_EQ(FailureOf([] { EditWord("#").EditLong(1).EditLong(20); }), "Failure (13)! Edit word missing for 20");
  EXPECT_EQ(FailureOf([] { EditWord("!").EditInteger(3); }), "Failure (13)! Edit word missing for 3");
}

TEST(EditWord, EveryFieldKeepsItsWidth) {
  std::mt19937 random(9);
  for (int round = 0; round < 5000; ++round) {
    std::string editWord(random() % 30, ' ');
    for (char& c : editWord) c = "###..,\\! ab"[random() % 11];
    EditWord row(editWord);
    try {
      for (;;) {
        const auto number = static_cast<std::int32_t>(random());
        switch (random() % 5) {
          case 0:
            row.EditText(std::string(random() % 20, 'x'));
            break;
          case 1:
            row.EditSingle(float(number) / 1e5f);
            break;
          case 2:
            row.EditDouble(double(number) * 1e-7);
            break;
          case 3:
            row.EditLong(number >> (random() % 32));
            break;
          default:
            row.EditInteger(static_cast<std::int16_t>(number));
        }
      }
    } catch (const FatalError&) {
      ASSERT_EQ(row.Line().size(), editWord.size()) << editWord;
    }
  }
}

TEST(OutputCell, FixedAndDelimitedFields) {
  const OutputCell fixed(" ");
  EXPECT_EQ(fixed.CellInteger(-5), "        -5");
  EXPECT_EQ(fixed.CellLong(-2147483647), "2147483647") << "the last ten columns";
  EXPECT_EQ(fixed.CellText("abc"), "       abc");
  EXPECT_EQ(fixed.CellText("0123456789ab"), "23456789ab");
  EXPECT_EQ(fixed.CellFixed2(1.005f), "      1.00");
  EXPECT_EQ(fixed.CellFixedN(2.5f, 0), "         3");
  const OutputCell commas(",");
  EXPECT_EQ(commas.CellLong(12), "12,");
  EXPECT_EQ(commas.CellText(" a "), " a ,");
  EXPECT_EQ(commas.CellFixed2(0.05f), ".05,");
  EXPECT_EQ(commas.CellFixed4(-1.5f), "-1.5000,");
}

}  // namespace
}  // namespace tessaly
