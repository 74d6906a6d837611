#include "output/residual_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "data/observation_pass.h"
#include "estimate/observation_fit.h"
#include "output/cell_line.h"
#include "reports/output_cell.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// The place of the digit of decimals in `ResponseFields`, from 0.
constexpr std::size_t kDecimalsPlace = 11;
constexpr int kUsualDecimals = 2;

bool Selected(const Settings& settings, std::size_t place) {
  return place < settings.ResponseFields.size() && settings.ResponseFields[place] == 'Y';
}

/// The figures of one row. Measures are in user units.
struct Figures {
  std::int32_t Response = 0;
  std::int32_t Step = 0;
  std::int32_t Status = 0;
  float Expected = 0;
  float Residual = 0;
  float Variance = 0;
  float StandardizedResidual = 0;
  float Weight = 0;
  float LogProbability = 0;
  float Measure = 0;
  float Displacement = 0;
};

/// A column of figures: whole ones, or real ones.
struct FigureColumn {
  /// In `ResponseFields`, from 0.
  std::size_t Place;
  std::string_view Heading;
  std::int32_t Figures::*Whole;
  float Figures::*Real;
};

/// In the order of the row.
constexpr FigureColumn kFigureColumns[] = {
    {0, "Obs", &Figures::Response, nullptr},    {1, "Stp", &Figures::Step, nullptr},
    {2, "Exp", nullptr, &Figures::Expected},    {3, "Res", nullptr, &Figures::Residual},
    {4, "Var", nullptr, &Figures::Variance},    {5, "StRes", nullptr, &Figures::StandardizedResidual},
    {6, "Wt", nullptr, &Figures::Weight},       {7, "LProb", nullptr, &Figures::LogProbability},
    {8, "Measure", nullptr, &Figures::Measure}, {13, "Displ", nullptr, &Figures::Displacement},
    {12, "Status", &Figures::Status, nullptr},
};

/// What the columns behind the figures tell of the elements.
enum class ElementField { Number, Measure, Label };

/// A column for each data column.
struct ElementColumns {
  std::size_t Place;
  ElementField Field;
  /// Behind the number of the facet; empty for the facet's label as heading.
  std::string_view Heading;
};

/// In the order of the row.
constexpr ElementColumns kElementColumns[] = {
    {9, ElementField::Number, "E"},
    {14, ElementField::Measure, "M"},
    {10, ElementField::Label, ""},
};

template <class Column, std::size_t N>
std::vector<Column> SelectedOf(const Column (&columns)[N], const Settings& settings) {
  std::vector<Column> selected;
  for (const Column& column : columns) {
    if (Selected(settings, column.Place)) selected.push_back(column);
  }
  return selected;
}

/// The columns that a file has.
struct ResidualColumns {
  explicit ResidualColumns(const Settings& settings)
      : OfFigures(SelectedOf(kFigureColumns, settings)), OfElements(SelectedOf(kElementColumns, settings)) {}

  std::vector<FigureColumn> OfFigures;
  std::vector<ElementColumns> OfElements;

  bool None() const { return OfFigures.empty() && OfElements.empty(); }
};

Figures FiguresOf(const Observation& obs, const Analysis& analysis, ResponseKernel& kernel) {
  Figures figures;
  figures.Response = obs.ObsResponse;
  figures.Step = obs.ObsOrdinal;
  figures.Status = static_cast<std::int32_t>(obs.Status);
  if (obs.ObsResponse != obs.ObsOrdinal) figures.Step += analysis.Scales.Scales[obs.CurrentScale].ScaleBottomRaw;
  if (!TakesPart(obs.Status)) return figures;
  const Settings& settings = analysis.Settings;
  const ObservationFit fit = FitAt(obs, obs.MeasureSum, analysis.Scales, kernel);
  const float probability = std::max(kernel.Probability(obs.ObsOrdinal), settings.SmallestNumber);
  figures.Expected = fit.ReportedExpectation();
  figures.Residual = fit.Moments.ResponseResidual;
  figures.Variance = fit.Moments.ResponseVariance;
  figures.StandardizedResidual = HeldResidual(fit.Moments);
  figures.Weight = obs.ObsWeight;
  figures.LogProbability = static_cast<float>(std::log(static_cast<double>(probability)));
  figures.Measure = settings.UserMeasure(obs.MeasureSum);
  figures.Displacement = figures.Residual / std::max(figures.Variance, settings.SmallestNumber) * settings.Uscale;
  return figures;
}

