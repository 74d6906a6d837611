// The columns of the table of categories.
#pragma once

#include <string>
#include <vector>

#include "support/bytes.h"

namespace tessaly {

/// What the table of one scale shows.
struct CategoryColumns {
  /// Raw and ordinal category both.
  bool ShowBoth = false;
  bool Thresholds = false;
  /// The closing rule names the three pictures of the scale.
  bool Structure = false;
  bool Residual = false;
  /// Report columns of the category labels; 0 for none.
  std::int32_t NameWidth = 0;
  /// Labels stand on the left.
  bool LeftHand = false;
};

/// Headings, rules and row templates of a table, all of one width.
struct CategoryLayout {
  std::vector<std::string> HeadLines;
  std::string RuleTemplate;
  std::string ClosingRule;
  /// Rows of the lowest category, of those between, of the highest one.
  std::string RowFmtFirst;
  std::string RowFmtMiddle;
  std::string RowFmtTop;
  /// A raw category that is not in use.
  std::string RowFmtNoData;
};

CategoryLayout BuildCategoryLayout(const CategoryColumns& columns);

}  // namespace tessaly
