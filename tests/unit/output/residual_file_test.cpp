#include "output/residual_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "estimate/prepare_scales.h"
#include "fixture/design.h"
#include "support/number_text.h"
#include "unit/output/stored_data.h"

namespace tessaly {
namespace {

/// ln 3: odds of 3 to 1.
constexpr float kLn3 = 1.0986123F;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
    lines.push_back(text.substr(start, end - start));
  EXPECT_EQ(start, text.size());
  return lines;
}

/// Facet 1: Ann ln 3, Bob 0, Max 4 (maximum), Zoe unobserved. Facet 2, which is subtracted: item 5 0, item 6 ln 3, item
/// 7 -4 (minimum). The second data column has no facet.
class ResidualFile : public testing::Test {
 protected:
  void Read(const std::string& settings, const std::string& data) {
    stored_.emplace("Facets=2\nEntered=1,0,2\n" + settings +
                        "Labels=\n1,Candidates\n1,Ann\n2,Bj\xc3\xb8rn Bj\xc3\xb8rnsson\n3,Max\n4,Zoe\n*\n"
                        "2,Items\n5\n6\n7,Easy\n*\n",
                    data);
    A = std::move(stored_->A);
    PrepareScales(A.Models, A.Settings, A.Scales);
    // The reader of specifications would trim them.
    A.Elements.ElementLabel[{5}] = "=5";
    A.Elements.ElementLabel[{6}] = "say \"so\"";
    Set(1, kLn3);
    Set(2, 0);
    Set(3, 4, ElementStatus::Maximum);
    Set(4, 1, ElementStatus::Unobserved);
    Set(5, 0);
    Set(6, kLn3);
    Set(7, -4, ElementStatus::Minimum);
  }

  void Set(std::int32_t element, float measure, ElementStatus status = ElementStatus::Active) {
    A.Elements.ElementMeasure[{element}] = measure;
    A.Elements.ElementStatus[{element}] = status;
  }

  std::vector<std::string> Write(ResidualRows rows, OutputDestination destination = OutputDestination::Plain) {
    return LinesOf(TextWritten([&](TextOutput& file) {
      ResponseKernel kernel(A.Scales, A.Settings.HardwareExponent);
      RunControl control(Watcher);
      Finished = WriteResidualFile(rows, destination, A, *stored_->Store, kernel, control, stored_->Said, file);
      EXPECT_FALSE(control.FastForward);
    }));
  }

  Analysis A;
  DataUser Watcher;
  bool Finished = false;

