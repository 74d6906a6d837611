#include "interaction/inter_rater_agreement.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "data/observation_pass.h"
#include "interaction/thing_keys.h"
#include "support/available_memory.h"
#include "support/number_text.h"
#include "support/polled_sort.h"

namespace tessaly {

namespace {

/// More observations than this are not matched.
constexpr std::int64_t kMostObservations = 2147483646;

/// What agreement needs of an observation. All of them are in memory.
struct RatedRow {
  /// Equal for ratings of the same thing.
  std::uint64_t Thing = 0;
  ElementIndex Rater{0};
  ScaleNumber ObsScale{0};
  ModelType ObsType = ModelType::RatingScale;
  std::int16_t ObsTop = 0;
  /// Raw category: scales of their own may close up unused categories differently.
  std::int16_t ObsResponse = 0;
  /// The model says what to expect: all elements are measurable.
  bool Modelled = false;
  float ObsWeight = 1;
  /// Net measure, logit.
  float MeasureSum = 0;
};

static_assert(sizeof(RatedRow) == 32, "the documentation says so");

/// Sums over the ratings that some raters give to one thing, in each category: of 1 and of the weights, over the
/// ratings observed in it and over all ratings by their probability of it.
struct CategorySums {
  double Observed = 0;
  double ObservedWeight = 0;
  double Expected = 0;
  double ExpectedWeight = 0;
};

class RatingSums {
 public:
  void Clear() {
    Ratings = 0;
    Weight = 0;
    Categories.clear();
  }
  /// `rawCategory`: by ordinal of the row's scale. `probabilities` of its ordinals if the row is modelled.
  void Add(const RatedRow& row, const std::vector<std::int32_t>& rawCategory, const float* probabilities) {
    const double w = static_cast<double>(row.ObsWeight);
    Ratings += 1;
    Weight += w;
    CategorySums& observed = At(row.ObsResponse);
    observed.Observed += 1;
    observed.ObservedWeight += w;
    if (!row.Modelled) {
      observed.Expected += 1;
      observed.ExpectedWeight += w;
      return;
    }
    for (std::int32_t k = row.ObsTop; k >= 0; --k) {
      const double p = static_cast<double>(probabilities[k]);
      CategorySums& sums = At(rawCategory[static_cast<std::size_t>(k)]);
      sums.Expected += p;
      sums.ExpectedWeight += w * p;
    }
  }

  double Ratings = 0;
  double Weight = 0;
  /// By raw category; as long as the highest category met.
  std::vector<CategorySums> Categories;

 private:
  CategorySums& At(std::int32_t category) {
    if (Categories.size() <= static_cast<std::size_t>(category))
      Categories.resize(static_cast<std::size_t>(category) + 1);
    return Categories[static_cast<std::size_t>(category)];
  }
};

struct Counts {
  double Opportunities = 0;
  double Exact = 0;
  double Expected = 0;
};

/// Pairs of one rater's ratings of a thing with those of all other raters. A pair of weights a and b counts (a + b) /
/// 2, so that over all pairs sums of counts and of weights are all that is needed.
Counts PairsWithOthers(const RatingSums& own, const RatingSums& all) {
  const auto pairs = [](double ownCount, double ownWeight, double allCount, double allWeight) {
    return (ownWeight * (allCount - ownCount) + ownCount * (allWeight - ownWeight)) / 2;
  };
  Counts counts;
  counts.Opportunities = pairs(own.Ratings, own.Weight, all.Ratings, all.Weight);
  for (std::size_t k = 0; k < std::min(own.Categories.size(), all.Categories.size()); ++k) {
    const CategorySums& mine = own.Categories[k];
    const CategorySums& sum = all.Categories[k];
    counts.Exact += pairs(mine.Observed, mine.ObservedWeight, sum.Observed, sum.ObservedWeight);
    counts.Expected += pairs(mine.Expected, mine.ExpectedWeight, sum.Expected, sum.ExpectedWeight);
  }
  return counts;
}

class AgreementCount {
 public:
  AgreementCount(const Analysis& analysis, ObservationStore& store, ResponseKernel& kernel, RunControl& control,
                 Console& console)
      : analysis_(analysis), store_(store), kernel_(kernel), control_(control), console_(console) {}