/// The cells of all elements, made once; those of the null element are kept under `kNoElement`.
class ElementCells {
 public:
  ElementCells(const std::vector<ElementColumns>& columns, const LabelField& labels, int decimals,
               const Analysis& analysis)
      : perElement_(columns.size()), ends_{0} {
    const ElementTable& elements = analysis.Elements;
    const Settings& settings = analysis.Settings;
    const OutputCell cell(labels.Delimiter());
    const auto labelCell = [&](const std::string& label) {
      if (labels.Fixed()) return " " + PadToWidth(label, kFieldWidth - 1, settings.Encoding);
      return labels.Delimited(label) + labels.Delimiter();
    };
    ends_.reserve((static_cast<std::size_t>(elements.ElementCount()) + 1) * perElement_ + 1);
    for (ElementIndex element = kNoElement; element <= elements.ElementNumber.last(); ++element) {
      const bool none = element == kNoElement;
      for (const ElementColumns& column : columns) {
        switch (column.Field) {
          case ElementField::Number:
            Add(cell.CellLong(none ? settings.NullElement : elements.ElementNumber[element]));
            break;
          case ElementField::Measure:
            Add(none ? cell.CellLong(0)
                     : cell.CellFixedN(settings.UserMeasure(elements.ElementMeasure[element]), decimals));
            break;
          case ElementField::Label:
            Add(none ? cell.CellText("") : labelCell(elements.ElementLabel[element]));
            break;
        }
      }
    }
    text_.append(CellLine::kPadding, ' ');
  }

  /// The cell of an element in the columns of this place, from 0. More characters may be read behind it
  /// (`CellLine::kPadding`).
  std::string_view Of(ElementIndex element, std::size_t place) const {
    const std::size_t* const ends = ends_.data() + static_cast<std::size_t>(element.value) * perElement_ + place;
    return {text_.data() + ends[0], ends[1] - ends[0]};
  }

 private:
  void Add(std::string_view cell) {
    text_ += cell;
    ends_.push_back(text_.size());
  }

  std::size_t perElement_;
  std::string text_;
  /// Where the cells end, behind a 0.
  std::vector<std::size_t> ends_;
};

/// Makes the rows.
class ResidualLine {
 public:
  ResidualLine(const ResidualColumns& columns, const LabelField& labels, int decimals, const Analysis& analysis,
               ResponseKernel& kernel)
      : columns_(columns),
        analysis_(analysis),
        kernel_(kernel),
        cells_(columns.OfElements, labels, decimals, analysis),
        line_(labels.Delimiter(), decimals) {
    for (const DataColumn& column : analysis.Fields.Columns) positions_.push_back(column.ColumnPosition);
  }

  std::string_view Of(const Observation& obs) {
    const Figures figures = FiguresOf(obs, analysis_, kernel_);
    line_.Clear();
    for (const FigureColumn& column : columns_.OfFigures) {
      if (column.Whole != nullptr) {
        line_.AddWhole(figures.*column.Whole);
      } else {
        line_.AddReal(figures.*column.Real);
      }
    }
    for (std::size_t place = 0; place < columns_.OfElements.size(); ++place) {
      for (const PositionNumber position : positions_) line_.AddPaddedCell(cells_.Of(ElementAt(position, obs), place));
    }
    return line_.Line();
  }

