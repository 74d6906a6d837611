// Labels beside an axis, each at its height: spread where they would overlap, gathered where there are too many.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "graphs/svg_page.h"

namespace tessaly {

/// A label and the height on the page (mm from the upper edge) that it stands for. The text is a display text.
struct HeightLabel {
  double Y = 0;
  std::string Text;
};

/// Labels from `First` up to `End` that are shown together, and the heights that they span.
struct LabelGroup {
  std::size_t First = 0;
  std::size_t End = 0;
  double Top = 0;
  double Bottom = 0;
  double Mean = 0;
};

struct LabelRow {
  /// Where its labels want to stand, and where there is room for it.
  double Wanted = 0;
  double Y = 0;
  std::string Text;
};

struct LabelRows {
  std::vector<LabelGroup> Groups;
  std::vector<LabelRow> Rows;
  /// Some labels are only counted: "a, b +12".
  bool Counted = false;
};

/// Distance of rows, and what a row needs beside its text for the line to its height.
constexpr double kRowPitch = 2.9;
constexpr double kLeaderWidth = 4.2;

/// Rows of `labels` (ascending by height) between the heights `top` and `bottom`, with texts of at most `width`.
LabelRows ArrangeLabels(const std::vector<HeightLabel>& labels, double top, double bottom, double width);

/// The width that shows all labels of the same height in one row, but no more than `most`.
double WidthOfLabels(const std::vector<HeightLabel>& labels, double most);

/// Draws a text that begins at `at`, halfway up its letters, on clear paper.
void DrawOnPaper(SvgPage& page, SvgPoint at, const std::string& text);

/// Draws the rows, with thin lines from their heights at `left` to the texts.
void DrawLabelRows(SvgPage& page, const LabelRows& rows, double left);

}  // namespace tessaly
