#include "reports/bias_rows.h"

#include <cmath>

#include "estimate/significance.h"
#include "reports/edit_word.h"
#include "reports/element_cell.h"
#include "reports/summary_rows.h"
#include "reports/user_units.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kMeasureInLabel = 5;
constexpr int kWide = 6;

}  // namespace

void BiasSummaries::Add(const BiasTerm& term, float direction) {
  const double t = static_cast<double>(direction * term.TStatistic);
  Observed.Add(static_cast<double>(term.RawSum));
  Expected.Add(static_cast<double>(term.ExpectedRawSum));
  Count.Add(static_cast<double>(term.CountSum));
  ObservedMinusExpected.Add(static_cast<double>(term.ObservedMinusExpected()));
  Size.Add(static_cast<double>(direction * term.BiasSize));
  StandardError.Add(static_cast<double>(term.StandardError));
  TStatistic.Add(t);
  TSquare.Add(t * t);
  InfitMeanSquare.Add(static_cast<double>(term.InfitMeanSquare));
  OutfitMeanSquare.Add(static_cast<double>(term.OutfitMeanSquare));
}

BiasRows::BiasRows(const BiasTerms& terms, const Analysis& analysis)
    : terms_(terms),
      analysis_(analysis),
      settings_(analysis.Settings),
      direction_(static_cast<float>(analysis.Settings.BiasDirection)),
      sequenceWidth_(DisplayLength(BareText(terms.Terms.size()))),
      layout_(BuildBiasLayout(Headings(), analysis.Settings.Encoding)) {}

LabelColumn BiasRows::Headings() const {
  LabelColumn label;
  label.LeftHand = settings_.LeftHand;
  label.Head2 = CutOrPad("Sq ", sequenceWidth_ + 1);
  label.Head1 = std::string(label.Head2.size(), ' ');
  for (const BiasPosition& position : terms_.Positions()) {
    const Facet& facet = analysis_.Facets[position.BiasFacet];
    const std::string head = FacetHead(facet, settings_.Encoding) + (facet.ShowsPositive() ? "measr+ " : "measr- ");
    label.Head1 += PadToWidth(facet.FacetLabel, DisplayLength(head, settings_.Encoding), settings_.Encoding);
    label.Head2 += head;
  }
  return label;
}

bool BiasRows::Shown(TermIndex index) const {
  const BiasTerm& term = terms_.Terms[index];
  return settings_.BiasSelected(settings_.Uscale * term.BiasSize, term.TStatistic);
}

std::string BiasRows::Label(TermIndex term) const {
  std::string label = RightJustified(BareText(term.value), sequenceWidth_) + " ";
  for (std::size_t position = 0; position < terms_.Positions().size(); ++position) {
    const Facet& facet = analysis_.Facets[terms_.Positions()[position].BiasFacet];
    const ElementIndex element = terms_.Element(term, position);
    // As wide as the heading, which the name of the facet may make wider than its elements are.
    const int width = DisplayLength(FacetHead(facet, settings_.Encoding), settings_.Encoding);
    label += ElementCell(facet, element, analysis_.Elements, width, settings_.Encoding) + " " +
             FormatSingle(settings_.UserMeasure(analysis_.Elements.ElementMeasure[element]), kMeasureInLabel,
                          DecimalsIn(kMeasureInLabel, settings_.Udecimals)) +
             " ";
  }
  return label;
}

std::string BiasRows::Size(double size) const {
  return FormatNumber(size, kMeasureWidth, DecimalsIn(kMeasureWidth, settings_.Udecimals));
}

std::string BiasRows::Error(double error) const {
  return FormatNumber(error, kErrorWidth, DecimalsIn(kErrorWidth, settings_.Udecimals));
}

std::string BiasRows::Line(TermIndex index) const {
  const BiasTerm& term = terms_.Terms[index];
  const std::string label = Label(index);
  const auto t = static_cast<double>(direction_ * term.TStatistic);
  return EditWord(layout_.RowFmtNormal, settings_.Encoding)
      .EditText(settings_.LeftHand ? label : "")
      .EditScore(static_cast<double>(term.RawSum))
      .EditDouble(static_cast<double>(term.ExpectedRawSum))
      .EditScore(static_cast<double>(term.CountSum))
      .EditText(FormatSingle(term.ObservedMinusExpected(), kWide, 2))
      .EditText(MeasureText(settings_.Uscale * (direction_ * term.BiasSize), settings_))
      .EditText(std::string(1, MarkOf(term.Flag)))
      .EditText(ErrorText(term.StandardError, settings_))
      .EditText(FormatNumber(t, kWide, 2))
      .EditText(FormatNumber(static_cast<double>(term.Freedom()), kWide, 0))
      .EditText(ProbabilityText(StudentProbability(t, term.Freedom())))
      .EditSingle(term.InfitMeanSquare)
      .EditSingle(term.OutfitMeanSquare)
      .EditText(settings_.LeftHand ? "" : label)
      .Line();
}

std::vector<std::string> BiasRows::SummaryLines(const BiasSummaries& summaries) const {
  std::vector<std::string> lines;
  for (const SummaryKind kind : {SummaryKind::Mean, SummaryKind::Population, SummaryKind::Sample}) {
    if (kind == SummaryKind::Sample && summaries.Size.N <= 1) break;
    const auto figure = [&](const RunningMoments& moments) { return SummaryFigure(kind, moments); };
    const double uscale = static_cast<double>(settings_.Uscale);
    const std::string label = SummaryLabel(kind, summaries.Size.N, layout_.LabelWidth);
    lines.push_back(
        EditWord(layout_.RowFmtSummary, settings_.Encoding)
            .EditText(settings_.LeftHand ? label : "")
            .EditDouble(figure(summaries.Observed))
            .EditDouble(figure(summaries.Expected))
            .EditDouble(figure(summaries.Count))
            .EditText(FormatNumber(figure(summaries.ObservedMinusExpected), kWide, 2))
            .EditText(Size((kind == SummaryKind::Mean ? uscale : std::fabs(uscale)) * figure(summaries.Size)))
            .EditText(Error(std::fabs(uscale) * figure(summaries.StandardError)))
            .EditText(FormatNumber(figure(summaries.TStatistic), kWide, 2))
            .EditDouble(figure(summaries.InfitMeanSquare))
            .EditDouble(figure(summaries.OutfitMeanSquare))
            .EditText(settings_.LeftHand ? "" : label)
            .Line());
  }
  return lines;
}

}  // namespace tessaly
