#include "reports/scale_column.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "reports/reported_scale.h"
#include "reports/ruler_plan.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kScaleWidth = 5;
constexpr std::string_view kBoundary = "---";

}  // namespace

ScaleColumn::ScaleColumn(ScaleNumber scale, std::string heading, bool withLabels, const RulerAxis& axis,
                         const Analysis& analysis, ResponseKernel& kernel)
    : scale_(scale),
      heading_(std::move(heading)),
      withLabels_(withLabels),
      axis_(axis),
      analysis_(analysis),
      kernel_(kernel),
      top_(analysis.Scales.Scales[scale].ScaleTopCategory),
      type_(analysis.Models.Statements[analysis.Scales.Scales[scale].ScaleModel].ModelType),
      width_(kScaleWidth) {
  if (top_ <= 1) return;
  NameCategories();
  above_ = ExpectedAt(axis_.MeasureAt(0) + 0.5 / axis_.LinesPerUnit);
}

void ScaleColumn::NameCategories() {
  const ReportedScale scale = DescribeScale(scale_, analysis_);
  for (const std::int32_t raw : scale.RawCategory) {
    names_.push_back(BareText(raw));
    std::string& label = labels_.emplace_back();
    // The entries of a definition begin with category -1.
    const auto entry = static_cast<std::size_t>(raw) + 1;
    if (!withLabels_ || scale.Definition == nullptr || entry >= scale.Definition->Categories.size()) continue;
    label = scale.Definition->Categories[entry].Label;
    width_ = std::clamp(DisplayLength(label, analysis_.Settings.Encoding), width_, kWidestRulerLabel);
  }
}

float ScaleColumn::ExpectedAt(double measure) {
  const Settings& settings = analysis_.Settings;
  const double logit = (measure - double(settings.Umean)) / double(settings.Uscale);
  constexpr auto kFarthest = double(kFarthestLogit);
  const double held = std::isnan(logit) ? 0 : std::clamp(logit, -kFarthest, kFarthest);
  return kernel_.CategoryProbabilities(scale_, type_, top_, static_cast<float>(held));
}

std::string ScaleColumn::NextCell() {
  const std::int32_t line = line_++;
  return Centred(top_ > 1 ? Text(line) : std::string());
}

std::string ScaleColumn::Text(std::int32_t line) {
  const std::string labelAbove = std::exchange(label_, {});
  const float below = ExpectedAt(axis_.MeasureAt(line) - 0.5 / axis_.LinesPerUnit);
  const float above = std::exchange(above_, below);
  if (line == 0) return EndCategory(true);
  if (withLabels_ && line == axis_.LastLine) return labelAbove;
  if (line == axis_.LastLine - (withLabels_ ? 1 : 0)) return EndCategory(false);
  // A negative Uscale= turns the measures of the page round.
  const auto [low, high] = std::minmax(below, above);
  const auto onLine = [low = low, high = high](float score) { return score > low && score <= high; };
  // The extreme categories are expected nowhere but at the ends, whatever single precision says far out.
  const std::int16_t category = RoundToInteger((low + high) / 2);
  if (category > 0 && category < top_ && onLine(category)) return ShowCategory(category);
  if (!labelAbove.empty()) return labelAbove;
  const std::int16_t halves = RoundToInteger(low + high);
  const bool boundary = halves % 2 != 0 && halves < 2 * top_ && onLine(static_cast<float>(halves) / 2);
  return std::string(boundary ? kBoundary : std::string_view());
}

std::string ScaleColumn::EndCategory(bool top) {
  const bool highest = top == (analysis_.Settings.Uscale > 0);
  return "(" + ShowCategory(highest ? top_ : 0) + ")";
}

std::string ScaleColumn::ShowCategory(std::int32_t ordinal) {
  label_ = labels_[static_cast<std::size_t>(ordinal)];
  return names_[static_cast<std::size_t>(ordinal)];
}

std::string ScaleColumn::Centred(std::string_view text) const {
  const TextEncoding& encoding = analysis_.Settings.Encoding;
  const std::string_view trimmed = TrimBlanks(text);
  const int length = DisplayLength(trimmed, encoding);
  const auto before = static_cast<std::size_t>(std::max(width_ - length, 0) / 2);
  return std::string(before, ' ') + PadToWidth(trimmed, width_ - static_cast<int>(before), encoding);
}

}  // namespace tessaly
