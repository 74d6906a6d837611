#include "output/anchor_scales.h"

#include <algorithm>
#include <string>
#include <vector>

#include "output/spec_text.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::int32_t kMissingCategory = -1;
constexpr std::string_view kKeyword = "Rating (or partial credit) scale = ";
/// Where nothing stands but the commas between label, value, flag and recode list.
constexpr std::string_view kNothingSaid = ",,,";

/// The fields of a block's first line behind the name.
std::string HeaderFields(const RatingScaleDefinition& definition, bool specific) {
  std::string fields = "," + definition.Code + (specific ? ",S" : ",G") + (definition.Keep ? ",K" : ",O");
  if (!definition.Subtitle.empty()) fields += ",," + definition.Subtitle;
  return fields;
}

/// What a definition says of its categories besides their values.
class CategoryTexts {
 public:
  /// `definition` may be null: then there is nothing.
  explicit CategoryTexts(const RatingScaleDefinition* definition) : definition_(definition) {}

  const std::string& Label(std::int32_t category) const { return Entry(category).Label; }

  /// The values that become the category, without those that another category has already taken.
  std::string Recode(std::int32_t category) const {
    std::vector<std::string> values;
    if (definition_ != nullptr)
      for (const RecodeRule& rule : definition_->Recodes)
        if (rule.Target == category) values.push_back(rule.Text);
    return Joined(values, "+");
  }

  /// Label, no value, and recode list.
  std::string WithoutValue(std::int32_t category) const {
    return Label(category) + std::string(kNothingSaid) + Recode(category);
  }
  bool Any(std::int32_t category) const { return WithoutValue(category) != kNothingSaid; }

  const CategoryEntry& Entry(std::int32_t category) const {
    static const CategoryEntry none;
    const auto at = static_cast<std::size_t>(category - kMissingCategory);
    return definition_ != nullptr && at < definition_->Categories.size() ? definition_->Categories[at] : none;
  }

  /// The categories from -1 to `top` in an order in which overlapping ranges of recode lists have the effect that they
  /// have in the definition, where the first one counts: ascending, unless the lists are not.
  std::vector<std::int32_t> Order(std::int32_t top) const {
    std::vector<std::int32_t> order;
    if (definition_ != nullptr && !std::ranges::is_sorted(definition_->Recodes, {}, &RecodeRule::Target))
      for (const RecodeRule& rule : definition_->Recodes) AddOnce(rule.Target, order);
    for (std::int32_t category = kMissingCategory; category <= top; ++category) AddOnce(category, order);
    return order;
  }

 private:
  static void AddOnce(std::int32_t category, std::vector<std::int32_t>& order) {
    if (std::find(order.begin(), order.end(), category) == order.end()) order.push_back(category);
  }

  const RatingScaleDefinition* definition_;
};

const RatingScaleDefinition* DefinitionOf(const ModelStatement& statement, const ModelTables& models) {
  return statement.ModelDefinition == kNoDefinition ? nullptr : &models.Definitions[statement.ModelDefinition];
}

/// The block of one scale.
class ScaleBlock {
 public:
  ScaleBlock(ScaleNumber scale, bool flagAsAnchors, const Analysis& analysis, TextOutput& file)
      : scale_(scale),
        flagAsAnchors_(flagAsAnchors),
        models_(analysis.Models),
        tables_(analysis.Scales),
        settings_(analysis.Settings),
        statement_(models_.Statements[tables_.Scales[scale].ScaleModel]),
        definition_(DefinitionOf(statement_, models_)),
        texts_(definition_),
        file_(file) {}

  void Write(const std::string& name) {
    // The name is that of this scale alone, so that whatever names it shares the scale.
    const std::string fields =
        definition_ != nullptr ? HeaderFields(*definition_, false) : "," + statement_.ScaleField() + ",G,O";
    file_.WriteLine(SpecLine(std::string(kKeyword) + name + fields, definition_ != nullptr ? definition_->Name : ""));
    const bool ratings = statement_.ModelType == ModelType::RatingScale;
    for (const std::int32_t category : texts_.Order(tables_.RawCategoryLimit)) {
      if (ratings) {
        WriteStep(category);
      } else {
        WriteDiscrimination(category);
      }
    }
    if (ratings) WriteThresholds();
    file_.WriteLine("*");
  }

 private:
  void WriteStep(std::int32_t category) {
    const std::int32_t ordinal = category < 0 ? -1 : tables_.CategoryOrdinal(scale_, category);
    if (ordinal < 0 || tables_.CategoryAnchor(scale_, ordinal) == CategoryAnchor::KeptUnobserved) {
      WriteTexts(category);
    } else {
      WriteValue(category, StepText(ordinal), ordinal);
    }
  }

