// Tables of bias terms against sizes found by bisection, term by term, and what follows from them by definition.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "fixture/analysis_fixture.h"
#include "fixture/design.h"

namespace tessaly {
namespace {

/// A design whose bias terms are reported, and how its data are to be understood.
struct BiasCase {
  tessaly::Design Design;
  /// By data column: the facet, and the sign with which its elements' measures enter.
  std::vector<int> Facets = {1, 2, 3};
  std::vector<double> Signs = {1, -1, -1};
  /// The facet whose elements have scales of their own; 0 for none.
  int OwnSteps = 0;
  /// Ratings of the elements of column 1 from this one on are for the second model statement.
  int SecondFrom = 1000;
  std::vector<double> ModelWeights = {1, 1};
  std::map<std::pair<int, int>, double> ElementWeights;
  /// What `Xtreme=` and `Bias=` ask for.
  double Adjustment = 0.5;
  double Direction = 1;

  BiasCase(std::vector<int> counts, const std::string& models, int top, unsigned seed, int ownSteps = 0)
      : Design(SimulatedDesign(counts, top, seed, 0.1, ownSteps)), OwnSteps(ownSteps) {
    Design.Models = models;
    Design.Settings += "Arrange=N\nUdecimals=4\n";
  }
  void Weigh(int facet, int number, double weight) {
    Design.Field(facet, number) = ",,," + NumberText(weight);
    ElementWeights[{facet, number}] = weight;
  }
};

/// Mean of a response, and its variance over the categories up to the highest of the scale.
struct Moments {
  double Mean = 0;
  double Variance = 0;
};

struct Response {
  double Measure = 0;
  double Weight = 1;
  int Raw = 0;
  int Ordinal = 0;
  int Top = 1;
  bool Poisson = false;
  /// By category: category times measure less this is its exponent.
  std::vector<double> Steps = {0};

  /// Takes from the scale of a cell what it says of a response.
  void PutOnScale(const FinishedAnalysis& run, CellNumber number) {
    const ModelCell& cell = run.A.Models.Cells[number];
    const ModelType type = run.A.Models.Statements[cell.CellModel].ModelType;
    Top = run.A.Scales.Scales[cell.CellScale].ScaleTopCategory;
    Poisson = type == ModelType::Poisson;
    Ordinal = type == ModelType::RatingScale ? run.A.Scales.CategoryOrdinal(cell.CellScale, Raw) : Raw;
    const bool trials = type == ModelType::Binomial && Top > 1;
    const std::vector<double> steps = run.Steps(cell.CellScale);
    for (int k = 1; k <= (Poisson ? std::max(2 * Top, 10) : Top); ++k) {
      const double ratio = Poisson ? k : k / (Top - k + 1.0);
      Steps.push_back(Steps.back() + (Poisson || trials ? std::log(ratio) : steps[static_cast<std::size_t>(k - 1)]));
    }
  }

