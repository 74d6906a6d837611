// Scales and their category tables: what estimation and all category reports work on.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <numeric>
#include <vector>

#include "state/indexes.h"
#include "state/models.h"

namespace tessaly {

/// One scale.
struct Scale {
  /// Highest ordinal category.
  std::int16_t ScaleTopCategory = 0;
  /// For `D` with a number: the response at which the scored value turns 1; otherwise 0.
  std::int16_t ScaleDichotomyCut = 0;
  /// A model statement of the scale, and the last cell that points at it.
  StatementNumber ScaleModel{0};
  CellNumber ScaleCell{0};
  /// The raw category that is ordinal 0.
  std::int16_t ScaleBottomRaw = 0;
};

enum class CategoryAnchor : std::int8_t {
  Free = 0,
  Anchored = -1,
  /// A value was given without anchoring: not updated for a rating scale, a start value for a discrimination.
  StartingValue = -2,
  /// Kept in the structure though nothing was observed: no step of its own, probability 0.
  KeptUnobserved = -3,
};

/// A table by scale and category, categories from 0.
template <class T>
class CategoryTable {
 public:
  /// `scales` rows of `categories` entries each, all `T{}`.
  void Create(std::int32_t scales, std::int32_t categories) {
    categories_ = categories;
    items_.assign(static_cast<std::size_t>(scales) * static_cast<std::size_t>(categories), T{});
  }
  /// One more row, all `T{}`.
  void AddScale() { items_.resize(items_.size() + static_cast<std::size_t>(categories_)); }

  T& operator()(ScaleNumber scale, std::int32_t category) { return items_[At(scale, category)]; }
  const T& operator()(ScaleNumber scale, std::int32_t category) const { return items_[At(scale, category)]; }
  T* Row(ScaleNumber scale) { return items_.data() + At(scale, 0); }
  const T* Row(ScaleNumber scale) const { return items_.data() + At(scale, 0); }
  std::int32_t Categories() const { return categories_; }

 private:
  std::size_t At(ScaleNumber scale, std::int32_t category) const {
    assert(category >= 0 && category < categories_);
    return static_cast<std::size_t>(scale.value) * static_cast<std::size_t>(categories_) +
           static_cast<std::size_t>(category);
  }

  std::int32_t categories_ = 0;
  std::vector<T> items_;
};

/// Running weighted mean of a value.
struct WeightedMean {
  double Mean = 0;
  double Weight = 0;

  void Add(double value, double weight) {
    if (Weight == 0) {
      Weight = weight;
      Mean = value;
    } else {
      Weight += weight;
      Mean += (value - Mean) * weight / Weight;
    }
  }
};

/// What the fit pass finds for one category.
struct CategoryStatistics {
  /// Mean `MeasureSum` (logit) of the observations in the category, and of all observations weighted by the model.
  WeightedMean Observed;
  WeightedMean Expected;
  /// Sum of weighted squared standardized residuals of the observations in the category, and its model expectation.
  double SquareSum = 0;
  double ExpectedSquareSum = 0;
};

/// Scales and everything that is kept by scale and category. "Raw" tables are indexed by raw category.
struct ScaleTables {
  Table<ScaleNumber, Scale, 0> Scales;
  /// Scales in the order of the reports.
  std::vector<ScaleNumber> ScaleOrder;

  CategoryTable<double> CategoryRawCount;
  /// Weighted count by ordinal category.
  CategoryTable<double> CategoryCount;
  CategoryTable<double> CategoryExpected;
  CategoryTable<double> CategoryInformation;
  /// Rasch-Andrich threshold (logit); entry 0 of a binomial or Poisson scale is its discrimination.
  CategoryTable<float> CategoryStep;
  CategoryTable<float> CategoryStepPrevious;
  CategoryTable<tessaly::CategoryAnchor> CategoryAnchor;
  /// Ordinal of a raw category; -1 not in use.
  CategoryTable<std::int16_t> CategoryOrdinal;
  CategoryTable<tessaly::CategoryStatistics> CategoryStatistics;

  /// Highest raw category of any definition or statement code; category tables have entries 0..RawCategoryLimit.
  std::int16_t RawCategoryLimit = 1;
  /// Highest raw category that was observed.
  std::int16_t RawTopCategory = 0;
  /// Highest category that any scale can have.
  std::int16_t TopCategory = 0;
  /// Some model statement is Poisson.
  bool PoissonUsed = false;

  std::int32_t ScaleCount() const { return Scales.size(); }
  /// The raw category of each ordinal of a scale, 0 to its top.
  std::vector<std::int32_t> RawCategories(ScaleNumber scale) const {
    const std::int32_t top = std::max<std::int32_t>(Scales[scale].ScaleTopCategory, 0);
    std::vector<std::int32_t> raw(static_cast<std::size_t>(top) + 1);
    std::iota(raw.begin(), raw.end(), 0);
    for (std::int32_t category = CategoryOrdinal.Categories() - 1; category >= 0; --category) {
      const std::int32_t ordinal = CategoryOrdinal(scale, category);
      if (ordinal >= 0 && ordinal <= top) raw[static_cast<std::size_t>(ordinal)] = category;
    }
    return raw;
  }
};

}  // namespace tessaly
