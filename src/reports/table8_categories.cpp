#include "reports/table8_categories.h"

#include <cmath>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "model/category_measures.h"
#include "model/measure_axis.h"
#include "reports/category_curves.h"
#include "reports/category_table.h"
#include "reports/model_text.h"
#include "reports/reported_scale.h"
#include "reports/scale_structure.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::int32_t kMostMarks = 50;

/// What `T8NBC=` asks for.
class Options {
 public:
  explicit Options(std::string_view text)
      : Numbers(text.find('N') != text.npos), Bars(text.find('B') != text.npos), Curves(text.find('C') != text.npos) {
    const std::size_t plus = text.find('+');
    if (plus == text.npos) return;
    scales_.emplace();
    for (const std::string_view item : SplitAt(text.substr(plus + 1), ',')) {
      const std::string_view digits = TrimBlanks(item);
      const IntegerReading number = ParseInt(digits, kHighestElementNumber);
      if (number.Good() && !digits.empty() && IsDigit(digits.front())) scales_->insert(number.Value);
    }
  }

  bool Any() const { return Numbers || Bars || Curves; }
  /// Scales are numbered from 1 in the order of the reports.
  bool Selects(std::int32_t number) const { return !scales_ || scales_->count(number) > 0; }

  const bool Numbers;
  const bool Bars;
  const bool Curves;

 private:
  /// Nothing for all scales.
  std::optional<std::set<std::int32_t>> scales_;
};

/// The step or the slope of a model of counts, as a line.
std::string DiscriminationLine(const ReportedScale& scale, const ScaleTables& tables) {
  const std::string name = scale.Type == ModelType::Poisson ? "Poisson" : "Binomial trials";
  const std::string line = name + " discrimination: " + FormatSingle(tables.CategoryStep(scale.Number, 0), 5, 2) + " ";
  if (tables.CategoryAnchor(scale.Number, 0) == CategoryAnchor::Anchored) return line + "Anchored";
  const double information = tables.CategoryInformation(scale.Number, 1) + kInformationFloor;
  return line + "S.E. " + Fixed2(static_cast<float>(std::sqrt(std::fabs(1 / information))));
}

/// Writes the tables of the scales.
class CategoryTables {
 public:
  CategoryTables(const Options& options, const Analysis& analysis, ResponseKernel& kernel, ReportWriter& report,
                 Console& console)
      : options_(options),
        analysis_(analysis),
        uscale_(analysis.Settings.Uscale),
        kernel_(kernel),
        report_(report),
        frame_(report, analysis.Settings, console) {
    const CurveRange range = FindCurveRange(uscale_, analysis.Models, analysis.Scales, kernel);
    axis_ = FitMeasureAxis(range.Low, range.High, kChartColumns);
  }

  void Write(std::int32_t place, ScaleNumber number) {
    const ReportedScale scale = DescribeScale(number, analysis_);
    const CategoryNames names = NamesOfCategories(scale.Definition, analysis_.Settings.Encoding);
    std::vector<CategoryMeasure> places;
    if (ShowsThresholds(scale, names))
      places = MeasureCategories(number, scale.Top, uscale_, analysis_.Scales, kernel_);

    frame_.WriteTableTitle("Table 8." + BareText(place) + "  Category Statistics");
    report_.WriteTableLine(" Model = " + ModelText(number, analysis_));
    if (scale.Definition != nullptr)
      report_.WriteTableLine(" Rating (or partial credit) scale = " + DefinitionText(*scale.Definition));
    if (options_.Numbers) WriteCategoryTable(scale, names, places, analysis_, report_, frame_);
    if (scale.HasStructure()) {
      WriteCharts(scale, places);
    } else if (scale.Type == ModelType::Poisson || (scale.Type == ModelType::Binomial && scale.Top > 1)) {
      report_.WriteTableLine(DiscriminationLine(scale, analysis_.Scales));
    }
  }

 private:
  static std::string DefinitionText(const RatingScaleDefinition& definition) {
    return definition.Name + "," + definition.Code + "," + (definition.Specific ? "S" : "G") + "," +
           (definition.Keep ? "K" : "O");
  }

  void WriteCharts(const ReportedScale& scale, const std::vector<CategoryMeasure>& places) {
    // Without an axis the measures are beyond all drawing.
    if (!axis_) return;
    if (options_.Bars) WriteLines(ScaleStructure(scale, places, *axis_));
    if (options_.Curves)
      WriteLines(CategoryCurves(scale, *axis_, uscale_, report_.Form() == ReportForm::Text, kernel_));
  }

  void WriteLines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) report_.WriteTableLine(line);
  }

  const Options& options_;
  const Analysis& analysis_;
  float uscale_;
  ResponseKernel& kernel_;
  ReportWriter& report_;
  TableFrame frame_;
  /// One for all charts, so that scales can be compared.
  std::optional<MeasureAxis> axis_;
};

}  // namespace

void CategoryReport(const std::string& options, const Analysis& analysis, ResponseKernel& kernel, ReportWriter& report,
                    Console& console) {
  const Options wanted(options);
  if (!wanted.Any()) return;
  console.ShowMessage("Table 8. Category Statistics");
  console.ShowProgress(">", false);
  CategoryTables tables(wanted, analysis, kernel, report, console);
  const std::vector<ScaleNumber>& order = analysis.Scales.ScaleOrder;
  const auto count = static_cast<std::int32_t>(order.size());
  const std::int32_t scalesPerMark = count / kMostMarks + 1;
  std::int32_t marksLeft = count / scalesPerMark;
  for (std::int32_t place = 1; place <= count; ++place) {
    if (!wanted.Selects(place)) continue;
    tables.Write(place, order[static_cast<std::size_t>(place - 1)]);
    const bool mark = place % scalesPerMark == 0;
    marksLeft -= mark;
    console.ShowProgress(mark ? "=" : "", false);
  }
  console.ShowProgress("<" + std::string(static_cast<std::size_t>(marksLeft), '='), true);
}

}  // namespace tessaly
