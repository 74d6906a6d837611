#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "spec/read_specification.h"
#include "spec/scale_code.h"
#include "support/bytes.h"
#include "support/number_text.h"
#include "support/sort_keys.h"

namespace tessaly {
namespace {

/// The name of a definition in capitals.
struct NamedDefinition {
  std::string Name;
  DefinitionNumber Definition;
};

/// Definitions by name, the first of equal ones in order of appearance. Warns of equal names.
std::vector<NamedDefinition> SortedByName(const ModelTables& models, Console& console) {
  std::vector<NamedDefinition> names;
  for (const DefinitionNumber definition : models.Definitions.all())
    names.push_back({UpperAscii(models.Definitions[definition].Name), definition});
  ShellSort(names, [](const NamedDefinition& a, const NamedDefinition& b) {
    return a.Name != b.Name ? a.Name > b.Name : a.Definition > b.Definition;
  });
  for (std::size_t i = 1; i < names.size(); ++i)
    if (names[i].Name == names[i - 1].Name)
      console.ShowWarning("Warning (12)! Duplicate ratingscale= :" + models.Definitions[names[i].Definition].Name);
  return names;
}

DefinitionNumber FindDefinition(const std::string& name, const std::vector<NamedDefinition>& names) {
  const auto found =
      std::lower_bound(names.begin(), names.end(), name,
                       [](const NamedDefinition& entry, const std::string& key) { return entry.Name < key; });
  return found != names.end() && found->Name == name ? found->Definition : kNoDefinition;
}

float SingleOf(double value) {
  constexpr double kMost = double(std::numeric_limits<float>::max());
  return float(std::clamp(value, -kMost, kMost));
}

}  // namespace

void MatchScalesToModels(ModelTables& models, ScaleTables& scales, InputLine& at, Console& console) {
  console.ShowMessage("Matching elements to models ");
  const std::vector<NamedDefinition> names = SortedByName(models, console);
  for (ModelStatement& statement : models.Statements) {
    std::string& code = statement.ModelField[0];
    code = statement.ScaleField();
    statement.ModelDefinition = FindDefinition(code, names);
    if (statement.ModelDefinition != kNoDefinition) {
      code = models.Definitions[statement.ModelDefinition].Code;
      statement.ModelKeep = models.Definitions[statement.ModelDefinition].Keep;
    }
    const std::optional<ScaleCode> scale = ParseScaleCode(code);
    if (!scale) {
      at = {statement.LineNumber, code};
      throw Halt{FailureCode::InvalidScaleType, {}};
    }
    statement.ModelType = scale->ModelType;
    statement.ModelKeep |= scale->Keep;
    statement.ModelWeight = SingleOf(LeadingNumber(statement.WeightField()));
    scales.PoissonUsed |= scale->ModelType == ModelType::Poisson;
    if (scale->ModelType != ModelType::Missing)
      scales.RawCategoryLimit = std::max(scales.RawCategoryLimit, static_cast<std::int16_t>(scale->Top));
  }
}

}  // namespace tessaly
