#include "support/failure.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace tessaly {
namespace {

constexpr FailureLimits kLimits = {4, 3, 2, 9};

TEST(Failure, LinesSayCodeAndPlace) {
  EXPECT_EQ(
      FailureLine({FailureCode::TooFewFields, ""}, kLimits, 12),
      "Error F27 in line 12: Data record does not contain 3 facet references + data. Please start comments with ;");
  EXPECT_EQ(FailureLine({FailureCode::NoUsableData, ""}, kLimits, 0),
            "Error F35: No usable data.  Use Query=Y to check Models= and Labels=");
  EXPECT_EQ(FailureLine({FailureCode::Cancelled, ""}, kLimits, 0), "Error F-1: Current operation cancelled");
}

TEST(Failure, ReportsQuoteTheLineToBlame) {
  using Texts = std::vector<std::string>;
  const Halt excess{FailureCode::TooFewFields, "a detail"};
  const std::string sentence = ": Data record does not contain 3 facet references + data. Please start comments with ;";
  EXPECT_EQ(FailureReport(excess, kLimits, "Data line in d.txt", 5, "1,2"),
            (Texts{"a detail", "Data line in d.txt is: 1,2", "Error F27 in line 5" + sentence}));
  EXPECT_EQ(FailureReport(excess, kLimits, "Specification", 5, "").back(), "Error F27 in line 5" + sentence);
  EXPECT_EQ(FailureReport({FailureCode::TooFewFields, ""}, kLimits, "", 5, "1,2"), Texts{"Error F27" + sentence});
}

TEST(Failure, SystemErrorsKeepTheirText) {
  EXPECT_EQ(FailureLine(SystemFailure(ENOENT), kLimits, 3), "Error 2 in line 3: No such file or directory");
  const Halt notPermitted = SystemFailure(EPERM);
  EXPECT_NE(notPermitted.Code, FailureCode::Cancelled);
  EXPECT_EQ(FailureLine(notPermitted, kLimits, 0), "Error 1: Operation not permitted");
}

TEST(Failure, SentencesQuoteNumbersAndArguments) {
  const auto text = [](FailureCode code, std::string argument = "") { return FailureText({code, argument}, kLimits); };
  EXPECT_EQ(text(FailureCode::NumberInvalid), "Number invalid or greater than 4");
  EXPECT_EQ(text(FailureCode::TooManyModelComponents), "More than 9 components in Model= statement");
  EXPECT_EQ(text(FailureCode::TooFewModelComponents),
            "All Model= statements must include 2 facet locations + type [+ weight]");
  EXPECT_EQ(text(FailureCode::EnteredMismatch), "Entered= references do not match 3");
  EXPECT_EQ(text(FailureCode::SecondRange), "Only one facet may have a range (-) in a data line");
  EXPECT_EQ(text(FailureCode::SecondRange, ": could be a problem in Dvalues="),
            "Only one facet may have a range (-) in a data line: could be a problem in Dvalues=");
  EXPECT_EQ(text(FailureCode::RangeDeficit, " 2"), "Not enough responses for the range: deficit: 2");
  EXPECT_EQ(text(FailureCode::AllExtreme, "Ann - last: Zoe"),
            "All data eliminated as extreme.  Dropped elements - first: Ann - last: Zoe");
  EXPECT_EQ(text(FailureCode::NonNumericWeight, "\"x\""),
            "Non-numeric weight in Models= specification: \"x\" or wrong number of facets.");
  EXPECT_EQ(
      text(FailureCode::TooManyElements, " 70"),
      "Too many elements specified in Labels=. Processed = 70. Maximum number of element numbers is usually about "
      "4000000");
  EXPECT_EQ(text(FailureCode::InvalidElementReference), text(FailureCode::InvalidElementNumber));
  EXPECT_EQ(text(FailureCode(99)), " ... not understood (error code 99)");
}

TEST(Failure, EveryCodeOfTheCatalogueHasASentence) {
  for (int code = 0; code <= 77; ++code) {
    bool unused = false;
    for (const int gap : {4, 10, 14, 16, 19, 33, 55, 63, 64}) unused = unused || code == gap;
    const bool unknown = FailureText({FailureCode(code), ""}, kLimits).find("not understood") != std::string::npos;
    EXPECT_EQ(unknown, unused) << code;
  }
}

}  // namespace
}  // namespace tessaly
