#include "reports/category_table.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "reports/box_line.h"
#include "reports/category_layout.h"
#include "reports/edit_word.h"
#include "reports/measurement_layout.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kCountWidth = 8;
constexpr int kPercentWidth = 3;
constexpr int kWideMeasureWidth = 8;
constexpr int kResidualWidth = 10;
/// A count that is further than this from a whole number comes from weighted data.
constexpr double kWholeEnough = 0.1;
/// Residuals up to here are rounding of the estimation.
constexpr double kNotableResidual = 0.5;
constexpr double kLargestOutfit = 9.9;
/// Threshold of a category that nobody used.
constexpr const char* kInfinite = "infin.";

bool Fractional(double count) {
  return std::fabs(count - std::round(count)) > kWholeEnough;
}

/// Writes the table of one scale.
class CategoryRows {
 public:
  CategoryRows(const ReportedScale& scale, const CategoryNames& names, const std::vector<CategoryMeasure>& places,
               const Analysis& analysis)
      : scale_(scale), names_(names), places_(places), tables_(analysis.Scales), settings_(analysis.Settings) {
    columns_.Thresholds = ShowsThresholds(scale, names);
    columns_.Structure = scale.HasStructure();
    columns_.NameWidth = names.Width;
    columns_.LeftHand = settings_.LeftHand;
    ReadCounts();
    layout_ = BuildCategoryLayout(columns_);
  }

  void Write(ReportWriter& report, TableFrame& frame) {
    frame.BeginColumns(layout_.HeadLines, layout_.RuleTemplate);
    for (std::int32_t raw = first_; raw <= last_; ++raw) frame.WriteRow(Row(raw));
    report.WriteTableLine(BoxLine(layout_.ClosingRule, RuleKind::Bottom));
  }

 private:
  std::int32_t Ordinal(std::int32_t raw) const { return tables_.CategoryOrdinal(scale_.Number, raw); }
  double RawCount(std::int32_t raw) const { return tables_.CategoryRawCount(scale_.Number, raw); }
  double Used(std::int32_t ordinal) const { return tables_.CategoryCount(scale_.Number, ordinal); }
  double Residual(std::int32_t ordinal) const {
    return Used(ordinal) - tables_.CategoryExpected(scale_.Number, ordinal);
  }
  CategoryAnchor Anchor(std::int32_t ordinal) const { return tables_.CategoryAnchor(scale_.Number, ordinal); }

  /// Finds the rows, and which columns and decimals their numbers ask for.
  void ReadCounts() {
    double total = 0;
    for (std::int32_t raw = tables_.TopCategory; raw >= 0; --raw) {
      const std::int32_t ordinal = Ordinal(raw);
      const bool inUse = ordinal >= 0;
      if (RawCount(raw) > 0 || !names_.LabelOf(raw).empty() || (columns_.Thresholds && inUse)) TakeRow(raw);
      if (Fractional(RawCount(raw)) || (inUse && Fractional(Used(ordinal)))) countDecimals_ = 1;
      if (!inUse) continue;
      if (ordinal + tables_.Scales[scale_.Number].ScaleBottomRaw != raw) columns_.ShowBoth = true;
      if (std::fabs(Residual(ordinal)) > kNotableResidual) columns_.Residual = true;
      total += Used(ordinal);
    }
    if (total > 0) percentFactor_ = 100 / total;
  }

  void TakeRow(std::int32_t raw) {
    first_ = std::min(first_, raw);
    last_ = std::max(last_, raw);
  }

  std::string Row(std::int32_t raw) {
    const std::int32_t ordinal = Ordinal(raw);
    EditWord word(RowFormat(ordinal), settings_.Encoding);
    if (columns_.NameWidth > 0 && columns_.LeftHand) word.EditText(names_.LabelOf(raw));
    word.EditInteger(static_cast<std::int16_t>(raw));
    if (columns_.ShowBoth && ordinal >= 0) word.EditInteger(static_cast<std::int16_t>(ordinal));
    word.EditText(CountText(RawCount(raw)));
    if (ordinal >= 0) {
      FillCounts(ordinal, word);
      if (columns_.Thresholds) FillThresholds(ordinal, word);
      if (columns_.Thresholds && columns_.Residual) word.EditText(ResidualText(ordinal));
    }
    if (columns_.NameWidth > 0 && !columns_.LeftHand) word.EditText(names_.LabelOf(raw));
    return word.Line();
  }

  const std::string& RowFormat(std::int32_t ordinal) const {
    if (ordinal < 0) return layout_.RowFmtNoData;
    if (ordinal == 0) return layout_.RowFmtFirst;
    return ordinal == scale_.Top ? layout_.RowFmtTop : layout_.RowFmtMiddle;
  }

  std::string CountText(double count) const { return ShiftLeftOne(FormatNumber(count, kCountWidth, countDecimals_)); }

