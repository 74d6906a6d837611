#include "spec/load_models.h"

#include <string>
#include <utility>

#include "spec/model_position.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// Scale, weight and spare text behind the positions.
constexpr std::size_t kFurtherFields = 3;

/// Understands one statement. `blamed` is the field at hand.
class StatementLoader {
 public:
  StatementLoader(const std::vector<std::string>& written, FieldMap& fields, Console& console, bool& told)
      : written_(written), fields_(fields), console_(console), told_(told) {
    const auto positions = static_cast<std::size_t>(fields.ActiveFacetCount());
    statement_.ModelField.resize(1 + positions + kFurtherFields);
    statement_.ModelLow.assign(fields.ActiveFacetCount(), kAnyElement);
    statement_.ModelHigh.assign(fields.ActiveFacetCount(), kAnyElement);
  }

  ModelStatement Load() {
    TakeFields();
    for (const PositionNumber position : fields_.Positions.all()) TakePosition(position);
    TakeWeight();
    return std::move(statement_);
  }
  const std::string& Blamed() const { return blamed_; }

 private:
  std::string& FieldAt(std::size_t number) { return statement_.ModelField[number]; }

  void TakeFields() {
    const std::size_t most = statement_.ModelField.size() - 1;
    if (written_.size() > most) {
      blamed_ = written_[most];
      throw Halt{FailureCode::TooManyModelComponents, {}};
    }
    if (written_.size() < most - kFurtherFields + 1) throw Halt{FailureCode::TooFewModelComponents, {}};
    for (std::size_t i = 0; i < written_.size(); ++i) FieldAt(i + 1) = UpperAscii(TrimLeft(written_[i]));
  }

  void TakePosition(PositionNumber number) {
    std::string& field = FieldAt(static_cast<std::size_t>(number.value));
    blamed_ = field;
    const std::optional<ModelPosition> position = ParseModelPosition(field);
    if (!position) throw Halt{FailureCode::InvalidElementNumber, {}};
    if (position->Text.empty() && field.find_first_not_of("B-_ ") != std::string::npos)
      Tell(QuotedLine(field) + " names no elements, so the facet is left out. Please give ?, a number, a range or X");
    field = position->Text;
    statement_.ModelLow[number] = position->Low;
    statement_.ModelHigh[number] = position->High;
    statement_.ModelHasHash |= position->HasHash;
    if (position->Low != kIgnoredPosition) fields_.Positions[number].PositionInUse = true;
    if (!position->Negative) return;
    if (!statement_.HasNegative()) statement_.ModelNegative.assign(fields_.ActiveFacetCount(), 0);
    statement_.ModelNegative[number] = 1;
  }

  void TakeWeight() {
    std::string& weight = FieldAt(statement_.ModelField.size() - kFurtherFields + 1);
    if (weight.empty()) weight = "1";
    blamed_ = weight;
    if (!IsNumeric(weight)) throw Halt{FailureCode::NonNumericWeight, '"' + weight + '"'};
    const std::string& spare = statement_.ModelField.back();
    if (IsNumeric(spare))
      Tell(QuotedLine(spare) + " behind the weight " + weight + " is ignored. Decimals take a point");
  }

  /// Of thousands of statements, one is enough.
  void Tell(const std::string& text) {
    if (std::exchange(told_, true)) return;
    console_.ShowWarning("Models= " + QuotedLine(Joined(written_, ",")) + ": " + text);
  }

  const std::vector<std::string>& written_;
  FieldMap& fields_;
  Console& console_;
  bool& told_;
  ModelStatement statement_;
  std::string blamed_;
};

/// `?` in all positions, and dichotomies.
std::vector<std::string> DefaultStatement(std::int32_t positions) {
  std::vector<std::string> fields(static_cast<std::size_t>(positions), "?");
  fields.emplace_back("D");
  return fields;
}

std::string Quoted(const std::vector<std::string>& written, const std::string& blamed) {
  std::string text = Joined(written, " ");
  if (!blamed.empty()) text += " : " + blamed;
  return text;
}

}  // namespace

void LoadModels(const std::vector<StatementLine>& lines, FieldMap& fields, ModelTables& models, InputLine& at,
                Console& console) {
  bool told = false;
  const auto load = [&](const std::vector<std::string>& written, std::int64_t lineNumber) {
    StatementLoader loader(written, fields, console, told);
    try {
      models.Statements[models.Statements.add(loader.Load())].LineNumber = lineNumber;
    } catch (const Halt&) {
      at = {lineNumber, Quoted(written, loader.Blamed())};
      throw;
    }
  };
  models.Statements.clear();
  for (const StatementLine& line : lines) load(line.Fields, line.LineNumber);
  if (lines.empty()) load(DefaultStatement(fields.ActiveFacetCount()), 0);
}

}  // namespace tessaly
