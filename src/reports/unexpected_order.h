// The orders of Table 4.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "estimate/unexpected_list.h"
#include "state/facets.h"
#include "state/run_control.h"

namespace tessaly {

/// One order that `Usort=` asks for.
struct UnexpectedOrder {
  /// As the heading of the table shows it; empty for the order of the data columns.
  std::string Wording;
  std::vector<std::string> Keys;
};

/// The orders of a `Usort=` text, each in parentheses if there are several. None if the text has a letter N.
std::vector<UnexpectedOrder> ParseUsort(std::string_view usort);

/// Sorts by the keys of `order`, then by all data columns: by the figures as they are printed, so that what looks equal
/// is equal. Keys are a data column (from 1), or by their first letter Z S F T standardized residual, U its size, R Y
/// residual, E P expected score, X V score, C O D category; capitals ascending, small letters descending. Other keys
/// are ignored. Throws `Stopped`; the responses are in pieces then.
void SortUnexpected(const UnexpectedOrder& order, const FieldMap& fields, RunControl& control,
                    std::vector<UnexpectedResponse>& responses);

}  // namespace tessaly
