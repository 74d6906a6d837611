#include "output/bias_plot_file.h"

#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "output/spreadsheet_cell.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// What a spreadsheet can plot in one chart.
constexpr std::size_t kMostPlotted = 250;
constexpr int kFigureWidth = 10;
constexpr int kFigureDecimals = 2;
/// A contrast needs more responses than the terms that it compares.
constexpr double kTermsCompared = 2;
constexpr TermIndex kNoTerm{0};
constexpr std::string_view kEmptyCell = " ";

/// Nothing for a cell that stays empty.
using Figure = std::optional<double>;

/// What the figures of a row depend on besides its terms.
struct RowScale {
  /// 1 or -1: bias sizes count upwards for a positive facet.
  double Sign = 1;
  double Uscale = 1;
  double Umean = 0;
  /// Of the row's element, logit.
  double Measure = 0;
};

Figure AbsoluteMeasure(const BiasTerm& term, const RowScale& row) {
  return (row.Measure + row.Sign * double(term.BiasSize)) * row.Uscale + row.Umean;
}

Figure RelativeMeasure(const BiasTerm& term, const RowScale& row) {
  return row.Sign * double(term.BiasSize) * row.Uscale;
}

Figure AverageObservation(const BiasTerm& term, const RowScale& /*row*/) {
  return double(term.RawSum) / (term.CountSum == 0 ? 1.0 : double(term.CountSum));
}

Figure RelativeT(const BiasTerm& term, const RowScale& row) {
  if (!(term.StandardError > 0)) return {};
  return row.Sign * double(term.BiasSize) / double(term.StandardError);
}

double Contrast(const BiasTerm& a, const BiasTerm& b) {
  return double(a.BiasSize) - double(b.BiasSize);
}

Figure PairwiseMeasure(const BiasTerm& a, const BiasTerm& b, const RowScale& row) {
  return Contrast(a, b) * row.Uscale * row.Sign;
}

Figure PairwiseT(const BiasTerm& a, const BiasTerm& b, const RowScale& row) {
  return Contrast(a, b) / std::hypot(double(a.StandardError), double(b.StandardError)) * row.Sign;
}

bool Comparable(const BiasTerm& a, const BiasTerm& b) {
  return double(a.CountSum) + double(b.CountSum) > kTermsCompared && a.StandardError > 0 && b.StandardError > 0;
}

/// A kind of sheet: of terms, or of pairs of terms.
struct SheetKind {
  std::string_view Code;
  std::string_view Title;
  bool Oriented = true;
  Figure (*OfTerm)(const BiasTerm&, const RowScale&) = nullptr;
  Figure (*OfPair)(const BiasTerm&, const BiasTerm&, const RowScale&) = nullptr;
};

constexpr SheetKind kSheetKinds[] = {
    {"AM", ": Absolute Measure", true, AbsoluteMeasure, nullptr},
    {"PM", ": Pairwise Relative Measure", true, nullptr, PairwiseMeasure},
    {"AO", ": Average Observation", false, AverageObservation, nullptr},
    {"RM", ": Relative-to-overall Measure", true, RelativeMeasure, nullptr},
    {"PT", ": Pairwise t-statistic", true, nullptr, PairwiseT},
    {"TV", ": t-value relative-to-overall", true, RelativeT, nullptr},
};

/// The plotted elements of one facet. Their places, from 0, are in the order in which they were asked for.
class PlotAxis {
 public:
  PlotAxis(FacetNumber number, const Analysis& analysis)
      : number_(BareText(number.value)), facet_(analysis.Facets[number]), elements_(analysis.Elements) {}

  /// The place of an element, which gets the next one if it is new; nothing if it is one too many.
  std::optional<std::size_t> PlaceOf(ElementIndex element) {
    if (const auto known = places_.find(element); known != places_.end()) return known->second;
    if (plotted_.size() == kMostPlotted) return {};
    places_[element] = plotted_.size();
    plotted_.push_back(element);
    return plotted_.size() - 1;
  }

