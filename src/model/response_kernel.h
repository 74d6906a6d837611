// A measure becomes category probabilities: the inner loop of every analysis.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/probabilities.h"
#include "state/models.h"
#include "state/scales.h"

namespace tessaly {

/// Highest entry of the table of category probabilities: Poisson counts run past the highest observed count.
constexpr std::int32_t kProbabilityTop = 305;
/// Highest expected count of a Poisson scale.
constexpr float kCountCap = 255.0F;
/// Logit beyond which every response is certain: what draws curves asks for nothing farther out.
constexpr float kFarthestLogit = 1e5F;

/// ln a - ln b + ln c - ln d, each argument first raised to at least `smallest`.
float LogRatio(double a, double b, double c, double d, float smallest);

/// Expected value and square of the cumulated log-odds S(k) of an observation, and S at its observed category.
struct LogOdds {
  float Mean = 0;
  float MeanSquare = 0;
  float AtObserved = 0;
};

/// Expected categories at a measure and at that measure less a probe.
struct ProbedScore {
  float Expected = 0;
  float Probed = 0;
};

/// Category probabilities at a measure (logit, net over all facets: a higher one always means a higher category).
/// Categories are ordinal, from 0. The work table is overwritten by each call.
///
///   rating scale  P(k) ~ exp sum_{j=1..k} (measure - F_j)                     (Andrich 1978; Wright & Masters 1982)
///   binomial      P(k) ~ exp (k measure - s sum_{j=1..k} ln(j / (n - j + 1)))
///   Poisson       P(k) ~ exp (k measure - s ln k!), cut off behind the highest category computed
///
/// Exponents are shifted so that the largest is `HardwareExponent`: nothing overflows, and the small categories lose
/// digits instead of the large ones. Cumulated exponents and every term are rounded to single, terms are added from the
/// top category down in double; both are part of the result.
class ResponseKernel {
 public:
  /// Reads steps and anchors of `scales` at each call.
  ResponseKernel(const ScaleTables& scales, float hardwareExponent);

  /// Fills the probabilities of categories 0..ComputedTop() and gives the expected category. `top` is at least 1.
  float CategoryProbabilities(ScaleNumber scale, ModelType type, std::int32_t top, float measure);

  /// The same at `measure`, and the expected category at `measure` - `probe` besides.
  ProbedScore ProbedProbabilities(ScaleNumber scale, ModelType type, std::int32_t top, float measure, float probe);

  /// Probability of category `k`, 0..kProbabilityTop; 0 above `ComputedTop()`.
  float Probability(std::int32_t k) const { return Table()[k]; }
  /// All of them, until the next call.
  Probabilities Table() const { return {probability_.data(), computedTop_}; }
  /// Highest category that the last call computed: `top`, or for Poisson a count beyond it.
  std::int32_t ComputedTop() const { return computedTop_; }

  /// Moments of S(k), the exponent of category k before the shift, over the `probabilities` at `measure` (logit).
  /// `category` is the observed ordinal.
  LogOdds LogOddsMoments(ScaleNumber scale, ModelType type, std::int32_t top, float measure, std::int32_t category,
                         const Probabilities& probabilities) const;

  /// Statistic T(k) of a discrimination: the exponent of category k holds -s T(k). Binomial: minus ln of the binomial
  /// coefficient; Poisson: ln k!.
  double DiscriminationStatistic(ModelType type, std::int32_t top, std::int32_t k) const;

  float HardwareExponent() const { return hardwareExponent_; }

 private:
  float Dichotomy(ScaleNumber scale, float measure);
  float RatingScale(ScaleNumber scale, std::int32_t top, float measure);
  float Binomial(ScaleNumber scale, std::int32_t top, float measure);
  float Poisson(ScaleNumber scale, std::int32_t top, float measure);
  float Normalise(std::int32_t top);
  /// Step terms of binomial trials, ln(k / (top - k + 1)) for k = 1..top, and their sums from 1 to k.
  struct BinomialTerms {
    std::vector<double> Logs;
    std::vector<double> Sums;
  };
  const BinomialTerms& BinomialTermsOf(std::int32_t top) const;

  const ScaleTables& scales_;
  float hardwareExponent_;
  std::array<float, kProbabilityTop + 1> probability_{};
  std::array<float, kProbabilityTop + 1> probed_{};
  std::int32_t computedTop_ = 0;
  /// By top; made when first needed.
  mutable std::vector<BinomialTerms> binomialTerms_;
  /// ln k and ln k!, by k.
  std::array<double, kProbabilityTop + 1> log_{};
  std::array<float, kProbabilityTop + 1> logFactorial_{};
};

}  // namespace tessaly
