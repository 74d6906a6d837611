#include "reports/table7_measurements.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "reports/edit_word.h"
#include "reports/element_cell.h"
#include "reports/element_order.h"
#include "reports/measurement_layout.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kMeasureWidth = 6;
constexpr int kErrorWidth = 5;
constexpr float kNotableShare = 0.25F;

/// An item of `Arrange=`: a facet number, if it is for one facet only, and letters.
struct Arrangement {
  std::optional<std::int32_t> Facet;
  std::string Text;
  std::string Letters;
};

std::vector<Arrangement> Arrangements(const std::string& arrange) {
  std::vector<Arrangement> items;
  for (const std::string_view text : SplitAt(arrange, ',')) {
    const std::size_t letters = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::string_view digits = text.substr(0, letters);
    Arrangement item{{}, std::string(text), std::string(text.substr(letters))};
    if (!digits.empty()) item.Facet = ParseInt(digits, kHighestElementNumber).Value;
    items.push_back(std::move(item));
  }
  return items;
}

/// One line of the table, ready to be filled in.
struct MeasureRow {
  ElementStatus Status = ElementStatus::Active;
  char StatusMark = box::kVertical;
  bool Active = true;
  double Score = 0;
  double Count = 0;
  double Average = 0;
  float FairAverage = 0;
  std::string Measure;
  std::string StandardError;
  ElementFit Fit;
  std::string Displacement;
  std::string Group;
  std::string Weight;
  std::string Label;
};

/// Mean-squares print in a field of their own; standardized values are cut, not rounded, to one decimal.
float CutToOneDecimal(float value) {
  return std::trunc(value * 10) / 10;
}

/// Writes the tables of one facet.
class FacetTables {
 public:
  FacetTables(FacetNumber number, const Analysis& analysis, ReportWriter& report, Console& console)
      : number_(number),
        facet_(analysis.Facets[number]),
        elements_(analysis.Elements),
        settings_(analysis.Settings),
        prioritiesUsed_(PrioritiesUsed(analysis.Facets)),
        report_(report),
        console_(console),
        columns_(Columns()) {}

  void Write(const std::vector<Arrangement>& arrangements) {
    const std::int32_t reported = ReportedElements();
    if (reported == 0) return;
    std::int32_t subTable = 0;
    for (const Arrangement& arrangement : arrangements) {
      if (arrangement.Facet.value_or(number_.value) != number_.value) continue;
      WriteTable(arrangement, ++subTable, reported);
      if (reported == 1) break;
    }
  }

 private:
  static bool PrioritiesUsed(const FacetTable& facets) {
    return std::any_of(facets.begin(), facets.end(), [](const Facet& f) { return f.FacetPriority != 1; });
  }

  std::int32_t ReportedElements() const {
    std::int32_t count = 0;
    for (const ElementIndex element : facet_.Elements()) {
      if (elements_.ElementStatus[element] != ElementStatus::Unobserved && elements_.ElementStats[element].AllCount > 0)
        ++count;
    }
    return count;
  }

  std::string Heading(const Arrangement& arrangement, std::int32_t subTable, std::int32_t reported) const {
    std::string heading = "Table 7." + BareText(number_.value) + "." + BareText(subTable) + "  " + facet_.FacetLabel +
                          " Measurement Report";
    if (reported > 1) heading += "  (arranged by " + arrangement.Text + ")";
    if (prioritiesUsed_) heading += ". Estimation priority:" + GeneralText(facet_.FacetPriority);
    return heading;
  }

  void WriteTable(const Arrangement& arrangement, std::int32_t subTable, std::int32_t reported) {
    TableFrame frame(report_, settings_, console_);
    frame.StartTable(Heading(arrangement, subTable, reported));
    const MeasurementLayout layout =
        BuildMeasurementLayout(columns_, FacetHead(facet_, settings_.Encoding), settings_.Encoding);
    frame.BeginColumns(layout.HeadLines, layout.RuleTemplate);
    for (const ElementIndex element : SortElements(facet_, elements_, arrangement.Letters, settings_.OmitUnobserved)) {
      frame.RepeatColumns();
      frame.WriteRow(FilledRow(RowOf(element), layout));
    }
    frame.CloseTable();
  }

  MeasurementColumns Columns() const {
    MeasurementColumns columns;
    columns.TotalScore = settings_.TotalScore;
    columns.FairMean = settings_.FairOption == 'M';
    columns.Positive = facet_.FacetPositive;
    columns.RealSE = settings_.RealSE;
    columns.LeftHand = settings_.LeftHand;
    for (const ElementIndex element : facet_.Elements()) {
      if (elements_.ElementStatus[element] == ElementStatus::Unobserved) continue;
      if (elements_.ElementStats[element].ElementWeight != 1) columns.Weight = true;
      if (DisplacementIsNotable(element)) columns.Displacement = true;
    }
    return columns;
  }

  std::string DisplacementText(float displacement) const {
    const float orientation = facet_.FacetPositive ? 1.0F : -1.0F;
    return FormatSingle(settings_.Uscale * displacement * orientation, kMeasureWidth, settings_.Udecimals);
  }

  bool DisplacementIsNotable(ElementIndex element) const {
    const ElementFit& fit = elements_.Fit[element];
    if (!Measurable(elements_.ElementStatus[element]) || elements_.ElementStats[element].ObservedCount == 0)
      return false;
    if (std::fabs(fit.Displacement) <= std::fabs(fit.StandardError * kNotableShare)) return false;
    return DisplacementText(fit.Displacement) != DisplacementText(0);
  }

