#include "requests/request_options.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "requests/nearest_word.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

[[noreturn]] void Refuse(std::string_view name, std::string_view value, const std::string& remedy) {
  throw Refusal{std::string(name) + "=" + QuotedLine(value) + " is not understood. Please give " + remedy};
}

std::string ListOf(std::span<const std::string_view> words) {
  return Joined({words.begin(), words.end()}, ", ");
}

std::size_t PlaceOf(std::string_view name, std::string_view value, std::span<const std::string_view> words) {
  const std::string word = LowerAscii(TrimBlanks(value));
  std::size_t place = words.size();
  for (std::size_t at = 0; at < words.size() && !word.empty(); ++at) {
    if (words[at] == word) return at;
    if (!words[at].starts_with(word)) continue;
    if (place < words.size()) Refuse(name, value, "more letters of one of: " + ListOf(words));
    place = at;
  }
  if (place == words.size()) Refuse(name, value, "one of: " + ListOf(words) + "." + Suggestion(word, words));
  return place;
}

std::optional<float> FiniteNumber(std::string_view text) {
  const double number = IsNumeric(text) ? LeadingNumber(text) : std::nan("");
  if (!(std::fabs(number) <= double(std::numeric_limits<float>::max()))) return {};
  return static_cast<float>(number);
}

template <class T>
void SortOnce(std::vector<T>& items) {
  std::sort(items.begin(), items.end());
  items.erase(std::unique(items.begin(), items.end()), items.end());
}

}  // namespace

std::vector<std::string_view> ListItems(std::string_view text) {
  if (TrimBlanks(text).empty()) return {};
  std::vector<std::string_view> items = SplitAt(text, ',');
  for (std::string_view& item : items) item = TrimBlanks(item);
  return items;
}

const RequestLine::Option* RequestOptions::Find(std::string_view name) const {
  const auto found = std::find_if(line_.Options.begin(), line_.Options.end(),
                                  [&](const RequestLine::Option& option) { return option.Name == name; });
  return found == line_.Options.end() ? nullptr : &*found;
}

std::optional<std::string> RequestOptions::Text(std::string_view name) const {
  const RequestLine::Option* const option = Find(name);
  return option == nullptr ? std::nullopt : std::optional(option->Value);
}

std::optional<bool> RequestOptions::YesNo(std::string_view name) const {
  const std::optional<std::size_t> place = Choice(name, {"yes", "no"});
  return place ? std::optional(*place == 0) : std::nullopt;
}

std::optional<float> RequestOptions::Number(std::string_view name) const {
  const auto text = Text(name);
  if (!text) return {};
  const std::optional<float> number = FiniteNumber(*text);
  if (!number) Refuse(name, *text, "a number");
  return number;
}

std::optional<std::int32_t> RequestOptions::Whole(std::string_view name, std::int32_t least, std::int32_t most) const {
  const auto text = Text(name);
  if (!text) return {};
  const double number = IsNumeric(*text) ? LeadingNumber(*text) : std::nan("");
  if (!(number >= least && number <= most) || number != std::trunc(number))
    Refuse(name, *text, "a whole number from " + BareText(least) + " to " + BareText(most));
  return static_cast<std::int32_t>(number);
}

std::optional<std::pair<float, float>> RequestOptions::Range(std::string_view name) const {
  const auto text = Text(name);
  if (!text) return {};
  const std::vector<std::string_view> ends = ListItems(*text);
  const auto low = ends.size() == 2 ? FiniteNumber(ends[0]) : std::nullopt;
  const auto high = ends.size() == 2 ? FiniteNumber(ends[1]) : std::nullopt;
  if (!low || !high || *low >= *high) Refuse(name, *text, "the lower end, a comma and the upper end");
  return std::pair(*low, *high);
}

std::optional<std::size_t> RequestOptions::Choice(std::string_view name,
                                                  std::initializer_list<std::string_view> words) const {
  const auto text = Text(name);
  return text ? std::optional(PlaceOf(name, *text, words)) : std::nullopt;
}

std::optional<std::vector<std::size_t>> RequestOptions::Choices(std::string_view name,
                                                                std::initializer_list<std::string_view> words) const {
  const auto text = Text(name);
  if (!text) return {};
  std::vector<std::size_t> places;
  for (const std::string_view item : ListItems(*text)) {
    const std::size_t place = PlaceOf(name, item, words);
    if (std::find(places.begin(), places.end(), place) == places.end()) places.push_back(place);
  }
  return places;
}

FacetNumber RequestOptions::FacetOf(std::string_view name, std::string_view item) const {
  const FacetTable& facets = analysis_.Facets;
  const IntegerReading number = ParseInt(item, facets.size());
  if (IsNumeric(item) && number.Good() && number.Value > 0) return {number.Value};
  std::vector<std::string_view> labels;
  for (const FacetNumber facet : facets.all()) {
    if (UpperAscii(facets[facet].FacetLabel) == UpperAscii(item)) return facet;
    labels.push_back(facets[facet].FacetLabel);
  }
  Refuse(name, item,
         "facets by number (1 to " + BareText(facets.size()) + ") or label, with commas between them." +
             (IsNumeric(item) ? std::string() : Suggestion(item, labels)));
}

std::optional<std::vector<FacetNumber>> RequestOptions::Facets(std::string_view name) const {
  const auto text = Text(name);
  if (!text) return {};
  std::vector<FacetNumber> facets;
  for (const std::string_view item : ListItems(*text)) facets.push_back(FacetOf(name, item));
  SortOnce(facets);
  return facets;
}

std::vector<FacetNumber> RequestOptions::FacetsOrAll(std::string_view name) const {
  if (auto facets = Facets(name)) return *facets;
  std::vector<FacetNumber> all;
  for (const FacetNumber facet : analysis_.Facets.all()) all.push_back(facet);
  return all;
}

std::optional<std::vector<std::int32_t>> RequestOptions::Scales(std::string_view name) const {
  const auto text = Text(name);
  if (!text) return {};
  const auto count = static_cast<std::int32_t>(analysis_.Scales.ScaleOrder.size());
  std::vector<std::int32_t> scales;
  for (const std::string_view item : ListItems(*text)) {
    const IntegerReading number = ParseInt(item, count);
    if (!IsNumeric(item) || !number.Good() || number.Value < 1)
      Refuse(name, item, "scales by their numbers in Table 8 (1 to " + BareText(count) + "), with commas between them");
    scales.push_back(number.Value);
  }
  SortOnce(scales);
  return scales;
}

}  // namespace tessaly