  /// As many decimals as the column has room for.
  int Decimals(int width) const { return std::min(settings_.Udecimals, width - 1); }
  std::string Measure(float measure, int width) const { return FormatSingle(measure, width, Decimals(width)); }

  void FillCounts(std::int32_t ordinal, EditWord& word) {
    cumulated_ += Used(ordinal);
    word.EditText(CountText(Used(ordinal)));
    word.EditText(FormatNumber(Used(ordinal) * percentFactor_, kPercentWidth, 0));
    word.EditText(FormatNumber(cumulated_ * percentFactor_, kPercentWidth, 0));
    word.EditText(Used(ordinal) > 0 ? QualityText(ordinal) : "");
  }

  /// Average measure, marked if it goes down where the categories go up, expected measure, outfit.
  std::string QualityText(std::int32_t ordinal) {
    const CategoryStatistics& statistics = tables_.CategoryStatistics(scale_.Number, ordinal);
    const auto average = [&](const WeightedMean& logits) {
      return FormatNumber(logits.Mean * double(settings_.Uscale), kMeasureWidth, Decimals(kMeasureWidth));
    };
    std::string text = average(statistics.Observed);
    text += statistics.Observed.Mean < previousAverage_ ? '*' : ' ';
    previousAverage_ = statistics.Observed.Mean;
    text += average(statistics.Expected);
    if (statistics.ExpectedSquareSum > 0) {
      const bool beyond = statistics.SquareSum > kLargestOutfit * statistics.ExpectedSquareSum;
      const double outfit = beyond ? kLargestOutfit : statistics.SquareSum / statistics.ExpectedSquareSum;
      text += ShiftLeftOne(FormatNumber(outfit, kMeasureWidth, 1));
    }
    return text;
  }

  void FillThresholds(std::int32_t ordinal, EditWord& word) const {
    const CategoryMeasure& place = places_[static_cast<std::size_t>(ordinal)];
    if (ordinal > 0) {
      word.EditText(Step(ordinal));
      word.EditText(Anchor(ordinal) == CategoryAnchor::Anchored ? "A" : " ");
      word.EditText(StepError(ordinal));
    }
    word.EditText(Measure(place.AtCategory, kMeasureWidth));
    if (ordinal == 0) return;
    word.EditText(Measure(place.AtHalf, kMeasureWidth));
    word.EditText(place.IsModal ? ShiftLeftOne(Measure(place.Modal, kWideMeasureWidth)) : "");
    word.EditText(ShiftLeftOne(Measure(place.Thurstone, kWideMeasureWidth)));
    if (ordinal < scale_.Top) word.EditSingle(place.PeakProbability * 100);
  }

  std::string Step(std::int32_t ordinal) const {
    if (Used(ordinal) == 0 && Anchor(ordinal) != CategoryAnchor::Anchored) return kInfinite;
    return Measure(tables_.CategoryStep(scale_.Number, ordinal) * settings_.Uscale, kMeasureWidth);
  }

  std::string StepError(std::int32_t ordinal) const {
    if (Used(ordinal) == 0 || scale_.Top <= 1) return {};
    const double information = tables_.CategoryInformation(scale_.Number, ordinal);
    const auto error = static_cast<float>(1 / std::sqrt(information + kInformationFloor));
    return Measure(settings_.UserSpread(error), kErrorWidth);
  }

  std::string ResidualText(std::int32_t ordinal) const {
    if (std::fabs(Residual(ordinal)) <= kNotableResidual) return {};
    return ShiftLeftOne(FormatNumber(Residual(ordinal), kResidualWidth, 1));
  }

  const ReportedScale& scale_;
  const CategoryNames& names_;
  const std::vector<CategoryMeasure>& places_;
  const ScaleTables& tables_;
  const Settings& settings_;
  CategoryColumns columns_;
  CategoryLayout layout_;
  /// Rows, by raw category.
  std::int32_t first_ = std::numeric_limits<std::int32_t>::max();
  std::int32_t last_ = -1;
  int countDecimals_ = 0;
  double percentFactor_ = 0;
  /// Used counts up to the row at hand, and the logit mean of the last category that has data.
  double cumulated_ = 0;
  double previousAverage_ = -std::numeric_limits<double>::infinity();
};

}  // namespace

void WriteCategoryTable(const ReportedScale& scale, const CategoryNames& names,
                        const std::vector<CategoryMeasure>& places, const Analysis& analysis, ReportWriter& report,
                        TableFrame& frame) {
  CategoryRows(scale, names, places, analysis).Write(report, frame);
}

bool ShowsThresholds(const ReportedScale& scale, const CategoryNames& names) {
  return scale.Type == ModelType::RatingScale && scale.Top > (names.HasAnchor ? 0 : 1);
}

}  // namespace tessaly
