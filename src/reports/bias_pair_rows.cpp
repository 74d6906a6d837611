#include "reports/bias_pair_rows.h"

#include <algorithm>

#include "estimate/significance.h"
#include "reports/box_line.h"
#include "reports/element_cell.h"
#include "reports/measurement_layout.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// "Target" and "Context" stand over the cells.
constexpr int kNarrowestShared = 6;
constexpr int kNarrowestContext = 7;
constexpr int kAverageWidth = 8;
constexpr int kTWidth = 5;
constexpr int kFreedomWidth = 6;
constexpr int kProbabilityWidth = 6;
constexpr std::size_t kProbabilityShown = 5;

char MarkOf(BiasFlag flag) {
  return flag == BiasFlag::Maximum ? '<' : flag == BiasFlag::Minimum ? '>' : ' ';
}

double Squared(float value) {
  return static_cast<double>(value) * static_cast<double>(value);
}

}  // namespace

BiasPairRows::BiasPairRows(const BiasTerms& terms, const Analysis& analysis, std::size_t position)
    : terms_(terms),
      analysis_(analysis),
      settings_(analysis.Settings),
      position_(position),
      contrasts_(terms, analysis, position) {
  for (std::size_t at = 0; at < terms.Positions().size(); ++at)
    widths_.push_back(std::max(at == position ? kNarrowestContext : kNarrowestShared,
                               DisplayLength(FacetHead(Facet(at), settings_.Encoding), settings_.Encoding)));
  BuildHeadings();
}

const Facet& BiasPairRows::Facet(std::size_t position) const {
  return analysis_.Facets[terms_.Positions()[position].BiasFacet];
}

void BiasPairRows::BuildHeadings() {
  const TextEncoding& encoding = settings_.Encoding;
  const auto head = [&](std::size_t position) {
    return PadToWidth(FacetHead(Facet(position), encoding), widths_[position], encoding);
  };
  const std::string vertical(1, box::kVertical);
  std::string shared;
  for (std::size_t position = 0; position < widths_.size(); ++position)
    if (position != position_) shared += " " + head(position);
  const std::string target = contrasts_.Positive() ? " Target+" : " Target-";
  const std::string side2 = " Measr  S.E. Average " + head(position_);
  const std::string side1 = PadToWidth(target + "     Obs-Exp Context", DisplayLength(side2, encoding), encoding);
  const std::string line1 = vertical + PadToWidth(" Target", DisplayLength(shared, encoding), encoding) + vertical +
                            side1 + vertical + side1 + vertical + target + " Joint    Rasch-Welch   " + vertical;
  const std::string line2 = vertical + shared + vertical + side2 + vertical + side2 + vertical +
                            "Contrast  S.E.   t   d.f. Prob. " + vertical;
  headLines_ = {line1, line2};
  for (const char c : line1) ruleTemplate_ += c == box::kVertical ? 'x' : '-';
}

std::string BiasPairRows::Cell(TermIndex term, std::size_t position) const {
  return PadToWidth(ElementCell(Facet(position), terms_.Element(term, position), analysis_.Elements, widths_[position],
                                settings_.Encoding),
                    widths_[position], settings_.Encoding);
}

std::string BiasPairRows::Line(TermIndex first, TermIndex second) const {
  const BiasContrast contrast = contrasts_.Of(first, second);
  std::string line(1, box::kVertical);
  for (std::size_t position = 0; position < widths_.size(); ++position)
    if (position != position_) line += " " + Cell(second, position);
  line += box::kVertical + Side(first, contrast.First);
  line += box::kVertical + Side(second, contrast.Second);
  return line + box::kVertical + Contrast(first, second, contrast) + box::kVertical;
}

std::string BiasPairRows::Side(TermIndex index, float measure) const {
  const BiasTerm& term = terms_.Terms[index];
  return FormatSingle(settings_.UserMeasure(measure), kMeasureWidth, DecimalsIn(kMeasureWidth, settings_.Udecimals)) +
         MarkOf(term.Flag) +
         FormatSingle(settings_.UserSpread(term.StandardError), kErrorWidth,
                      DecimalsIn(kErrorWidth, settings_.Udecimals)) +
         FormatSingle(term.ObservedMinusExpected(), kAverageWidth, 2) + " " + Cell(index, position_);
}

std::string BiasPairRows::Contrast(TermIndex first, TermIndex second, const BiasContrast& contrast) const {
  const BiasTerm& a = terms_.Terms[first];
  const BiasTerm& b = terms_.Terms[second];
  const WelchResult welch =
      WelchTest(static_cast<double>(contrast.T), static_cast<double>(a.CountSum), static_cast<double>(b.CountSum),
                Squared(a.StandardError), Squared(b.StandardError));
  const std::string probability = FormatSingle(welch.Probability, kProbabilityWidth, 4);
  return " " +
         FormatSingle(settings_.Uscale * contrast.Difference, kMeasureWidth,
                      DecimalsIn(kMeasureWidth, settings_.Udecimals)) +
         " " +
         FormatSingle(settings_.UserSpread(contrast.StandardError), kErrorWidth,
                      DecimalsIn(kErrorWidth, settings_.Udecimals)) +
         " " + FormatSingle(contrast.T, kTWidth, 2) +
         FormatNumber(static_cast<double>(welch.Freedom), kFreedomWidth, 0) + " " +
         std::string(TrimLeft(probability).substr(0, kProbabilityShown)) + " ";
}

}  // namespace tessaly