  Agreement Run() {
    const std::vector<std::int32_t>& named = analysis_.Settings.InterRaterFacets;
    if (named.empty() || !FindPositions(named)) return {};
    if (store_.ValidResponses() > kMostObservations)
      return NotComputed("Interrater=0 ; too many observations to match");
    if (RatersSeen() < 2) return {};
    console_.ShowMessage("Computing inter-rater agreement for facet" + GeneralText(raters_.value) +
                         ": press Ctrl+F to exit");
    if (!MakeRoom())
      return NotComputed("Interrater=0 ; not enough allocatable memory available for " +
                         BareText(store_.ValidResponses()) + " observations");
    for (const ScaleNumber scale : analysis_.Scales.Scales.all())
      rawCategories_.push_back(analysis_.Scales.RawCategories(scale));
    for (const Scale& scale : analysis_.Scales.Scales)
      categories_ =
          std::max(categories_, static_cast<std::size_t>(std::max<std::int16_t>(scale.ScaleTopCategory, 0)) + 1);
    Load();
    if (control_.FastForward) return {};
    if (rows_.empty()) return NotComputed("Interrater=0 ; no relevant observations");
    Sort();
    if (control_.FastForward) return {};
    return Match();
  }

 private:
  Agreement NotComputed(const std::string& warning) {
    console_.ShowWarning(warning);
    return {};
  }

  bool FindPositions(const std::vector<std::int32_t>& named) {
    raters_ = FacetNumber{named.front()};
    const auto& positions = analysis_.Fields.Positions;
    std::optional<std::size_t> raterPosition;
    for (const PositionNumber position : positions.all()) {
      const FacetNumber facet = positions[position].PositionFacet;
      const auto at = static_cast<std::size_t>(position.value - 1);
      if (facet == raters_) {
        if (!raterPosition) raterPosition = at;
      } else if (named.size() == 1 || std::find(named.begin() + 1, named.end(), facet.value) != named.end()) {
        matching_.push_back(at);
      }
    }
    if (!raterPosition) {
      console_.ShowWarning("Inter-rater agreement facet" + GeneralText(raters_.value) +
                           " is not active in the data: interrater agreement not computed");
    } else if (matching_.empty()) {
      console_.ShowWarning("No active agreement facets: interrater agreement not computed");
    }
    raterPosition_ = raterPosition.value_or(0);
    return raterPosition && !matching_.empty();
  }

  std::int32_t RatersSeen() const {
    std::int32_t seen = 0;
    for (const ElementIndex rater : analysis_.Facets[raters_].Elements())
      if (analysis_.Elements.ElementStats[rater].AllCount != 0) ++seen;
    return seen;
  }

  const std::vector<std::int32_t>& RawCategories(const RatedRow& row) const {
    return rawCategories_[static_cast<std::size_t>(row.ObsScale.value)];
  }

