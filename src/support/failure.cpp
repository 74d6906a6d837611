#include "support/failure.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

enum class Quoted { Nothing, Argument, FacetCount, DataFacetCount, ActiveFacetCount, ModelFieldCount };

struct FailureSentence {
  FailureCode Code;
  std::string_view Before;
  Quoted Quote = Quoted::Nothing;
  std::string_view After = {};
};

constexpr FailureSentence kSentences[] = {
    {FailureCode::Cancelled, "Current operation cancelled"},
    {FailureCode::None, "Current operation cancelled"},
    {FailureCode::SpecificationExpected, "\"Specification=value\" expected"},
    {FailureCode::NumberInvalid, "Number invalid or greater than", Quoted::FacetCount},
    {FailureCode::DuplicateCategory, "Duplicate category label"},
    {FailureCode::TooManyModelComponents, "More than", Quoted::ModelFieldCount, " components in Model= statement"},
    {FailureCode::InvalidScaleType,
     "Invalid scale type (valid are D,R,B,P,M) or scale name in Model= does not match Rating Scale="},
    {FailureCode::DuplicateScaleLabels, "Duplicate Rating (or partial credit) scale= identifying labels"},
    {FailureCode::FacetsConflict, "Facets= statement conflicts with prior facet commands"},
    {FailureCode::FacetOutOfRange, "Facet number out of range: 1-", Quoted::FacetCount},
    {FailureCode::TooFewModelComponents, "All Model= statements must include", Quoted::ActiveFacetCount,
     " facet locations + type [+ weight]"},
    {FailureCode::CategoryNotInteger, "Category is not an integer in range 0 to", Quoted::Argument},
    {FailureCode::FacetTwice, "Labels= contains the same facet twice"},
    {FailureCode::InvalidCategory, "Invalid category in Rating (or partial credit) scale= specification"},
    {FailureCode::ExtraSpecificationExpected, "Extra specification should be: specification=value"},
    {FailureCode::ExtraSpecificationInvalid, "Extra specification is not specification=value or is invalid"},
    {FailureCode::NoElementLabels, "No element labels specified after Labels="},
    {FailureCode::SortLength, "Sort length error"},
    {FailureCode::NonNumericDatum, "Non-numeric datum treated as missing"},
    {FailureCode::InvalidElementNumber, "Invalid element number. Must be integers in range 0 - 2147483646"},
    {FailureCode::InvalidGroup, "Invalid group number"},
    {FailureCode::InvalidModel, "Invalid Model= statement"},
    {FailureCode::InvalidResponse, "Invalid response value: non-numeric or too big for model"},
    {FailureCode::TooFewFields, "Data record does not contain", Quoted::DataFacetCount,
     " facet references + data. Please start comments with ;"},
    {FailureCode::NonInteger, "Non-Integer value where integer expected"},
    {FailureCode::SecondRange, "Only one facet may have a range (-) in a data line", Quoted::Argument},
    {FailureCode::RangeDeficit, "Not enough responses for the range: deficit:", Quoted::Argument},
    {FailureCode::RangeExcess, "Too many responses: excess:", Quoted::Argument},
    {FailureCode::InvalidArrangement, "Valid arrangements are facet number (optional) then A,F,M,N,P,a,m,f,n,p"},
    {FailureCode::FacetsFirst, "Please specify Facets= before this specification"},
    {FailureCode::NoUsableData, "No usable data.  Use Query=Y to check Models= and Labels="},
    {FailureCode::AllExtreme, "All data eliminated as extreme.  Dropped elements - first: ", Quoted::Argument},
    {FailureCode::IncompatibleFile, "Incompatible file usage: ", Quoted::Argument},
    {FailureCode::SortSequence, "Lsort sequence error"},
    {FailureCode::UmeanTooLate, "Umean= and Uscale= must be specified before Labels= and Rating="},
    {FailureCode::NoData, "Data= not specified"},
    {FailureCode::NoFileName, "No file name"},
    {FailureCode::InvalidFileName, "File name contains * or ?, or ends with \\ / or :"},
    {FailureCode::FileNotFound, "File not found"},
    {FailureCode::InvalidFileFormat, "Invalid file format: not in DOS-Text (ASCII) format."},
    {FailureCode::EnteredMismatch, "Entered= references do not match", Quoted::DataFacetCount},
    {FailureCode::FileEmpty, "File has no contents"},
    {FailureCode::InvalidLineEnd, "Invalid line-end format: only CR code, CR-LF expected"},
    {FailureCode::AnchorTooExtreme, "Anchor value too extreme"},
    {FailureCode::MissingQuote, "Missing quote (+chr$(34)+) in command line"},
    {FailureCode::WorkFileProblem, "Work file problem"},
    {FailureCode::CancelledByUser, "Execution cancelled at user request"},
    {FailureCode::FileNotFoundInBatch, "File not found in batch mode"},
    {FailureCode::TooManyModels, "Too many Models= specified"},
    {FailureCode::InvalidDvalues,
     "Dvalues= must be facet, value e.g., 3,1-4 or facet, facet, start, length, e.g., 3,2,6,2, or "},
    {FailureCode::FacetsFirstAgain, "Please specify Facets= before this specification."},
    {FailureCode::RequiredFileNotFound, "Required file not found"},
    {FailureCode::ExcelError, "Excel-related error"},
    {FailureCode::DvaluesFieldProblem, "Field start or length problem in Dvalues="},
    {FailureCode::NonNumericWeight, "Non-numeric weight in Models= specification: ", Quoted::Argument,
     " or wrong number of facets."},
    {FailureCode::InvalidRecount, "Recount value not positive numeric"},
    {FailureCode::NoActiveElements, "No active element numbers: Models= and Labels="},
    {FailureCode::InvalidGlabel, "Format is: Glabel = facet number, group number, group label"},
    {FailureCode::DvaluesUndefinedFacet, "Dvalues= references an undefined facet"},
    {FailureCode::TooManyFields, "More than 32,000 fields in the data record"},
    {FailureCode::DvaluesCircular, "Dvalues= facets refer to themselves"},
    {FailureCode::RecodeRangeNotNumeric, "Rating Scale= recode range not numeric. Should be number-number"},
    {FailureCode::SecondLabels, "Labels= must only appear once in your Specification file"},
    {FailureCode::LabelsFacetZero, "Labels= facet number is zero. Must be an integer in the range 1-",
     Quoted::FacetCount},
    {FailureCode::NoElementNumbers, "No element numbers specified after Labels="},
    {FailureCode::TooManyElements, "Too many elements specified in Labels=. Processed =", Quoted::Argument,
     ". Maximum number of element numbers is usually about 4000000"},
    {FailureCode::InvalidTarget, "Invalid target element number in this element specification"},
    {FailureCode::TargetCircular, "Target element number circular or nested too deep"},
    {FailureCode::NullOutOfRange, "Keepzero= value out of range: -1 to 2147483646"},
    {FailureCode::RangeTooLong,
     "Too many elements in the element range for a facet. If nnn-nnn is an element label, please add letter in front "
     "of "
     "this label everywhere."},
    {FailureCode::InvalidElementReference, "Invalid element number. Must be integers in range 0 - 2147483646"},
};

