#include "spec/label_lookup.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <tuple>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

std::string KeyOf(std::string_view label) {
  return Replaced(TrimRight(label.substr(0, label.find(':'))), '_', '-');
}

/// Eight bytes at a time, the last ones together with some that have been taken already. The highest bits are best.
inline std::uint32_t HashOf(std::string_view text) {
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;
  std::uint64_t hash = text.size();
  std::uint64_t word = 0;
  const auto mix = [&] { hash = (hash ^ hash >> 32 ^ word) * kMultiplier; };
  if (text.size() < sizeof word) {
    for (const char c : text) word = word << 8 | static_cast<unsigned char>(c);
    mix();
  } else {
    for (std::size_t at = 0; at + sizeof word < text.size(); at += sizeof word) {
      std::memcpy(&word, text.data() + at, sizeof word);
      mix();
    }
    std::memcpy(&word, text.data() + text.size() - sizeof word, sizeof word);
    mix();
  }
  return static_cast<std::uint32_t>(hash >> 32);
}

}  // namespace

LabelLists::LabelLists(const FacetTable& facets, const ElementTable& elements, Console& console)
    : facets_(facets), elements_(elements), console_(console), lists_(facets.size()) {}

std::optional<ElementIndex> LabelLists::FindLabel(FacetNumber facet, std::string_view text) {
  if (!lists_.holds(facet)) return {};
  const List& list = lists_[facet];
  if (!list.Filled) Fill(facet);
  const Slot& slot = list.Slots[SlotOf(list, HashOf(text), text)];
  return slot.At >= 0 ? list.Sorted[static_cast<std::size_t>(slot.At)].Element : Search(list.Sorted, text);
}

inline std::size_t LabelLists::SlotOf(const List& list, std::uint32_t hash, std::string_view key) {
  const std::size_t last = list.Slots.size() - 1;
  for (std::size_t at = hash >> list.Shift;; at = (at + 1) & last) {
    const Slot& slot = list.Slots[at];
    if (slot.At < 0 || (slot.Hash == hash && list.Sorted[static_cast<std::size_t>(slot.At)].Key == key)) return at;
  }
}

std::optional<ElementIndex> LabelLists::Search(const std::vector<Entry>& sorted, std::string_view text) {
  text = TrimQuotes(text);
  if (text.empty()) return {};
  std::string withHyphens;
  if (text.find('_') != std::string_view::npos) text = withHyphens = Replaced(text, '_', '-');

  const auto found = std::lower_bound(sorted.begin(), sorted.end(), text,
                                      [](const Entry& entry, std::string_view key) { return entry.Key < key; });
  // The first key that is not below the text is equal to it, or begins with it if any key does.
  if (found == sorted.end() || found->Key.compare(0, text.size(), text) != 0) return {};
  return found->Element;
}

void LabelLists::Fill(FacetNumber facet) {
  console_.ShowMessage(" Sorting labels for facet" + GeneralText(facet.value));
  List& list = lists_[facet];
  for (const ElementIndex element : facets_[facet].Elements()) {
    const std::string& label = elements_.ElementLabel[element];
    if (!label.empty() && label.front() != ':') list.Sorted.push_back({KeyOf(label), element});
  }
  list.Sorted.push_back({KeyOf(facets_[facet].FacetNullLabel), kNoElement});
  std::sort(list.Sorted.begin(), list.Sorted.end(),
            [](const Entry& a, const Entry& b) { return std::tie(a.Key, a.Element) < std::tie(b.Key, b.Element); });
  FillSlots(list);
  list.Filled = true;
}

void LabelLists::FillSlots(List& list) {
  list.Slots.resize(std::bit_ceil(2 * list.Sorted.size()));
  list.Shift = 32 - std::countr_zero(list.Slots.size());
  for (std::size_t at = 0; at < list.Sorted.size(); ++at) {
    const std::string& key = list.Sorted[at].Key;
    // Outer quotes and blanks of a text do not count: it is never equal to a key that has any.
    if (key.empty() || TrimQuotes(key).size() != key.size()) continue;
    const std::uint32_t hash = HashOf(key);
    Slot& slot = list.Slots[SlotOf(list, hash, key)];
    if (slot.At < 0) slot = {hash, static_cast<std::int32_t>(at)};
  }
}

}  // namespace tessaly
