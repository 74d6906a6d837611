#include "reports/element_order.h"

#include <algorithm>
#include <cmath>

#include "support/bytes.h"
#include "support/number_text.h"
#include "support/sort_keys.h"

namespace tessaly {

namespace {

constexpr std::string_view kLengthFailure = "Failure (4)! Sort length error: B.";
constexpr std::int32_t kElementsBetweenPolls = 10000;
/// Hexadecimal digits of the element index that ends each key.
constexpr std::size_t kIndexDigits = 8;

std::string IndexKey(std::int32_t index) {
  return SwapLong(MKLhex(index));
}

/// A mean-square with underfit and overfit on both sides of 0.
float AroundZero(float meanSquare) {
  return meanSquare < 1 ? -1 / SafeFloor32(meanSquare) : meanSquare;
}

/// The figure further from 0; of equals the larger.
float Further(float infit, float outfit) {
  if (std::fabs(infit) == std::fabs(outfit)) return std::max(infit, outfit);
  return std::fabs(outfit) > std::fabs(infit) ? outfit : infit;
}

/// Makes the sort keys of elements.
class ElementKeys {
 public:
  ElementKeys(const std::vector<ElementIndex>& members, const ElementTable& elements, std::string_view letters)
      : elements_(elements), letters_(letters) {
    for (const ElementIndex element : members)
      longestLabel_ = std::max(longestLabel_, elements_.ElementLabel[element].size());
  }

  std::string Key(ElementIndex element) const {
    std::string key;
    for (const char letter : letters_) key += Piece(element, letter);
    return key + IndexKey(element.value);
  }

 private:
  std::string Piece(ElementIndex element, char letter) const {
    const float sign = UpperAscii(letter) == letter ? 1.0F : -1.0F;
    const ElementFit& fit = elements_.Fit[element];
    switch (UpperAscii(letter)) {
      case 'N':
        return IndexKey(sign > 0 ? element.value : -element.value);
      case 'A':
        return LabelKey(element, sign > 0);
      case 'M':
        return MeasureClass(element, sign > 0) + FloatKey(sign * elements_.ElementMeasure[element]);
      case 'F':
        return FitKey(element, sign * Further(AroundZero(fit.InfitMeanSquare), AroundZero(fit.OutfitMeanSquare)));
      case 'P':
        return FloatKey(sign * fit.Correlation);
      case 'Z':
      case 'T':
        return FitKey(element, sign * Further(fit.InfitZStd, fit.OutfitZStd));
      default:
        return {};
    }
  }

  std::string LabelKey(ElementIndex element, bool ascending) const {
    std::string key = CutOrPad(elements_.ElementLabel[element], static_cast<int>(longestLabel_));
    if (ascending) return key;
    for (char& c : key) c = static_cast<char>(255 - static_cast<unsigned char>(c));
    return key;
  }

  std::string MeasureClass(ElementIndex element, bool ascending) const {
    switch (elements_.ElementStatus[element]) {
      case ElementStatus::Minimum:
        return ascending ? "1" : "3";
      case ElementStatus::Maximum:
        return ascending ? "3" : "1";
      case ElementStatus::Active:
      case ElementStatus::Anchored:
      case ElementStatus::OneDatum:
        return "2";
      case ElementStatus::Unmeasurable:
        return "4";
      case ElementStatus::Unobserved:
        break;
    }
    return "5";
  }

  std::string FitKey(ElementIndex element, float value) const {
    if (!Measurable(elements_.ElementStatus[element])) return "2         ";
    return "1" + FloatKey(value);
  }

  const ElementTable& elements_;
  std::string_view letters_;
  std::size_t longestLabel_ = 0;
};

}  // namespace

std::vector<ElementIndex> SortElements(const std::vector<ElementIndex>& members, const ElementTable& elements,
                                       std::string_view letters, bool omitUnobserved, RunControl& control) {
  const ElementKeys maker(members, elements, letters);
  std::vector<std::string> keys;
  const auto poll = [&] { control.Poll(); };
  for (const ElementIndex element : members) {
    if (element.value % kElementsBetweenPolls == 0) poll();
    if (elements.ElementStatus[element] == ElementStatus::Unobserved) continue;
    if (omitUnobserved && elements.ElementStats[element].AllCount == 0) continue;
    keys.push_back(maker.Key(element));
  }
  SortStrings(keys, kLengthFailure, poll);
  std::vector<ElementIndex> order;
  order.reserve(keys.size());
  for (const std::string& key : keys)
    order.push_back({CVLhex(SwapLong(std::string_view(key).substr(key.size() - kIndexDigits)))});
  return order;
}

}  // namespace tessaly
