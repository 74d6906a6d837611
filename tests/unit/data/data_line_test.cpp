#include "data/data_line.h"

#include <gtest/gtest.h>

#include <random>

#include "support/failure.h"

namespace tessaly {
namespace {

using FieldTexts = std::vector<std::string>;

FieldTexts FieldsOf(const std::vector<DataField>& fields) {
  FieldTexts texts;
  for (std::size_t at = 1; at < fields.size(); ++at) texts.emplace_back(fields[at].Text);
  return texts;
}

FieldTexts SplitAny(std::string_view raw) {
  std::string work;
  std::vector<DataField> fields;
  SplitAnyLine(raw, work, fields);
  return FieldsOf(fields);
}

TEST(DataLine, DelimitersAreCommasTabsOrBlanks) {
  EXPECT_EQ(SplitAny("1 2   3 4"), (FieldTexts{"1", "2", "3", "4"}));
  EXPECT_EQ(SplitAny("1, 2 3, 4"), (FieldTexts{"1", "2 3", "4"}));
  EXPECT_EQ(SplitAny("1\t\t 3\t4"), (FieldTexts{"1", "", "3", "4"}));
  EXPECT_EQ(SplitAny("1,2\t3"), (FieldTexts{"1", "2 3"}));
  EXPECT_EQ(SplitAny("1=2 3"), (FieldTexts{"1", "2 3"}));
  EXPECT_EQ(SplitAny("a\xFF 2\t3"), (FieldTexts{"a", "2 3"}));
  EXPECT_EQ(SplitAny("a\xFF 2,3"), (FieldTexts{"a  2", "3"}));
  EXPECT_EQ(SplitAny("'a b' \"c\""), (FieldTexts{"", "a b", "", "c", ""}));
  EXPECT_EQ(SplitAny("\"Ann\",'2',3"), (FieldTexts{"Ann", "2", "3"}));
  EXPECT_EQ(SplitAny("1,,3,"), (FieldTexts{"1", "", "3", ""}));
  EXPECT_EQ(SplitAny("1\x01 2 ; 3"), (FieldTexts{"1", "2"}));
  EXPECT_EQ(SplitAny("* all that follows"), (FieldTexts{"*"}));
  for (const std::string_view blank : {"", "  ", ", ,,", "\t,", " ; 1,2", "\x01"})
    EXPECT_EQ(SplitAny(blank), FieldTexts{});
}

// Lines of ordinary characters take a way of their own, which must not show.
TEST(DataLine, BothWaysOfSplittingAgree) {
  constexpr std::string_view kOften = "0123,,, ab.-\xE4\t";
  constexpr std::string_view kRarely = "=\t\"'*_;\xFF\x01\x7F\xA0";
  std::mt19937 random(20);
  std::string work;
  std::vector<DataField> plain;
  std::vector<DataField> any;
  int taken = 0;
  for (int round = 0; round < 200000; ++round) {
    std::string raw(random() % 14, ' ');
    for (char& c : raw) c = random() % 40 == 0 ? kRarely[random() % kRarely.size()] : kOften[random() % kOften.size()];
    if (!SplitPlainLine(raw, plain)) continue;
    ++taken;
    SplitAnyLine(raw, work, any);
    ASSERT_EQ(FieldsOf(plain), FieldsOf(any)) << raw;
    ASSERT_TRUE(plain == any) << "numbers of " << raw;
  }
  EXPECT_GT(taken, 100000);
}

// FieldTexts are looked at eight bytes at a time: every byte must be seen wherever it stands.
TEST(DataLine, BothWaysOfSplittingSeeEveryByteAtEveryPlace) {
  std::string work;
  std::vector<DataField> plain;
  std::vector<DataField> any;
  int refused = 0;
  for (int byte = 0; byte < 256; ++byte) {
    for (std::size_t at = 0; at < 20; ++at) {
      std::string raw = "The 2nd Raters of all,17,x 1";
      raw[at] = static_cast<char>(byte);
      SplitAnyLine(raw, work, any);
      if (!SplitPlainLine(raw, plain)) {
        ++refused;
        continue;
      }
      ASSERT_TRUE(plain == any) << byte << " at " << at;
    }
  }
  EXPECT_EQ(refused, 20 * (32 + 8)) << "control characters and those with a meaning";
}

TEST(DataLine, FieldsKnowTheirPlainNumbers) {
  const auto number = [](std::string_view text) { return DataField(text).Number; };
  EXPECT_EQ(number("0"), 0);
  EXPECT_EQ(number("007"), 7);
  EXPECT_EQ(number("999999999"), 999999999);
  for (const std::string_view other : {"", "1000000000", "4294967297", "-1", "1.", "a", "1 2"})
    EXPECT_EQ(number(other), -1) << other;
  std::vector<DataField> fields;
  ASSERT_TRUE(SplitPlainLine("4294967297,12", fields));
  EXPECT_EQ(fields[1].Number, -1);
  EXPECT_EQ(fields[2].Number, 12);
}

struct Column {
  std::string Dvalue;
  int Source = 0;
};

ColumnTable Columns(const std::vector<Column>& columns) {
  ColumnTable table;
  for (const Column& column : columns) {
    DataColumn facts;
    facts.DvalueText = column.Dvalue;
    facts.DvalueSource = {column.Source};
    table.add(facts);
  }
  return table;
}

FieldTexts FieldsOf(const DataLine& line) {
  FieldTexts fields;
  for (std::int32_t number = 1; number <= line.FieldCount(); ++number) fields.emplace_back(line.Text(number));
  return fields;
}

TEST(DataLine, ReplicationIsAFieldOfItsOwn) {
  const ColumnTable columns = Columns({{}, {}});
  DataLine line(columns, "R");
  const auto replication = [&](std::string_view raw) {
    line.Split(raw, 1, 0);
    return line.FieldCount() == 3 && line.Text(1) == "1" ? line.Replication() : -1;
  };
  EXPECT_EQ(replication("R3,1,2,4"), 3);
  EXPECT_EQ(line.ReplicationField(), "R3");
  EXPECT_EQ(replication("r0.5 1 2 4"), 0.5F);
  EXPECT_EQ(line.ReplicationField(), "R0.5");
  EXPECT_EQ(replication("R 2. ,1,2,4"), 2);
  EXPECT_EQ(replication("R'.25',1,2,4"), 0.25F);
  EXPECT_EQ(replication("R0,1,2,4"), 0);
  EXPECT_EQ(replication("1,2,4"), 1);
  EXPECT_EQ(line.ReplicationField(), "");
  for (const std::string_view ordinary : {"R2X", "Robert", "R", "R.", "R1.2.3", "R-1", "R+1", "R1E2", "\"R2\""}) {
    line.Split(std::string(ordinary) + ",1,2,4", 1, 0);
    EXPECT_EQ(line.FieldCount(), 4) << ordinary;
    EXPECT_EQ(line.Replication(), 1) << ordinary;
  }
  line.Split("R" + std::string(400, '9') + ",1", 1, 0);
  EXPECT_EQ(line.FieldCount(), 2);
}

TEST(DataLine, SuppliedColumnsTakeNoFieldOfTheLine) {
  const ColumnTable columns = Columns({{}, {"1_4"}, {"", 1}, {"$l"}, {"$C"}});
  DataLine line(columns, "R");
  line.Split("R2, 7_9, 3, 2", 12, 8);
  EXPECT_EQ(FieldsOf(line), (FieldTexts{"7-9", "1-4", "", "12", "8", "3", "2"}));
  line.SetDerived({3}, "ab");
  EXPECT_EQ(line.Text(3), "ab");
  line.Split("7", 12, 8);
  EXPECT_EQ(FieldsOf(line), FieldTexts{"7"}) << "nothing is supplied behind the last field of the line";
  line.Split("* ,1", 12, 8);
  EXPECT_TRUE(line.EndsData());

  const ColumnTable first = Columns({{"5"}, {}});
  DataLine supplied(first, "R");
  supplied.Split("2,1", 1, 0);
  EXPECT_EQ(FieldsOf(supplied), (FieldTexts{"5", "2", "1"}));
}

TEST(DataLine, UnderlineIsAHyphenInColumnsOnly) {
  const ColumnTable columns = Columns({{}, {}});
  DataLine line(columns, "R");
  line.Split("1_3,a_b,1_2", 1, 0);
  EXPECT_EQ(FieldsOf(line), (FieldTexts{"1-3", "a-b", "1_2"}));
}

TEST(DataLine, HoldsAtMost32000Fields) {
  const ColumnTable plain = Columns({{}});
  const ColumnTable supplied = Columns({{"1"}});
  const auto fails = [](const ColumnTable& columns, const std::string& raw) {
    DataLine line(columns, "R");
    try {
      line.Split(raw, 1, 0);
    } catch (const Halt& halt) {
      return halt.Code == FailureCode::TooManyFields;
    }
    return false;
  };
  std::string commas = "1";
  std::string blanks = "1";
  for (int i = 1; i < 32000; ++i) {
    commas += ",1";
    blanks += " 1";
  }
  for (const std::string& most : {commas, blanks}) {
    EXPECT_FALSE(fails(plain, most));
    EXPECT_FALSE(fails(plain, "R2" + most.substr(1, 1) + most));
    EXPECT_TRUE(fails(plain, most + most.substr(1, 2)));
    EXPECT_TRUE(fails(plain, "R2" + most.substr(1, 1) + most + most.substr(1, 2)));
    EXPECT_TRUE(fails(supplied, most));
  }
  EXPECT_FALSE(fails(plain, std::string(100000, ','))) << "a blank line";
}

}  // namespace
}  // namespace tessaly
