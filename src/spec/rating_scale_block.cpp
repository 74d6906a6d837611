#include "spec/rating_scale_block.h"

#include <algorithm>
#include <unordered_set>

#include "spec/scale_code.h"
#include "spec/setting_values.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// The category of recodings that make a datum missing. Entries begin with it.
constexpr std::int32_t kMissingCategory = -1;
/// A block with one line may have entries for 256 categories.
constexpr std::size_t kMostDefinedCategories = 4'000'000;

RatingScaleDefinition DefinitionOf(const SplitLine& header) {
  RatingScaleDefinition definition;
  definition.Name = header.Value(1);
  definition.Code = UpperAscii(header.Value(2));
  definition.Specific = FirstLetter(header.Value(3)) == 'S';
  definition.Keep = FirstLetter(header.Value(4)) == 'K';
  definition.Subtitle = header.Value(6);
  // Categories -1 and 0 are there even in an empty block.
  definition.Categories.resize(2);
  return definition;
}

std::int32_t ParseCategory(std::string_view text, std::int32_t top) {
  if (text.find_first_of("-_") != std::string_view::npos) return kMissingCategory;
  const IntegerReading reading = ParseInt(text, top);
  if (reading.Trouble == IntegerReading::Problem::NonNumeric) return kMissingCategory;
  if (!reading.Good()) throw Halt{FailureCode::InvalidCategory, {}};
  return reading.Value;
}

RecodeRule RuleOf(std::string_view item, std::int32_t target) {
  RecodeRule rule;
  rule.Text = item;
  rule.Target = target;
  // A hyphen at the start is a sign.
  const std::size_t hyphen = item.find('-', 1);
  if (hyphen == std::string_view::npos || IsNumeric(item)) return rule;
  const std::string_view low = item.substr(0, hyphen);
  const std::string_view high = item.substr(hyphen + 1);
  if (!IsNumeric(low) || !IsNumeric(high)) throw Halt{FailureCode::RecodeRangeNotNumeric, {}};
  rule.IsRange = true;
  rule.Low = std::min(LeadingNumber(low), LeadingNumber(high));
  rule.High = std::max(LeadingNumber(low), LeadingNumber(high));
  return rule;
}

/// Reads the lines of one block.
class BlockReader {
 public:
  BlockReader(RatingScaleDefinition& definition, std::int32_t top) : definition_(definition), top_(top) {}

  void TakeCategory(const SplitLine& line) {
    const std::int32_t category = ParseCategory(line.Value(1), top_);
    if (std::all_of(line.Values.begin() + 1, line.Values.end(), [](const std::string& v) { return v.empty(); })) return;
    const auto at = static_cast<std::size_t>(category - kMissingCategory);
    if (at >= definition_.Categories.size()) definition_.Categories.resize(at + 1);
    CategoryEntry& entry = definition_.Categories[at];
    if (entry.Given) throw Halt{FailureCode::DuplicateCategory, {}};
    entry = {std::string(line.Value(2)), std::string(line.Value(3)), FirstLetter(line.Value(4)),
             std::string(line.Value(5)), true};
    TakeRecodes(entry.Recode, category);
  }

 private:
  /// The first category that names a value keeps it.
  void TakeRecodes(std::string_view list, std::int32_t target) {
    for (const std::string_view untrimmed : SplitAt(list, '+')) {
      const std::string_view item = TrimBlanks(untrimmed);
      if (item.empty()) continue;
      RecodeRule rule = RuleOf(item, target);
      if (named_.insert(rule.Text).second) definition_.Recodes.push_back(std::move(rule));
    }
  }

  RatingScaleDefinition& definition_;
  std::int32_t top_;
  std::unordered_set<std::string> named_;
};

}  // namespace

void ReadRatingScale(SpecContext& context, const SplitLine& line) {
  context.RefuseAsExtra();
  RatingScaleDefinition definition = DefinitionOf(line);
  const std::optional<ScaleCode> code = ParseScaleCode(definition.Code);
  if (!code) {
    context.Analysis.Input.LastLine = definition.Code;
    throw Halt{FailureCode::InvalidScaleType, {}};
  }
  BlockReader block(definition, code->Top);
  while (const std::optional<SplitLine> category = context.Reader.NextBlockLine()) {
    if (!category->Keyword.empty()) {
      context.Reader.Unread();
      break;
    }
    block.TakeCategory(*category);
  }
  context.DefinedCategories += definition.Categories.size();
  if (context.DefinedCategories > kMostDefinedCategories)
    throw Halt{FailureCode::TooManyModels, "Rating scale= has more than 4,000,000 categories in all its blocks"};
  context.Analysis.Models.Definitions.add(std::move(definition));
}

}  // namespace tessaly