 private:
  static ElementIndex ElementAt(PositionNumber position, const Observation& obs) {
    if (position.value == 0) return kNoElement;
    return obs.Elements[static_cast<std::size_t>(position.value) - 1].CurrentElement;
  }

  const ResidualColumns& columns_;
  const Analysis& analysis_;
  ResponseKernel& kernel_;
  ElementCells cells_;
  CellLine line_;
  /// Of the data columns.
  std::vector<PositionNumber> positions_;
};

/// A label column of a heading of fixed fields: as wide as those of the rows, which begin with a blank.
std::string LabelHeading(const std::string& facetLabel, const LabelField& labels, const TextEncoding& encoding) {
  const std::string shown = PadToWidth(facetLabel, kFieldWidth - labels.QuoteWidth(), encoding);
  return PadToWidth(labels.Quoted(TrimRight(shown)), kFieldWidth, encoding);
}

std::string HeadingLine(const ResidualColumns& columns, const LabelField& labels, const Analysis& analysis) {
  std::string line;
  const auto add = [&](std::string_view heading) {
    line += labels.Fixed() ? RightJustified(labels.Quoted(heading), kFieldWidth)
                           : labels.Delimited(heading) + labels.Delimiter();
  };
  for (const FigureColumn& column : columns.OfFigures) add(column.Heading);
  for (const ElementColumns& group : columns.OfElements) {
    const bool fixedLabels = labels.Fixed() && group.Field == ElementField::Label;
    if (fixedLabels) line += ' ';
    for (const DataColumn& column : analysis.Fields.Columns) {
      const FacetNumber facet = column.ColumnFacet;
      const std::string label = facet.value > 0 ? analysis.Facets[facet].FacetLabel : std::string();
      if (fixedLabels) {
        line += LabelHeading(label, labels, analysis.Settings.Encoding);
      } else {
        add(group.Field == ElementField::Label ? label : BareText(facet.value).append(group.Heading));
      }
    }
  }
  if (!labels.Fixed()) line.resize(line.size() - labels.Delimiter().size());
  return line;
}

bool Wanted(ResidualRows rows, ReadStatus status) {
  return rows == ResidualRows::All || (rows == ResidualRows::Used) == TakesPart(status);
}

}  // namespace

int ResidualDecimals(const Settings& settings) {
  const std::string& fields = settings.ResponseFields;
  const bool given = kDecimalsPlace < fields.size() && IsDigit(fields[kDecimalsPlace]);
  return given ? fields[kDecimalsPlace] - '0' : kUsualDecimals;
}

bool WriteResidualRows(const LabelField& labels, int decimals, ResidualRows rows, const Analysis& analysis,
                       ObservationStore& store, ResponseKernel& kernel, RunControl& control, Console& console,
                       TextOutput& file) {
  const ResidualColumns columns(analysis.Settings);
  if (columns.None()) return true;
  control.FastForward = false;
  ResidualLine line(columns, labels, decimals, analysis, kernel);
  for (const Observation& obs : ObservationPass(store, analysis, control, console)) {
    if (control.FastForward) {
      control.FastForward = false;
      return false;
    }
    if (Wanted(rows, obs.Status)) file.WriteLine(line.Of(obs));
  }
  return true;
}

bool WriteResidualFile(ResidualRows rows, OutputDestination destination, const Analysis& analysis,
                       ObservationStore& store, ResponseKernel& kernel, RunControl& control, Console& console,
                       TextOutput& file) {
  console.ShowMessage("Writing residual output file ...");
  const Settings& settings = analysis.Settings;
  const LabelField labels(settings, destination);
  const ResidualColumns columns(settings);
  if ((settings.HeadingLinesOption || destination == OutputDestination::R) && !columns.None())
    file.WriteLine(HeadingLine(columns, labels, analysis));
  return WriteResidualRows(labels, ResidualDecimals(settings), rows, analysis, store, kernel, control, console, file);
}

}  // namespace tessaly