  bool MakeRoom() {
    const auto rows = static_cast<std::uint64_t>(store_.ValidResponses());
    if (rows > AvailableMemory() / sizeof(RatedRow)) return false;
    try {
      rows_.reserve(rows);
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }

  static bool Relevant(const Observation& obs) {
    const bool counted = obs.Status == ReadStatus::Usable || obs.Status == ReadStatus::OneExtreme ||
                         obs.Status == ReadStatus::SeveralExtreme;
    return counted && obs.ObsWeight > 0 && obs.ObsOrdinal >= 0;
  }

  void Load() {
    console_.ShowMessage("Loading up to" + GeneralText(store_.ValidResponses()) + " observations ...");
    ThingKeys things(matching_, analysis_, store_.ValidResponses());
    for (const Observation& obs : ObservationPass(store_, analysis_, control_, console_)) {
      if (control_.FastForward) return;
      const ElementIndex rater = obs.Elements[raterPosition_].CurrentElement;
      if (!Relevant(obs) || rater == kNoElement) continue;
      rows_.push_back({things.KeyOf(obs), rater, obs.CurrentScale, obs.CurrentType,
                       static_cast<std::int16_t>(obs.CurrentTop), static_cast<std::int16_t>(obs.ObsResponse),
                       obs.Status == ReadStatus::Usable, obs.ObsWeight, obs.MeasureSum});
    }
  }

  /// Ratings of a thing come together, and among them those of a rater.
  void Sort() {
    console_.ShowMessage("Sorting" + GeneralText(static_cast<std::int64_t>(rows_.size())) + " observations ...");
    const auto before = [](const RatedRow& a, const RatedRow& b) {
      return a.Thing != b.Thing ? a.Thing < b.Thing : a.Rater < b.Rater;
    };
    PolledSort(rows_, before, [&] { control_.Poll(); });
  }

  Agreement Match() {
    console_.ShowMessage("Matching ...");
    const Facet& facet = analysis_.Facets[raters_];
    Agreement agreement;
    agreement.FirstRater = facet.FacetFirstElement;
    perRater_.assign(static_cast<std::size_t>(facet.FacetElementCount), {});
    std::uint32_t things = 0;
    for (auto first = rows_.begin(); first != rows_.end();) {
      const auto last =
          std::find_if(first, rows_.end(), [&](const RatedRow& row) { return row.Thing != first->Thing; });
      MatchThing({&*first, static_cast<std::size_t>(last - first)}, agreement);
      first = last;
      if (++things % kThingsBetweenPolls != 0) continue;
      control_.Poll();
      if (control_.FastForward) return {};
    }
    for (const Counts& counts : perRater_) agreement.Raters.push_back(Percentages(counts));
    agreement.Facet = raters_;
    return agreement;
  }

  void MatchThing(std::span<const RatedRow> ratings, Agreement& agreement) {
    if (ratings.front().Rater == ratings.back().Rater) return;
    EvaluateRatings(ratings);
    all_.Clear();
    for (std::size_t at = 0; at < ratings.size(); ++at) AddTo(all_, ratings, at);
    for (std::size_t at = 0; at < ratings.size();) {
      const ElementIndex rater = ratings[at].Rater;
      own_.Clear();
      for (; at < ratings.size() && ratings[at].Rater == rater; ++at) AddTo(own_, ratings, at);
      const Counts pairs = PairsWithOthers(own_, all_);
      Counts& counts = perRater_[static_cast<std::size_t>(rater.value - agreement.FirstRater.value)];
      counts.Opportunities += pairs.Opportunities;
      counts.Exact += pairs.Exact;
      counts.Expected += pairs.Expected;
      // Both raters of a pair come by here.
      agreement.AgreementOpportunities += pairs.Opportunities / 2;
      agreement.ExactAgreements += pairs.Exact / 2;
      agreement.ExpectedAgreements += pairs.Expected / 2;
    }
  }

  void EvaluateRatings(std::span<const RatedRow> ratings) {
    probabilities_.clear();
    for (const RatedRow& row : ratings) {
      if (row.Modelled) kernel_.CategoryProbabilities(row.ObsScale, row.ObsType, row.ObsTop, row.MeasureSum);
      const Probabilities table = kernel_.Table();
      for (std::size_t k = 0; k < categories_; ++k)
        probabilities_.push_back(row.Modelled ? table[static_cast<std::int32_t>(k)] : 0.0F);
    }
  }

  void AddTo(RatingSums& sums, std::span<const RatedRow> ratings, std::size_t at) const {
    sums.Add(ratings[at], RawCategories(ratings[at]), probabilities_.data() + at * categories_);
  }

  static RaterAgreement Percentages(const Counts& counts) {
    if (!(counts.Opportunities > 0)) return {};
    return {static_cast<float>(100 * counts.Exact / counts.Opportunities),
            static_cast<float>(100 * counts.Expected / counts.Opportunities)};
  }

  static constexpr std::uint32_t kThingsBetweenPolls = 100;

  const Analysis& analysis_;
  ObservationStore& store_;
  ResponseKernel& kernel_;
  RunControl& control_;
  Console& console_;
  FacetNumber raters_{0};
  /// Positions from 0.
  std::size_t raterPosition_ = 0;
  std::vector<std::size_t> matching_;
  /// By scale.
  std::vector<std::vector<std::int32_t>> rawCategories_;
  std::vector<RatedRow> rows_;
  std::vector<Counts> perRater_;
  /// Of all scales at most.
  std::size_t categories_ = 0;
  /// Of the ratings of one thing, `categories_` each.
  std::vector<float> probabilities_;
  RatingSums all_;
  RatingSums own_;
};

}  // namespace

Agreement InterRaterAgreement(const Analysis& analysis, ObservationStore& store, ResponseKernel& kernel,
                              RunControl& control, Console& console) {
  return AgreementCount(analysis, store, kernel, control, console).Run();
}

}  // namespace tessaly
