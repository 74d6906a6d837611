// The cells of a facet column of a ruler, from the top line down.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "reports/ruler_elements.h"
#include "reports/ruler_plan.h"
#include "state/elements.h"
#include "support/bytes.h"

namespace tessaly {

/// Fills one column. What does not fit into a line is left for continuation lines.
class RulerCells {
 public:
  RulerCells(const PlannedColumn& plan, const PlacedFacet& placed, const ElementTable& elements,
             const TextEncoding& encoding);

  /// Goes on to `line`, which is below all lines so far.
  void StartLine(std::int32_t line);
  /// The next cell of the line, with a blank on both sides.
  std::string NextCell();
  /// Elements of the line are left.
  bool Unfinished() const { return next_ < end_; }

 private:
  std::string Text();
  std::string Stars(std::size_t count) const;
  std::string Listed();

  const PlannedColumn& plan_;
  const std::vector<PlacedElement>& placed_;
  const ElementTable& elements_;
  const TextEncoding& encoding_;
  /// Elements of the line that are still to be shown: placed_[next_..end_).
  std::size_t next_ = 0;
  std::size_t end_ = 0;
};

}  // namespace tessaly