 private:
  std::optional<StoredData> stored_;
};

constexpr std::string_view kData =
    "1,9,5,1\n"
    "R2.5,2,9,6,0\n"
    "3,9,5,1\n"
    "4,9,5,0\n"
    "0,9,6,1\n";

// P is 3/4, 1/4, 1 / (1 + exp(-4)) and 1/4; V is P (1 - P).
TEST_F(ResidualFile, AllFieldsBetweenDelimiters) {
  Read("Umean=50,10\nCSV=Semicolon\nModels=?,?,D\n", std::string(kData));
  A.Settings.ResponseFields[11] = '3';
  const std::vector<std::string> expected{
      "Obs;Stp;Exp;Res;Var;StRes;Wt;LProb;Measure;Displ;Status;1E;0E;2E;1M;0M;2M;Candidates;;Items",
      "1;1;.750;.250;.188;.577;1.000;-.288;60.986;13.333;1;1;0;5;60.986;0;50.000;Ann;;=5",
      "0;0;.250;-.250;.188;-.577;2.500;-.288;39.014;-13.333;1;2;0;6;50.000;0;60.986;Bj\xc3\xb8rn Bj\xc3\xb8rnsson;;"
      "\"say \"\"so\"\"\"",
      "1;1;.982;.018;.018;.135;1.000;-.018;90.000;10.183;2;3;0;5;90.000;0;50.000;Max;;=5",
      "0;0;.000;.000;.000;.000;.000;.000;.000;.000;-2;4;0;5;60.000;0;50.000;Zoe;;=5",
      "1;1;.250;.750;.188;1.732;1.000;-1.386;39.014;40.000;1;0;0;6;0;0;60.986;;;\"say \"\"so\"\"\"",
  };
  EXPECT_EQ(Write(ResidualRows::All), expected);
  EXPECT_TRUE(Finished);
}

TEST_F(ResidualFile, FixedFieldsInTheOrderOfTheRow) {
  Read("Models=?,?,D\n", std::string(kData));
  A.Settings.NullElement = 99;
  A.Settings.ResponseFields = "NYNYNNNNNYYxNYN";
  const std::vector<std::string> plain{
      "       Stp       Res     Displ        1E        0E        2E Candidates          Items     ",
      "         1       .25      1.33         1        99         5 Ann                 =5       ",
      "         0      -.25     -1.33         2        99         6 Bj\xc3\xb8rn Bj\xc3\xb8           say \"so\" ",
      "         1       .02      1.02         3        99         5 Max                 =5       ",
      "         1       .75      4.00        99        99         6                     say \"so\" ",
  };
  EXPECT_EQ(Write(ResidualRows::Used), plain);
  A.Settings.QuoteMark = "'";
  EXPECT_EQ(Write(ResidualRows::Used).front(),
            "     'Stp'     'Res'   'Displ'      '1E'      '0E'      '2E' 'Candidat'''        'Items'   ");
  EXPECT_EQ(Write(ResidualRows::Used, OutputDestination::Spreadsheet)[2],
            "0\t-.25\t-1.33\t2\t99\t6\t'Bj\xc3\xb8rn Bj\xc3\xb8rnsson'\t\t'say \"so\"'")
      << "no fixed fields for spreadsheets";
  A.Settings.HeadingLinesOption = false;
  EXPECT_EQ(Write(ResidualRows::Used).front(), plain[1]);
  EXPECT_EQ(Write(ResidualRows::Used, OutputDestination::R).size(), plain.size());
  A.Settings.ResponseFields = "NNNNNNNNNNN2NNN";
  EXPECT_TRUE(Write(ResidualRows::All, OutputDestination::R).empty());
}

TEST_F(ResidualFile, LabelsForSpreadsheets) {
  Read("CSV=Tab\nQM=Double\nModels=?,?,D\n", std::string(kData));
  A.Settings.ResponseFields = "NNNNNNNNNNY2NNN";
  A.Facets[{2}].FacetLabel = "1-2";
  const std::vector<std::string> lines = Write(ResidualRows::Used, OutputDestination::Spreadsheet);
  EXPECT_EQ(lines[0], "\"Candidates\"\t\"\"\t\"_1-2\"");
  EXPECT_EQ(lines[1], "\"Ann\"\t\t\"_=5\"");
  EXPECT_EQ(lines[4], "\t\t\"say \"\"so\"\"\"");
}

TEST_F(ResidualFile, RowsByStatus) {
  Read("Models=?,?,D\n", "1,9,5,1\n3,9,5,1\n4,9,5,1\n3,9,7,1\n0,9,7,1\n2,9,6,0\n");
  A.Settings.HeadingLinesOption = false;
  A.Settings.CsvDelimiter = ",";
  A.Settings.ResponseFields = "YNNNNNYNNNN2YNN";
  EXPECT_EQ(Write(ResidualRows::Used), (std::vector<std::string>{"1,1.00,1", "1,1.00,2", "0,1.00,1"}));
  const std::vector<std::string> unused{"1,.00,-2", "1,.00,-3", "1,.00,-4"};
  EXPECT_EQ(Write(ResidualRows::Unused), unused);
  EXPECT_EQ(Write(ResidualRows::All).size(), 6U);
}

// Raw categories 1, 2 and 4 of a scale are 0, 1 and 2; with equal thresholds all are as probable in the middle.
TEST_F(ResidualFile, CategoriesAreCountedFromTheLowest) {
  Read("Models=?,?,R5\n", "2,9,5,1\n2,9,5,2\n2,9,5,3\n2,9,5,4\n");
  ScaleTables& scales = A.Scales;
  scales.Scales[{0}].ScaleTopCategory = 2;
  scales.Scales[{0}].ScaleBottomRaw = 1;
  for (const auto& [raw, ordinal] : {std::pair{0, -1}, {1, 0}, {2, 1}, {3, -1}, {4, 2}, {5, -1}})
    scales.CategoryOrdinal({0}, raw) = static_cast<std::int16_t>(ordinal);
  A.Settings.CsvDelimiter = ",";
  A.Settings.ResponseFields = "YYYYYYNYNNN2YYN";
  const std::vector<std::string> expected{
      "Obs,Stp,Exp,Res,Var,StRes,LProb,Displ,Status",
      "1,1,2.00,-1.00,.67,-1.22,-1.10,-1.50,1",
      "2,2,2.00,.00,.67,.00,-1.10,.00,1",
      "3,0,.00,.00,.00,.00,.00,.00,-1",
      "4,3,2.00,1.00,.67,1.22,-1.10,1.50,1",
  };
  EXPECT_EQ(Write(ResidualRows::All), expected);
}

// Far from its expectation: z is exp(m / 2), the displacement 1 + exp(m); of an element in extreme scores too.
TEST_F(ResidualFile, StandardizedResidualsEndAtNine) {
  Read("Models=?,?,D\n", "1,9,5,0\n2,9,6,1\n3,9,5,0\n1,9,7,0\n");
  Set(1, 4.3F);
  Set(6, 5);
  Set(3, 60, ElementStatus::Maximum);
  Set(7, -1.2F, ElementStatus::Minimum);
  A.Settings.HeadingLinesOption = false;
  A.Settings.CsvDelimiter = ",";
  A.Settings.ResponseFields = "NNNNNYNYNNN2YYN";
  // At 60 logits single precision leaves neither variance nor probability: both are held at the smallest number.
  const std::vector<std::string> expected{"-8.58,-4.31,-74.70,1", "9.00,-5.01,149.41,1", "-9.00,-80.00,?.??,2",
                                          "-9.00,-5.50,-245.69,2"};
  EXPECT_EQ(Write(ResidualRows::Used), expected);
}

TEST_F(ResidualFile, TheUserEndsIt) {
  std::string data;
  for (int line = 0; line < 250; ++line) data += "1,9,5,1\n";
  Read("Models=?,?,D\n", data);
  Watcher.Request = UserRequest::Finish;
  const std::vector<std::string> lines = Write(ResidualRows::Used);
  EXPECT_FALSE(Finished);
  EXPECT_EQ(lines.size(), 100U);
  Watcher.Request = UserRequest::Stop;
  EXPECT_THROW(Write(ResidualRows::Used), Stopped);
}

/// The numbers of a delimited row.
std::vector<double> NumbersOf(const std::string& row) {
  std::vector<double> numbers;
  for (const std::string_view cell : SplitAt(row, '\t')) numbers.push_back(LeadingNumber(cell));
  return numbers;
}

/// Probability of each category at `measure`, as Andrich (1978) writes it.
std::vector<double> RatingScale(double measure, const std::vector<double>& steps) {
  std::vector<double> terms{1};
  double total = 1;
  for (const double step : steps) {
    terms.push_back(terms.back() * std::exp(measure - step));
    total += terms.back();
  }
  for (double& term : terms) term /= total;
  return terms;
}

// JMLE makes weighted residuals of each element that has no extreme score add up to 0.
TEST(ResidualFileOfAnalysis, ResidualsAddUpToZeroAndAgreeWithTheModel) {
  Design design = SimulatedDesign({12, 5, 4}, 3, 7);
  for (std::size_t i = 0; i < design.Ratings.size(); i += 3)
    design.Ratings[i].Replication = 0.5 * static_cast<double>(1 + i % 5);
  FinishedAnalysis run = design.Run();
  ASSERT_TRUE(run.Finished()) << run.Fatal;
  ObservationWriter writer(TemporaryFolder(), ElementLayout(run.A.Facets, run.A.Fields));
  for (const Rating& rating : design.Ratings) {
    std::vector<ElementIndex> elements;
    for (int f = 1; f <= 3; ++f) elements.push_back(run.At(f, rating.Elements[static_cast<std::size_t>(f - 1)]));
    const auto response = static_cast<std::int16_t>(rating.Response);
    writer.Write({{0}, static_cast<float>(rating.Replication), response}, elements.data());
  }
  ObservationStore store = std::move(writer).Seal();
  run.A.Settings.CsvDelimiter = "\t";
  run.A.Settings.HeadingLinesOption = false;
  run.A.Settings.ResponseFields = "YYYYYYYYYYN6YYN";
  ResponseKernel kernel(run.A.Scales, run.A.Settings.HardwareExponent);
  User nobody;
  RunControl control(nobody);
  Console silence;
  const std::vector<std::string> rows = LinesOf(TextWritten([&](TextOutput& file) {
    WriteResidualFile(ResidualRows::All, OutputDestination::Plain, run.A, store, kernel, control, silence, file);
  }));
  ASSERT_EQ(rows.size(), design.Ratings.size());

  std::map<std::pair<int, int>, double> sums;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Rating& rating = design.Ratings[i];
    const std::vector<double> row = NumbersOf(rows[i]);
    double measure = 0;
    for (int f = 1; f <= 3; ++f) {
      const int number = rating.Elements[static_cast<std::size_t>(f - 1)];
      EXPECT_EQ(row[static_cast<std::size_t>(10 + f)], number);
      measure += (f == 1 ? 1 : -1) * run.Measure(f, number);
      if (row[10] == 1) sums[{f, number}] += row[3] * row[6];
    }
    const std::vector<double> p = RatingScale(measure, run.Steps({0}));
    double expected = 0;
    double variance = 0;
    for (std::size_t k = 0; k < p.size(); ++k) expected += static_cast<double>(k) * p[k];
    for (std::size_t k = 0; k < p.size(); ++k) variance += std::pow(static_cast<double>(k) - expected, 2) * p[k];
    const double residual = rating.Response - expected;
    const double wanted[] = {static_cast<double>(rating.Response),
                             static_cast<double>(rating.Response),
                             expected,
                             residual,
                             variance,
                             residual / std::sqrt(variance),
                             rating.Replication,
                             std::log(p[static_cast<std::size_t>(rating.Response)]),
                             measure,
                             residual / variance};
    for (std::size_t column = 0; column < std::size(wanted); ++column)
      EXPECT_NEAR(row[column], wanted[column], 2e-5 * (1 + std::fabs(wanted[column])) + 1e-6 / variance)
          << rows[i] << " " << column;
  }
  for (const auto& [element, sum] : sums) EXPECT_NEAR(sum, 0, 1e-3) << element.first << " " << element.second;
}

}  // namespace
}  // namespace tessaly
