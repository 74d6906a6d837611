// Numbers and lines as the reader of specifications takes them.
#pragma once

#include <string>
#include <string_view>

#include "state/settings.h"

namespace tessaly {

/// A decimal number that a specification reads as `value`, or, where no text of up to ten decimals does, as near to it
/// as the evaluation of expressions in single precision comes. The shortest of these texts is usually enough.
std::string SpecNumber(float value);

/// The user value of `measure` (logit) for an anchor field. What is read from it is the same user value as a single,
/// or, where no such text is found, one that is printed alike with the decimals of `Udecimals=`, at least six.
std::string SpecMeasure(float measure, const Settings& settings);

/// The same for a threshold (logit), which is in units of `Uscale=` alone.
std::string SpecThreshold(float threshold, const Settings& settings);

/// A line of the comma-separated `values`, without blanks and one comma at its end; and `comment`, if any, behind a
/// semicolon. A last value with quote marks at its ends keeps a comma, or else they would be lost in reading.
std::string SpecLine(std::string_view values, std::string_view comment = {});

}  // namespace tessaly
