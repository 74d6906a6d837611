// Tables of bias terms against sizes found by bisection, term by term, and what follows from them by definition.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "fixture/analysis_fixture.h"
#include "fixture/design.h"

namespace tessaly {
namespace {

/// A design whose bias terms are reported, and how its data are to be understood.
struct Case {
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
  double Adjustment = 0.5;
  double Direction = 1;
  double Uscale = 1;

  Case(std::vector<int> counts, const std::string& models, int top, unsigned seed, int ownSteps = 0)
      : Design(SimulatedDesign(counts, top, seed, 0.1, ownSteps)), OwnSteps(ownSteps) {
    Design.Models = models;
    Design.Settings += "Arrange=N\nUmean=0,1,4\n";
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
  /// By category, what its exponent lacks to category times measure.
  std::vector<double> Steps;
  bool Counts = false;

  Moments At(double bias) const {
    std::vector<double> p;
    double total = 0;
    for (std::size_t k = 0; k < Steps.size(); ++k) {
      p.push_back(std::exp(static_cast<double>(k) * (Measure + bias) - Steps[k]));
      total += p.back();
    }
    Moments moments;
    double squares = 0;
    for (std::size_t k = 1; k < p.size(); ++k) {
      moments.Mean += static_cast<double>(k) * p[k] / total;
      if (k <= static_cast<std::size_t>(Top)) squares += static_cast<double>(k * k) * p[k] / total;
    }
    if (Counts) moments.Mean = std::exp(Measure + bias);
    moments.Variance = squares - moments.Mean * moments.Mean;
    return moments;
  }
};

/// Fills in what the scale of the cell says of a response.
void PutOnScale(const FinishedAnalysis& run, CellNumber number, Response& response) {
  const ModelCell& cell = run.A.Models.Cells[number];
  const ModelType type = run.A.Models.Statements[cell.CellModel].ModelType;
  const ScaleNumber scale = cell.CellScale;
  response.Top = run.A.Scales.Scales[scale].ScaleTopCategory;
  response.Counts = type == ModelType::Poisson;
  response.Ordinal =
      type == ModelType::RatingScale ? run.A.Scales.CategoryOrdinal(scale, response.Raw) : response.Raw;
  response.Steps = {0};
  for (int k = 1; k <= response.Top * (response.Counts ? 2 : 1); ++k) {
    const double step = response.Counts                                               ? std::log(k)
                        : type == ModelType::Binomial && response.Top > 1 ? std::log(k / (response.Top - k + 1.0))
                                                                          : run.Steps(scale)[std::size_t(k - 1)];
    response.Steps.push_back(response.Steps.back() + step);
  }
}

using Elements = std::vector<int>;
using Terms = std::map<Elements, std::vector<Response>>;

/// The responses of each combination of elements. Extreme elements leave theirs out.
Terms TermsOf(const Case& c, const FinishedAnalysis& run, const std::vector<int>& biasFacets) {
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
    PutOnScale(run, cell, response);
    terms[key].push_back(response);
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
  double low = -30, high = 30;
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

/// A row of a table of terms, its numbers as printed.
struct Row {
  std::string Observed, Expected, Count, Difference, Size, Error, T, Freedom, Probability, Infit, Outfit, Mark;
  std::vector<std::string> Measures;
};

/// The rows of the table with this number. Labels are one word.
std::map<Elements, Row> RowsOf(const std::string& report, const std::string& table, std::size_t facets) {
  std::map<Elements, Row> rows;
  std::istringstream lines(report.substr(std::min(report.find("\nTable " + table + " ") + 1, report.size())));
  bool inTable = false;
  for (std::string line; std::getline(lines, line) && (line.starts_with("Table " + table) || !line.starts_with("Table "));) {
    if (line.starts_with("+-") && std::exchange(inTable, true)) break;
    if (std::count(line.begin(), line.end(), '|') != 5) continue;
    const std::string last = line.substr(line.rfind('|', line.size() - 3));
    if (last.find_first_of("0123456789") != last.find_first_not_of("| ")) continue;
    Row row;
    for (char& c : line) {
      if (c == '<' || c == '>') row.Mark += c;
      if (c == '|' || c == '<' || c == '>') c = ' ';
    }
    std::istringstream words(line);
    words >> row.Observed >> row.Expected >> row.Count >> row.Difference >> row.Size >> row.Error >> row.T >>
        row.Freedom >> row.Probability >> row.Infit >> row.Outfit;
    std::string number, word, measure;
    Elements key;
    words >> word;
    for (std::size_t facet = 0; facet < facets; ++facet) {
      words >> number >> word >> word >> measure;
      key.push_back(std::stoi("0" + number));
      row.Measures.push_back(measure);
    }
    EXPECT_TRUE(words && rows.emplace(key, row).second) << line;
  }
  return rows;
}

double HalfDigit(const std::string& printed) {
  const std::size_t point = printed.find('.');
  return 0.500001 * std::pow(0.1, point == std::string::npos ? 0.0 : double(printed.size() - point - 1));
}

void ExpectPrinted(const std::string& printed, double value, double slack, const char* what) {
  EXPECT_NEAR(std::stod(printed), value, HalfDigit(printed) + slack) << what;
}

/// What the criteria of convergence leave of a size, in logits.
constexpr double kLeft = 5e-5;

void ExpectRow(const Row& row, const Estimate& term, const Case& c) {
  const double t = std::clamp(term.Size / term.StandardError, -99.99, 99.99);
  const double slackT = 2 * kLeft / term.StandardError + 1e-4 * std::fabs(t);
  ExpectPrinted(row.Observed, term.Observed, 1e-5, "observed score");
  ExpectPrinted(row.Expected, term.Expected, 1e-4, "expected score");
  ExpectPrinted(row.Count, term.Count, 1e-5, "count");
  ExpectPrinted(row.Difference, (term.Observed - term.Expected) / term.Count, 1e-4, "observed less expected");
  ExpectPrinted(row.Size, c.Direction * c.Uscale * term.Size, c.Uscale * kLeft, "size");
  ExpectPrinted(row.Error, c.Uscale * term.StandardError, c.Uscale * kLeft * (1 + term.StandardError), "error");
  ExpectPrinted(row.T, c.Direction * t, slackT, "t");
  ExpectPrinted(row.Freedom, std::max(term.Count - 1, 1.0), 1e-5, "degrees of freedom");
  ExpectPrinted(row.Probability, StudentTails(t, std::stoi(row.Freedom)), slackT, "probability");
  ExpectPrinted(row.Infit, term.Infit, 1e-3 * (1 + term.Infit), "infit");
  ExpectPrinted(row.Outfit, term.Outfit, 1e-3 * (1 + term.Outfit), "outfit");
  EXPECT_EQ(row.Mark, term.Mark);
}

/// Compares a table of a finished analysis with the terms found here. Gives the marks of all its rows.
std::string Check(const Case& c, const FinishedAnalysis& run, int statement, const std::vector<int>& biasFacets) {
  std::string marks;
  EXPECT_TRUE(run.Finished()) << run.Fatal;
  const std::map<Elements, Row> rows =
      RowsOf(run.Report, "13." + NumberText(statement) + ".1", biasFacets.size());
  const Terms terms = TermsOf(c, run, biasFacets);
  EXPECT_EQ(rows.size(), terms.size());
  EXPECT_GT(terms.size(), 4U);
  for (const auto& [key, responses] : terms) {
    SCOPED_TRACE(testing::PrintToString(key));
    const auto row = rows.find(key);
    if (row == rows.end()) {
      ADD_FAILURE() << "no row";
      continue;
    }
    ExpectRow(row->second, EstimateOf(responses, c.Adjustment), c);
    marks += row->second.Mark;
    for (std::size_t i = 0; i < key.size(); ++i)
      ExpectPrinted(row->second.Measures[i],
                    double{run.A.Settings.Umean} + c.Uscale * run.Measure(biasFacets[i], key[i]), 1e-5, "measure");
  }
  return marks;
}

/// Nothing of Tables 9 to 14.
bool NoBias(const FinishedAnalysis& run) {
  for (const char* table : {"9", "10", "11", "12", "13", "14"})
    if (run.Reports("Table " + std::string(table) + ".")) return false;
  return run.Finished() && run.Reports("Table 8.1");
}

TEST(BiasTerms, SizesErrorsAndFitAgreeWithBisection) {
  std::string marks;
  for (unsigned seed = 1; seed <= 4; ++seed) {
    SCOPED_TRACE(seed);
    const Case ratings({8, 4, 3}, "?B,?,?B,R3", 3, seed);
    marks += Check(ratings, ratings.Design.Run(), 1, {1, 3});

    Case dichotomies({20, 5, 6}, "?,?B,?B,D", 1, seed);
    dichotomies.Design.Settings += "Bias=minus\nUmean=10,2,4\n";
    dichotomies.Direction = -1;
    dichotomies.Uscale = 2;
    const FinishedAnalysis run = dichotomies.Design.Run();
    Check(dichotomies, run, 1, {2, 3});
    EXPECT_TRUE(run.Reports("Bias/Interaction: 2. Facet 2, 3. Facet 3 (lower score = higher bias measure)"));

    const Case steps({12, 4, 5}, "#B,?B,?,R2", 2, seed, 1);
    Check(steps, steps.Design.Run(), 1, {1, 2});

    Case four({6, 4, 3, 3}, "?B,?B,?,?B,R4", 4, seed);
    four.Facets = {1, 2, 3, 4};
    four.Signs = {1, -1, -1, -1};
    marks += Check(four, four.Design.Run(), 1, {1, 2, 4});

    Case trials({10, 4, 3}, "?B,?B,?,B6", 6, seed);
    Check(trials, trials.Design.Run(), 1, {1, 2});
    Case counts({10, 4, 3}, "?B,?B,?,P", 6, seed);
    Check(counts, counts.Design.Run(), 1, {1, 2});
  }
  EXPECT_NE(marks.find('<'), std::string::npos);
  EXPECT_NE(marks.find('>'), std::string::npos);
}

}  // namespace
}  // namespace tessaly