  std::size_t Size() const { return plotted_.size(); }
  bool Positive() const { return facet_.FacetPositive; }
  const std::string& FacetText() const { return number_; }
  std::string FacetCell() const { return CleanSpreadsheetCell(FacetTitle()); }
  std::string FacetTitle() const { return number_ + ". " + facet_.FacetLabel; }

  double Measure(std::size_t place) const { return double(elements_.ElementMeasure[plotted_[place]]); }
  std::string Number(std::size_t place) const { return BareText(elements_.ElementNumber[plotted_[place]]); }
  const std::string& Label(std::size_t place) const { return elements_.ElementLabel[plotted_[place]]; }
  bool LabelTellsMore(std::size_t place) const { return Label(place) != Number(place); }
  std::string NumberAndLabel(std::size_t place) const { return Number(place) + ". " + Label(place); }
  /// What names an element where its number does not stand beside it.
  std::string FullLabel(std::size_t place) const {
    return LabelTellsMore(place) ? NumberAndLabel(place) : Label(place);
  }

 private:
  std::string number_;
  const Facet& facet_;
  const ElementTable& elements_;
  std::map<ElementIndex, std::size_t> places_;
  std::vector<ElementIndex> plotted_;
};

/// The three cells in front of the figures of a row.
std::string RowHead(const PlotAxis& rows, std::size_t a) {
  return rows.Number(a) + '\t' + CleanSpreadsheetCell(rows.Label(a)) + '\t' + CleanSpreadsheetCell(rows.FullLabel(a));
}

std::string RowHead(const PlotAxis& rows, std::size_t a, std::size_t b) {
  const std::string labels = rows.Label(a) + " _ " + rows.Label(b);
  const bool moreToTell = rows.LabelTellsMore(a) || rows.LabelTellsMore(b);
  return rows.Number(a) + '_' + rows.Number(b) + '\t' + CleanSpreadsheetCell(labels) + '\t' +
         CleanSpreadsheetCell(moreToTell ? rows.NumberAndLabel(a) + " _ " + rows.NumberAndLabel(b) : labels);
}

class BiasPlot {
 public:
  BiasPlot(const BiasTerms& terms, const Analysis& analysis, TextOutput& file)
      : terms_(terms),
        uscale_(double(analysis.Settings.Uscale)),
        umean_(double(analysis.Settings.Umean)),
        file_(file),
        first_(terms.Positions()[0].BiasFacet, analysis),
        second_(terms.Positions()[1].BiasFacet, analysis),
        plotted_(kMostPlotted * kMostPlotted, kNoTerm) {
    for (const TermIndex term : terms.Terms.all()) {
      if (!terms.Terms[term].Estimable()) continue;
      const auto first = first_.PlaceOf(terms.Element(term, 0));
      const auto second = second_.PlaceOf(terms.Element(term, 1));
      if (first && second) {
        plotted_[*first * kMostPlotted + *second] = term;
      } else {
        pruned_ = true;
      }
    }
  }

  /// Both sheets of a kind.
  void Write(const SheetKind& kind) {
    WriteSheet(kind, first_, second_);
    WriteSheet(kind, second_, first_);
  }

  bool Pruned() const { return pruned_; }

 private:
  void WriteSheet(const SheetKind& kind, const PlotAxis& rows, const PlotAxis& columns) {
    const bool pairs = kind.OfPair != nullptr;
    const bool positive = !kind.Oriented || (pairs ? columns : rows).Positive();
    WriteHeading(kind, positive, rows, columns);
    const RowScale scale{positive ? 1.0 : -1.0, uscale_, umean_};
    if (pairs) {
      WritePairs(kind, scale, rows, columns);
    } else {
      WriteTerms(kind, scale, rows, columns);
    }
    WriteLine("");
  }

  void WriteHeading(const SheetKind& kind, bool positive, const PlotAxis& rows, const PlotAxis& columns) {
    const std::string title = rows.FacetTitle()
                                  .append(kind.Title)
                                  .append(!kind.Oriented ? ""
                                          : positive     ? " (+)"
                                                         : " (-)");
    WriteLine(std::string(kind.Code) + '-' + rows.FacetText() + '-' + columns.FacetText() + '\t' + title + "\t\t" +
              columns.FacetCell());
    // As many cells in front as a row has, so that each label stands over its column.
    std::string line = "Number\t" + rows.FacetCell() + '\t';
    for (std::size_t column = 0; column < columns.Size(); ++column)
      line += '\t' + CleanSpreadsheetCell(columns.FullLabel(column));
    WriteLine(line);
  }

