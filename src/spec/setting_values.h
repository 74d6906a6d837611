// Values of simple settings: yes or no, numbers, first letters, lists.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "spec/spec_context.h"
#include "spec/split_line.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

/// First character in capitals; a blank for an empty text.
char FirstLetter(std::string_view text);
/// Whether the first letter is Y.
bool IsYes(std::string_view text);
/// The value of an expression, rounded to a whole number.
std::int32_t WholeValue(std::string_view text);
/// `WholeValue` without sign.
std::int32_t AbsoluteWholeValue(std::string_view text);
/// The value of an expression without sign.
float AbsoluteValue(std::string_view text);
/// The value of `text`, exact for a plain number of any size, or as an expression.
double ExactValue(std::string_view text);
/// `ParseInt` of a text that is a number and nothing else, so that what stands behind it is not lost.
IntegerReading PlainInteger(std::string_view text, std::int32_t limit);
/// `PlainInteger` of an item in a list of facets. Throws `Halt{NumberInvalid}`.
std::int32_t FacetInteger(std::string_view item, std::int32_t limit);
/// Whether a text of this value is a number: one that reads as 0 must have a digit 0 to show it.
bool IsNumberOf(double value, std::string_view text);

template <auto Member>
void YesNo(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.*Member = IsYes(line.Value(1));
}
template <auto Member>
void NoYes(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.*Member = !IsYes(line.Value(1));
}
template <auto Member>
void Integer(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.*Member = WholeValue(line.Value(1));
}
template <auto Member>
void AbsoluteInteger(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.*Member = AbsoluteWholeValue(line.Value(1));
}
template <auto Member>
void AbsoluteNumber(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.*Member = AbsoluteValue(line.Value(1));
}
/// All values, joined with commas.
template <auto Member>
void List(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.*Member = Joined(line.Values, ",");
}

}  // namespace tessaly
