#include "output/spreadsheet_cell.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(SpreadsheetCell, MarksWhatASpreadsheetWouldNotTakeForALabel) {
  for (const char* label : {"12",         " 7 ",      "-1.5",     "1E5",         ".5",          "1,234",
                            "1,234.5",    "=SUM(A1)", "  =x",     "+plus",       "-Ann",        "1/2",
                            "2 * 3 ^ 4",  "1 2",      "1/2/2024", "2024-05-01",  "1.2.2024",    "3.5.",
                            "1. 2",       "MARCH1",   "Sept 2",   "5 mar 24",    "May 5, 2024", "Dec. 3",
                            "7-June",     "10:30",    "1:2",      "10:30:05 PM", "5 pm",        "1/2/2024 10:30",
                            "5 Mar 10:30"})
    EXPECT_EQ(CleanSpreadsheetCell(label), "_" + std::string(label));
  for (const char* label : {"",
                            "   ",
                            "Ann",
                            " Ann",
                            "1. Ann",
                            "3_5",
                            "7 _ 8",
                            "x=1",
                            "*",
                            "^/",
                            "May",
                            "March",
                            "Mar Apr 5",
                            "Marc 5",
                            "1 Mar 2 3",
                            "Person 5",
                            "12345.6.7",
                            "1.2.3.4",
                            "10, 20",
                            ":",
                            "10:",
                            "am",
                            "Item: 3",
                            "1st",
                            "#5",
                            "\xC3\xA9"
                            "5",
                            "5%"})
    EXPECT_EQ(CleanSpreadsheetCell(label), label);
}

}  // namespace
}  // namespace tessaly