  void WriteTerms(const SheetKind& kind, RowScale scale, const PlotAxis& rows, const PlotAxis& columns) {
    for (std::size_t row = 0; row < rows.Size(); ++row) {
      scale.Measure = rows.Measure(row);
      const std::string cells = Cells(columns, [&](std::size_t column) -> Figure {
        const BiasTerm* const term = TermAt(rows, row, column);
        return term == nullptr ? Figure() : kind.OfTerm(*term, scale);
      });
      if (!cells.empty()) WriteLine(RowHead(rows, row) + cells);
    }
  }

  void WritePairs(const SheetKind& kind, const RowScale& scale, const PlotAxis& rows, const PlotAxis& columns) {
    std::size_t written = 0;
    for (std::size_t a = 0; a < rows.Size(); ++a) {
      for (std::size_t b = a + 1; b < rows.Size(); ++b) {
        const std::string cells = Cells(columns, [&](std::size_t column) -> Figure {
          const BiasTerm* const one = TermAt(rows, a, column);
          const BiasTerm* const other = TermAt(rows, b, column);
          if (one == nullptr || other == nullptr || !Comparable(*one, *other)) return {};
          return kind.OfPair(*one, *other, scale);
        });
        if (cells.empty()) continue;
        if (written == kMostPlotted) {
          pruned_ = true;
          return;
        }
        WriteLine(RowHead(rows, a, b) + cells);
        ++written;
      }
    }
  }

  /// A tab and a cell for each column; empty if no column has a figure.
  template <class FigureOfColumn>
  std::string Cells(const PlotAxis& columns, FigureOfColumn figureOf) const {
    std::string cells;
    bool any = false;
    for (std::size_t column = 0; column < columns.Size(); ++column) {
      const Figure figure = figureOf(column);
      any |= figure.has_value();
      const std::string text = figure ? FormatNumber(*figure, kFigureWidth, kFigureDecimals) : std::string();
      cells.append("\t").append(figure ? TrimLeft(text) : kEmptyCell);
    }
    return any ? cells : std::string();
  }

  const BiasTerm* TermAt(const PlotAxis& rows, std::size_t row, std::size_t column) const {
    const bool firstInRows = &rows == &first_;
    const TermIndex term = firstInRows ? plotted_[row * kMostPlotted + column] : plotted_[column * kMostPlotted + row];
    return term == kNoTerm ? nullptr : &terms_.Terms[term];
  }

  void WriteLine(std::string_view line) { file_.WriteLine(line); }

  const BiasTerms& terms_;
  double uscale_;
  double umean_;
  TextOutput& file_;
  PlotAxis first_;
  PlotAxis second_;
  /// By places on the first and the second axis.
  std::vector<TermIndex> plotted_;
  bool pruned_ = false;
};

std::string FirstLine(const BiasTerms& terms, std::string_view title, std::string_view runDate) {
  if (!title.empty() && title.front() == '^') title.remove_prefix(1);
  std::string line = std::string(runDate) + "\t\t";
  line.append(title).append("\tBias/Interaction: ").append(TrimRight(terms.Label()));
  return line;
}

}  // namespace

void BiasPlotFile(const BiasTerms& terms, BiasPlotSheets sheets, const Analysis& analysis, std::string_view runDate,
                  TextOutput& file, Console& console) {
  if (terms.Positions().size() != 2) return;
  file.WriteLine(FirstLine(terms, analysis.Settings.Title, runDate));
  BiasPlot plot(terms, analysis, file);
  for (const SheetKind& kind : kSheetKinds) {
    if (kind.OfPair != nullptr ? sheets.Pairs : sheets.Terms) plot.Write(kind);
  }
  if (plot.Pruned()) console.ShowWarning("Warning (11)! Plotted interactions pruned to first 250 per Excel plot");
}

}  // namespace tessaly
