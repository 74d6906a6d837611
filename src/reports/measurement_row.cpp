#include "reports/measurement_row.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "reports/box_line.h"
#include "reports/edit_word.h"
#include "reports/element_cell.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr float kNotableShare = 0.25F;

/// Standardized values are cut, not rounded, to one decimal.
float CutToOneDecimal(float value) {
  return std::trunc(value * 10) / 10;
}

double PerCount(double sum, double count) {
  return sum / (count == 0 ? 1.0 : count);
}

CorrelationColumns CorrelationOf(char ptBiserial) {
  switch (ptBiserial) {
    case 'Y':
      return CorrelationColumns::PointBiserial;
    case 'I':
      return CorrelationColumns::PointBiserialIncluding;
    case 'M':
      return CorrelationColumns::PointMeasure;
    default:
      return CorrelationColumns::None;
  }
}

}  // namespace

MeasurementRows::MeasurementRows(FacetNumber number, const Analysis& analysis)
    : number_(number),
      analysis_(analysis),
      facet_(analysis.Facets[number]),
      elements_(analysis.Elements),
      settings_(analysis.Settings),
      columns_(ColumnsNeeded()) {}

MeasurementColumns MeasurementRows::ColumnsNeeded() const {
  MeasurementColumns columns;
  columns.TotalScore = settings_.TotalScore;
  columns.FairMean = settings_.FairOption == 'M';
  columns.Positive = facet_.ShowsPositive();
  columns.RealSE = settings_.RealSE;
  columns.Correlation = CorrelationOf(settings_.PtBiserial);
  columns.InterRater = analysis_.Agreement.Facet == number_;
  columns.LeftHand = settings_.LeftHand;
  std::set<int> groups;
  for (const ElementIndex element : facet_.Elements()) {
    if (elements_.ElementStatus[element] == ElementStatus::Unobserved) continue;
    groups.insert(std::abs(elements_.ElementGroup[element]));
    if (elements_.ElementStats[element].ElementWeight != 1) columns.Weight = true;
    if (DisplacementIsNotable(element)) columns.Displacement = true;
  }
  columns.Group = groups.size() > 1;
  return columns;
}

MeasurementRows::Kind MeasurementRows::KindOf(ElementIndex element) const {
  const ElementStatus status = elements_.ElementStatus[element];
  if (Measurable(status) && elements_.ElementStats[element].ObservedCount != 0) return Kind::Normal;
  const bool extreme =
      status == ElementStatus::Minimum || status == ElementStatus::Maximum || status == ElementStatus::OneDatum;
  return extreme ? Kind::Extreme : Kind::NonActive;
}

double MeasurementRows::Score(ElementIndex element) const {
  const ElementRecord& record = elements_.ElementStats[element];
  return settings_.TotalScore ? record.AllScore : record.RawScore;
}

double MeasurementRows::Count(ElementIndex element) const {
  const ElementRecord& record = elements_.ElementStats[element];
  return settings_.TotalScore ? record.AllCount : record.ObservedCount;
}

double MeasurementRows::Average(ElementIndex element) const {
  const ElementRecord& record = elements_.ElementStats[element];
  return settings_.TotalScore ? PerCount(record.AllScore, record.AllCount)
                              : PerCount(record.RawScore, record.ObservedCount);
}

double MeasurementRows::FairAverage(ElementIndex element) const {
  return PerCount(static_cast<double>(elements_.Fit[element].FairScoreSum),
                  elements_.ElementStats[element].ObservedCount);
}

std::string MeasurementRows::Measure(ElementIndex element) const {
  return FormatSingle(settings_.UserMeasure(elements_.ElementMeasure[element]), kMeasureWidth,
                      DecimalsIn(kMeasureWidth, settings_.Udecimals));
}

std::string MeasurementRows::StandardError(ElementIndex element) const {
  return FormatSingle(settings_.UserSpread(elements_.Fit[element].StandardError), kErrorWidth,
                      DecimalsIn(kErrorWidth, settings_.Udecimals));
}

std::string MeasurementRows::DisplacementText(float displacement) const {
  const float orientation = facet_.FacetPositive ? 1.0F : -1.0F;
  return FormatSingle(settings_.Uscale * displacement * orientation, kMeasureWidth,
                      DecimalsIn(kMeasureWidth, settings_.Udecimals));
}

bool MeasurementRows::DisplacementIsNotable(ElementIndex element) const {
  const ElementFit& fit = elements_.Fit[element];
  if (KindOf(element) != Kind::Normal) return false;
  if (std::fabs(fit.Displacement) <= std::fabs(fit.StandardError * kNotableShare)) return false;
  return DisplacementText(fit.Displacement) != DisplacementText(0);
}

std::string MeasurementRows::StatusMark(ElementIndex element) const {
  const ElementStatus status = elements_.ElementStatus[element];
  char mark = box::kVertical;
  if (elements_.ElementGroup[element] > 0) {
    const bool extreme = status == ElementStatus::Minimum || status == ElementStatus::Maximum;
    if (status == ElementStatus::Anchored) mark = facet_.FacetType();
    if (facet_.FacetType() == 'G' && extreme) mark = 'G';
  } else if (status == ElementStatus::Anchored) {
    mark = 'A';
  }
  return std::string(1, mark);
}

std::string MeasurementRows::Label(ElementIndex element) const {
  return ElementCell(facet_, element, elements_, 0, settings_.Encoding);
}

