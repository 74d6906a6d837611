// The options of a request, read as what they are.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "requests/request_line.h"
#include "state/analysis.h"

namespace tessaly {

/// Reads the values of options. An option that is not given has no value; each reader throws `Refusal` for a value that
/// cannot be read, with what can.
class RequestOptions {
 public:
  RequestOptions(const RequestLine& line, const Analysis& analysis) : line_(line), analysis_(analysis) {}

  bool Given(std::string_view name) const { return Find(name) != nullptr; }
  std::optional<std::string> Text(std::string_view name) const;
  std::optional<bool> YesNo(std::string_view name) const;
  bool YesNo(std::string_view name, bool otherwise) const { return YesNo(name).value_or(otherwise); }
  /// A finite number.
  std::optional<float> Number(std::string_view name) const;
  /// A whole number from `least` to `most`.
  std::optional<std::int32_t> Whole(std::string_view name, std::int32_t least, std::int32_t most) const;
  /// "low,high" with low below high.
  std::optional<std::pair<float, float>> Range(std::string_view name) const;
  /// Place in `words` of the word that the value is or begins.
  std::optional<std::size_t> Choice(std::string_view name, std::initializer_list<std::string_view> words) const;
  /// The same for each of the values between commas, without repeats; none for an empty value.
  std::optional<std::vector<std::size_t>> Choices(std::string_view name,
                                                  std::initializer_list<std::string_view> words) const;
  /// Facets by number or label, ascending and without repeats; none for an empty value.
  std::optional<std::vector<FacetNumber>> Facets(std::string_view name) const;
  /// The facets of `Facets`, or all if the option is not given.
  std::vector<FacetNumber> FacetsOrAll(std::string_view name) const;
  /// Places of reported scales, from 1, ascending and without repeats; none for an empty value.
  std::optional<std::vector<std::int32_t>> Scales(std::string_view name) const;

 private:
  const RequestLine::Option* Find(std::string_view name) const;
  FacetNumber FacetOf(std::string_view name, std::string_view item) const;

  const RequestLine& line_;
  const Analysis& analysis_;
};

/// The items of a list between commas, without blanks at their ends; none for an empty text.
std::vector<std::string_view> ListItems(std::string_view text);

}  // namespace tessaly