/// System error 1 would turn into the code of a cancelled operation; it is moved out of the way.
constexpr std::int32_t kMovedSystemErrors = 1000;

std::int64_t CodeNumber(const Halt& halt) {
  const auto number = static_cast<std::int64_t>(halt.Code);
  return number < -kMovedSystemErrors ? number + kMovedSystemErrors : number;
}

bool IsSystemError(const Halt& halt) {
  return halt.Code < FailureCode::Cancelled;
}

const FailureSentence* FindSentence(FailureCode code) {
  const auto* const found = std::find_if(std::begin(kSentences), std::end(kSentences),
                                         [&](const FailureSentence& row) { return row.Code == code; });
  return found == std::end(kSentences) ? nullptr : found;
}

std::string QuotedText(Quoted quote, const Halt& halt, const FailureLimits& limits) {
  switch (quote) {
    case Quoted::Nothing:
      return {};
    case Quoted::Argument:
      return halt.Argument;
    case Quoted::FacetCount:
      return GeneralText(limits.FacetCount);
    case Quoted::DataFacetCount:
      return GeneralText(limits.DataFacetCount);
    case Quoted::ActiveFacetCount:
      return GeneralText(limits.ActiveFacetCount);
    case Quoted::ModelFieldCount:
      return GeneralText(limits.ModelFieldCount);
  }
  return {};
}

}  // namespace

Halt SystemFailure(int errorNumber, const std::string& path) {
  const std::int32_t code = -errorNumber;
  Halt halt{code == static_cast<std::int32_t>(FailureCode::Cancelled) ? FailureCode(code - kMovedSystemErrors)
                                                                      : FailureCode(code),
            {}};
  if (!path.empty()) halt.Argument = path + ": " + std::generic_category().message(errorNumber);
  return halt;
}

std::string FailureDetail(const Halt& halt) {
  const FailureSentence* const sentence = FindSentence(halt.Code);
  const bool quoted = sentence != nullptr && sentence->Quote == Quoted::Argument;
  return quoted ? std::string() : halt.Argument;
}

std::string FailureText(const Halt& halt, const FailureLimits& limits) {
  if (IsSystemError(halt)) return std::generic_category().message(static_cast<int>(-CodeNumber(halt)));
  const FailureSentence* const sentence = FindSentence(halt.Code);
  if (sentence == nullptr) return " ... not understood (error code" + GeneralText(CodeNumber(halt)) + ")";
  std::string text(sentence->Before);
  return text.append(QuotedText(sentence->Quote, halt, limits)).append(sentence->After);
}

std::string FailureLine(const Halt& halt, const FailureLimits& limits, std::int64_t lineNumber) {
  const std::int64_t number = CodeNumber(halt);
  // Catalogue codes stand right behind the letter, system errors as a number of their own.
  const std::string code = GeneralText(IsSystemError(halt) ? -number : number);
  std::string line = IsSystemError(halt) ? "Error" + code : "Error F" + code.substr(number >= 0 ? 1 : 0);
  if (lineNumber > 0) line += " in line" + GeneralText(lineNumber);
  return line + ": " + FailureText(halt, limits);
}

std::vector<std::string> FailureReport(const Halt& halt, const FailureLimits& limits, std::string_view location,
                                       std::int64_t lineNumber, std::string_view lineText) {
  std::vector<std::string> lines;
  if (std::string detail = FailureDetail(halt); !detail.empty()) lines.push_back(std::move(detail));
  if (!location.empty() && !lineText.empty()) lines.push_back(std::string(location) + " is: " + QuotedLine(lineText));
  lines.push_back(FailureLine(halt, limits, location.empty() ? 0 : lineNumber));
  return lines;
}

}  // namespace tessaly
