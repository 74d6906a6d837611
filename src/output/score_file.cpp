#include "output/score_file.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "estimate/significance.h"
#include "reports/output_cell.h"
#include "spec/file_names.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Of a heading over a number, behind its blank.
constexpr int kHeadingWidth = 9;

float PerCount(double sum, double count) {
  return static_cast<float>(sum / (count == 0 ? 1.0 : count));
}

std::string CorrelationHeading(char ptBiserial) {
  return ptBiserial == 'Y' ? "PtBis" : ptBiserial == 'I' ? "PtBisI" : "PtMea";
}

/// One field: its heading and its cells as they stand in their lines, with what separates them from their neighbours.
struct ScoreField {
  std::string Heading;
  std::function<std::string(ElementIndex)> Cell;
};

/// The lines of one facet.
class ScoreLines {
 public:
  ScoreLines(FacetNumber number, OutputDestination destination, const Analysis& analysis)
      : number_(number),
        facet_(analysis.Facets[number]),
        elements_(analysis.Elements),
        settings_(analysis.Settings),
        labels_(settings_, destination),
        cells_(labels_.Delimiter()),
        labelWidth_(LabelWidth()) {
    std::vector<ScoreField> all = AllFields();
    for (std::size_t field = 0; field < std::min(all.size(), settings_.ScoreFields.size()); ++field)
      if (settings_.ScoreFields[field] == 'Y') fields_.push_back(std::move(all[field]));
  }
  ScoreLines(const ScoreLines&) = delete;
  ScoreLines& operator=(const ScoreLines&) = delete;

  bool HasFields() const { return !fields_.empty(); }
  bool Lists(ElementIndex element) const {
    return !settings_.OmitUnobserved || elements_.ElementStats[element].AllCount != 0;
  }

  std::string Title() const {
    const std::string& label = facet_.FacetLabel;
    return BareText(number_.value) + labels_.Delimiter() +
           (labels_.Fixed() ? labels_.Quoted(label) : labels_.Delimited(label));
  }

  std::string Headings() const {
    std::string line;
    for (const ScoreField& field : fields_) line += field.Heading;
    return Finished(std::move(line));
  }

  std::string Row(ElementIndex element) const {
    std::string line;
    for (const ScoreField& field : fields_) line += field.Cell(element);
    return Finished(std::move(line));
  }

 private:
  template <class Value>
  ScoreField Figure(const std::string& heading, int decimals, Value value) const {
    return {NumberHeading(heading),
            [this, decimals, value](ElementIndex element) { return cells_.CellFixedN(value(element), decimals); }};
  }

  ScoreField OfRecord(const std::string& heading, double ElementRecord::*field) const {
    return {NumberHeading(heading),
            [this, field](ElementIndex element) { return cells_.CellSum(elements_.ElementStats[element].*field); }};
  }

  ScoreField OfFit(const std::string& heading, float ElementFit::*field) const {
    return Figure(heading, 2, [this, field](ElementIndex element) { return elements_.Fit[element].*field; });
  }

  ScoreField ChiSquare(const std::string& heading, float ElementFit::*freedom, float ElementFit::*meanSquare) const {
    return Figure(heading, 2, [this, freedom, meanSquare](ElementIndex element) {
      return elements_.Fit[element].*freedom * elements_.Fit[element].*meanSquare;
    });
  }

  ScoreField Probability(const std::string& heading, float ElementFit::*zStd) const {
    return Figure(heading, 4, [this, zStd](ElementIndex element) {
      return static_cast<float>(NormalTwoSided(static_cast<double>(elements_.Fit[element].*zStd)));
    });
  }

  template <class Value>
  ScoreField Whole(const std::string& heading, Value value) const {
    return {NumberHeading(heading), [this, value](ElementIndex element) { return cells_.CellLong(value(element)); }};
  }

  /// In the order of `Settings::ScoreFields`.
  std::vector<ScoreField> AllFields() const {
    const auto score = settings_.TotalScore ? &ElementRecord::AllScore : &ElementRecord::RawScore;
    const auto count = settings_.TotalScore ? &ElementRecord::AllCount : &ElementRecord::ObservedCount;
    const float sign = facet_.FacetPositive ? 1.0F : -1.0F;
    return {
        OfRecord(settings_.TotalScore ? "T.Score" : "Score", score),
        OfRecord(settings_.TotalScore ? "T.Count" : "Count", count),
        Figure("Obs.Avge", 2,
               [this, score, count](ElementIndex element) {
                 const ElementRecord& stats = elements_.ElementStats[element];
                 return PerCount(stats.*score, stats.*count);
               }),
        Figure(settings_.FairOption == 'M' ? "FairMAvge" : "FairZAvge", 2,
               [this](ElementIndex element) {
                 return PerCount(static_cast<double>(elements_.Fit[element].FairScoreSum),
                                 elements_.ElementStats[element].ObservedCount);
               }),
        Figure("Measure", settings_.Udecimals,
               [this](ElementIndex element) { return settings_.UserMeasure(elements_.ElementMeasure[element]); }),
        Figure("S.E.", settings_.Udecimals,
               [this](ElementIndex element) { return settings_.UserSpread(elements_.Fit[element].StandardError); }),
        OfFit("InfitMS", &ElementFit::InfitMeanSquare),
        OfFit("InfitZ", &ElementFit::InfitZStd),
        OfFit("OutfitMS", &ElementFit::OutfitMeanSquare),
        OfFit("OutfitZ", &ElementFit::OutfitZStd),
        OfFit(CorrelationHeading(settings_.PtBiserial), &ElementFit::Correlation),
        OfFit("PtMeExp", &ElementFit::ExpectedCorrelation),
        OfFit("Discrim", &ElementFit::Discrimination),
        Figure("Displace", settings_.Udecimals,
               [this, sign](ElementIndex element) {
                 return settings_.Uscale * elements_.Fit[element].Displacement * sign;
               }),
        Whole("Status",
              [this](ElementIndex element) { return static_cast<std::int32_t>(elements_.ElementStatus[element]); }),
        Whole("Group", [this](ElementIndex element) { return elements_.ElementGroup[element]; }),
        Figure("Weight", 2, [this](ElementIndex element) { return elements_.ElementStats[element].ElementWeight; }),
        Whole("Sign", [this](ElementIndex) { return facet_.ShowsPositive() ? 1 : -1; }),
        ChiSquare("InfChiSqu", &ElementFit::InfitFreedom, &ElementFit::InfitMeanSquare),
        OfFit("Infitdf", &ElementFit::InfitFreedom),
        Probability("InfPr2s", &ElementFit::InfitZStd),
        ChiSquare("OutfChiSqu", &ElementFit::OutfitFreedom, &ElementFit::OutfitMeanSquare),
        OfFit("Outfitdf", &ElementFit::OutfitFreedom),
        Probability("OutfPr2s", &ElementFit::OutfitZStd),
        Whole(BareText(number_.value), [this](ElementIndex element) { return elements_.ElementNumber[element]; }),
        {LabelColumn(facet_.FacetLabel),
         [this](ElementIndex element) { return LabelColumn(elements_.ElementLabel[element]); }},
        Whole("F-Number", [this](ElementIndex) { return number_.value; }),
        {LastColumn("F-Label"), [cell = LastColumn(facet_.FacetLabel)](ElementIndex) { return cell; }},
    };
  }

