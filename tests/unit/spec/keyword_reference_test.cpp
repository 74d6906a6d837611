// The keyword table of the specification reference is the keyword table of the program, row by row.
#include "spec/keywords.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

namespace tessaly {
namespace {

constexpr std::string_view kHeading = "| Keyword | Recognised by | Values | Default | Effect |";

/// The row of a keyword as it must stand in the reference.
std::string RowOf(const Keyword& keyword) {
  std::string row = "| `" + std::string(keyword.Name) + "` | ";
  for (const char c : keyword.Prefixes) row += c == ' ' ? std::string(", ") : std::string(1, c);
  for (const std::string_view cell : {keyword.Values, keyword.Default, keyword.Help}) row.append(" | ").append(cell);
  if (!keyword.OtherFormOf.empty())
    row.append(" Shares its place with `").append(keyword.OtherFormOf).append("`: the first of the two counts.");
  if (keyword.Use == KeywordUse::Repeated) row += " May be repeated.";
  return row + " |";
}

/// The rows of the table under `kHeading`.
std::vector<std::string> RowsInReference() {
  std::ifstream file(TESSALY_DOCS "/specification.md", std::ios::binary);
  std::vector<std::string> rows;
  std::string line;
  while (std::getline(file, line) && line != kHeading) continue;
  std::getline(file, line);
  while (std::getline(file, line) && line.substr(0, 1) == "|") rows.push_back(line);
  return rows;
}

TEST(KeywordReference, SaysWhatTheProgramReads) {
  const std::vector<std::string> rows = RowsInReference();
  ASSERT_FALSE(rows.empty()) << "no table \"" << kHeading << "\" in docs/specification.md";
  std::size_t at = 0;
  for (const Keyword& keyword : Keywords()) {
    const std::string expected = RowOf(keyword);
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '|'), 6) << "a cell would be split: " << expected;
    ASSERT_EQ(at < rows.size() ? rows[at] : "", expected) << "row " << at + 1;
    ++at;
  }
  EXPECT_EQ(rows.size(), at) << "rows that are no keyword";
}

}  // namespace
}  // namespace tessaly
