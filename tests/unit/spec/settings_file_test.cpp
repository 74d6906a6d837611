#include "spec/settings_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <random>

#include "support/failure.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

/// What a run has of its settings files.
struct Read {
  InitialSettings Own;
  Settings Shared;
  RecordingConsole Said;
};

class SettingsFileTest : public testing::Test {
 protected:
  SettingsFileTest() : location_(LocateSettings({folder_.Path() + "home", "", folder_.Path() + "system", "", ""})) {}

  Read From(const SettingsLocation& location) const {
    Read read;
    read.Own = ReadSettings(location, read.Shared, read.Said);
    return read;
  }
  Read From(const std::string& text) const {
    const Read read = From(Named(folder_.Write("named.ini", text)));
    if (read.Said.Warnings.empty()) return read;
    ADD_FAILURE() << read.Said.Warnings.front();
    return read;
  }
  SettingsLocation Named(const std::string& path) const { return LocateSettings({"", "", "", path, ""}); }
  std::string Text(const std::string& path) const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const TestFolder folder_;
  const SettingsLocation location_;
};

TEST_F(SettingsFileTest, LinesGoByTheirFirstLetter) {
  EXPECT_EQ(From("  graph = n").Own.GraphEmpirical, 'N');
  EXPECT_EQ(From("Closeonexit = Yes\r\nC=never\n").Own.Closeonexit, 'N');
  EXPECT_EQ(From("Y").Shared.ResponseFields, "YYYYYYYYYYY2YYY");
  EXPECT_EQ(From("ASCII = w = x").Shared.AsciiOption, 'W');
  EXPECT_FALSE(From("Box show=No").Shared.BoxShow);
  EXPECT_FALSE(From("\xEF\xBB\xBFHeading lines = n").Shared.HeadingLinesOption);
  EXPECT_FALSE(From("I=n").Own.IterationBars);
  EXPECT_FALSE(From("O=n").Own.Outputask);
  EXPECT_FALSE(From("X=n").Own.Xtraask);
  const Read untouched = From("; G = N\n\n[I = N]\n=N\nV-UTF8encoded= Y\nUTF8sub= ?\nZ = N\n\xC3\x84 = N");
  EXPECT_EQ(untouched.Own.GraphEmpirical, 'A');
  EXPECT_TRUE(untouched.Own.IterationBars);
  EXPECT_EQ(untouched.Shared.Encoding.Utf8Encoded, '?');
  EXPECT_EQ(untouched.Shared.Encoding.Utf8Sub, '.');
}

TEST_F(SettingsFileTest, Values) {
  const auto expect = [&](const std::string& key, std::initializer_list<std::string> rows, const auto& stored) {
    for (const std::string& row : rows) {
      const std::size_t arrow = row.find("->");
      EXPECT_EQ(stored(From(key + "=" + row.substr(0, arrow))), row.substr(arrow + 2)) << key << " " << row;
    }
  };
  expect("Quotes", {"double->\"", "Q->\"", "a->'", "Commas->,", "s->;", "B-> ", "None->", "->", " <> -><>"},
         [](const Read& read) { return read.Shared.QuoteMark; });
  expect("Tab", {"tabs->\t", "\t->\t", "C->,", "yes->,", "S->;", "N-> ", "b-> ", "Fixed-> ", "-> ", "||->||", " = ->="},
         [](const Read& read) { return read.Shared.CsvDelimiter; });
  expect("Editor", {"/bin/vi->/bin/vi", " /My Edit/ed ->\"/My Edit/ed\"", "\"/My Edit/ed\"->\"/My Edit/ed\"", "->"},
         [](const Read& read) { return read.Own.EditorCommand; });
  expect("Folder", {" /My Files ->/My Files"}, [](const Read& read) { return read.Own.TemporaryFolder; });
  expect("Score selection", {"nYYYYYYYYYYYYYYYYYYYYYYYYYYN->NYYYYYYYYYYYYYYYYYYYYYYYYYYN"},
         [](const Read& read) { return read.Shared.ScoreFields; });
  expect("yni", {"NN->NNYYYYYYYYY2YYY", "YYYYYYYYYYY4YYNNNN->YYYYYYYYYYY4YYN", "NNNNNNNNNNNNN->NNNNNNNNNNN2NYY"},
         [](const Read& read) { return read.Shared.ResponseFields; });
  const std::string fonts = Settings().WebpageFont;
  expect("Webpage", {"->", "A, B->A, B", "A \tY->A+", "A\tyes->A+", "A\t Y->A", "A\t->A", "\tY->+"},
         [&](const Read& read) {
           return (read.Shared.WebpageFont == fonts ? "" : read.Shared.WebpageFont) +
                  (read.Shared.WebpageBold ? "+" : "");
         });
}

