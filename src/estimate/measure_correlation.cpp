#include "estimate/measure_correlation.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

/// Spreads below this share of their sum of squares are rounding: nothing varies.
constexpr double kRoundingOfMoments = 1e-12;

double Spread(double squares, double sum, double n) {
  const double spread = squares - sum * sum / n;
  return spread > kRoundingOfMoments * squares ? spread : 0;
}

float Ratio(double covariance, double spreads) {
  if (!(spreads > 0)) return 0;
  return static_cast<float>(std::clamp(covariance / std::sqrt(spreads), -1.0, 1.0));
}

double Covariance(double products, double x, double y, double n) {
  return products - x * y / n;
}

}  // namespace

CorrelationSums::CorrelationSums(const Observation& obs, const ResponseMoments& moments) {
  const double w = static_cast<double>(obs.ObsWeight);
  const double top = obs.CurrentTop;
  const double x = static_cast<double>(obs.MeasureSum);
  const double y = obs.ObsOrdinal / top;
  const double e = static_cast<double>(moments.ExpectedResponse) / top;
  SumX = w * x;
  SumXX = w * x * x;
  SumY = w * y;
  SumYY = w * y * y;
  SumXY = w * x * y;
  SumW = w;
  SumE = w * e;
  SumEE = w * e * e;
  SumV = w * static_cast<double>(moments.ResponseVariance) / (top * top);
  SumXE = w * x * e;
}

CorrelationSums& CorrelationSums::operator+=(const CorrelationSums& other) {
  SumX += other.SumX;
  SumXX += other.SumXX;
  SumY += other.SumY;
  SumYY += other.SumYY;
  SumXY += other.SumXY;
  SumW += other.SumW;
  SumE += other.SumE;
  SumEE += other.SumEE;
  SumV += other.SumV;
  SumXE += other.SumXE;
  return *this;
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
  const double spreadE = Spread(SumEE, SumE, SumW) + std::max(SumW - 2, 0.0) * SumV / SumW;
  return Ratio(Covariance(SumXE, SumX, SumE, SumW), spreadE * SpreadX());
}

}  // namespace tessaly
