// The list of requests in docs/ against the table that the program reads.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "requests/verbs.h"
#include "support/bytes.h"

namespace tessaly {
namespace {

TEST(RequestReference, SaysWhatTheProgramReads) {
  std::ifstream file(TESSALY_DOCS "/requests.md", std::ios::binary);
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(file, line) && line != "## All requests") continue;
  while (std::getline(file, line))
    if (line.starts_with("### ") || line.starts_with("| `")) lines.push_back(line);

  std::vector<std::string> expected;
  for (const Verb& verb : Verbs()) {
    expected.push_back("### " + std::string(verb.Name));
    for (const OptionInfo& option : verb.Options) {
      if (option.Name == "file" || option.Name == "to") continue;
      std::vector<std::string> values;
      for (const std::string_view value : SplitAt(option.Values, '|')) values.emplace_back(value);
      expected.push_back("| `" + std::string(option.Name) + "=` | " + Joined(values, ", ") + " | " +
                         std::string(option.Text) + " |");
    }
  }
  EXPECT_EQ(lines, expected);
}

}  // namespace
}  // namespace tessaly
