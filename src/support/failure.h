// Failures on their way to the driver, and the one place that makes their sentences.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// Numbers of the failure catalogue. Values below -1 are system errors with the sign turned: use `SystemFailure`.
enum class FailureCode : std::int32_t {
  Cancelled = -1,
  None = 0,
  SpecificationExpected = 1,
  NumberInvalid = 2,
  DuplicateCategory = 3,
  TooManyModelComponents = 5,
  InvalidScaleType = 6,
  DuplicateScaleLabels = 7,
  FacetsConflict = 8,
  FacetOutOfRange = 9,
  TooFewModelComponents = 11,
  CategoryNotInteger = 12,
  FacetTwice = 13,
  InvalidCategory = 15,
  ExtraSpecificationExpected = 17,
  ExtraSpecificationInvalid = 18,
  NoElementLabels = 20,
  SortLength = 21,
  NonNumericDatum = 22,
  InvalidElementNumber = 23,
  InvalidGroup = 24,
  InvalidModel = 25,
  InvalidResponse = 26,
  TooFewFields = 27,
  NonInteger = 28,
  SecondRange = 29,
  RangeDeficit = 30,
  RangeExcess = 31,
  InvalidArrangement = 32,
  FacetsFirst = 34,
  NoUsableData = 35,
  AllExtreme = 36,
  IncompatibleFile = 37,
  SortSequence = 38,
  UmeanTooLate = 39,
  NoData = 40,
  NoFileName = 41,
  InvalidFileName = 42,
  FileNotFound = 43,
  InvalidFileFormat = 44,
  EnteredMismatch = 45,
  FileEmpty = 46,
  InvalidLineEnd = 47,
  AnchorTooExtreme = 48,
  MissingQuote = 49,
  WorkFileProblem = 50,
  CancelledByUser = 51,
  FileNotFoundInBatch = 52,
  TooManyModels = 53,
  InvalidDvalues = 54,
  FacetsFirstAgain = 56,
  RequiredFileNotFound = 57,
  ExcelError = 58,
  DvaluesFieldProblem = 59,
  NonNumericWeight = 60,
  InvalidRecount = 61,
  NoActiveElements = 62,
  InvalidGlabel = 65,
  DvaluesUndefinedFacet = 66,
  TooManyFields = 67,
  DvaluesCircular = 68,
  RecodeRangeNotNumeric = 69,
  SecondLabels = 70,
  LabelsFacetZero = 71,
  NoElementNumbers = 72,
  TooManyElements = 73,
  InvalidTarget = 74,
  TargetCircular = 75,
  NullOutOfRange = 76,
  RangeTooLong = 77,
  InvalidElementReference = 231,
};

/// A failure that halts the analysis. Thrown where the cause is, caught by the driver, which knows the line it came
/// from.
struct Halt final {
  FailureCode Code = FailureCode::None;
  /// What the code's sentence quotes: a number with its leading blank, a name, a value. Empty for most codes.
  std::string Argument;
};

/// The failure of a system call with this `errno`. With `path` the argument is "path: system's error".
Halt SystemFailure(int errorNumber, const std::string& path = {});

/// Why an analysis was left at once, with nothing more to be written.
enum class StopReason { User, InternalFailure };

/// Leaves the analysis at once. Thrown by `RunControl` only.
struct Stopped final {
  StopReason Reason = StopReason::User;
};

/// An internal inconsistency, on its way to the failure dialog: `Text` is one of the "Failure (n)!" sentences.
struct FatalError final {
  std::string Text;
};

/// A request that cannot be carried out as it was asked, on its way to the user, who asks again. Nothing was written.
struct Refusal final {
  std::string Text;
};

/// The numbers that failure sentences quote, as they stand when the failure is reported.
struct FailureLimits {
  std::int32_t FacetCount = 0;
  std::int32_t DataFacetCount = 0;
  std::int32_t ActiveFacetCount = 0;
  std::int32_t ModelFieldCount = 0;
};

/// What a failure knows beyond its sentence (a file and the system's reason, a text that could not be read): the
/// argument where the sentence of its code does not quote it. Often empty.
std::string FailureDetail(const Halt& halt);

/// The sentence of a failure, without "Error F..." and place.
std::string FailureText(const Halt& halt, const FailureLimits& limits);

/// The whole line "Error F27 in line 12: ...". A `lineNumber` of 0 leaves the place out.
std::string FailureLine(const Halt& halt, const FailureLimits& limits, std::int64_t lineNumber);

/// All that is told of a failure, line by line: its detail, the line to blame as "location is: ...", and the line
/// "Error F...". Without `location` (such as "Specification") there is no line to blame.
std::vector<std::string> FailureReport(const Halt& halt, const FailureLimits& limits, std::string_view location,
                                       std::int64_t lineNumber, std::string_view lineText);

}  // namespace tessaly
