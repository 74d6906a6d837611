// Sorting by fixed-length text keys: numbers are packed so that text order is numeric order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessaly {

/// Bytes of the value as stored, low byte first, two capital hexadecimal digits each.
std::string MKIhex(std::int16_t value);
std::string MKLhex(std::int32_t value);
std::string MKShex(float value);
/// The values back from their digits. Throw `FatalError` ("Failure (10)!", "Failure (11)!") for a text of another form.
std::int16_t CVIhex(std::string_view digits);
std::int32_t CVLhex(std::string_view digits);
/// Byte pairs reversed, so that the high byte comes first (`iSwap$`, `Swapl$`). Throw `FatalError` for another length.
std::string SwapInteger(std::string_view digits);
std::string SwapLong(std::string_view digits);
/// Nine characters that sort as the single does: "1" or "0" for the sign, then bytes high first; a negative value is
/// packed as its reciprocal.
std::string FloatKey(float value);

/// First gap of a shell sort of `n` items; each round divides the gap by 3.
std::int32_t ShellStart(std::int32_t n);

/// Shell sort of `items[0..n)` by `greater(a, b)`. Equal items are not exchanged; give a last key that makes it total.
template <class T, class Greater>
void ShellSort(std::vector<T>& items, Greater greater) {
  const auto n = static_cast<std::int32_t>(items.size());
  for (std::int32_t gap = ShellStart(n); gap > 0; gap /= 3) {
    for (std::int32_t i = gap; i < n; ++i) {
      T item = std::move(items[static_cast<std::size_t>(i)]);
      std::int32_t at = i;
      for (; at >= gap && greater(items[static_cast<std::size_t>(at - gap)], item); at -= gap)
        items[static_cast<std::size_t>(at)] = std::move(items[static_cast<std::size_t>(at - gap)]);
      items[static_cast<std::size_t>(at)] = std::move(item);
    }
  }
}

/// Sorts `keys` as text, in binary order, with a call of `poll` every so often. Keys must be of one length: otherwise
/// throws `FatalError{lengthFailure}`.
void SortStrings(std::vector<std::string>& keys, std::string_view lengthFailure, const std::function<void()>& poll);

/// Appends four bytes that sort (as unsigned bytes) as the number does.
void AppendKey(std::string& key, std::uint32_t value);
/// The same for a single; both zeros are equal.
void AppendKey(std::string& key, float value);

}  // namespace tessaly
