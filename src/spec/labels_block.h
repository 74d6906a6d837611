// `Labels=`: stores the block, which is understood when all other keywords have been read, and walks through it.
#pragma once

#include <string>
#include <vector>

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// Highest group number.
constexpr std::int32_t kHighestGroup = 32760;

/// Reads `Labels=` and the lines behind it that begin with a digit or "*". Warns if the last one is not "*".
/// Throws `Halt{ExtraSpecificationInvalid}` in the extra specifications.
void ReadLabels(SpecContext& context, const SplitLine& line);

/// Gives each line of the block to `facetLine(split)` (the first of each facet) or `elementLine(split)`, with `at` at
/// it.
template <class FacetLine, class ElementLine>
void ForEachLabelsLine(const std::vector<StoredLine>& block, InputLine& at, FacetLine facetLine,
                       ElementLine elementLine) {
  bool newFacet = true;
  for (std::size_t i = 1; i < block.size(); ++i) {
    if (block[i].Text.front() == '*') {
      newFacet = true;
      continue;
    }
    at = {block[i].LineNumber, block[i].Text};
    const SplitLine line = SplitSpecLine(block[i].Text);
    if (newFacet) {
      facetLine(line);
    } else {
      elementLine(line);
    }
    newFacet = false;
  }
}

}  // namespace tessaly
