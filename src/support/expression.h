// Numeric fields of a specification are small arithmetic expressions, in single precision.
#pragma once

#include <string_view>

namespace tessaly {

/// The value of `text`, so that "50+5" is 55. Operators + - * / ^ (also **), parentheses, numbers with E or D exponents
/// whose sign is written ("1E+2"). Chains of one level group to the right: 10-2-3 is 11. 0 for an empty text and on any
/// failure. Throws `Halt{NumberInvalid}`, with the reason as argument, for a text too long for the evaluator or a
/// number too large for single precision.
float EvaluateExpression(std::string_view text);

}  // namespace tessaly
