// The narrow layout of tables about single responses: category, score, expected score, residual, standardized residual.
#pragma once

#include <array>
#include <string>

#include "support/bytes.h"

namespace tessaly {

/// Heading, rule and row template of a table, all of one width.
struct ShortLayout {
  std::string Heading;
  std::string RuleTemplate;
  std::string RowFmt;
  /// Report columns of the label column.
  int LabelWidth = 0;
  bool LeftHand = false;

  /// A row from the texts of its five numbers.
  std::string Row(const std::string& label, const std::array<std::string, 5>& numbers,
                  const TextEncoding& encoding) const;
};

/// The layout with `labelHead` over the labels, which stand on the left with `leftHand`.
ShortLayout BuildShortLayout(const std::string& labelHead, bool leftHand, const TextEncoding& encoding);

}  // namespace tessaly