  char StatusMark(ElementIndex element) const {
    const ElementStatus status = elements_.ElementStatus[element];
    if (elements_.ElementGroup[element] > 0) {
      if (status == ElementStatus::Anchored) return facet_.FacetType();
      const bool extreme = status == ElementStatus::Minimum || status == ElementStatus::Maximum;
      if (facet_.FacetType() == 'G' && extreme) return 'G';
    } else if (status == ElementStatus::Anchored) {
      return 'A';
    }
    return box::kVertical;
  }

  MeasureRow RowOf(ElementIndex element) const {
    const ElementRecord& record = elements_.ElementStats[element];
    const auto perCount = [](double sum, float count) { return sum / (count == 0 ? 1.0 : static_cast<double>(count)); };
    MeasureRow row;
    row.Status = elements_.ElementStatus[element];
    row.StatusMark = StatusMark(element);
    row.Active = Measurable(row.Status) && record.ObservedCount != 0;
    const float score = settings_.TotalScore ? record.AllScore : record.RawScore;
    const float count = settings_.TotalScore ? record.AllCount : record.ObservedCount;
    row.Score = static_cast<double>(score);
    row.Count = static_cast<double>(count);
    row.Average = perCount(row.Score, count);
    row.Fit = elements_.Fit[element];
    row.FairAverage = static_cast<float>(perCount(static_cast<double>(row.Fit.FairScoreSum), record.ObservedCount));
    row.Measure =
        FormatSingle(settings_.UserMeasure(elements_.ElementMeasure[element]), kMeasureWidth, settings_.Udecimals);
    row.StandardError = FormatSingle(settings_.Uscale * row.Fit.StandardError, kErrorWidth, settings_.Udecimals);
    row.Displacement = DisplacementText(row.Fit.Displacement);
    row.Weight = FormatSingle(record.ElementWeight, kMeasureWidth, 2);
    row.Label = ElementCell(facet_, element, elements_, 0, settings_.Encoding);
    return row;
  }

  std::string FilledRow(const MeasureRow& row, const MeasurementLayout& layout) const {
    if (row.Active) return FilledNormalRow(row, layout);
    if (row.Status == ElementStatus::Minimum || row.Status == ElementStatus::Maximum ||
        row.Status == ElementStatus::OneDatum)
      return FilledExtremeRow(row, layout);
    return FilledNonActiveRow(row, layout);
  }

  /// The fields up to the average, with the label in front if it stands on the left.
  EditWord StartedRow(const MeasureRow& row, const std::string& rowFmt) const {
    EditWord word(rowFmt, settings_.Encoding);
    word.EditText(settings_.LeftHand ? row.Label : "");
    word.EditScore(row.Score).EditScore(row.Count).EditDouble(row.Average);
    return word;
  }

  /// Correlation, agreement, group, weight, label on the right, subsets.
  std::string FinishedRow(EditWord& word, const MeasureRow& row) const {
    word.EditText("").EditText("").EditText("").EditText("").EditText(columns_.Weight ? row.Weight : "");
    return word.EditText(settings_.LeftHand ? "" : row.Label).EditText("").Line();
  }

  std::string FilledNormalRow(const MeasureRow& row, const MeasurementLayout& layout) const {
    EditWord word = StartedRow(row, layout.RowFmtNormal);
    word.EditSingle(row.FairAverage).EditText(std::string(1, row.StatusMark));
    word.EditText(row.Measure).EditText(row.StandardError);
    word.EditSingle(row.Fit.InfitMeanSquare).EditSingle(CutToOneDecimal(row.Fit.InfitZStd));
    word.EditSingle(row.Fit.OutfitMeanSquare).EditSingle(CutToOneDecimal(row.Fit.OutfitZStd));
    word.EditText(FormatSingle(row.Fit.Discrimination, kMeasureWidth - 1, 2));
    word.EditText(columns_.Displacement ? row.Displacement : "");
    return FinishedRow(word, row);
  }

  std::string FilledExtremeRow(const MeasureRow& row, const MeasurementLayout& layout) const {
    EditWord word = StartedRow(row, layout.RowFmtExtreme);
    word.EditSingle(row.FairAverage).EditText(std::string(1, row.StatusMark));
    word.EditText(row.Measure).EditText(row.StandardError).EditText(StatusWord(row.Status));
    return FinishedRow(word, row);
  }

  std::string FilledNonActiveRow(const MeasureRow& row, const MeasurementLayout& layout) const {
    EditWord word = StartedRow(row, layout.RowFmtNonActive);
    word.EditText(std::string(1, row.StatusMark));
    word.EditText(row.Status == ElementStatus::Anchored ? row.Measure : "").EditText(StatusWord(row.Status));
    return FinishedRow(word, row);
  }

  FacetNumber number_;
  const Facet& facet_;
  const ElementTable& elements_;
  const Settings& settings_;
  bool prioritiesUsed_;
  ReportWriter& report_;
  Console& console_;
  MeasurementColumns columns_;
};

}  // namespace

void MeasurementReport(const std::string& arrange, const Analysis& analysis, ReportWriter& report, Console& console) {
  const std::vector<Arrangement> arrangements = Arrangements(arrange);
  for (const FacetNumber facet : analysis.Facets.all()) {
    if (analysis.Facets[facet].FacetLabelWidth > 0) FacetTables(facet, analysis, report, console).Write(arrangements);
  }
}

}  // namespace tessaly
