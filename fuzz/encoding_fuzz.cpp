// Any bytes as text of any encoding: cleaned, measured, cut, padded and shown, on paper and in pictures.
#include "fuzz/harness.h"
#include "graphs/display_text.h"
#include "spec/clean_line.h"
#include "support/bytes.h"

using namespace tessaly;

namespace {

void InReports(std::string_view text) {
  constexpr TextEncoding kEncodings[] = {{'?', '.'}, {'Y', '.'}, {'N', '.'}};
  for (const TextEncoding& encoding : kEncodings) {
    IsUtf8(text, encoding);
    SubstituteUtf8(text, encoding);
    const std::int32_t columns = DisplayLength(text, encoding);
    fuzz::Require(columns >= 0 && static_cast<std::size_t>(columns) <= 2 * text.size());
    for (const int width : {0, 1, 2, 7, 40}) PadToWidth(text, width, encoding);
  }
  fuzz::Require(QuotedLine(text).size() <= 4 * text.size());
}

void InPictures(std::string_view text) {
  const std::string shown = DisplayText(text);
  // What is fit to be shown is not changed by being made so again.
  fuzz::Require(DisplayText(shown) == shown);
  TextWidth(shown, 10);
  for (const double width : {0.0, 5.0, 50.0, 500.0}) {
    const std::string cut = Shortened(shown, 10, width);
    fuzz::Require(DisplayText(cut) == cut);
    const std::string inside = ShortenedInside(shown, 10, width);
    fuzz::Require(DisplayText(inside) == inside);
    fuzz::Require(Wrapped(shown, 10, width, 3).size() <= 3);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string work;
  for (const bool inSpecification : {false, true}) {
    CleanLine(text, inSpecification, work);
    InReports(work);
  }
  InReports(text);
  InPictures(text);
  return 0;
}