std::string MeasurementRows::SubsetNote(ElementIndex element) const {
  const SubsetTable& subsets = analysis_.Subsets;
  if (!subsets.Disjoint() || subsets.ElementSubsets[element].empty()) return {};
  std::string note = " in subset:";
  for (const std::int32_t subset : subsets.ElementSubsets[element]) note += GeneralText(subset);
  return note;
}

/// Fills the template of a row from left to right.
class MeasurementRows::Filling {
 public:
  Filling(const MeasurementRows& rows, ElementIndex element, const std::string& rowFmt)
      : rows_(rows),
        element_(element),
        fit_(rows.elements_.Fit[element]),
        columns_(rows.columns_),
        word_(rowFmt, rows.settings_.Encoding) {}

  std::string Normal() {
    Scores();
    word_.EditSingle(static_cast<float>(rows_.FairAverage(element_))).EditText(rows_.StatusMark(element_));
    word_.EditText(rows_.Measure(element_)).EditText(rows_.StandardError(element_));
    word_.EditSingle(fit_.InfitMeanSquare).EditSingle(CutToOneDecimal(fit_.InfitZStd));
    word_.EditSingle(fit_.OutfitMeanSquare).EditSingle(CutToOneDecimal(fit_.OutfitZStd));
    word_.EditText(FormatSingle(fit_.Discrimination, kErrorWidth, 2));
    word_.EditText(columns_.Displacement ? rows_.DisplacementText(fit_.Displacement) : "");
    ModelFigures(true);
    return Rest();
  }

  std::string Extreme() {
    Scores();
    word_.EditSingle(static_cast<float>(rows_.FairAverage(element_))).EditText(rows_.StatusMark(element_));
    word_.EditText(rows_.Measure(element_)).EditText(rows_.StandardError(element_)).EditText(Word());
    ModelFigures(true);
    return Rest();
  }

  std::string NonActive() {
    Scores();
    const bool measured = rows_.elements_.ElementStatus[element_] == ElementStatus::Anchored;
    word_.EditText(rows_.StatusMark(element_)).EditText(measured ? rows_.Measure(element_) : "").EditText(Word());
    ModelFigures(false);
    return Rest();
  }

 private:
  std::string Word() const { return StatusWord(rows_.elements_.ElementStatus[element_]); }

  void Scores() {
    word_.EditText(columns_.LeftHand ? rows_.Label(element_) : "");
    word_.EditScore(rows_.Score(element_)).EditScore(rows_.Count(element_)).EditDouble(rows_.Average(element_));
  }

  /// Correlations and agreement; blank where nothing is `known` of an element but its responses.
  void ModelFigures(bool known) {
    const auto text = [&](float figure, int decimals) {
      return known ? FormatSingle(figure, kErrorWidth, decimals) : std::string();
    };
    word_.EditText(columns_.Correlation == CorrelationColumns::None ? "" : text(fit_.Correlation, 2));
    if (columns_.Correlation == CorrelationColumns::PointMeasure) word_.EditText(text(fit_.ExpectedCorrelation, 2));
    const RaterAgreement agreement = columns_.InterRater ? rows_.analysis_.Agreement.Of(element_) : RaterAgreement{};
    word_.EditText(columns_.InterRater ? text(agreement.RaterExact, 1) : "");
    word_.EditText(columns_.InterRater ? text(agreement.RaterExpected, 1) : "");
  }

  /// Group, weight, label on the right, subsets.
  std::string Rest() {
    const int group = std::abs(rows_.elements_.ElementGroup[element_]);
    word_.EditText(columns_.Group ? RightJustified(group == 0 ? "" : BareText(group), kMeasureWidth) : "");
    const float weight = rows_.elements_.ElementStats[element_].ElementWeight;
    word_.EditText(columns_.Weight ? FormatSingle(weight, kMeasureWidth, 2) : "");
    word_.EditText(columns_.LeftHand ? "" : rows_.Label(element_));
    return word_.EditText(rows_.SubsetNote(element_)).Line();
  }

  const MeasurementRows& rows_;
  ElementIndex element_;
  const ElementFit& fit_;
  const MeasurementColumns& columns_;
  EditWord word_;
};

std::string MeasurementRows::Line(ElementIndex element, const MeasurementLayout& layout) const {
  switch (KindOf(element)) {
    case Kind::Normal:
      return Filling(*this, element, layout.RowFmtNormal).Normal();
    case Kind::Extreme:
      return Filling(*this, element, layout.RowFmtExtreme).Extreme();
    case Kind::NonActive:
      break;
  }
  return Filling(*this, element, layout.RowFmtNonActive).NonActive();
}

void MeasurementRows::Summarize(ElementIndex element, RowSummaries& summaries) const {
  const ElementFit& fit = elements_.Fit[element];
  const Kind kind = KindOf(element);
  if (kind == Kind::Normal) summaries.Active.Add(elements_.ElementMeasure[element], fit);
  if (kind != Kind::NonActive) summaries.Wide.Add(elements_.ElementMeasure[element], fit);
  if (!(Count(element) > 0)) return;
  summaries.Rows.Score.Add(Score(element));
  summaries.Rows.Count.Add(Count(element));
  summaries.Rows.Average.Add(Average(element));
  if (kind == Kind::NonActive) return;
  summaries.Rows.Correlation.Add(static_cast<double>(fit.Correlation));
  summaries.Rows.FairAverage.Add(FairAverage(element));
}

}  // namespace tessaly
