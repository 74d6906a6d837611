// What `Vertical=` and `Yardstick=` ask of the rulers of Table 6. Both come from the user: what cannot be used is left
// out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "state/facets.h"

namespace tessaly {

/// Most rulers of a text, and most facet columns of a ruler.
constexpr std::size_t kMostRulers = 10;
constexpr std::size_t kMostFacetColumns = 60;

/// What a facet column shows of its elements; the values are the letters of `Vertical=`.
enum class ColumnKind : char { Labels = 'A', Numbers = 'N', Stars = '*', Count = 'C' };
enum class ScaleDisplay { None, Categories, CategoriesAndLabels };

struct FacetColumn {
  FacetNumber Facet{0};
  ColumnKind Kind = ColumnKind::Labels;

  friend bool operator==(const FacetColumn&, const FacetColumn&) = default;
};

/// The columns of a ruler. All facets have elements.
struct RulerColumns {
  std::vector<FacetColumn> Facets;
  ScaleDisplay Scales = ScaleDisplay::Categories;
};

/// The dimensions of a ruler.
struct Yardstick {
  /// Width that the ruler should not exceed; 0 for any.
  std::int32_t Columns = 0;
  /// 0 or less: to be found.
  float LinesPerUnit = 0;
  /// User units; equal: to be found.
  float Low = 0;
  float High = 0;
  /// Extreme elements stand at their estimates instead of at the ends of the axis.
  bool ExtremesByMeasure = false;
};

/// The texts of the rulers: what stands in each pair of parentheses, or the whole text if it has none. At least one.
std::vector<std::string_view> SplitRulers(std::string_view text);

/// The columns of one ruler. An empty text and one that begins with "Y" stand for a column of each facet: stars if it
/// has more than 20 elements, labels otherwise.
RulerColumns ParseVertical(std::string_view ruler, const FacetTable& facets);

/// "columns, lines per unit, low, high, word", each of which may be missing.
Yardstick ParseYardstick(std::string_view yardstick);

}  // namespace tessaly