TEST_F(SettingsFileTest, LaterFilesRuleOverEarlierOnes) {
  std::filesystem::create_directories(folder_.Path() + "system/tessaly");
  folder_.Write("system/tessaly/tessaly.ini", "Box show = N\nASCII = W\nEditor = ed");
  std::filesystem::create_directories(folder_.Path() + "home/.config/tessaly");
  folder_.Write("home/.config/tessaly/tessaly.ini", "ASCII = N");
  const Read read = From(location_);
  EXPECT_FALSE(read.Shared.BoxShow);
  EXPECT_EQ(read.Shared.AsciiOption, 'N');
  EXPECT_EQ(read.Own.EditorCommand, "ed");
}

TEST_F(SettingsFileTest, WhatIsBrokenIsToldAndDefaultsStand) {
  const std::string folder = folder_.Path();
  const std::string binary = folder_.Write("binary", std::string("Box show = N\n\0\n", 15));
  const std::string large = folder_.Write("large", "Box show = N\n" + std::string(2 << 20, 'x'));
  const std::pair<std::string, std::string> files[] = {{folder, "Is a directory"},
                                                       {binary, "it is no text"},
                                                       {large, "it is too long"},
                                                       {folder + "none", "there is no such file"}};
  for (const auto& [path, reason] : files) {
    const Read read = From(Named(path));
    EXPECT_EQ(read.Said.Warnings, std::vector{"Settings file " + path + " is not used: " + reason});
    EXPECT_TRUE(read.Shared.BoxShow);
  }
  EXPECT_TRUE(From(location_).Said.Warnings.empty()) << "nobody must have settings";

  const std::string path = folder_.Write("bad.ini", "\nBox show = ok\nScore = YN\nClose = \nI = N\nASCII");
  const Read bad = From(Named(path));
  const std::string file = "Settings file " + path + ", line ";
  EXPECT_EQ(bad.Said.Warnings,
            (std::vector{file + "2: \"Box show = ok\" should be Y or N",
                         file + "3: \"Score = YN\" should be 28 letters, one for each field; all fields are written",
                         file + "4: \"Close = \" should be A, Y or N", file + "6: \"ASCII\" should be Y, N or W"}));
  EXPECT_TRUE(bad.Shared.BoxShow);
  EXPECT_EQ(bad.Shared.ScoreFields, std::string(28, 'Y'));
  EXPECT_FALSE(bad.Own.IterationBars);

  std::string essay;
  for (int line = 0; line < 1000; ++line) essay += "All men are created equal\n";
  const Read other = From(Named(folder_.Write("essay.txt", essay)));
  ASSERT_EQ(other.Said.Warnings.size(), 6u);
  EXPECT_TRUE(other.Said.Warnings.back().ends_with("essay.txt: such lines in all = 1000"));
}