  Moments At(double bias) const {
    double total = 0;
    double sum = 0;
    double squares = 0;
    for (std::size_t k = 0; k < Steps.size(); ++k) {
      const auto x = static_cast<double>(k);
      const double p = std::exp(x * (Measure + bias) - Steps[k]);
      total += p;
      sum += x * p;
      if (x <= Top) squares += x * x * p;
    }
    const double mean = Poisson ? std::exp(Measure + bias) : sum / total;
    return {mean, squares / total - mean * mean};
  }
};

using Elements = std::vector<int>;
using Terms = std::map<Elements, std::vector<Response>>;

/// The responses of each combination of elements. Extreme elements leave theirs out.
Terms TermsOf(const BiasCase& c, const FinishedAnalysis& run, const std::vector<int>& biasFacets) {
  Terms terms;
  for (const Rating& rating : c.Design.Ratings) {
    const std::size_t statement = rating.Elements[0] >= c.SecondFrom ? 1 : 0;
    CellNumber cell = run.A.Models.Statements[{static_cast<int>(statement)}].ModelFirstCell;
    Response response;
    response.Raw = rating.Response;
    response.Weight = rating.Replication * c.ModelWeights[statement];
    std::map<int, int> elementOf;
    bool usable = true;
    for (std::size_t column = 0; column < c.Facets.size(); ++column) {
      const int facet = c.Facets[column];
      const int number = rating.Elements[column];
      if (facet == 0 || number == 0) continue;
      elementOf[facet] = number;
      usable = usable && Measurable(run.Status(facet, number));
      response.Measure += c.Signs[column] * run.Measure(facet, number);
      if (const auto found = c.ElementWeights.find({facet, number}); found != c.ElementWeights.end())
        response.Weight *= found->second;
      if (facet == c.OwnSteps) cell = run.A.Elements.ElementModel[run.At(facet, number)];
    }
    Elements key;
    for (const int facet : biasFacets) key.push_back(elementOf[facet]);
    if (!usable || std::count(key.begin(), key.end(), 0) > 0) continue;
    response.PutOnScale(run, cell);
    if (response.Ordinal >= 0) terms[key].push_back(response);
  }
  return terms;
}

/// What the report should say of a term. Logits.
struct Estimate {
  double Observed = 0, Expected = 0, Count = 0;
  double Size = 0, StandardError = 0, Infit = 0, Outfit = 0;
  std::string Mark;
};

Estimate EstimateOf(const std::vector<Response>& responses, double adjustment) {
  Estimate term;
  double aim = 0, possible = 0, smallest = 0;
  for (const Response& r : responses) {
    term.Observed += r.Weight * r.Raw;
    term.Expected += r.Weight * (r.At(0).Mean + r.Raw - r.Ordinal);
    term.Count += r.Weight;
    aim += r.Weight * r.Ordinal;
    possible += r.Weight * r.Top;
    smallest = smallest == 0 ? r.Weight : std::min(smallest, r.Weight);
  }
  if (std::fabs(aim) < 1e-9) {
    aim = adjustment * smallest;
    term.Mark = ">";
  } else if (std::fabs(possible - aim) < 1e-9) {
    aim = possible - adjustment * smallest;
    term.Mark = "<";
  }
  double low = -90, high = 90;
  for (int round = 0; round < 100; ++round) {
    term.Size = (low + high) / 2;
    double expected = 0;
    for (const Response& r : responses) expected += r.Weight * r.At(term.Size).Mean;
    (expected < aim ? low : high) = term.Size;
  }
  double information = 0, squares = 0, squaresZ = 0;
  for (const Response& r : responses) {
    const Moments m = r.At(term.Size);
    const double square = (r.Ordinal - m.Mean) * (r.Ordinal - m.Mean);
    information += r.Weight * m.Variance;
    squares += r.Weight * square;
    squaresZ += r.Weight * square / m.Variance;
  }
  term.StandardError = 1 / std::sqrt(information);
  term.Infit = std::min(squares / information, 9.0);
  term.Outfit = std::min(squaresZ / term.Count, 9.0);
  return term;
}

/// Both tails of Student's t by Simpson's rule: with t = sqrt(n) tan(angle) the density is cos(angle)^(n - 1).
double StudentTails(double t, int n) {
  constexpr double kRightAngle = 1.5707963267948966;
  const auto area = [&](double from) {
    constexpr int kPieces = 400;
    const double h = (kRightAngle - from) / kPieces;
    double sum = 0;
    for (int i = 0; i <= kPieces; ++i)
      sum += (i == 0 || i == kPieces ? 1 : i % 2 == 0 ? 2 : 4) * std::pow(std::max(std::cos(from + i * h), 0.0), n - 1);
    return sum * h / 3;
  };
  return area(std::atan(std::fabs(t) / std::sqrt(n))) / area(0);
}

/// A row of a table of terms as printed.
struct Row {
  /// From the observed score to the outfit.
  std::vector<std::string> Numbers;
  std::string Mark;
  /// Of the elements.
  std::vector<std::string> Measures;
};

using Rows = std::map<Elements, Row>;

/// The rows of the table of a model statement (from 1). Labels are "Element" and a number.
Rows RowsOf(const FinishedAnalysis& run, int statement, std::size_t facets) {
  Rows rows;
  const std::size_t start = run.Report.find("\nTable 13." + NumberText(statement) + ".1 ");
  std::istringstream lines(start == std::string::npos ? "" : run.Report.substr(start + 1));
  int rules = 0;
  for (std::string line; rules < 2 && std::getline(lines, line);) {
    if (line.starts_with("+-")) ++rules;
    if (line.find("Element") == std::string::npos) continue;
    Row row;
    for (char& c : line) {
      if (c == '<' || c == '>') row.Mark += c;
      if (c == '<' || c == '>' || c == '|') c = ' ';
    }
    row.Numbers.resize(11);
    row.Measures.resize(facets);
    Elements key(facets);
    std::istringstream words(line);
    for (std::string& number : row.Numbers) words >> number;
    std::string skipped;
    words >> skipped;
    for (std::size_t i = 0; i < facets; ++i) words >> key[i] >> skipped >> skipped >> row.Measures[i];
    EXPECT_TRUE(words && rows.emplace(key, row).second) << line;
  }
  return rows;
}

/// `slack` on top of what rounding to `decimals` does, or cutting them where the column is too narrow.
void ExpectPrinted(const std::string& printed, int decimals, double value, double slack, std::string_view what) {
  const std::size_t point = printed.find('.');
  const int shown = point == std::string::npos ? 0 : static_cast<int>(printed.size() - point) - 1;
  EXPECT_NEAR(std::stod(printed), value, (shown < decimals ? 1 : 0.5) * std::pow(0.1, shown) + slack + 1e-6) << what;
}

void ExpectRow(const Row& row, const Estimate& term, double direction, double uscale) {
  // What the criteria of convergence leave of a size, in logits, and of a t.
  constexpr double kLeft = 5e-5;
  const double t = term.Size / term.StandardError;
  const double leftOfT = 2 * kLeft / term.StandardError + 1e-4 * std::fabs(t);
  const std::vector<std::tuple<std::string_view, int, double, double>> columns = {
      {"observed score", 0, term.Observed, 1e-5},
      {"expected score", 2, term.Expected, 1e-4},
      {"count", 0, term.Count, 1e-5},
      {"observed less expected", 2, (term.Observed - term.Expected) / term.Count, 1e-4},
      {"size", 4, direction * uscale * term.Size, uscale * kLeft},
      {"standard error", 4, uscale * term.StandardError, uscale * kLeft * (1 + term.StandardError)},
      {"t", 2, direction * t, leftOfT},
      {"degrees of freedom", 0, std::max(term.Count - 1, 1.0), 1e-5},
      {"probability", 4, StudentTails(t, std::stoi(row.Numbers[7])), leftOfT},
      {"infit", 1, term.Infit, 1e-3 * (1 + term.Infit)},
      {"outfit", 1, term.Outfit, 1e-3 * (1 + term.Outfit)}};
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const auto& [what, decimals, value, slack] = columns[i];
    ExpectPrinted(row.Numbers[i], decimals, value, slack, what);
  }
  EXPECT_EQ(row.Mark, term.Mark);
}

/// Compares the table of a model statement (from 1) with the terms found here. Gives the marks of all its rows.
std::string Check(const BiasCase& c, const FinishedAnalysis& run, int statement, const std::vector<int>& biasFacets) {
  EXPECT_TRUE(run.Finished()) << run.Fatal;
  const std::string direction = c.Direction > 0 ? " (higher" : " (lower";
  EXPECT_NE(run.Report.find(direction + " score = higher bias measure)"), std::string::npos);
  const double umean = double{run.A.Settings.Umean};
  const double uscale = double{run.A.Settings.Uscale};
  std::string marks;
  const Rows rows = RowsOf(run, statement, biasFacets.size());
  const Terms terms = TermsOf(c, run, biasFacets);
  EXPECT_EQ(rows.size(), terms.size());
  EXPECT_GT(terms.size(), 9U);
  for (const auto& [key, responses] : terms) {
    SCOPED_TRACE(testing::PrintToString(key));
    const auto found = rows.find(key);
    EXPECT_NE(found, rows.end());
    if (found == rows.end()) continue;
    const Row& row = found->second;
    ExpectRow(row, EstimateOf(responses, c.Adjustment), c.Direction, uscale);
    for (std::size_t i = 0; i < key.size(); ++i)
      ExpectPrinted(row.Measures[i], 4, umean + uscale * run.Measure(biasFacets[i], key[i]), 0, "measure");
    marks += row.Mark;
  }
  return marks;
}

std::string Check(const BiasCase& c, const std::vector<int>& biasFacets) {
  return Check(c, c.Design.Run(), 1, biasFacets);
}

TEST(BiasTerms, SizesErrorsAndFitAgreeWithBisection) {
  std::string marks;
  for (unsigned seed = 1; seed <= 5; ++seed) {
    SCOPED_TRACE(seed);
    const BiasCase ratings({8, 4, 3}, "?B,?,?B,R3", 3, seed);
    marks += Check(ratings, {1, 3});
    const BiasCase ownSteps({12, 4, 5}, "#B,?B,?,R2", 2, seed, 1);
    marks += Check(ownSteps, {1, 2});
    const BiasCase trials({10, 4, 3}, "?B,?B,?,B6", 6, seed);
    marks += Check(trials, {1, 2});
    const BiasCase counts({10, 4, 3}, "?B,?B,?,P", 6, seed);
    marks += Check(counts, {1, 2});

    BiasCase dichotomies({20, 5, 6}, "?,?B,?B,D", 1, seed);
    dichotomies.Design.Settings += "Bias=minus\nUmean=10,2\n";
    dichotomies.Direction = -1;
    marks += Check(dichotomies, {2, 3});

    BiasCase threeOfFour({6, 4, 3, 3}, "?B,?B,?,?B,R4", 4, seed);
    threeOfFour.Facets = {1, 2, 3, 4};
    threeOfFour.Signs = {1, -1, -1, -1};
    marks += Check(threeOfFour, {1, 2, 4});

    // Facet 3 is positive, but compared from the other side.
    BiasCase minus({9, 4, 4}, "?B,?,-?B,R3", 3, seed);
    minus.Design.Settings += "Positive=2,3\n";
    minus.Signs = {-1, 1, -1};
    marks += Check(minus, {1, 3});

    // The lowest category and one in the middle are not used: the others are counted without them, but reported raw.
    BiasCase gaps({9, 4, 4}, "?B,?B,?,R5", 3, seed);
    for (Rating& rating : gaps.Design.Ratings) rating.Response += rating.Response < 2 ? 1 : 2;
    marks += Check(gaps, {1, 2});
  }
  EXPECT_GT(std::count(marks.begin(), marks.end(), '<'), 20);
  EXPECT_GT(std::count(marks.begin(), marks.end(), '>'), 20);
}

// Extreme scores move by a share of the smallest of the term's weights.
TEST(BiasTerms, WeightsOfLinesModelsAndElementsAndTheShareOfXtreme) {
  for (const auto& [xtreme, adjustment] :
       {std::pair<std::string, double>{"", 0.5}, {"Xtreme=0.3,0.2\n", 0.2}, {"Xtreme=0.3,0\n", 0.5}}) {
    std::string marks;
    for (unsigned seed = 11; seed <= 14; ++seed) {
      SCOPED_TRACE(xtreme + std::to_string(seed));
      BiasCase c({8, 4, 3}, "\n1-5B,?B,?,R2,1.5\n?,?,?,D", 1, seed);
      c.Design.Settings += xtreme;
      c.Adjustment = adjustment;
      c.SecondFrom = 6;
      c.ModelWeights = {1.5, 1};
      std::mt19937 random(seed);
      for (Rating& rating : c.Design.Ratings) {
        if (rating.Elements[0] < 6) rating.Response += static_cast<int>(random() % 2);
        rating.Replication = 0.5 * (1 + static_cast<double>(random() % 5));
      }
      c.Weigh(1, 2, 3);
      c.Weigh(2, 1, 0.25);
      c.Weigh(3, 3, 2.5);
      marks += Check(c, {1, 2});
    }
    EXPECT_NE(marks.find('<'), std::string::npos);
    EXPECT_NE(marks.find('>'), std::string::npos);
  }
}

TEST(BiasTerms, EachSetOfMarksIsARunNumberedByItsFirstStatementOverAllData) {
  for (unsigned seed = 21; seed <= 23; ++seed) {
    SCOPED_TRACE(seed);
    BiasCase c({10, 4, 4}, "\n1-6B,?B,?,R2\n?,?B,?B,R2\n?B,?B,?,R2\n?B,?,?,R2", 2, seed);
    c.SecondFrom = 7;
    const FinishedAnalysis run = c.Design.Run();
    Check(c, run, 1, {1, 2});
    Check(c, run, 2, {2, 3});
    for (const std::string table : {"9", "11", "12", "13", "14"}) {
      EXPECT_TRUE(run.Reports("Table " + table + ".1") && run.Reports("Table " + table + ".2")) << table;
      EXPECT_FALSE(run.Reports("Table " + table + ".3") || run.Reports("Table " + table + ".4")) << table;
    }
    c.Design.Models = "\n1-6,?B,?,R2\n?B,?B,?B,R2";
    const FinishedAnalysis second = c.Design.Run();
    Check(c, second, 2, {1, 2, 3});
    EXPECT_FALSE(second.Reports("Table 13.1"));
  }
}

TEST(BiasTerms, ElementsAreFoundInTheColumnsOfTheirFacets) {
  for (unsigned seed = 31; seed <= 34; ++seed) {
    SCOPED_TRACE(seed);
    BiasCase moved({8, 4, 3}, "?,?B,?B,R3", 3, seed);
    moved.Design.Settings += "Entered=2,0,3,1\n";
    moved.Facets = {2, 0, 3, 1};
    moved.Signs = {-1, 0, -1, 1};
    for (Rating& rating : moved.Design.Ratings)
      rating.Elements = {rating.Elements[1], 99, rating.Elements[2], rating.Elements[0]};
    Check(moved, {1, 3});

    // Facet 2 stands in two columns: the last one with an element decides.
    BiasCase twice({12, 5, 5}, "?B,?B,?B,R3", 3, seed);
    twice.Design.Settings += "Entered=1,2,2\n";
    twice.Design.Counts = {12, 5};
    twice.Facets = {1, 2, 2};
    for (std::size_t i = 0; i < twice.Design.Ratings.size(); ++i) {
      Elements& elements = twice.Design.Ratings[i].Elements;
      if (i % 4 == 0 || i % 21 == 0) elements[2] = 0;
      if (i % 7 == 0) elements[1] = 0;
    }
    Check(twice, {1, 2});
  }
}

TEST(BiasTerms, WithoutTwoMarkedFacetsThereIsNone) {
  const auto noBias = [](const Design& design) {
    const FinishedAnalysis run = design.Run();
    for (const std::string table : {"9", "10", "11", "12", "13", "14"})
      if (run.Reports("Table " + table + ".")) return false;
    return run.Finished() && run.Reports("Table 8.1");
  };
  Design design = SimulatedDesign({8, 4, 4}, 3, 1);
  EXPECT_TRUE(noBias(design));
  design.Models = "\n1-3,?B,?,R3\n?,?,?B,R3";
  EXPECT_TRUE(noBias(design));
  design.Models = "?,?B,?B,R3";
  EXPECT_FALSE(noBias(design));
  design.Settings += "Bias=omit\n";
  EXPECT_TRUE(noBias(design));
  // The two positions are one facet.
  design.Settings = std::string(kTight) + "Entered=1,2,2\n";
  design.Counts = {8, 4};
  EXPECT_TRUE(noBias(design));
}

TEST(BiasTerms, TheOrderOfTheDataDoesNotMatter) {
  // A digit, and what two runs of the main analysis leave; scores and counts are the same.
  const std::vector<double> tolerances = {0, 0.01, 0, 0.01, 0.0012, 0.0012, 0.011, 0, 0.0012, 0.1, 0.1};
  for (unsigned seed = 41; seed <= 44; ++seed) {
    SCOPED_TRACE(seed);
    BiasCase c({8, 4, 3}, "?B,?B,?,R3", 3, seed);
    const Rows rows = RowsOf(c.Design.Run(), 1, 2);
    std::mt19937 random(seed);
    for (std::size_t i = c.Design.Ratings.size(); i > 1; --i)
      std::swap(c.Design.Ratings[i - 1], c.Design.Ratings[random() % i]);
    const Rows again = RowsOf(c.Design.Run(), 1, 2);
    ASSERT_EQ(rows.size(), again.size());
    EXPECT_GT(rows.size(), 20U);
    for (const auto& [key, row] : rows) {
      const Row& other = again.at(key);
      EXPECT_EQ(row.Mark, other.Mark);
      for (std::size_t i = 0; i < tolerances.size(); ++i)
        EXPECT_NEAR(std::stod(row.Numbers[i]), std::stod(other.Numbers[i]), tolerances[i] + 1e-9);
    }
  }
}

}  // namespace
}  // namespace tessaly
