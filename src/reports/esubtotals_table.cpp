#include "reports/esubtotals_table.h"

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

std::vector<std::string> EsubtotalsBlock(const std::map<std::int32_t, std::vector<std::int32_t>>& esubtotals) {
  if (esubtotals.empty()) return {};
  std::vector<std::string> lines = {"Esubtotals for target facet by reference facet= "};
  for (const auto& [target, references] : esubtotals) {
    std::vector<std::string> items;
    for (const std::int32_t reference : references) items.push_back(BareText(reference));
    lines.push_back(BareText(target) + " = " + Joined(items, ", "));
  }
  lines.emplace_back("*");
  return lines;
}

void WriteEsubtotals(const ElementCrossReference& references, const Analysis& analysis, ReportWriter& report) {
  for (const ElementIndex element : analysis.Elements.ElementNumber.all()) {
    std::string line = GeneralText(element.value) + "=";
    for (const FacetNumber facet : analysis.Facets.all())
      line += GeneralText(references.Entry(element, facet).value) + ",";
    report.WriteTableLine(line);
  }
}

}  // namespace tessaly
