#include "interaction/bias_pairs.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessaly {

namespace {

constexpr float kTinyValue = 0.0000001F;

}  // namespace

BiasPairGroups::BiasPairGroups(const BiasTerms& terms, std::size_t position) {
  const BiasPosition& differing = terms.Positions()[position];
  std::vector<std::pair<std::int64_t, TermIndex>> byRest;
  for (const TermIndex term : terms.Terms.all()) {
    if (!terms.Terms[term].Estimable()) continue;
    const std::int64_t key = terms.BiasKey[term];
    byRest.emplace_back(key - key / differing.Divisor % differing.Count * differing.Divisor, term);
  }
  std::sort(byRest.begin(), byRest.end());
  terms_.reserve(byRest.size());
  for (std::size_t at = 0; at < byRest.size(); ++at) {
    if (at == 0 || byRest[at].first != byRest[at - 1].first) starts_.push_back(at);
    terms_.push_back(byRest[at].second);
  }
  starts_.push_back(byRest.size());
}

std::int64_t BiasPairGroups::PairCount() const {
  std::int64_t count = 0;
  for (std::size_t group = 0; group < GroupCount(); ++group) {
    const std::int64_t n = end(group) - begin(group);
    count += n * (n - 1) / 2;
  }
  return count;
}

BiasContrasts::BiasContrasts(const BiasTerms& terms, const Analysis& analysis, std::size_t position)
    : terms_(terms), analysis_(analysis), position_(position) {
  const std::size_t shared = position == 0 ? 1 : 0;
  orientation_ = analysis.Facets[terms.Positions()[shared].BiasFacet].FacetPositive ? 1.0F : -1.0F;
}

BiasContrast BiasContrasts::Of(TermIndex first, TermIndex second) const {
  float shared = 0;
  for (std::size_t position = 0; position < terms_.Positions().size(); ++position) {
    if (position == position_) continue;
    const float measure = analysis_.Elements.ElementMeasure[terms_.Element(second, position)];
    shared += analysis_.Facets[terms_.Positions()[position].BiasFacet].FacetPositive ? measure : -measure;
  }
  const BiasTerm& a = terms_.Terms[first];
  const BiasTerm& b = terms_.Terms[second];
  BiasContrast contrast;
  contrast.First = (shared + a.BiasSize) * orientation_;
  contrast.Second = (shared + b.BiasSize) * orientation_;
  contrast.Difference = contrast.First - contrast.Second;
  contrast.StandardError = std::sqrt(a.StandardError * a.StandardError + b.StandardError * b.StandardError);
  contrast.T = contrast.Difference / std::max(contrast.StandardError, kTinyValue);
  return contrast;
}

}  // namespace tessaly