  std::string NumberHeading(const std::string& heading) const {
    if (!labels_.Fixed()) return Separated(heading);
    const auto room = static_cast<std::size_t>(std::max(kHeadingWidth - labels_.QuoteWidth(), 0));
    return " " + RightJustified(labels_.Quoted(heading.substr(0, room)), kHeadingWidth);
  }

  std::string LabelColumn(const std::string& label) const {
    if (!labels_.Fixed()) return Separated(label);
    const std::string column = PadToWidth(label, labelWidth_, settings_.Encoding);
    // The closing mark belongs behind the label, not behind the blanks that fill its column.
    const std::size_t end = column.starts_with(label) ? label.size() : column.size();
    return " " + labels_.Quoted(column.substr(0, end)) + column.substr(end);
  }

  std::string LastColumn(const std::string& text) const {
    return labels_.Fixed() ? " " + labels_.Quoted(text) : Separated(text);
  }

  std::string Separated(const std::string& text) const { return labels_.Delimited(text) + labels_.Delimiter(); }

  std::string Finished(std::string line) const {
    if (!labels_.Fixed()) line.resize(line.size() - labels_.Delimiter().size());
    return line;
  }

  /// Of the listed elements: `FacetLabelWidth` leaves out those without observations.
  int LabelWidth() const {
    int width = facet_.FacetLabelWidth;
    if (settings_.OmitUnobserved) return width;
    for (const ElementIndex element : facet_.Elements())
      width = std::clamp(DisplayLength(elements_.ElementLabel[element], settings_.Encoding), width, kWidestLabel);
    return width;
  }

  FacetNumber number_;
  const Facet& facet_;
  const ElementTable& elements_;
  const Settings& settings_;
  LabelField labels_;
  OutputCell cells_;
  int labelWidth_;
  std::vector<ScoreField> fields_;
};

OutputDestination DestinationOf(const std::string& name) {
  const std::string extension = ExtensionOf(name);
  return extension == ".xls" || extension == ".xlsx" ? OutputDestination::Spreadsheet : OutputDestination::Plain;
}

}  // namespace

void WriteScoreFile(FacetNumber facet, OutputDestination destination, const Analysis& analysis, TextOutput& file) {
  const ScoreLines lines(facet, destination, analysis);
  const bool headings = analysis.Settings.HeadingLinesOption;
  const bool forR = destination == OutputDestination::R;
  if (headings && !forR) file.WriteLine(lines.Title());
  if (!lines.HasFields()) return;
  if (headings || forR) file.WriteLine(lines.Headings());
  for (const ElementIndex element : analysis.Facets[facet].Elements())
    if (lines.Lists(element)) file.WriteLine(lines.Row(element));
}

std::string ScoreFileName(const std::string& name, FacetNumber facet) {
  const std::string number = BareText(facet.value);
  std::string file = name.ends_with('/') ? name + "scorefil." : name;
  if (file.find('.', FolderOf(file).size()) == std::string::npos) file += '.';
  return file.ends_with('.') ? file + number + ".txt" : file.insert(file.rfind('.'), number);
}

std::string ScoreFilePath(const Settings& settings) {
  std::string path(TrimBlanks(settings.ScoreFileName));
  if (!path.empty() && FolderOf(path).empty()) path.insert(0, FolderOf(settings.OutputFileName));
  return path;
}

bool WriteAllScoreFiles(const std::string& path, const Analysis& analysis, RunControl& control, Console& console) {
  const OutputDestination destination = DestinationOf(path);
  for (const FacetNumber facet : analysis.Facets.all()) {
    if (analysis.Facets[facet].FacetLabel.empty()) continue;
    const std::string fileName = ScoreFileName(path, facet);
    console.ShowMessage("Writing score file for facet" + GeneralText(facet.value) + " to " + fileName);
    try {
      TextOutput file(fileName, &control);
      WriteScoreFile(facet, destination, analysis, file);
      file.Close();
    } catch (const Halt& halt) {
      console.ShowWarning("... Score file write failed ... " + fileName + ": " + FailureText(halt, analysis.Limits()));
      return false;
    }
  }
  return true;
}

}  // namespace tessaly
