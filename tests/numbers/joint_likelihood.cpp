#include "numbers/joint_likelihood.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

LikelihoodProblem::LikelihoodProblem(const Design& design, int top)
    : Counts(design.Counts),
      Signs(Counts.size(), -1),
      Centered(Counts.size(), true),
      Dummy(Counts.size(), false),
      Top(top),
      Ratings(design.Ratings) {
  Signs.front() = 1;
  Centered.front() = false;
  for (const int count : Counts) Weights.emplace_back(count, 1.0);
}

namespace {

using Vector = std::vector<double>;

std::size_t At(int number) {
  return static_cast<std::size_t>(number);
}

/// Solves a x = b for a positive definite matrix.
Vector SolveLinear(std::vector<Vector> a, Vector b) {
  const std::size_t n = b.size();
  for (std::size_t pivot = 0; pivot < n; ++pivot) {
    for (std::size_t row = pivot + 1; row < n; ++row) {
      const double factor = a[row][pivot] / a[pivot][pivot];
      for (std::size_t column = pivot; column < n; ++column) a[row][column] -= factor * a[pivot][column];
      b[row] -= factor * b[pivot];
    }
  }
  for (std::size_t row = n; row-- > 0;) {
    for (std::size_t column = row + 1; column < n; ++column) b[row] -= a[row][column] * b[column];
    b[row] /= a[row][row];
  }
  return b;
}

/// Central moments of a rating.
struct FourMoments {
  double Mean = 0;
  double Variance = 0;
  double Fourth = 0;
};

class Solver {
 public:
  explicit Solver(const LikelihoodProblem& problem) : problem_(problem) {
    for (std::size_t facet = 0; facet < Facets(); ++facet) {
      first_.push_back(parameters_);
      parameters_ += At(problem.Counts[facet]);
      active_.emplace_back(problem.Counts[facet], true);
    }
    scales_ = problem.OwnSteps < 0 ? 1 : At(problem.Counts[At(problem.OwnSteps)]);
    firstStep_ = parameters_;
    parameters_ += scales_ * At(problem.Top);
    theta_.assign(parameters_, 0);
  }

  LikelihoodSolution Run() {
    while (DropExtremes()) {
    }
    for (int round = 0; round < 100 && NewtonStep() > 1e-11; ++round) {
    }
    LikelihoodSolution solution;
    for (std::size_t facet = 0; facet < Facets(); ++facet) {
      solution.Elements.emplace_back();
      for (int number = 1; number <= problem_.Counts[facet]; ++number)
        solution.Elements.back().push_back(Active(facet, number) ? Measured(facet, number) : Extreme(facet, number));
    }
    for (std::size_t scale = 0; scale < scales_; ++scale) {
      const auto begin = theta_.begin() + static_cast<std::ptrdiff_t>(firstStep_ + scale * At(problem_.Top));
      solution.Steps.emplace_back(begin, begin + problem_.Top);
    }
    return solution;
  }

 private:
  std::size_t Facets() const { return problem_.Counts.size(); }
  std::size_t Parameter(std::size_t facet, int number) const { return first_[facet] + At(number - 1); }
  std::size_t Step(const Rating& rating, int k) const {
    const std::size_t scale = problem_.OwnSteps < 0 ? 0 : At(rating.Elements[At(problem_.OwnSteps)] - 1);
    return firstStep_ + scale * At(problem_.Top) + At(k - 1);
  }
  bool Active(std::size_t facet, int number) const { return active_[facet][At(number - 1)]; }
  /// Elements of the rating that are extreme.
  int Inactive(const Rating& rating) const {
    int count = 0;
    for (std::size_t facet = 0; facet < Facets(); ++facet) count += Active(facet, rating.Elements[facet]) ? 0 : 1;
    return count;
  }
  double Weight(const Rating& rating) const {
    double weight = rating.Replication;
    for (std::size_t facet = 0; facet < Facets(); ++facet)
      weight *= problem_.Weights[facet][At(rating.Elements[facet] - 1)];
    return weight;
  }
  bool Counts(const Rating& rating, std::size_t facet, int number) const {
    return rating.Elements[facet] == number && Inactive(rating) == (Active(facet, number) ? 0 : 1);
  }

