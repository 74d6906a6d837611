#include "graphs/smoothing_spline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace tessaly {
namespace {

using Matrix = std::vector<std::vector<double>>;

/// Gaussian elimination; the matrix is positive definite.
std::vector<double> Eliminate(Matrix m, std::vector<double> right) {
  for (std::size_t i = 0; i < right.size(); ++i) {
    for (std::size_t r = 0; r < right.size(); ++r) {
      if (r == i) continue;
      const double share = m[r][i] / m[i][i];
      for (std::size_t c = i; c < right.size(); ++c) m[r][c] -= share * m[i][c];
      right[r] -= share * right[i];
    }
  }
  for (std::size_t i = 0; i < right.size(); ++i) right[i] /= m[i][i];
  return right;
}

// The curvatures c between the ends solve (3 T + s^2 P + g Q'Q) c = 3 Q'y, with Q the second differences, T the inner
// products of hats and P those of their slopes; the curve passes y - g/3 Q c.
void CheckAgainstDense(const std::vector<CurvePoint>& points, int smoothing, double unit) {
  const std::size_t n = points.size();
  const std::size_t inner = n - 2;
  std::vector<double> h(n - 1);
  for (std::size_t i = 0; i + 1 < n; ++i) h[i] = double{points[i + 1].X} - double{points[i].X};
  const double sigma = unit / 10;
  const double g = sigma * sigma * sigma * smoothing;
  Matrix q(n, std::vector<double>(inner));
  Matrix m(inner, std::vector<double>(inner));
  std::vector<double> right(inner);
  for (std::size_t j = 0; j < inner; ++j) {
    q[j][j] = 1 / h[j];
    q[j + 1][j] = -1 / h[j] - 1 / h[j + 1];
    q[j + 2][j] = 1 / h[j + 1];
    m[j][j] = 2 * (h[j] + h[j + 1]) + sigma * sigma * (1 / h[j] + 1 / h[j + 1]);
    if (j > 0) m[j][j - 1] = m[j - 1][j] = h[j] - sigma * sigma / h[j];
  }
  for (std::size_t j = 0; j < inner; ++j) {
    for (std::size_t i = 0; i < n; ++i) {
      right[j] += 3 * q[i][j] * double{points[i].Y};
      for (std::size_t k = 0; k < inner; ++k) m[j][k] += g * q[i][j] * q[i][k];
    }
  }
  const std::vector<double> c = Eliminate(m, right);
  const SmoothingSpline spline(points, smoothing, unit);
  ASSERT_EQ(spline.Pieces().size(), n);
  for (std::size_t i = 0; i < n; ++i) {
    const SmoothingSpline::Piece& piece = spline.Pieces()[i];
    const double bend = i > 0 && i + 1 < n ? c[i - 1] : 0;
    EXPECT_NEAR(piece.C, bend, 1e-9 * (1 + std::fabs(bend)));
    double a = double{points[i].Y};
    for (std::size_t j = 0; j < inner; ++j) a -= g / 3 * q[i][j] * c[j];
    EXPECT_NEAR(piece.A, a, 1e-9);
    if (i + 1 == n) break;
    const SmoothingSpline::Piece& next = spline.Pieces()[i + 1];
    const double t = h[i];
    EXPECT_NEAR(piece.A + t * (piece.B + t * (piece.C + t * piece.D)), next.A, 1e-9);
    EXPECT_NEAR(piece.C + 3 * piece.D * t, next.C, 1e-9 * (1 + std::fabs(next.C)));
  }
}

std::vector<CurvePoint> RandomPoints(std::size_t count, double unit, std::mt19937& random) {
  std::uniform_real_distribution<double> step(0.02, 0.5);
  std::vector<CurvePoint> points;
  double x = -2 * unit;
  for (std::size_t i = 0; i < count; ++i, x += step(random) * unit)
    points.push_back({static_cast<float>(x), static_cast<float>(step(random) * 6)});
  return points;
}

TEST(SmoothingSpline, SolvesItsEquations) {
  std::mt19937 random(4);
  for (const std::size_t count : {3U, 4U, 5U, 30U})
    for (const int smoothing : {1, 10})
      for (const double unit : {1.0, 10.0}) CheckAgainstDense(RandomPoints(count, unit, random), smoothing, unit);
  // What lies on a line stays there.
  const std::vector<CurvePoint> line{{0, 1}, {1, 3}, {3, 7}, {4, 9}};
  for (const CurvePoint& point : SmoothingSpline(line, 10, 1).Sampled(50))
    EXPECT_NEAR(double{point.Y}, 1 + 2 * double{point.X}, 1e-5);
}

TEST(SmoothingSpline, SamplesEveryKnot) {
  std::mt19937 random(9);
  for (int round = 0; round < 300; ++round) {
    const std::size_t count = 1 + random() % 40;
    std::vector<CurvePoint> points = RandomPoints(count, 1, random);
    const bool even = round % 2 == 0;
    if (even)
      for (std::size_t i = 0; i < count; ++i) points[i].X = static_cast<float>(i) / 4;
    const auto wanted = static_cast<std::int32_t>(even ? 201 : count + random() % 50);
    const SmoothingSpline spline(points, 5, 1);
    const std::vector<CurvePoint> sampled = spline.Sampled(wanted);
    ASSERT_LE(sampled.size(), static_cast<std::size_t>(wanted));
    for (std::size_t i = 1; i < sampled.size(); ++i) ASSERT_LT(sampled[i - 1].X, sampled[i].X);
    bool raw = false;
    for (std::size_t i = 0; i < count; ++i) {
      const auto at = std::find_if(sampled.begin(), sampled.end(), [&](const auto& p) { return p.X == points[i].X; });
      ASSERT_NE(at, sampled.end()) << i;
      // Only at the end, where samples are few, knots stand for themselves.
      raw = raw || at->Y != static_cast<float>(spline.Pieces()[i].A);
      if (raw) {
        ASSERT_FALSE(even);
        EXPECT_EQ(at->Y, points[i].Y);
      }
    }
    EXPECT_EQ(sampled.back().X, points.back().X);
  }
  EXPECT_EQ(SmoothingSpline({}, 5, 1).Sampled(9).size(), 0U);
}

}  // namespace
}  // namespace tessaly
