#include "reports/bias_order.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "support/bytes.h"
#include "support/polled_sort.h"
#include "support/sort_keys.h"

namespace tessaly {

namespace {

std::vector<std::uint32_t> RankLabels(IndexRange<ElementIndex> range, const ElementTable& elements) {
  std::vector<std::pair<std::string_view, std::size_t>> labels;
  for (const ElementIndex element : range)
    labels.emplace_back(TrimRight(elements.ElementLabel[element]), labels.size());
  std::sort(labels.begin(), labels.end());
  std::vector<std::uint32_t> ranks(labels.size());
  std::uint32_t rank = 0;
  for (std::size_t at = 0; at < labels.size(); ++at) {
    if (at > 0 && labels[at].first != labels[at - 1].first) ++rank;
    ranks[labels[at].second] = rank;
  }
  return ranks;
}

/// Makes the sort keys of terms.
class TermKeys {
 public:
  TermKeys(const BiasTerms& terms, const FacetTable& facets, const ElementTable& elements, BiasDirection direction,
           std::string_view letters)
      : terms_(terms), direction_(static_cast<float>(direction)), letters_(letters) {
    if (letters.find_first_of("Aa") != std::string_view::npos) labels_.emplace(terms, facets, elements);
  }

  std::string Key(TermIndex term) const {
    std::string key;
    for (const char letter : letters_) AddPiece(term, letter, key);
    return key;
  }

 private:
  void AddPiece(TermIndex index, char letter, std::string& key) const {
    const bool ascending = UpperAscii(letter) == letter;
    const BiasTerm& term = terms_.Terms[index];
    switch (UpperAscii(letter)) {
      case 'N':
        AppendKey(key, Turned(static_cast<std::uint32_t>(index.value), ascending));
        break;
      case 'A':
        for (std::size_t position = terms_.Positions().size(); position-- > 0;)
          AppendKey(key, Turned(labels_->Of(position, terms_.Element(index, position)), ascending));
        break;
      case 'M':
        AddValue(term, term.BiasSize, ascending, key);
        break;
      case 'F':
        AddValue(term, term.TStatistic, ascending, key);
        break;
      default:
        break;
    }
  }

  static std::uint32_t Turned(std::uint32_t value, bool ascending) { return ascending ? value : ~value; }

  void AddValue(const BiasTerm& term, float value, bool ascending, std::string& key) const {
    const float sign = ascending ? direction_ : -direction_;
    const bool atLowEnd = (term.Flag == BiasFlag::Minimum) == (sign > 0);
    if (term.Flag == BiasFlag::Ordinary) {
      key += '2';
      AppendKey(key, sign * value);
    } else {
      key += atLowEnd ? '1' : '3';
      AppendKey(key, 0.0F);
    }
  }

  const BiasTerms& terms_;
  /// Only if letter A asks for them.
  std::optional<LabelRanks> labels_;
  float direction_;
  std::string_view letters_;
};

}  // namespace

LabelRanks::LabelRanks(const BiasTerms& terms, const FacetTable& facets, const ElementTable& elements) {
  for (const BiasPosition& position : terms.Positions()) {
    ranks_.push_back(RankLabels(facets[position.BiasFacet].Elements(), elements));
    firsts_.push_back(position.FirstElement);
  }
}

std::vector<TermIndex> SortTerms(const BiasTerms& terms, const FacetTable& facets, const ElementTable& elements,
                                 BiasDirection direction, std::string_view letters, RunControl& control) {
  const TermKeys maker(terms, facets, elements, direction, letters);
  std::vector<std::pair<std::string, TermIndex>> keys;
  for (const TermIndex term : terms.Terms.all())
    if (terms.Terms[term].Estimable()) keys.emplace_back(maker.Key(term), term);
  PolledSort(keys, std::less<>(), [&] { control.Poll(); });
  std::vector<TermIndex> order;
  order.reserve(keys.size());
  for (const auto& [key, term] : keys) order.push_back(term);
  return order;
}

}  // namespace tessaly