  bool DropExtremes() {
    std::vector<std::size_t> drop;
    auto next = active_;
    for (std::size_t facet = 0; facet < Facets(); ++facet) {
      if (problem_.Dummy[facet]) continue;
      for (int number = 1; number <= problem_.Counts[facet]; ++number) {
        if (!Active(facet, number)) continue;
        double score = 0;
        double possible = 0;
        for (const Rating& rating : problem_.Ratings) {
          if (!Counts(rating, facet, number)) continue;
          score += Weight(rating) * rating.Response;
          possible += Weight(rating) * problem_.Top;
        }
        if (score == 0 || score == possible) next[facet][At(number - 1)] = false;
      }
    }
    const bool changed = next != active_;
    active_ = next;
    return changed;
  }

  Vector Probabilities(const Rating& rating) const {
    double measure = 0;
    for (std::size_t facet = 0; facet < Facets(); ++facet)
      measure += problem_.Signs[facet] * theta_[Parameter(facet, rating.Elements[facet])];
    Vector p{0};
    for (int k = 1; k <= problem_.Top; ++k) p.push_back(p.back() + measure - theta_[Step(rating, k)]);
    const double highest = *std::max_element(p.begin(), p.end());
    double total = 0;
    for (double& term : p) total += term = std::exp(term - highest);
    for (double& term : p) term /= total;
    return p;
  }

  FourMoments MomentsOf(const Rating& rating) const {
    const Vector p = Probabilities(rating);
    FourMoments moments;
    for (int k = 0; k <= problem_.Top; ++k) moments.Mean += k * p[At(k)];
    for (int k = 0; k <= problem_.Top; ++k) {
      const double square = (k - moments.Mean) * (k - moments.Mean);
      moments.Variance += square * p[At(k)];
      moments.Fourth += square * square * p[At(k)];
    }
    return moments;
  }

  double NewtonStep() {
    Vector gradient(parameters_, 0);
    std::vector<Vector> information(parameters_, Vector(parameters_, 0));
    for (const Rating& rating : problem_.Ratings)
      if (Inactive(rating) == 0) AddRating(rating, gradient, information);
    for (std::size_t facet = 0; facet < Facets(); ++facet) {
      std::vector<std::size_t> sum;
      for (int number = 1; number <= problem_.Counts[facet]; ++number) {
        if (problem_.Dummy[facet] || !Active(facet, number)) {
          Fix(Parameter(facet, number), gradient, information);
        } else if (problem_.Centered[facet]) {
          sum.push_back(Parameter(facet, number));
        }
      }
      HoldSum(sum, gradient, information);
    }
    for (std::size_t scale = 0; scale < scales_; ++scale) {
      std::vector<std::size_t> sum;
      for (std::size_t k = 0; k < At(problem_.Top); ++k) sum.push_back(firstStep_ + scale * At(problem_.Top) + k);
      HoldSum(sum, gradient, information);
    }
    const Vector step = SolveLinear(information, gradient);
    double longest = 0;
    for (const double move : step) longest = std::max(longest, std::fabs(move));
    for (std::size_t i = 0; i < parameters_; ++i) theta_[i] += step[i] / std::max(longest, 1.0);
    return longest;
  }

  void AddRating(const Rating& rating, Vector& gradient, std::vector<Vector>& information) const {
    const Vector p = Probabilities(rating);
    // The exponent of category k is linear in the parameters: these are its coefficients.
    std::vector<std::pair<std::size_t, Vector>> coefficients;
    for (std::size_t facet = 0; facet < Facets(); ++facet) {
      coefficients.emplace_back(Parameter(facet, rating.Elements[facet]), Vector());
      for (int k = 0; k <= problem_.Top; ++k) coefficients.back().second.push_back(problem_.Signs[facet] * k);
    }
    for (int j = 1; j <= problem_.Top; ++j) {
      coefficients.emplace_back(Step(rating, j), Vector());
      for (int k = 0; k <= problem_.Top; ++k) coefficients.back().second.push_back(k >= j ? -1 : 0);
    }
    const auto expected = [&](auto value) {
      double sum = 0;
      for (std::size_t k = 0; k < p.size(); ++k) sum += p[k] * value(k);
      return sum;
    };
    for (const auto& [i, a] : coefficients) {
      const double meanA = expected([&, &a = a](std::size_t k) { return a[k]; });
      gradient[i] += Weight(rating) * (a[At(rating.Response)] - meanA);
      for (const auto& [j, b] : coefficients) {
        const double meanB = expected([&, &b = b](std::size_t k) { return b[k]; });
        information[i][j] +=
            Weight(rating) * expected([&, &a = a, &b = b](std::size_t k) { return (a[k] - meanA) * (b[k] - meanB); });
      }
    }
  }

