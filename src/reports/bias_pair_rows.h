// The rows of a table of pairs of bias terms.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "interaction/bias_pairs.h"
#include "state/analysis.h"

namespace tessaly {

/// The lines of the pairs that differ in one bias facet, all of one width: the elements that a pair shares, their
/// measure in either context, and the contrast.
class BiasPairRows {
 public:
  /// `position` (from 0) is the bias facet in whose element the terms of a pair differ.
  BiasPairRows(const BiasTerms& terms, const Analysis& analysis, std::size_t position);

  const BiasContrasts& Contrasts() const { return contrasts_; }
  /// The column headings, and the template of the rules.
  const std::vector<std::string>& HeadLines() const { return headLines_; }
  const std::string& RuleTemplate() const { return ruleTemplate_; }
  std::string Line(TermIndex first, TermIndex second) const;

 private:
  /// The cells of one bias facet's elements, all as wide as its heading.
  struct Column {
    int Width = 0;
    std::string Head;
    /// By element, from the facet's first.
    std::vector<std::string> Cells;
  };

  static Column CellColumn(int narrowest, FacetNumber number, const Analysis& analysis);
  void BuildHeadings();
  const std::string& Cell(TermIndex term, std::size_t position) const;
  void AddSide(TermIndex term, float measure, std::string& line) const;
  void AddContrast(TermIndex first, TermIndex second, const BiasContrast& contrast, std::string& line) const;

  const BiasTerms& terms_;
  const Settings& settings_;
  std::size_t position_;
  BiasContrasts contrasts_;
  /// By position.
  std::vector<Column> columns_;
  std::vector<std::string> headLines_;
  std::string ruleTemplate_;
};

}  // namespace tessaly