TEST_F(SettingsFileTest, WritingAndAppending) {
  AppendSetting(location_, "Closeonexit = Y");
  EXPECT_EQ(Text(location_.UserFile), "Closeonexit = Y\n");
  folder_.Write("home/.config/tessaly/tessaly.ini", "; mine\r\nClose = N");
  AppendSetting(location_, "Closeonexit = Y");
  EXPECT_EQ(Text(location_.UserFile), "; mine\nClose = N\nCloseonexit = Y\n");

  InitialSettings own;
  own.EditorCommand = "\"/My Edit/ed\"";
  Settings shared;
  shared.WebpageFont = "Mono";
  shared.CsvDelimiter = "\t";
  shared.QuoteMark = "\"";
  shared.BoxShow = false;
  WriteAllSettings(location_, own, shared);
  const std::string all =
      "Closeonexit = A\nEditor = \"/My Edit/ed\"\nFolder = \nGraph empirical curves = A\n"
      "Heading lines on output files = Y\nIteration bars = Y\nOutputask = Y\nQuotes around labels = Double-quotes\n"
      "Score fields = YYYYYYYYYYYYYYYYYYYYYYYYYYYY\nTab-type separators = Tabs\nWebpagefonts = Mono\t \nXtraask = Y\n"
      "ASCII = Y\nBox show = N\nV-UTF8encoded= ?\nUTF8sub= .\n";
  EXPECT_EQ(Text(location_.UserFile), all);

  own.EditorCommand = "two\nlines";
  EXPECT_THROW(WriteAllSettings(location_, own, shared), Halt);
  EXPECT_THROW(AppendSetting(location_, "two\rlines"), Halt);
  EXPECT_EQ(Text(location_.UserFile), all);
  const std::string binary = folder_.Write("binary", std::string("\0", 1));
  EXPECT_THROW(AppendSetting(Named(binary), "Closeonexit = Y"), Halt);
  EXPECT_EQ(Text(binary).size(), 1u);
  EXPECT_THROW(WriteAllSettings(SettingsLocation(), {}, shared), Halt);
}

// Whatever lines a file has, what is made of them can be written and read again.
TEST_F(SettingsFileTest, WhatWasReadIsWrittenAndReadAlike) {
  std::mt19937 random(9);
  const auto write = [&](const Read& read) {
    WriteAllSettings(location_, read.Own, read.Shared);
    return Text(location_.UserFile);
  };
  for (int round = 0; round < 60; ++round) {
    std::string text;
    for (int line = 0; line < 30; ++line) {
      text += "ABCEFGHIOQSTWXYabc"[random() % 18];
      for (std::size_t length = random() % 40; length > 0; --length) text += " =\tYNAD\"',;|xyq\xC3\xA9"[random() % 17];
      text += '\n';
    }
    const Read read = From(Named(folder_.Write("random.ini", text)));
    ASSERT_EQ(read.Shared.ScoreFields.size(), 28u);
    ASSERT_EQ(read.Shared.ResponseFields.size(), 15u);
    ASSERT_TRUE(IsDigit(read.Shared.ResponseFields[11]));
    const std::string written = write(read);
    const Read again = From(location_);
    ASSERT_TRUE(again.Said.Warnings.empty()) << again.Said.Warnings.front();
    ASSERT_EQ(write(again), written);
    ASSERT_EQ(again.Own.EditorCommand, read.Own.EditorCommand);
    ASSERT_EQ(again.Shared.CsvDelimiter, read.Shared.CsvDelimiter);
    ASSERT_EQ(again.Shared.QuoteMark, read.Shared.QuoteMark);
  }
}

TEST_F(SettingsFileTest, TemporaryFolder) {
  RecordingConsole console;
  InitialSettings own;
  EXPECT_EQ(SettleTemporaryFolder({}, own, console), "/tmp");
  own.TemporaryFolder = folder_.Path();
  EXPECT_EQ(SettleTemporaryFolder({}, own, console), folder_.Path());
  EXPECT_EQ(SettleTemporaryFolder({"", "", "", "", "/elsewhere"}, own, console), "/elsewhere");
  EXPECT_TRUE(console.Warnings.empty());
  own.TemporaryFolder = folder_.Path() + "none";
  EXPECT_EQ(SettleTemporaryFolder({}, own, console), "/tmp");
  EXPECT_EQ(own.TemporaryFolder, "");
  EXPECT_EQ(console.Warnings.size(), 1u);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

}  // namespace
}  // namespace tessaly
