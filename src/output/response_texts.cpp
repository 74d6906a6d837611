#include "output/response_texts.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "data/data_line.h"
#include "data/recode.h"
#include "output/reference_texts.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// The raw category that `text`, which is no missing code, is read as; -1 if it is left out.
std::int32_t CategoryRead(std::string_view text, const RecodeTable& recodes, std::int32_t cut) {
  const std::optional<std::int32_t> target = recodes.Target(text);
  const std::int32_t number = target ? *target : DataField(text).Number;
  if (number < 0 || cut == 0) return number;
  return number >= cut ? 1 : 0;
}

/// All that could be read as some category: numbers up to `limit`, what the rules name, and other ways to write
/// numbers, which exact rules do not know.
std::vector<std::string> Candidates(const std::vector<RecodeRule>& rules, std::int32_t limit) {
  std::vector<std::string> candidates;
  for (std::int32_t number = 0; number <= limit; ++number) candidates.push_back(BareText(number));
  for (const RecodeRule& rule : rules) {
    const double whole = std::ceil(rule.Low);
    if (rule.IsRange && whole >= 0 && whole <= kHighestElementNumber)
      candidates.push_back(BareText(static_cast<std::int64_t>(whole)));
    if (IsDataField(rule.Text)) candidates.push_back(rule.Text);
  }
  for (std::int32_t number = 0; number <= limit && !rules.empty(); ++number)
    candidates.push_back("0" + BareText(number));
  return candidates;
}

}  // namespace

ResponseTexts::ResponseTexts(const Analysis& analysis) : analysis_(analysis), texts_(analysis.Scales.ScaleCount()) {}

const std::string& ResponseTexts::TextOf(ScaleNumber scale, std::int32_t category) {
  std::vector<std::string>& texts = texts_[scale];
  if (texts.empty()) texts = TextsOf(scale);
  return texts[static_cast<std::size_t>(category)];
}

std::vector<std::string> ResponseTexts::TextsOf(ScaleNumber scale) const {
  const Scale& facts = analysis_.Scales.Scales[scale];
  const DefinitionNumber definition = analysis_.Models.Statements[facts.ScaleModel].ModelDefinition;
  const std::vector<RecodeRule> rules =
      definition == kNoDefinition ? std::vector<RecodeRule>() : analysis_.Models.Definitions[definition].Recodes;
  const std::vector<std::string>& missing = analysis_.Settings.MissingCodes;
  const RecodeTable recodes(rules);
  const std::int32_t limit = std::max<std::int32_t>(analysis_.Scales.RawCategoryLimit, 1);
  std::vector<std::string> texts(static_cast<std::size_t>(limit) + 1);
  for (const std::string& candidate : Candidates(rules, std::max<std::int32_t>(limit, facts.ScaleDichotomyCut))) {
    if (std::find(missing.begin(), missing.end(), candidate) != missing.end()) continue;
    const std::int32_t read = CategoryRead(candidate, recodes, facts.ScaleDichotomyCut);
    if (read < 0 || read > limit) continue;
    std::string& text = texts[static_cast<std::size_t>(read)];
    // A category is best told by itself.
    if (text.empty() || candidate == BareText(read)) text = candidate;
  }
  for (std::int32_t category = 0; category <= limit; ++category)
    if (std::string& text = texts[static_cast<std::size_t>(category)]; text.empty()) text = BareText(category);
  return texts;
}

}  // namespace tessaly
