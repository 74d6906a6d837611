#include "reports/facet_barcharts.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "reports/barchart.h"
#include "reports/table_frame.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// `Barcharts=All`.
constexpr int kAllItems = 2;

/// What the items of an element are taken from.
struct ElementView {
  const tessaly::Settings& Settings;
  ElementStatus Status;
  /// Logit.
  float Measure;
  const ElementRecord& Record;
  const ElementFit& Fit;

  double Score() const { return Settings.TotalScore ? Record.AllScore : Record.RawScore; }
  double Count() const { return Settings.TotalScore ? Record.AllCount : Record.ObservedCount; }
};

bool Observed(const ElementView& element) {
  return element.Record.ObservedCount > 0;
}
/// Extreme elements have an estimate too; what a single datum gives is none.
bool Estimated(const ElementView& element) {
  return Observed(element) && !WithoutMeasure(element.Status) && element.Status != ElementStatus::OneDatum;
}
bool Fitted(const ElementView& element) {
  return Observed(element) && Measurable(element.Status);
}

float AverageOf(double sum, double count) {
  return static_cast<float>(sum / (count == 0 ? 1.0 : count));
}

/// Items of the same axis are drawn over the values of all of them: in all facets, or in their own alone.
enum class Axis { OfFacet, Measure, StandardError, MeanSquare, ZStd, FairAverage };

/// What one barchart shows.
struct Item {
  std::string Label;
  /// Shown with `Barcharts=Yes` too.
  bool Always;
  tessaly::Axis Axis;
  bool (*Has)(const ElementView&);
  float (*Value)(const ElementView&);
};

std::string CorrelationLabel(char ptBiserial) {
  return ptBiserial == 'Y' ? "PtBis:" : ptBiserial == 'I' ? "PtBisI:" : "PtMea:";
}

std::vector<Item> ShownItems(const Settings& settings) {
  using View = const ElementView&;
  std::vector<Item> items = {
      {settings.Uscale == 1 ? "Logit:" : "Measure:", true, Axis::Measure, Estimated,
       [](View e) { return e.Settings.UserMeasure(e.Measure); }},
      {"S.E.:", false, Axis::StandardError, Estimated,
       [](View e) { return e.Settings.UserSpread(e.Fit.StandardError); }},
      {"Infit MnSq:", true, Axis::MeanSquare, Fitted, [](View e) { return e.Fit.InfitMeanSquare; }},
      {"Outfit MnSq:", true, Axis::MeanSquare, Fitted, [](View e) { return e.Fit.OutfitMeanSquare; }},
      {"Infit ZStd:", true, Axis::ZStd, Fitted, [](View e) { return e.Fit.InfitZStd; }},
      {"Outfit ZStd:", true, Axis::ZStd, Fitted, [](View e) { return e.Fit.OutfitZStd; }},
      {"Count:", false, Axis::OfFacet, Observed, [](View e) { return static_cast<float>(e.Count()); }},
      {"Raw:", false, Axis::OfFacet, Observed, [](View e) { return static_cast<float>(e.Score()); }},
      {"Average:", false, Axis::OfFacet, Observed, [](View e) { return AverageOf(e.Score(), e.Count()); }},
      {"Fair:", false, Axis::FairAverage, Fitted,
       [](View e) { return AverageOf(static_cast<double>(e.Fit.FairScoreSum), e.Record.ObservedCount); }},
  };
  if (settings.PtBiserial != 'N') {
    items.push_back({CorrelationLabel(settings.PtBiserial), false, Axis::OfFacet, Observed,
                     [](View e) { return e.Fit.Correlation; }});
  }
  if (settings.BarchartsOption != kAllItems) std::erase_if(items, [](const Item& item) { return !item.Always; });
  return items;
}

/// Hands the values of `item` in `elements` to `take`.
template <class Take>
void ForEachValue(const Item& item, IndexRange<ElementIndex> elements, const Analysis& analysis, Take take) {
  const ElementTable& table = analysis.Elements;
  for (const ElementIndex e : elements) {
    const ElementView view{analysis.Settings, table.ElementStatus[e], table.ElementMeasure[e], table.ElementStats[e],
                           table.Fit[e]};
    if (item.Has(view)) take(static_cast<double>(item.Value(view)));
  }
}

BarchartRange RangeOf(const Item& item, const std::vector<Item>& items, FacetNumber facet, const Analysis& analysis) {
  BarchartRange range;
  const auto meet = [&](double value) { range.Meet(value); };
  if (item.Axis == Axis::OfFacet) {
    ForEachValue(item, analysis.Facets[facet].Elements(), analysis, meet);
    return range;
  }
  for (const Item& other : items) {
    if (other.Axis == item.Axis) ForEachValue(other, analysis.Elements.ElementNumber.all(), analysis, meet);
  }
  return range;
}

}  // namespace

std::vector<std::string> FacetBarcharts(FacetNumber facet, const Analysis& analysis) {
  std::vector<std::string> lines;
  const std::vector<Item> items = ShownItems(analysis.Settings);
  for (const Item& item : items) {
    Barchart chart(item.Label, RangeOf(item, items, facet, analysis));
    ForEachValue(item, analysis.Facets[facet].Elements(), analysis, [&](double value) { chart.Tally(value); });
    std::ranges::move(chart.Lines(), std::back_inserter(lines));
  }
  return lines;
}

void FacetSummaries(const Analysis& analysis, ReportWriter& report, Console& console) {
  if (analysis.Settings.BarchartsOption == 0) return;
  for (const FacetNumber number : analysis.Facets.all()) {
    const Facet& facet = analysis.Facets[number];
    if (facet.FacetLabelWidth == 0) continue;
    TableFrame(report, analysis.Settings, console)
        .WriteTableTitle("Table 6." + BareText(number.value) + "  " + facet.FacetLabel + " Facet Summary");
    for (const std::string& line : FacetBarcharts(number, analysis)) report.WriteTableLine(line);
  }
}

}  // namespace tessaly
