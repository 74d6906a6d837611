#include "spec/label_lookup.h"

#include <algorithm>
#include <tuple>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

std::string KeyOf(std::string_view label) {
  return Replaced(TrimRight(label.substr(0, label.find(':'))), '_', '-');
}

}  // namespace

LabelLists::LabelLists(const FacetTable& facets, const ElementTable& elements, Console& console)
    : facets_(facets), elements_(elements), console_(console), lists_(facets.size()) {}

std::optional<ElementIndex> LabelLists::FindLabel(FacetNumber facet, std::string_view text) {
  if (!lists_.holds(facet)) return {};
  const List& list = lists_[facet];
  if (!list.Filled) Fill(facet);
  const auto found = list.ByKey.find(text);
  return found != list.ByKey.end() ? found->second : Search(list.Sorted, text);
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
  // Outer quotes and blanks of a text do not count: it is never equal to a key that has any.
  for (const Entry& entry : list.Sorted)
    if (!entry.Key.empty() && TrimQuotes(entry.Key).size() == entry.Key.size())
      list.ByKey.emplace(entry.Key, entry.Element);
  list.Filled = true;
}

}  // namespace tessaly
