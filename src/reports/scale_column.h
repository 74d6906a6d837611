// The column of a rating scale beside a ruler: which category is expected at each line.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/response_kernel.h"
#include "reports/ruler_axis.h"
#include "state/analysis.h"

namespace tessaly {

/// Fills one column from the top line down. A line stands for the net measure that lies as far from the origin of the
/// scale as its own measure lies from `Umean=`: what an element there is expected to score where all else is average.
class ScaleColumn {
 public:
  /// `withLabels` shows the label of each category below it. The column of a scale with one step stays blank.
  ScaleColumn(ScaleNumber scale, std::string heading, bool withLabels, const RulerAxis& axis, const Analysis& analysis,
              ResponseKernel& kernel);

  /// Report columns of a cell, without the line behind it.
  int Width() const { return width_; }
  std::string HeadCell() const { return Centred(heading_); }
  /// The cell of the next line: the first call is for line 0.
  std::string NextCell();
  std::string BlankCell() const { return Centred({}); }

 private:
  void NameCategories();
  std::string Text(std::int32_t line);
  std::string EndCategory(bool top);
  /// The name of a category; its label waits for the next line.
  std::string ShowCategory(std::int32_t ordinal);
  float ExpectedAt(double measure);
  std::string Centred(std::string_view text) const;

  ScaleNumber scale_;
  std::string heading_;
  bool withLabels_;
  const RulerAxis& axis_;
  const Analysis& analysis_;
  ResponseKernel& kernel_;
  std::int32_t top_;
  ModelType type_;
  int width_;
  /// By ordinal category: its raw category and the label of that.
  std::vector<std::string> names_;
  std::vector<std::string> labels_;
  std::int32_t line_ = 0;
  /// Expected category at the upper edge of the next line.
  float above_ = 0;
  /// Label of the category on the line above.
  std::string label_;
};

}  // namespace tessaly
