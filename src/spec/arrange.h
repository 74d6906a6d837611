// The codes of `Arrange=`.
#pragma once

#include <span>
#include <string>

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// Arrangement codes in their stored form: items joined with commas, each an optional facet number and letters of
/// A F M N P (capitals ascending, small letters descending) that ends the ties by N. "N" for an empty list.
/// Throws `Halt{InvalidArrangement}`.
std::string NormaliseArrange(std::span<const std::string> items);

/// `Arrange=`: an empty value gives the empty text, which suppresses Table 7.
void ReadArrange(SpecContext& context, const SplitLine& line);

}  // namespace tessaly
