#include "reports/table6_rulers.h"

#include <string_view>
#include <vector>

#include "reports/ruler.h"
#include "reports/subset_listing.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Element numbers of all facets, without scales.
constexpr std::string_view kSubsetVertical = "N,#S";

bool WantsRulers(std::string_view vertical) {
  const std::string_view text = TrimLeft(vertical);
  return text.empty() || UpperAscii(text.front()) != 'N';
}

std::vector<ElementIndex> AllElements(const ElementTable& elements) {
  std::vector<ElementIndex> all;
  all.reserve(static_cast<std::size_t>(elements.ElementCount()));
  for (const ElementIndex element : elements.ElementNumber.all()) all.push_back(element);
  return all;
}

RulerAxis AxisOf(const RulerColumns& columns, const Yardstick& dimensions, const Analysis& analysis) {
  return FitRulerAxis(columns, dimensions, analysis.Facets, analysis.Elements, analysis.Settings);
}

}  // namespace

void VerticalRulers(const std::string& vertical, const std::string& yardstick, const Analysis& analysis,
                    ResponseKernel& kernel, ReportWriter& report, Console& console) {
  if (!WantsRulers(vertical)) return;
  TableFrame(report, analysis.Settings, console).StartTable("Table 6.0  All Facet Vertical \"Rulers\"");
  const std::vector<ElementIndex> elements = AllElements(analysis.Elements);
  const std::vector<std::string_view> dimensions = SplitRulers(yardstick);
  const std::vector<std::string_view> rulers = SplitRulers(vertical);
  for (std::size_t at = 0; at < rulers.size(); ++at) {
    const RulerColumns columns = ParseVertical(rulers[at], analysis.Facets);
    const Yardstick size = ParseYardstick(at < dimensions.size() ? dimensions[at] : std::string_view());
    WriteRuler(columns, size, AxisOf(columns, size, analysis), elements, analysis, kernel, report, console);
  }
}

void SubsetRulers(const std::string& vertical, const std::string& yardstick, const Analysis& analysis,
                  ResponseKernel& kernel, ReportWriter& report, Console& console) {
  if (!analysis.Subsets.Disjoint()) return;
  const SubsetReport wanted = analysis.Settings.SubsetDetection;
  if (wanted != SubsetReport::Report && wanted != SubsetReport::List) {
    report.WriteTableLine("There are" + GeneralText(analysis.Subsets.SubsetCount) +
                          " disconnected subsets identified in Table 7.");
    return;
  }
  if (!WantsRulers(vertical)) return;
  TableFrame frame(report, analysis.Settings, console);
  frame.StartTable("Table 6.0.0  Disjoint Subset Element Listing");
  const std::vector<std::vector<ElementIndex>> subsets = ElementsBySubset(analysis.Subsets);
  for (std::int32_t n = 1; n <= analysis.Subsets.SubsetCount; ++n) {
    for (const std::string& line : SubsetLines(n, subsets[static_cast<std::size_t>(n) - 1], analysis))
      report.WriteTableLine(line);
  }
  if (wanted == SubsetReport::List) return;
  const RulerColumns columns = ParseVertical(kSubsetVertical, analysis.Facets);
  const Yardstick size = ParseYardstick(SplitRulers(yardstick).front());
  // All subsets have the same axis, so that their pictures can be laid side by side.
  const RulerAxis axis = AxisOf(columns, size, analysis);
  for (std::int32_t n = 1; n <= analysis.Subsets.SubsetCount; ++n) {
    frame.WriteTableTitle("Table 6.0." + BareText(n) + "  Disjoint Subset" + GeneralText(n) + " Vertical Summary");
    WriteRuler(columns, size, axis, subsets[static_cast<std::size_t>(n) - 1], analysis, kernel, report, console);
  }
}

}  // namespace tessaly
