// Simulated data: that the same specification reads them, and that they come from the model.
#include "output/simulated_data.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "estimate/prepare_scales.h"
#include "fixture/design.h"
#include "output/data_line_writer.h"
#include "output/random_draws.h"
#include "output/response_texts.h"
#include "unit/output/stored_data.h"

namespace tessaly {
namespace {

TEST(RandomDraws, AsPublished) {
  RandomDraws draws({1, 2, 3, 4});
  for (const std::uint64_t bits : {11520ULL, 0ULL, 1509978240ULL, 1215971899390074240ULL, 1216172134540287360ULL})
    EXPECT_EQ(draws.Bits(), bits);
  // SplitMix64 from 1234567.
  RandomDraws seeded(1234567);
  RandomDraws spread({6457827717110365317U, 3203168211198807973U, 9817491932198370423U, 4593380528125082431U});
  for (int i = 0; i < 10; ++i) EXPECT_EQ(seeded.Bits(), spread.Bits());
}

/// The actual responses of `data` as the writer writes them.
std::string Rewritten(const std::string& specification, const std::string& data) {
  StoredData stored(specification, data);
  return TextWritten([&](TextOutput& output) {
    DataLineWriter lines(stored.A, output);
    ResponseTexts texts(stored.A);
    std::vector<ElementIndex> elements(static_cast<std::size_t>(stored.A.Fields.ActiveFacetCount()));
    for (std::int64_t number = 1; number <= stored.Store->ValidResponses(); ++number) {
      const ObservationRecord record = stored.Store->Read(number, elements.data());
      const ModelCell& cell = stored.A.Models.Cells[record.ObsCell];
      lines.Write(
          {cell.CellModel, record.Replication, elements.data(), texts.TextOf(cell.CellScale, record.ObsResponse), ""});
    }
    lines.Finish();
  });
}

TEST(DataLineWriter, TheSameSpecificationReadsTheSameObservations) {
  struct Case {
    std::string Settings;
    std::string Data;
    std::string Lines;
  };
  const std::string recode = "Rating scale=S,R3,G,O\n0,a,,,1+x\n1,b,,,0\n2,c,,,5-7\n3,d,,,9\n*\n";
  const Case cases[] = {
      // References to no element, and a weight.
      {"Models=?,?,?,R9", "1,2,11,3\nR.5,4,0,13,9\n", "1,2,11,3\nR.5,4,0,13,9\n"},
      {"Replication=1\nModels=?,?,?,R9", "1,2,11,3\n2,2,13,1\n", "11,1,2,11,3\n2,2,13,1\n"},
      {"Replication=W\nModels=?,?,?,R9", "W2000000,1,2,11,3\nW0.001,1,3,11,3\n",
       "W2000000,1,2,11,3\nW0.001,1,3,11,3\n"},
      // Columns that no facet has, or no statement looks at.
      {"Entered=1,0,3,2\nModels=?,?,X,R9", "1,zz,13,2-2,3\n", "1,,13,,3\n"},
      // Elements by label, and no element by label.
      {"Delements=3L,NL\nModels=?,?,?,R9", "1,2,Ann,3\n4,5,Bo,4\n", "1,2,Ann,3\n4,5,Bo,4\n"},
      {"Delements=3LN\nModels=?,?,?,R9", "1,2,11,3\n4,5,Bo,4\n", "1,2,11,3\n4,5,13,4\n"},
      // A range that stands on no line: places for all of its elements.
      {"Dvalues=2,4-1\nModels=?,?,?,R9", "1,11,6,,7,8\n1,13,1,2,3,4\n2,13,,,5,\n",
       "1,11,6,,7,8\n1,13,1,2,3,4\n2,13,,,5,\n"},
      {"Dvalues=2,1-3\nModels=?,X,?,R9", "1,11,6,,7\n", "1,11,6,7,\n"},
      // A statement that ignores items, as long as the one in front of it does not take them.
      {"Dvalues=2,1-4\nModels=\n?,1-2,?,R9\n?,X,?,R8\n*", "1,11,6,5,7,4\n2,11,,,,3\n", "1,11,6,5,7,4\n2,11,,,3,\n"},
      // A fixed element, and one that the label of another one holds.
      {"Dvalues=\n1,2,1,1\n3,13\n*\nModels=?,?,?,R9", "3,4\n5,2\n", "3,4\n5,2\n"},
      {"Null=-1\nModels=\n1,X,?,R9\n?,?,?,R8\n*", "1,9,11,3\n2,2,11,4\n", "1,1,11,3\n2,2,11,4\n"},
      // Recoding turns 0 and 1 around; 5 is the lowest of its range, and no code for a missing response.
      {recode + "Missing=5\nModels=?,?,?,S", "1,2,11,x\n1,3,11,0\n1,4,11,7\n1,5,11,9\n1,6,11,3\n",
       "1,2,11,1\n1,3,11,0\n1,4,11,2\n1,5,11,3\n1,6,11,3\n"},
      {"Missing=0\nRating scale=S,D,G,O\n0,a,,,no\n1,b,,,yes\n*\nModels=?,?,?,S", "1,2,11,no\n1,3,11,yes\n",
       "1,2,11,no\n1,3,11,1\n"},
      {"Models=?,?,?,D3", "1,2,11,2\n1,3,11,8\n", "1,2,11,0\n1,3,11,3\n"},
      {"Models=?,#,?,R3", "1,2,11,2\n1,3,11,1\n", "1,2,11,2\n1,3,11,1\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Settings + " | " + c.Data);
    const std::string specification = ThreeFacets(c.Settings);
    const std::string lines = Rewritten(specification, c.Data);
    const DataRun first(specification, c.Data);
    const DataRun second(specification, lines);
    EXPECT_EQ(second.Observations, first.Observations);
    EXPECT_EQ(second.Cells, first.Cells);
    EXPECT_EQ(second.Error, first.Error);
    EXPECT_EQ(lines, c.Lines);
  }
}

std::string SimulatedText(bool match, std::int32_t seed, const Analysis& analysis, ObservationStore& store) {
  User nobody;
  Console silence;
  RunControl control(nobody);
  ResponseKernel kernel(analysis.Scales, 80);
  return TextWritten(
      [&](TextOutput& output) { WriteSimulatedData(match, seed, analysis, store, kernel, control, silence, output); });
}

/// A finished analysis and its observations.
struct FinishedRun {
  explicit FinishedRun(const std::string& specification, const std::string& data)
      : Finished(RunSpecification(specification + "Data=data.txt\n", {{"data.txt", data}})),
        Stored(specification, data) {
    EXPECT_TRUE(Finished.Finished());
  }

  std::string Simulated(bool match, std::int32_t seed = 1) {
    return SimulatedText(match, seed, Finished.A, *Stored.Store);
  }

  FinishedAnalysis Finished;
  StoredData Stored;
};

/// Lines without comments.
std::vector<std::string> DataLines(const std::string& text) {
  std::vector<std::string> lines;
  for (const std::string_view line : SplitAt(text, '\n'))
    if (!line.empty() && line.front() != ';') lines.emplace_back(line);
  return lines;
}

/// Probabilities of the rating scale model, by definition.
std::vector<double> Probabilities(double measure, const std::vector<double>& steps) {
  std::vector<double> p{1};
  double exponent = 0;
  double total = 1;
  for (const double step : steps) {
    exponent += measure - step;
    p.push_back(std::exp(exponent));
    total += p.back();
  }
  for (double& share : p) share /= total;
  return p;
}

constexpr int kPersons = 300;

/// 101,000 responses of 300 persons, 15 items, 25 raters.
class SimulatedRatings : public testing::Test {
 protected:
  SimulatedRatings() : Source(SimulatedDesign({kPersons, 15, 25}, 3, 5)), Run(Specification(), Source.DataLines()) {}

  std::string Specification() const {
    const std::string text = Source.Specification();
    return text.substr(0, text.rfind("Data="));
  }

  Design Source;
  FinishedRun Run;
};

TEST_F(SimulatedRatings, FollowTheModelAndGiveTheMeasuresBack) {
  const std::string text = Run.Simulated(true);
  EXPECT_EQ(text.substr(0, text.find("; seed")),
            "; Simulated data matching the empirical data structure\n; \n; matching: data.txt\n");
  EXPECT_EQ(text, Run.Simulated(true));
  EXPECT_NE(text, Run.Simulated(true, 2));
  const FinishedAnalysis& first = Run.Finished;
  const std::vector<std::string> lines = DataLines(text);
  ASSERT_EQ(lines.size(), Source.Ratings.size());

  const std::vector<double> steps = first.Steps(first.ScaleOf());
  std::vector<double> count(4), expected(4), variance(4);
  std::map<std::pair<int, int>, std::pair<double, double>> residuals;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::vector<int>& e = Source.Ratings[i].Elements;
    const std::string head = BareText(e[0]) + "," + BareText(e[1]) + "," + BareText(e[2]) + ",";
    ASSERT_EQ(lines[i], head + lines[i][head.size()] + " ; " + BareText(Source.Ratings[i].Response));
    const int response = lines[i][head.size()] - '0';
    const auto p = Probabilities(first.Measure(1, e[0]) - first.Measure(2, e[1]) - first.Measure(3, e[2]), steps);
    double mean = 0, square = 0;
    for (std::size_t k = 0; k < p.size(); ++k) {
      expected[k] += p[k];
      variance[k] += p[k] * (1 - p[k]);
      mean += double(k) * p[k];
      square += double(k * k) * p[k];
    }
    ++count[static_cast<std::size_t>(response)];
    for (int facet = 1; facet <= 3; ++facet) {
      auto& [residual, sum] = residuals[{facet, e[static_cast<std::size_t>(facet - 1)]}];
      residual += response - mean;
      sum += square - mean * mean;
    }
  }
  for (std::size_t k = 0; k < 4; ++k) EXPECT_LT(std::pow(count[k] - expected[k], 2) / variance[k], 3.5 * 3.5) << k;
  double chiSquare = 0;
  for (const auto& [element, sums] : residuals) chiSquare += sums.first * sums.first / sums.second;
  const auto elements = static_cast<double>(residuals.size());
  EXPECT_NEAR(chiSquare, elements, 3.5 * std::sqrt(2 * elements));

  const FinishedAnalysis second = RunSpecification(Source.Specification(), {{"data.txt", text}});
  double sumX = 0, sumY = 0, sumXX = 0, sumXY = 0, sumYY = 0, squares = 0;
  for (int person = 1; person <= kPersons; ++person) {
    const double x = first.Measure(1, person);
    const double y = second.Measure(1, person);
    sumX += x, sumY += y, sumXX += x * x, sumXY += x * y, sumYY += y * y;
    squares += std::pow((y - x) / second.StandardError(1, person), 2);
  }
  const double sxx = sumXX - sumX * sumX / kPersons, syy = sumYY - sumY * sumY / kPersons,
               sxy = sumXY - sumX * sumY / kPersons;
  EXPECT_GT(sxy / std::sqrt(sxx * syy), 0.98);
  EXPECT_NEAR(sxy / sxx, 1, 0.05);
  EXPECT_NEAR(sumX / kPersons, sumY / kPersons, 0.05);
  EXPECT_NEAR(squares / kPersons, 1, 3.5 * std::sqrt(2.0 / kPersons));
}

TEST(SimulatedData, RawCategoriesExtremeElementsAndPairsOfOneFacet) {
  // Raw categories 2, 4 and 5 of a scale with recoding; person 5 has the highest score.
  std::string data;
  for (int person = 1; person <= 5; ++person)
    for (int item = 1; item <= 9; ++item)
      data += BareText(person) + "," + BareText(item) + ",11," +
              (person == 5 ? "5" : std::string(1, "2b5"[(person + item) % 3])) + "\n";
  FinishedRun run(ThreeFacets("Rating scale=S,R6,G,O\n2,Low\n4,Mid,,,b\n1,x,,,4\n*\nModels=?,?,?,S"), data);
  EXPECT_EQ(run.Finished.Status(1, 5), ElementStatus::Maximum);
  std::map<char, int> counts;
  std::size_t high = 0;
  const auto lines = DataLines(run.Simulated(true));
  ASSERT_EQ(lines.size(), 45U);
  for (const std::string& line : lines) {
    ++counts[line[7]];
    if (line[0] == '5' && line[7] == '5') ++high;
  }
  EXPECT_EQ(counts['2'] + counts['b'] + counts['5'], 45);
  EXPECT_GT(std::min({counts['2'], counts['b'], counts['5']}), 0);
  EXPECT_GE(high, 7U);

  // Players who meet each other, and one who meets himself: he is named on the line.
  FinishedRun pairs("Facets=1\nEntered=1,1\nModels=?,-?,D\nLabels=\n1,Players\n1-3\n*\n",
                    "1,2,1\n2,1,1\n1,3,1\n3,1,0\n2,3,1\n3,2,1\n1,1,1\n3,3,0\n");
  for (const std::string& line : DataLines(pairs.Simulated(true))) EXPECT_NE(line.front(), '0') << line;
  const auto crossed = DataLines(pairs.Simulated(false));
  ASSERT_EQ(crossed.size(), 6U);
  EXPECT_EQ(crossed[0].substr(0, 4), "1,2,");
  EXPECT_EQ(crossed[5].substr(0, 4), "3,2,");
}

TEST(SimulatedData, FullyCrossed) {
  // Item 1 has no raters. Raters 11 and 13 are used, item 9 and person 5 are not; item 4 is not scored.
  std::string data;
  for (int person = 1; person <= 4; ++person) {
    data += BareText(person) + ",1,0," + BareText(person % 2) + "\n" + BareText(person) + ",4,11,1\n";
    for (int item = 2; item <= 3; ++item)
      data += BareText(person) + "," + BareText(item) + "," + BareText(person % 2 == 0 ? 11 : 13) + "," +
              BareText((person + item * person / 3) % 3) + "\n";
  }
  const std::string specification = ThreeFacets("Models=\n?,1,X,D\n?,4,?,M\n?,#,?,R2\n*");
  FinishedRun run(specification, data);
  const std::string text = run.Simulated(false);
  EXPECT_EQ(text.find("; Simulated fully-crossed complete data\n"), 0U);
  std::vector<std::string> expected;
  for (int person = 1; person <= 4; ++person) {
    expected.push_back(BareText(person) + ",1,0,");
    for (const char* rest : {",2,11,", ",2,13,", ",3,11,", ",3,13,"}) expected.push_back(BareText(person) + rest);
  }
  std::vector<std::string> heads;
  for (const std::string& line : DataLines(text)) {
    heads.push_back(line.substr(0, line.rfind(',') + 1));
    EXPECT_EQ(line.size(), heads.back().size() + 1) << line;
  }
  EXPECT_EQ(heads, expected);
  const DataRun again(specification, text);
  EXPECT_EQ(again.Observations.size(), expected.size());
  EXPECT_EQ(again.A.Models.UnmatchedResponses + again.A.Counters.InvalidCount, 0);

  // A facet in the place of a range, another one derived, a third with line numbers.
  StoredData derived(
      "Facets=4\nDvalues=\n2,1-3\n3,1,1,1\n4,$L\n*\nModels=?,?,?,?,R1\nLabels=\n1,P\n1,1a\n2,2b\n*\n2,I\n"
      "1-3\n*\n3,K\n1-2\n*\n4,L\n1-2\n*\n",
      "1,0,1,\n2,1,,0\n");
  PrepareScales(derived.A.Models, derived.A.Settings, derived.A.Scales);
  const std::string lines = SimulatedText(false, 1, derived.A, *derived.Store);
  EXPECT_NE(lines.find("; the elements of data column 4 stand on these lines: please remove its Dvalues= entry"),
            std::string::npos);
  heads.clear();
  for (const std::string& line : DataLines(lines))
    heads.push_back(line.substr(0, 4) + BareText(std::int64_t(line.size())));
  EXPECT_EQ(heads, (Texts{"1,1,9", "1,2,9", "2,1,9", "2,2,9"}));
}

TEST(SimulatedData, TooManyCombinationsAreRefusedBeforeAnythingIsWritten) {
  std::string data;
  for (int element = 1; element <= 500; ++element) {
    const std::string number = BareText(element) + ",";
    data += number + number + number + "1\n";
  }
  StoredData stored("Facets=3\nLabels=\n1,A\n1-500\n*\n2,B\n1-500\n*\n3,C\n1-500\n*\n", data);
  EXPECT_EQ(TextWritten([&](TextOutput& output) {
              User nobody;
              RunControl control(nobody);
              ResponseKernel kernel(stored.A.Scales, 80);
              EXPECT_THROW(WriteSimulatedData(false, 1, stored.A, *stored.Store, kernel, control, stored.Said, output),
                           Halt);
            }),
            "");
}

}  // namespace
}  // namespace tessaly
