#include "model/response_moments.h"

#include <algorithm>

#include "support/number_text.h"

namespace tessaly {

ResponseMoments ObservationMoments(const Probabilities& probabilities, std::int32_t top, std::int32_t ordinal,
                                   float expected) {
  const double e = static_cast<double>(expected);
  double m2 = e;
  double m3 = e;
  double m4 = e;
  if (top > 1) {
    m2 = m3 = m4 = 0;
    for (std::int32_t k = top; k >= 1; --k) {
      const double x = static_cast<double>(k);
      const double p = static_cast<double>(probabilities[k]);
      m2 += x * x * p;
      m3 += x * x * x * p;
      m4 += x * x * x * x * p;
    }
  }
  const auto fourth = static_cast<float>(std::max(m4 - (4 * m3 - (2 * m2 - e * e) * (3 * e)) * e, 0.0));
  const auto variance = static_cast<float>(std::max(m2 - e * e, 0.0));
  ResponseMoments moments;
  moments.ExpectedResponse = expected;
  moments.ResponseVariance = variance;
  moments.ResidualVarianceTerm = std::max(fourth - variance * variance, 0.0F);
  moments.ResponseResidual = static_cast<float>(ordinal) - expected;
  moments.ResidualSquare = moments.ResponseResidual * moments.ResponseResidual;
  moments.ResidualSquareZ = moments.ResidualSquare / SafeFloor32(variance);
  moments.KurtosisRatio = fourth / SafeFloor32(variance * variance);
  return moments;
}

}  // namespace tessaly
