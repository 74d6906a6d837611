#include "estimate/measure_correlation.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

double Spread(float squares, float sum, float n) {
  return static_cast<double>(squares) - static_cast<double>(sum) * static_cast<double>(sum) / static_cast<double>(n);
}

float Ratio(double covariance, double spreads) {
  if (!(spreads > 0)) return 0;
  return static_cast<float>(std::clamp(covariance / std::sqrt(spreads), -1.0, 1.0));
}

double Covariance(float products, float x, float y, float n) {
  return static_cast<double>(products) - static_cast<double>(x) * static_cast<double>(y) / static_cast<double>(n);
}

}  // namespace

void CorrelationSums::Add(const Observation& obs, const ResponseMoments& moments) {
  const float w = obs.ObsWeight;
  const auto top = static_cast<float>(obs.CurrentTop);
  const float x = obs.MeasureSum;
  const float y = static_cast<float>(obs.ObsOrdinal) / top;
  const float e = moments.ExpectedResponse / top;
  SumX += w * x;
  SumXX += w * x * x;
  SumY += w * y;
  SumYY += w * y * y;
  SumXY += w * x * y;
  SumW += w;
  SumE += w * e;
  SumEE += w * e * e;
  SumV += w * moments.ResponseVariance / (top * top);
  SumXE += w * x * e;
}

double CorrelationSums::SpreadX() const {
  return Spread(SumXX, SumX, SumW);
}

float CorrelationSums::PointMeasure() const {
  if (!(SumW > 0)) return 0;
  return Ratio(Covariance(SumXY, SumX, SumY, SumW), Spread(SumYY, SumY, SumW) * SpreadX());
}

float CorrelationSums::ExpectedPointMeasure() const {
  if (!(SumW > 0)) return 0;
  const double n = static_cast<double>(SumW);
  const double spreadE = Spread(SumEE, SumE, SumW) + std::max(n - 2, 0.0) * static_cast<double>(SumV) / n;
  return Ratio(Covariance(SumXE, SumX, SumE, SumW), spreadE * SpreadX());
}

}  // namespace tessaly
