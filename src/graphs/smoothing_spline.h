// A smooth curve through scattered points.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graphs/curve_plot.h"

namespace tessaly {

/// A cubic spline that comes near to its points instead of going through them (Reinsch 1967), with some tension on its
/// second derivative.
class SmoothingSpline {
 public:
  /// y = A + B t + C t^2 + D t^3, t = x - X, from this knot to the next.
  struct Piece {
    double X;
    double A;
    double B;
    double C;
    double D;
  };

  /// `points` have strictly rising x. `smoothing` is 1 (close) to 10 (smooth); `unit` is the width of a logit in x.
  SmoothingSpline(std::span<const CurvePoint> points, std::int32_t smoothing, double unit);

  /// At most `count` points of the curve from the first knot to the last, every knot among them. Where the next point
  /// would cost one of the last knots, those are given as they are, not smoothed.
  std::vector<CurvePoint> Sampled(std::int32_t count) const;
  /// By knot; the last one holds the curve's value there.
  const std::vector<Piece>& Pieces() const { return pieces_; }

 private:
  double Step(std::size_t i) const { return pieces_[i + 1].X - pieces_[i].X; }
  void SolveCurvatures(double stiffness, double tension);
  void FinishPieces(double stiffness);

  std::span<const CurvePoint> points_;
  std::vector<Piece> pieces_;
};

}  // namespace tessaly