  void Fix(std::size_t i, Vector& gradient, std::vector<Vector>& information) const {
    for (std::size_t j = 0; j < parameters_; ++j) information[i][j] = information[j][i] = 0;
    information[i][i] = 1;
    gradient[i] = 0;
  }

  /// The likelihood does not know where the origin is: a penalty along that direction alone puts the sum at 0.
  void HoldSum(const std::vector<std::size_t>& those, Vector& gradient, std::vector<Vector>& information) const {
    double sum = 0;
    for (const std::size_t i : those) sum += theta_[i];
    for (const std::size_t i : those) {
      gradient[i] -= sum;
      for (const std::size_t j : those) information[i][j] += 1;
    }
  }

  SolvedElement Measured(std::size_t facet, int number) const {
    SolvedElement element;
    element.Measure = theta_[Parameter(facet, number)];
    double information = 0;
    double count = 0;
    double squares = 0;
    double squaresZ = 0;
    double variance = 0;
    double kurtosis = 0;
    for (const Rating& rating : problem_.Ratings) {
      if (!Counts(rating, facet, number)) continue;
      const FourMoments m = MomentsOf(rating);
      const double w = Weight(rating);
      const double square = (rating.Response - m.Mean) * (rating.Response - m.Mean);
      count += w;
      information += w * m.Variance;
      squares += w * square;
      squaresZ += w * square / m.Variance;
      variance += w * (m.Fourth - m.Variance * m.Variance);
      kurtosis += w * (m.Fourth / (m.Variance * m.Variance) - 1);
    }
    element.StandardError = 1 / std::sqrt(information);
    element.Infit = squares / information;
    element.InfitZ = WilsonHilferty(element.Infit, std::sqrt(variance) / information);
    element.Outfit = squaresZ / count;
    element.OutfitZ = WilsonHilferty(element.Outfit, std::sqrt(kurtosis) / count);
    return element;
  }

  static double WilsonHilferty(double meanSquare, double deviation) {
    return (std::cbrt(meanSquare) - 1) * (3 / deviation) + deviation / 3;
  }

  SolvedElement Extreme(std::size_t facet, int number) {
    SolvedElement element;
    element.Extreme = true;
    double& measure = theta_[Parameter(facet, number)];
    double low = -40;
    double high = 40;
    for (int round = 0; round < 100; ++round) {
      measure = (low + high) / 2;
      double observed = 0;
      double possible = 0;
      double expected = 0;
      double information = 0;
      double smallest = 0;
      for (const Rating& rating : problem_.Ratings) {
        if (!Counts(rating, facet, number)) continue;
        const FourMoments m = MomentsOf(rating);
        const double w = Weight(rating);
        smallest = smallest == 0 ? w : std::min(smallest, w);
        observed += w * rating.Response;
        possible += w * problem_.Top;
        expected += w * m.Mean;
        information += w * m.Variance;
      }
      const double aim = observed == 0 ? problem_.Xtreme * smallest : possible - problem_.Xtreme * smallest;
      ((expected < aim) == (problem_.Signs[facet] > 0) ? low : high) = measure;
      element.StandardError = 1 / std::sqrt(information);
    }
    element.Measure = measure;
    measure = 0;
    return element;
  }

  const LikelihoodProblem& problem_;
  std::vector<std::size_t> first_;
  std::size_t firstStep_ = 0;
  std::size_t scales_ = 1;
  std::size_t parameters_ = 0;
  std::vector<std::vector<bool>> active_;
  Vector theta_;
};

}  // namespace

LikelihoodSolution SolveJointLikelihood(const LikelihoodProblem& problem) {
  return Solver(problem).Run();
}

}  // namespace tessaly
