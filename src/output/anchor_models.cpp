#include "output/anchor_models.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "output/spec_text.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Most lines of one cell.
constexpr std::size_t kMostCellLines = 100000;

class ModelLines {
 public:
  ModelLines(const AnchorScaleNames& names, const Analysis& analysis, TextOutput& file)
      : names_(names), analysis_(analysis), file_(file), cells_(analysis.Models.Statements.size()) {
    for (const CellNumber cell : analysis.Models.Cells.all())
      cells_[analysis.Models.Cells[cell].CellModel].push_back(cell);
    for (const FacetNumber facet : analysis.Facets.all()) {
      for (const ElementIndex element : analysis.Facets[facet].Elements()) {
        const ElementIndex target = analysis.Elements.ElementStats[element].TargetElement;
        if (target != kUnspecifiedElement)
          aliases_[{facet, target}].push_back(analysis.Elements.ElementNumber[element]);
      }
    }
  }

  void Write(StatementNumber number) const {
    const ModelStatement& statement = analysis_.Models.Statements[number];
    for (const CellNumber cell : cells_[number]) WriteCell(cell, statement);
    if (statement.ModelHasHash || cells_[number].empty()) WriteGeneral(statement);
  }

 private:
  void WriteCell(CellNumber cell, const ModelStatement& statement) const {
    const ScaleNumber scale = analysis_.Models.Cells[cell].CellScale;
    const std::string& ownName = OwnScaleName(statement, analysis_.Models);
    const std::string rest = Rest(names_.Has(scale) ? names_.Of(scale) : ownName, statement);
    std::vector<std::string> lines = {""};
    for (const PositionNumber position : statement.ModelLow.all()) {
      std::vector<std::string> texts = Texts(cell, position, statement);
      if (texts.size() > kMostCellLines / lines.size()) texts.resize(1);
      std::vector<std::string> longer;
      for (const std::string& text : texts)
        for (const std::string& line : lines) longer.push_back(line + text + ",");
      lines = std::move(longer);
    }
    for (const std::string& positions : lines) file_.WriteLine(SpecLine(positions + rest, ownName));
  }

  void WriteGeneral(const ModelStatement& statement) const {
    std::string line;
    for (const PositionNumber position : statement.ModelLow.all()) line += statement.PositionText(position) + ",";
    file_.WriteLine(SpecLine(line + Rest(OwnScaleName(statement, analysis_.Models), statement)));
  }

  static std::string Rest(const std::string& scaleName, const ModelStatement& statement) {
    return scaleName + "," + statement.WeightField() + "," + statement.ModelField.back();
  }

  /// The position for each number by which data may name the cell's element.
  std::vector<std::string> Texts(CellNumber cell, PositionNumber position, const ModelStatement& statement) const {
    const std::string& text = statement.PositionText(position);
    if (!statement.IsHash(position)) return {text};
    const std::size_t hash = text.find('#');
    const std::size_t end = std::min(text.find_first_not_of("#-0123456789", hash), text.size());
    std::vector<std::string> texts;
    for (const std::int32_t number : Numbers(cell, position))
      texts.push_back(text.substr(0, hash) + BareText(number) + text.substr(end));
    return texts;
  }

  std::vector<std::int32_t> Numbers(CellNumber cell, PositionNumber position) const {
    const auto positions = static_cast<std::size_t>(analysis_.Fields.ActiveFacetCount());
    const std::size_t at =
        static_cast<std::size_t>(cell.value) * positions + static_cast<std::size_t>(position.value) - 1;
    const ElementIndex element = analysis_.Models.CellElements[at];
    std::vector<std::int32_t> numbers = {element == kNoElement ? analysis_.Settings.NullElement
                                                               : analysis_.Elements.ElementNumber[element]};
    const auto found = aliases_.find({analysis_.Fields.Positions[position].PositionFacet, element});
    if (found != aliases_.end()) numbers.insert(numbers.end(), found->second.begin(), found->second.end());
    return numbers;
  }

  const AnchorScaleNames& names_;
  const Analysis& analysis_;
  TextOutput& file_;
  Table<StatementNumber, std::vector<CellNumber>, 0> cells_;
  /// Numbers of the elements for which a target stands in.
  std::map<std::pair<FacetNumber, ElementIndex>, std::vector<std::int32_t>> aliases_;
};

}  // namespace

AnchorScaleNames::AnchorScaleNames(const ModelTables& models, const ScaleTables& scales)
    : prefix_(ChooseScalePrefix(models)), places_(scales.ScaleCount(), -1) {
  std::int32_t place = 0;
  for (const ScaleNumber scale : scales.ScaleOrder) places_[scale] = place++;
}

std::string AnchorScaleNames::Of(ScaleNumber scale) const {
  return prefix_ + BareText(places_[scale]);
}

std::string ChooseScalePrefix(const ModelTables& models) {
  std::vector<std::string> taken;
  for (const RatingScaleDefinition& definition : models.Definitions) taken.push_back(UpperAscii(definition.Name));
  for (const ModelStatement& statement : models.Statements) taken.push_back(statement.ScaleField());
  std::string prefix = "RS";
  const auto begins = [&](const std::string& name) { return name.starts_with(prefix); };
  while (std::any_of(taken.begin(), taken.end(), begins)) {
    if (prefix.back() < 'Z') {
      ++prefix.back();
    } else {
      prefix += 'A';
    }
  }
  return prefix;
}

const std::string& OwnScaleName(const ModelStatement& statement, const ModelTables& models) {
  if (statement.ModelDefinition == kNoDefinition) return statement.ScaleField();
  return models.Definitions[statement.ModelDefinition].Name;
}

void WriteAnchorModels(const AnchorScaleNames& names, const Analysis& analysis, TextOutput& file) {
  file.WriteLine("Models =");
  const ModelLines lines(names, analysis, file);
  for (const StatementNumber statement : analysis.Models.Statements.all()) lines.Write(statement);
  file.WriteLine("*");
}

}  // namespace tessaly
