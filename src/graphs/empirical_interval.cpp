#include "graphs/empirical_interval.h"

#include <algorithm>
#include <cmath>

#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr double kLeastWidth = 0.01;
/// The width of the last place of the control, were it not the least one.
constexpr double kNarrowEnd = 0.015;
constexpr std::int32_t kLastPosition = 200;

double Extent(const EmpiricalRange& range) {
  const double extent = static_cast<double>(range.DataMax) - static_cast<double>(range.DataMin);
  return extent > 0 && std::isfinite(extent) ? extent : 1.0;
}

/// A multiple of 0.01, as it is displayed.
double Displayed(double width) {
  constexpr int kColumns = 60;
  return LeadingNumber(FormatNumber(width, kColumns, 2));
}

EmpiricalInterval HeldInterval(double width, double extent) {
  if (!(width >= kLeastWidth)) width = kLeastWidth;
  if (width > extent) width = std::ceil(extent);
  const double logs = std::log(extent) - std::log(kNarrowEnd);
  const double position = kLastPosition - (std::log(width) - std::log(kNarrowEnd)) * (kLastPosition - 1) / logs;
  EmpiricalInterval interval;
  interval.Width = static_cast<float>(Displayed(width));
  // At the narrow end itself the scale has no length.
  interval.Position = std::isnan(position)
                          ? 1
                          : static_cast<std::int32_t>(std::clamp(std::nearbyint(position), 1.0, double{kLastPosition}));
  return interval;
}

/// A width as its first two digits, and as a whole number of hundredths.
struct Digits {
  double FirstTwo;
  double Hundredths;
};

Digits DigitsOf(float width) {
  const double hundredths = std::nearbyint(static_cast<double>(width) / kLeastWidth);
  double digits = std::isfinite(hundredths) ? std::max(hundredths, 1.0) : 1.0;
  while (digits >= 100) digits = std::floor(digits / 10);
  return {digits, std::isfinite(hundredths) ? hundredths : 1.0};
}

/// `digits` with so many zeros that it is at least `least`.
double Filled(double digits, double least) {
  while (digits < least) digits *= 10;
  return digits;
}

}  // namespace

EmpiricalInterval IntervalAtPosition(std::int32_t position, const EmpiricalRange& range) {
  const double extent = Extent(range);
  if (position <= 1) return HeldInterval(std::ceil(extent), extent);
  if (position >= kLastPosition) return HeldInterval(kLeastWidth, extent);
  const double narrow = std::log(kNarrowEnd);
  const double width =
      std::exp(narrow + (std::log(extent) - narrow) * (kLastPosition - position) / (kLastPosition - 1));
  return HeldInterval(std::floor(width * 100) / 100, extent);
}

EmpiricalInterval IntervalOfWidth(float width, const EmpiricalRange& range) {
  return HeldInterval(static_cast<double>(width), Extent(range));
}

float StepUp(float width) {
  const Digits digits = DigitsOf(width);
  return static_cast<float>(Filled(digits.FirstTwo + 1, digits.Hundredths) * 0.01);
}

float StepDown(float width) {
  const Digits digits = DigitsOf(width);
  const double fewer = digits.FirstTwo > 1 ? digits.FirstTwo - 1 : digits.FirstTwo;
  return static_cast<float>(Filled(fewer, digits.Hundredths) * 0.001);
}

BinEdges::BinEdges(float width, const EmpiricalRange& range)
    : width_(std::max(Displayed(static_cast<double>(width)), kLeastWidth)) {
  const double extent = Extent(range);
  if (width_ >= extent) {
    first_ = static_cast<double>(range.DataMax);
  } else {
    const double whole = std::floor(extent / width_);
    first_ = -whole * width_;
    if (std::fmod(whole, 2) == 1) first_ -= width_ / 2;
  }
  edge_ = EdgeOf(0);
}

void BinEdges::Next() {
  ++steps_;
  edge_ = EdgeOf(steps_);
}

void BinEdges::Reach(float measure) {
  if (!(measure > edge_)) return;
  // Just below the bin, as far as division tells.
  steps_ = std::max(steps_, std::floor((static_cast<double>(measure) - first_) / width_) - 2);
  constexpr int kMostLeft = 5;
  for (int left = kMostLeft; left > 0 && measure > edge_; --left) Next();
  // So far out singles are wider apart than the bins are.
  edge_ = std::max(edge_, measure);
}

}  // namespace tessaly
