// Any bytes as a template of a table row (the first line) and as what fills it (one line each): a line that begins with
// a figure is a number, in each of the four ways, any other is text.
#include "fuzz/harness.h"
#include "reports/edit_word.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"

using namespace tessaly;

namespace {

void Fill(EditWord& word, std::string_view line) {
  const double value = LeadingNumber(line);
  if (!IsNumeric(line)) {
    word.EditText(line);
  } else if (line.size() % 4 == 0) {
    word.EditDouble(value);
  } else if (line.size() % 4 == 1) {
    word.EditLong(RoundToLong(value));
  } else if (line.size() % 4 == 2) {
    word.EditInteger(RoundToInteger(static_cast<float>(value))).EditSingle(static_cast<float>(value));
  } else {
    word.EditScore(value);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string_view> lines =
      SplitAt(std::string_view(reinterpret_cast<const char*>(data), size), '\n');
  EditWord word(lines.front());
  try {
    for (const std::string_view line : lines)
      if (&line != &lines.front()) Fill(word, line);
  } catch (const FatalError&) {
  }
  word.Line();
  return 0;
}