  void WriteDiscrimination(std::int32_t category) {
    if (category == 0) {
      WriteValue(0, SpecNumber(tables_.CategoryStep(scale_, 0)), 0);
    } else {
      WriteTexts(category);
    }
  }

  void WriteTexts(std::int32_t category) {
    if (texts_.Any(category)) file_.WriteLine(SpecLine(GeneralText(category) + "=" + texts_.WithoutValue(category)));
  }

  void WriteValue(std::int32_t category, const std::string& value, std::int32_t ordinal) {
    const bool anchor = flagAsAnchors_ || tables_.CategoryAnchor(scale_, ordinal) == CategoryAnchor::Anchored;
    file_.WriteLine(SpecLine(GeneralText(category) + "=" + texts_.Label(category) + "," + value +
                             (anchor ? ",A," : ", ,") + texts_.Recode(category) + ","));
  }

  /// The bottom category has no threshold.
  std::string StepText(std::int32_t ordinal) const {
    return ordinal == 0 ? "0" : SpecThreshold(tables_.CategoryStep(scale_, ordinal), settings_);
  }

  void WriteThresholds() {
    std::vector<std::string> values;
    for (std::int32_t ordinal = 0; ordinal <= tables_.Scales[scale_].ScaleTopCategory; ++ordinal) {
      const bool kept = tables_.CategoryAnchor(scale_, ordinal) == CategoryAnchor::KeptUnobserved;
      values.push_back(kept ? "" : StepText(ordinal));
    }
    const std::string list = Joined(values, ", ");
    if (list != "0") file_.WriteLine(" ; Rasch-Andrich Thresholds =" + list);
  }

  ScaleNumber scale_;
  bool flagAsAnchors_;
  const ModelTables& models_;
  const ScaleTables& tables_;
  const Settings& settings_;
  const ModelStatement& statement_;
  const RatingScaleDefinition* definition_;
  CategoryTexts texts_;
  TextOutput& file_;
};

void WriteDefinition(const RatingScaleDefinition& definition, TextOutput& file) {
  file.WriteLine(SpecLine(std::string(kKeyword) + definition.Name + HeaderFields(definition, definition.Specific)));
  const CategoryTexts texts(&definition);
  for (const std::int32_t category : texts.Order(static_cast<std::int32_t>(definition.Categories.size()) - 2)) {
    const CategoryEntry& entry = texts.Entry(category);
    const std::string flag = entry.Flag == ' ' ? "" : std::string(1, entry.Flag);
    const std::string fields = entry.Label + "," + entry.Value + "," + flag + "," + texts.Recode(category);
    if (fields != kNothingSaid) file.WriteLine(SpecLine(GeneralText(category) + "=" + fields));
  }
  file.WriteLine("*");
}

/// Definitions whose name is still in the `Models=` block, or that no scale of the block stands for.
Table<DefinitionNumber, char, 0> DefinitionsToCopy(const AnchorScaleNames& names, const Analysis& analysis) {
  const ModelTables& models = analysis.Models;
  Table<DefinitionNumber, char, 0> copied(models.Definitions.size(), 1);
  const auto set = [&](StatementNumber statement, bool copy) {
    const DefinitionNumber definition = models.Statements[statement].ModelDefinition;
    if (definition != kNoDefinition) copied[definition] = copy;
  };
  for (const ScaleNumber scale : analysis.Scales.ScaleOrder) set(analysis.Scales.Scales[scale].ScaleModel, false);
  for (const StatementNumber statement : models.Statements.all())
    if (models.Statements[statement].ModelHasHash || models.Statements[statement].ModelType == ModelType::Missing)
      set(statement, true);
  for (const ModelCell& cell : models.Cells)
    if (!names.Has(cell.CellScale)) set(cell.CellModel, true);
  return copied;
}

}  // namespace

void WriteAnchorScales(bool flagAsAnchors, const AnchorScaleNames& names, const Analysis& analysis, TextOutput& file) {
  for (const ScaleNumber scale : analysis.Scales.ScaleOrder)
    ScaleBlock(scale, flagAsAnchors, analysis, file).Write(names.Of(scale));
  const Table<DefinitionNumber, char, 0> copied = DefinitionsToCopy(names, analysis);
  for (const DefinitionNumber definition : copied.all())
    if (copied[definition] != 0) WriteDefinition(analysis.Models.Definitions[definition], file);
}

}  // namespace tessaly
