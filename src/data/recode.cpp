#include "data/recode.h"

#include "support/number_text.h"

namespace tessaly {

RecodeTable::RecodeTable(const std::vector<RecodeRule>& rules) {
  for (const RecodeRule& rule : rules) {
    exact_.emplace(rule.Text, rule.Target);
    if (rule.IsRange) ranges_.push_back(rule);
  }
}

std::optional<std::int32_t> RecodeTable::Target(std::string_view datum) const {
  if (const auto exact = exact_.find(datum); exact != exact_.end()) return exact->second;
  if (ranges_.empty() || !IsNumeric(datum)) return {};
  const double value = LeadingNumber(datum);
  for (const RecodeRule& range : ranges_)
    if (value >= range.Low && value <= range.High) return range.Target;
  return {};
}

}  // namespace tessaly
