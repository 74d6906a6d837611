#include "model/response_kernel.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

#include "support/exponential.h"

namespace tessaly {

static_assert(FLT_EVAL_METHOD == 0, "single precision must be single in every step");

float LogRatio(double a, double b, double c, double d, float smallest) {
  const double floor = static_cast<double>(smallest);
  const auto ln = [floor](double x) { return std::log(std::max(x, floor)); };
  return static_cast<float>(ln(a) - ln(b) + ln(c) - ln(d));
}

namespace {

/// Turns the exponents of categories 1..top in each of N tables into probabilities of 0..top, and gives the expected
/// categories. The tables are worked on side by side, because each by itself is a chain of steps that wait for each
/// other.
template <std::size_t N>
std::array<float, N> NormaliseTables(std::int32_t top, float hardwareExponent, const std::array<float*, N>& tables) {
  std::array<float, N> shift;
  std::array<double, N> total;
  for (std::size_t n = 0; n < N; ++n) {
    float* const p = tables[n];
    // A loop of its own: which exponent is the highest cannot be foretold, and here it costs no branch.
    float highest = 0;
    for (std::int32_t k = 1; k <= top; ++k) highest = highest > p[k] ? highest : p[k];
    shift[n] = hardwareExponent - highest;
    p[0] = ExponentialSingle(shift[n]);
    total[n] = static_cast<double>(p[0]);
  }
  for (std::int32_t k = top; k >= 1; --k) {
    for (std::size_t n = 0; n < N; ++n) {
      float& p = tables[n][k];
      p = ExponentialSingle(shift[n] + p);
      total[n] += static_cast<double>(p);
    }
  }
  std::array<double, N> reciprocal;
  for (std::size_t n = 0; n < N; ++n) reciprocal[n] = 1.0 / total[n];
  std::array<double, N> expected{};
  double category = top;
  for (std::int32_t k = top; k >= 0; --k, --category) {
    for (std::size_t n = 0; n < N; ++n) {
      float& p = tables[n][k];
      p = static_cast<float>(reciprocal[n] * static_cast<double>(p));
      expected[n] += category * static_cast<double>(p);
    }
  }
  std::array<float, N> result;
  for (std::size_t n = 0; n < N; ++n) result[n] = static_cast<float>(expected[n]);
  return result;
}

/// Thresholds of one scale, and which categories are kept though unobserved.
struct ScaleSteps {
  const float* Step;
  const CategoryAnchor* Anchor;
};

/// Probabilities of one rating scale at N measures, and the expected categories.
template <std::size_t N>
std::array<float, N> RatingScalesAt(const ScaleSteps& steps, std::int32_t top, float hardwareExponent,
                                    const std::array<float, N>& measures, const std::array<float*, N>& tables) {
  std::array<float, N> sum{};
  for (std::int32_t k = 1; k <= top; ++k) {
    const bool kept = steps.Anchor[k] == CategoryAnchor::KeptUnobserved;
    const float step = steps.Step[k];
    for (std::size_t n = 0; n < N; ++n) {
      sum[n] += measures[n];
      if (!kept) sum[n] -= step;
      tables[n][k] = kept ? -std::numeric_limits<float>::infinity() : sum[n];
    }
  }
  return NormaliseTables<N>(top, hardwareExponent, tables);
}

}  // namespace

ResponseKernel::ResponseKernel(const ScaleTables& scales, float hardwareExponent)
    : scales_(scales), hardwareExponent_(hardwareExponent) {
  for (std::int32_t k = 2; k <= kProbabilityTop; ++k) {
    const auto at = static_cast<std::size_t>(k);
    log_[at] = std::log(static_cast<double>(k));
    logFactorial_[at] = static_cast<float>(static_cast<double>(logFactorial_[at - 1]) + log_[at]);
  }
}

float ResponseKernel::CategoryProbabilities(ScaleNumber scale, ModelType type, std::int32_t top, float measure) {
  if (top <= 1) return Dichotomy(scale, measure);
  switch (type) {
    case ModelType::Binomial:
      return Binomial(scale, top, measure);
    case ModelType::Poisson:
      return Poisson(scale, top, measure);
    default:
      return RatingScale(scale, top, measure);
  }
}

float ResponseKernel::Dichotomy(ScaleNumber scale, float measure) {
  const float d = scales_.CategoryStep(scale, 1) - measure;
  const auto p = static_cast<float>(1.0 / (Exponential(static_cast<double>(std::min(d, hardwareExponent_))) + 1.0));
  probability_[1] = p;
  probability_[0] = 1.0F - p;
  computedTop_ = 1;
  return p;
}

float ResponseKernel::RatingScale(ScaleNumber scale, std::int32_t top, float measure) {
  computedTop_ = top;
  return RatingScalesAt<1>({scales_.CategoryStep.Row(scale), scales_.CategoryAnchor.Row(scale)}, top, hardwareExponent_,
                           {measure}, {probability_.data()})[0];
}

ProbedScore ResponseKernel::ProbedProbabilities(ScaleNumber scale, ModelType type, std::int32_t top, float measure,
                                                float probe) {
  if (top > 1 && type == ModelType::RatingScale) {
    computedTop_ = top;
    const auto expected =
        RatingScalesAt<2>({scales_.CategoryStep.Row(scale), scales_.CategoryAnchor.Row(scale)}, top, hardwareExponent_,
                          {measure, measure - probe}, {probability_.data(), probed_.data()});
    return {expected[0], expected[1]};
  }
  const float probed = CategoryProbabilities(scale, type, top, measure - probe);
  return {CategoryProbabilities(scale, type, top, measure), probed};
}

float ResponseKernel::Binomial(ScaleNumber scale, std::int32_t top, float measure) {
  const float s = scales_.CategoryStep(scale, 0);
  const std::vector<double>& logs = BinomialTermsOf(top).Logs;
  float sum = 0;
  for (std::int32_t k = 1; k <= top; ++k) {
    const auto at = static_cast<std::size_t>(k);
    sum = static_cast<float>(static_cast<double>(sum + measure) - static_cast<double>(s) * logs[at]);
    probability_[at] = sum;
  }
  const float expected = Normalise(top);
  if (s != 1.0F) return expected;
  return static_cast<float>(top / (Exponential(static_cast<double>(std::min(-measure, hardwareExponent_))) + 1.0));
}

float ResponseKernel::Poisson(ScaleNumber scale, std::int32_t top, float measure) {
  const float s = scales_.CategoryStep(scale, 0);
  const std::int32_t n = top < 5 ? 10 : std::min(2 * top, kProbabilityTop);
  float sum = 0;
  for (std::int32_t k = 1; k <= n; ++k) {
    const auto at = static_cast<std::size_t>(k);
    sum = static_cast<float>(static_cast<double>(sum + measure) - static_cast<double>(s) * log_[at]);
    probability_[at] = sum;
  }
  const float expected = Normalise(n);
  if (s != 1.0F) return expected;
  return std::min(ExponentialSingle(std::min(measure, hardwareExponent_)), kCountCap);
}

// The table holds the exponents of categories 1..top; turns them into probabilities and gives the expected category.
float ResponseKernel::Normalise(std::int32_t top) {
  computedTop_ = top;
  return NormaliseTables<1>(top, hardwareExponent_, {probability_.data()})[0];
}

const ResponseKernel::BinomialTerms& ResponseKernel::BinomialTermsOf(std::int32_t top) const {
  const auto at = static_cast<std::size_t>(top);
  if (binomialTerms_.size() <= at) binomialTerms_.resize(at + 1);
  BinomialTerms& terms = binomialTerms_[at];
  if (terms.Logs.empty()) {
    terms.Logs.resize(at + 1);
    terms.Sums.resize(at + 1);
    for (std::size_t k = 1; k <= at; ++k) {
      terms.Logs[k] = std::log(static_cast<double>(k) / (static_cast<double>(at - k) + 1.0));
      terms.Sums[k] = terms.Sums[k - 1] + terms.Logs[k];
    }
  }
  return terms;
}

LogOdds ResponseKernel::LogOddsMoments(ScaleNumber scale, ModelType type, std::int32_t top, float measure,
                                       std::int32_t category, const Probabilities& probabilities) const {
  const float* step = scales_.CategoryStep.Row(scale);
  LogOdds odds;
  if (top <= 1) {
    const float s1 = measure - step[1];
    odds.Mean = s1 * probabilities[1];
    odds.MeanSquare = s1 * s1 * probabilities[1];
    odds.AtObserved = category == 1 ? s1 : 0.0F;
    return odds;
  }
  const std::vector<double>* binomialLogs = type == ModelType::Binomial ? &BinomialTermsOf(top).Logs : nullptr;
  const CategoryAnchor* anchor = scales_.CategoryAnchor.Row(scale);
  const std::int32_t last = type == ModelType::Poisson ? kProbabilityTop : top;
  const auto stepTerm = [&](std::int32_t k) {
    const auto at = static_cast<std::size_t>(k);
    if (type == ModelType::Poisson) return static_cast<double>(step[0]) * log_[at];
    if (binomialLogs != nullptr) return static_cast<double>(step[0]) * (*binomialLogs)[at];
    return anchor[k] == CategoryAnchor::KeptUnobserved ? 0.0 : static_cast<double>(step[k]);
  };
  float sum = 0;
  for (std::int32_t k = 1; k <= last; ++k) {
    sum = static_cast<float>(static_cast<double>(sum + measure) - stepTerm(k));
    const float p = probabilities[k];
    odds.Mean += sum * p;
    odds.MeanSquare += sum * sum * p;
    if (k == category) odds.AtObserved = sum;
  }
  return odds;
}

double ResponseKernel::DiscriminationStatistic(ModelType type, std::int32_t top, std::int32_t k) const {
  const auto at = static_cast<std::size_t>(k);
  if (type == ModelType::Poisson) return static_cast<double>(logFactorial_[at]);
  return BinomialTermsOf(top).Sums[at];
}

}  // namespace tessaly
