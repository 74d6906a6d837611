#include "estimate/renumber_scale.h"

#include <optional>

namespace tessaly {

namespace {

/// Renumbers one rating scale.
class Renumbering {
 public:
  Renumbering(ScaleNumber scale, bool keep, ScaleTables& scales) : scale_(scale), keep_(keep), scales_(scales) {}

  bool Run() {
    FindRange();
    HoldLoneCategory();
    return Renumber();
  }

 private:
  /// A live raw category.
  struct Place {
    std::int32_t Raw;
    std::int32_t Ordinal;
  };

  double Count(std::int32_t raw) const { return scales_.CategoryCount(scale_, scales_.CategoryOrdinal(scale_, raw)); }
  bool Live(std::int32_t raw) const { return scales_.CategoryOrdinal(scale_, raw) >= 0; }
  bool Anchored(std::int32_t ordinal) const {
    return scales_.CategoryAnchor(scale_, ordinal) == CategoryAnchor::Anchored;
  }
  bool Used(std::int32_t raw) const { return Count(raw) > 0 || Anchored(scales_.CategoryOrdinal(scale_, raw)); }

  void FindRange() {
    for (std::int32_t raw = 0; raw <= scales_.TopCategory; ++raw) {
      if (!Live(raw)) continue;
      const Place place{raw, scales_.CategoryOrdinal(scale_, raw)};
      if (Used(raw)) {
        if (!low_) {
          low_ = place;
        } else if (!neighbour_) {
          neighbour_ = place;
        }
        high_ = raw;
      } else if (!low_ || !neighbour_) {
        neighbour_ = place;
      }
    }
  }

  // A scale with one category would have no step: that category and its neighbour are held as they are.
  void HoldLoneCategory() {
    if (!low_ || low_->Raw != high_) return;
    scales_.CategoryAnchor(scale_, low_->Ordinal) = CategoryAnchor::Anchored;
    if (!neighbour_) return;
    scales_.CategoryAnchor(scale_, neighbour_->Ordinal) = CategoryAnchor::Anchored;
    high_ = std::max(high_, neighbour_->Raw);
    if (neighbour_->Raw < low_->Raw) low_ = neighbour_;
  }

  bool Renumber() {
    std::int32_t ordinal = -1;
    for (std::int32_t raw = 0; raw <= scales_.TopCategory; ++raw) {
      if (!Live(raw)) continue;
      const bool inside = low_ && raw >= low_->Raw && raw <= high_;
      if (!Used(raw) && !(keep_ && inside)) {
        scales_.CategoryOrdinal(scale_, raw) = -1;
        continue;
      }
      Move(scales_.CategoryOrdinal(scale_, raw), ++ordinal);
      scales_.CategoryOrdinal(scale_, raw) = static_cast<std::int16_t>(ordinal);
      if (keep_ && Count(raw) == 0 && !Anchored(ordinal)) {
        scales_.CategoryAnchor(scale_, ordinal) = CategoryAnchor::KeptUnobserved;
        scales_.CategoryStep(scale_, ordinal) = 0;
        scales_.CategoryStepPrevious(scale_, ordinal) = 0;
      }
      if (ordinal == 0) scales_.Scales[scale_].ScaleBottomRaw = static_cast<std::int16_t>(raw);
    }
    auto& top = scales_.Scales[scale_].ScaleTopCategory;
    const bool changed = top != ordinal;
    top = static_cast<std::int16_t>(ordinal);
    return changed;
  }

  void Move(std::int32_t from, std::int32_t to) {
    if (from == to) return;
    const auto move = [&](auto& table) {
      table(scale_, to) = table(scale_, from);
      table(scale_, from) = {};
    };
    move(scales_.CategoryCount);
    move(scales_.CategoryExpected);
    move(scales_.CategoryAnchor);
    move(scales_.CategoryStep);
    move(scales_.CategoryStepPrevious);
  }

  ScaleNumber scale_;
  bool keep_;
  ScaleTables& scales_;
  std::optional<Place> low_;
  std::optional<Place> neighbour_;
  std::int32_t high_ = -1;
};

void SumDiscriminationStatistic(ScaleNumber scale, ModelType type, const ResponseKernel& kernel, ScaleTables& scales) {
  const std::int32_t top = scales.Scales[scale].ScaleTopCategory;
  if (top <= 1 || scales.CategoryAnchor(scale, 0) == CategoryAnchor::Anchored) return;
  const std::int32_t last = type == ModelType::Poisson ? scales.RawTopCategory : top;
  double sum = 0;
  for (std::int32_t k = 1; k <= last; ++k) {
    const double count = scales.CategoryCount(scale, k);
    if (count > 0) sum += kernel.DiscriminationStatistic(type, top, k) * count;
  }
  scales.CategoryInformation(scale, 0) = sum;
}

}  // namespace

bool RenumberScale(ScaleNumber scale, ModelType type, bool keep, const ResponseKernel& kernel, ScaleTables& scales) {
  if (type == ModelType::RatingScale) return Renumbering(scale, keep, scales).Run();
  SumDiscriminationStatistic(scale, type, kernel, scales);
  return false;
}

bool RenumberScales(const ModelTables& models, const ResponseKernel& kernel, ScaleTables& scales) {
  bool recount = false;
  for (const ScaleNumber scale : scales.Scales.all()) {
    const ModelStatement& statement = models.Statements[scales.Scales[scale].ScaleModel];
    if (RenumberScale(scale, statement.ModelType, statement.ModelKeep, kernel, scales)) recount = true;
  }
  return recount;
}

}  // namespace tessaly
