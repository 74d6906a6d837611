#include "graphs/smoothing_spline.h"

#include <algorithm>

namespace tessaly {

namespace {

/// A symmetric matrix of five diagonals, and the right side of its equations.
struct FiveDiagonals {
  explicit FiveDiagonals(std::size_t size) : Diagonal(size), Next(size), Second(size), Right(size) {}

  std::vector<double> Diagonal;
  /// Entries one and two away from the diagonal, by the lower of their rows.
  std::vector<double> Next;
  std::vector<double> Second;
  std::vector<double> Right;
};

/// Solves the equations by factors L D L' without pivoting (Golub & Van Loan 1996, section 4.3): the solution takes the
/// place of the right side.
void Solve(FiveDiagonals& m) {
  const std::size_t size = m.Right.size();
  for (std::size_t i = 0; i < size; ++i) {
    if (i >= 1) {
      m.Diagonal[i] -= m.Diagonal[i - 1] * m.Next[i - 1] * m.Next[i - 1];
      m.Next[i] -= m.Diagonal[i - 1] * m.Next[i - 1] * m.Second[i - 1];
      m.Right[i] -= m.Next[i - 1] * m.Right[i - 1];
    }
    if (i >= 2) {
      m.Diagonal[i] -= m.Diagonal[i - 2] * m.Second[i - 2] * m.Second[i - 2];
      m.Right[i] -= m.Second[i - 2] * m.Right[i - 2];
    }
    m.Next[i] /= m.Diagonal[i];
    m.Second[i] /= m.Diagonal[i];
  }
  for (std::size_t i = size; i-- > 0;) {
    m.Right[i] /= m.Diagonal[i];
    if (i + 1 < size) m.Right[i] -= m.Next[i] * m.Right[i + 1];
    if (i + 2 < size) m.Right[i] -= m.Second[i] * m.Right[i + 2];
  }
}

CurvePoint PointAt(const SmoothingSpline::Piece& piece, double x) {
  const double t = x - piece.X;
  return {static_cast<float>(x), static_cast<float>(piece.A + t * (piece.B + t * (piece.C + t * piece.D)))};
}

}  // namespace

SmoothingSpline::SmoothingSpline(std::span<const CurvePoint> points, std::int32_t smoothing, double unit)
    : points_(points) {
  for (const CurvePoint& point : points)
    pieces_.push_back({static_cast<double>(point.X), static_cast<double>(point.Y), 0, 0, 0});
  const double sigma = 0.1 * unit;
  const double stiffness = sigma * sigma * sigma * smoothing;
  if (pieces_.size() > 2) SolveCurvatures(stiffness, sigma * sigma);
  if (pieces_.size() > 1) FinishPieces(stiffness);
}

// The curve is straight at both ends: only the knots in between have a C.
void SmoothingSpline::SolveCurvatures(double stiffness, double tension) {
  const std::size_t unknowns = pieces_.size() - 2;
  FiveDiagonals m(unknowns);
  for (std::size_t i = 0; i < unknowns; ++i) {
    const double h = Step(i);
    const double h1 = Step(i + 1);
    m.Right[i] = 3 * ((pieces_[i + 2].A - pieces_[i + 1].A) / h1 - (pieces_[i + 1].A - pieces_[i].A) / h);
    const double both = 1 / h + 1 / h1;
    m.Diagonal[i] = 2 * (h + h1) + tension * both + stiffness * (1 / (h * h) + both * both + 1 / (h1 * h1));
    if (i + 1 == unknowns) break;
    const double h2 = Step(i + 2);
    m.Next[i] = h1 - tension / h1 - stiffness * (1 / (h * h1) + 1 / (h1 * h2) + 2 / (h1 * h1));
    if (i + 2 < unknowns) m.Second[i] = stiffness / (h1 * h2);
  }
  Solve(m);
  for (std::size_t i = 0; i < unknowns; ++i) pieces_[i + 1].C = m.Right[i];
}

void SmoothingSpline::FinishPieces(double stiffness) {
  const std::size_t last = pieces_.size() - 1;
  for (std::size_t i = 0; i < last; ++i) pieces_[i].D = (pieces_[i + 1].C - pieces_[i].C) / (3 * Step(i));
  double before = 0;
  for (Piece& piece : pieces_) {
    piece.A -= stiffness * (piece.D - before);
    before = piece.D;
  }
  for (std::size_t i = 0; i < last; ++i) {
    const double h = Step(i);
    pieces_[i].B = (pieces_[i + 1].A - pieces_[i].A) / h - (2 * pieces_[i].C + pieces_[i + 1].C) * h / 3;
  }
}

std::vector<CurvePoint> SmoothingSpline::Sampled(std::int32_t count) const {
  std::vector<CurvePoint> sampled;
  if (pieces_.empty() || count < 1) return sampled;
  const auto wanted = static_cast<std::size_t>(count);
  const std::size_t last = pieces_.size() - 1;
  const double end = pieces_[last].X;
  double x = pieces_.front().X;
  std::size_t knot = 0;
  sampled.push_back(PointAt(pieces_.front(), x));
  while (knot < last && sampled.size() < wanted) {
    const std::size_t left = wanted - sampled.size();
    x += (end - x) / static_cast<double>(left);
    // As singles, so that no sample lies a rounding error before a knot.
    const bool atKnot = left == 1 || static_cast<float>(x) >= points_[knot + 1].X;
    if (left < last - knot || (left == last - knot && !atKnot)) {
      const auto rest = points_.subspan(knot + 1, left);
      sampled.insert(sampled.end(), rest.begin(), rest.end());
      break;
    }
    if (atKnot) x = pieces_[++knot].X;
    sampled.push_back(PointAt(pieces_[knot], x));
  }
  return sampled;
}

}  // namespace tessaly
