#include "reports/bias_pair_rows.h"

#include <algorithm>
#include <utility>

#include "estimate/significance.h"
#include "reports/box_line.h"
#include "reports/element_cell.h"
#include "reports/user_units.h"
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

double Squared(float value) {
  return static_cast<double>(value) * static_cast<double>(value);
}

}  // namespace

BiasPairRows::BiasPairRows(const BiasTerms& terms, const Analysis& analysis, std::size_t position)
    : terms_(terms), settings_(analysis.Settings), position_(position), contrasts_(terms, analysis, position) {
  for (std::size_t at = 0; at < terms.Positions().size(); ++at)
    columns_.push_back(
        CellColumn(at == position ? kNarrowestContext : kNarrowestShared, terms.Positions()[at].BiasFacet, analysis));
  BuildHeadings();
}

BiasPairRows::Column BiasPairRows::CellColumn(int narrowest, FacetNumber number, const Analysis& analysis) {
  const Facet& facet = analysis.Facets[number];
  const TextEncoding& encoding = analysis.Settings.Encoding;
  Column column;
  column.Head = FacetHead(facet, encoding);
  column.Width = std::max(narrowest, DisplayLength(column.Head, encoding));
  column.Head = PadToWidth(column.Head, column.Width, encoding);
  for (const ElementIndex element : facet.Elements())
    column.Cells.push_back(
        PadToWidth(ElementCell(facet, element, analysis.Elements, column.Width, encoding), column.Width, encoding));
  return column;
}

void BiasPairRows::BuildHeadings() {
  // Widths are added up, not measured again: a label may show in a fraction of columns.
  const auto padded = [](std::string_view text, int width) { return CutOrPad(text, width); };
  const std::string target = contrasts_.Positive() ? " Target+" : " Target-";
  std::string shared;
  int sharedWidth = 0;
  for (std::size_t position = 0; position < columns_.size(); ++position) {
    if (position == position_) continue;
    shared += " " + columns_[position].Head;
    sharedWidth += 1 + columns_[position].Width;
  }
  const std::string figures = " Measr  S.E. Average ";
  const std::string side2 = figures + columns_[position_].Head;
  const std::string side1 =
      padded(target + "     Obs-Exp Context", static_cast<int>(figures.size()) + columns_[position_].Width);
  const std::string vertical(1, box::kVertical);
  headLines_ = {vertical + padded(" Target", sharedWidth) + vertical + side1 + vertical + side1 + vertical + target +
                    " Joint    Rasch-Welch   " + vertical,
                vertical + shared + vertical + side2 + vertical + side2 + vertical +
                    "Contrast  S.E.   t   d.f. Prob. " + vertical};
  for (const char c : headLines_.front()) ruleTemplate_ += c == box::kVertical ? 'x' : '-';
}

const std::string& BiasPairRows::Cell(TermIndex term, std::size_t position) const {
  const ElementIndex element = terms_.Element(term, position);
  return columns_[position]
      .Cells[static_cast<std::size_t>(element.value - terms_.Positions()[position].FirstElement.value)];
}

std::string BiasPairRows::Line(TermIndex first, TermIndex second) const {
  const BiasContrast contrast = contrasts_.Of(first, second);
  std::string line(1, box::kVertical);
  for (std::size_t position = 0; position < columns_.size(); ++position)
    if (position != position_) (line += ' ') += Cell(second, position);
  for (const auto& [term, measure] : {std::pair(first, contrast.First), std::pair(second, contrast.Second)}) {
    line += box::kVertical;
    AddSide(term, measure, line);
  }
  line += box::kVertical;
  AddContrast(first, second, contrast, line);
  line += box::kVertical;
  return line;
}

void BiasPairRows::AddSide(TermIndex index, float measure, std::string& line) const {
  const BiasTerm& term = terms_.Terms[index];
  line += MeasureText(settings_.UserMeasure(measure), settings_);
  line += MarkOf(term.Flag);
  line += ErrorText(term.StandardError, settings_);
  line += FormatSingle(term.ObservedMinusExpected(), kAverageWidth, 2);
  (line += ' ') += Cell(index, position_);
}

void BiasPairRows::AddContrast(TermIndex first, TermIndex second, const BiasContrast& contrast,
                               std::string& line) const {
  const BiasTerm& a = terms_.Terms[first];
  const BiasTerm& b = terms_.Terms[second];
  const WelchResult welch =
      WelchTest(static_cast<double>(contrast.T), static_cast<double>(a.CountSum), static_cast<double>(b.CountSum),
                Squared(a.StandardError), Squared(b.StandardError));
  (line += ' ') += MeasureText(settings_.Uscale * contrast.Difference, settings_);
  (line += ' ') += ErrorText(contrast.StandardError, settings_);
  (line += ' ') += FormatSingle(contrast.T, kTWidth, 2);
  line += FormatNumber(static_cast<double>(welch.Freedom), kFreedomWidth, 0);
  (line += ' ') += ProbabilityText(welch.Probability);
  line += ' ';
}

}  // namespace tessaly
