#include "output/two_facet_file.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "model/response_kernel.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Between the labels of the facets of one side.
constexpr std::string_view kLabelSeparator = " - ";
/// Threshold (logit) below a category that was not observed; the next one takes it back.
constexpr float kUnobservedStep = 40;

/// Rasch-Andrich thresholds (logit) of categories 0 to the top of `scale`. Binomial and Poisson scales have those that
/// give the same probabilities (Wright & Masters 1982, chapter 3).
std::vector<float> Thresholds(ScaleNumber scale, const Analysis& analysis) {
  const ScaleTables& scales = analysis.Scales;
  const ModelType type = analysis.Models.Statements[scales.Scales[scale].ScaleModel].ModelType;
  const std::int32_t top = scales.Scales[scale].ScaleTopCategory;
  const ResponseKernel kernel(scales, analysis.Settings.HardwareExponent);
  std::vector<float> thresholds{0};
  float owed = 0;
  for (std::int32_t category = 1; category <= top; ++category) {
    float step = scales.CategoryStep(scale, category);
    if (type != ModelType::RatingScale && top > 1) {
      step = static_cast<float>(double(scales.CategoryStep(scale, 0)) *
                                (kernel.DiscriminationStatistic(type, top, category) -
                                 kernel.DiscriminationStatistic(type, top, category - 1)));
    } else if (scales.CategoryAnchor(scale, category) == CategoryAnchor::KeptUnobserved) {
      step = owed == 0 ? kUnobservedStep : 0;
      owed = kUnobservedStep;
    } else {
      step -= owed;
      owed = 0;
    }
    thresholds.push_back(step);
  }
  return thresholds;
}

/// The facets of one side, and how their labels are written.
class SideLabels {
 public:
  SideLabels(const std::vector<FacetNumber>& facets, const Analysis& analysis) : facets_(facets), analysis_(analysis) {}

  /// The names of the facets.
  std::string Title() const {
    std::vector<std::string> names;
    for (const FacetNumber facet : facets_) names.push_back(analysis_.Facets[facet].FacetLabel);
    return Joined(names, "/");
  }

  /// The labels of `elements` in fields of equal width.
  std::string Label(const std::vector<ElementIndex>& elements, std::string_view separator) const {
    std::vector<std::string> labels;
    for (std::size_t at = 0; at < facets_.size(); ++at) {
      const Facet& facet = analysis_.Facets[facets_[at]];
      labels.push_back(
          RightJustified(BareText(analysis_.Elements.ElementNumber[elements[at]]), facet.FacetNumberWidth) + " " +
          PadToWidth(analysis_.Elements.ElementLabel[elements[at]], facet.FacetLabelWidth,
                     analysis_.Settings.Encoding));
    }
    return Joined(labels, separator);
  }

  /// Width of a facet's field in a label.
  int Width(std::size_t at) const {
    const Facet& facet = analysis_.Facets[facets_[at]];
    return facet.FacetNumberWidth + 1 + facet.FacetLabelWidth;
  }

  int TotalWidth() const {
    int total = 0;
    for (std::size_t at = 0; at < facets_.size(); ++at)
      total += Width(at) + (at > 0 ? static_cast<int>(kLabelSeparator.size()) : 0);
    return total;
  }

  /// For each facet the place of its field in the label, as a variable `name` with the number of the facet.
  std::vector<std::string> Fields(std::string_view name) const {
    std::vector<std::string> fields;
    int start = 1;
    for (std::size_t at = 0; at < facets_.size(); ++at) {
      fields.push_back(std::string(name) + BareText(facets_[at].value) + "=$S" + BareText(start) + "W" +
                       BareText(Width(at)) + " ;" + GeneralText(facets_[at].value) + " " +
                       analysis_.Facets[facets_[at]].FacetLabel);
      start += Width(at) + static_cast<int>(kLabelSeparator.size());
    }
    return fields;
  }

  /// Measure of a combination in user units. `direction` is 1 for rows, where positive facets count upward, and -1 for
  /// columns.
  float Measure(const std::vector<ElementIndex>& elements, float direction) const {
    float sum = 0;
    for (std::size_t at = 0; at < facets_.size(); ++at) {
      const float measure = analysis_.Elements.ElementMeasure[elements[at]];
      sum += analysis_.Facets[facets_[at]].FacetPositive ? measure : -measure;
    }
    return analysis_.Settings.UserMeasure(direction * sum);
  }

 private:
  const std::vector<FacetNumber>& facets_;
  const Analysis& analysis_;
};

class TwoFacetFile {
 public:
  TwoFacetFile(const ZandrelRequest& request, const ResponseMatrix& matrix, const Analysis& analysis,
               RunControl& control, TextOutput& output)
      : request_(request),
        matrix_(matrix),
        analysis_(analysis),
        control_(control),
        output_(output),
        rows_(request.RowFacets, analysis),
        columns_(request.ColumnFacets, analysis),
        width_(static_cast<int>(BareText(matrix.High()).size())) {}

  void Write() {
    WriteTitle();
    WriteCodes();
    WriteLayout();
    WriteUnits();
    WriteCategories(HasSums());
    if (request_.AnchorScale && !HasSums()) WriteScaleAnchors();
    if (request_.AnchorColumns)
      WriteAnchors("iafile = *  ; item-column anchor values", matrix_.Columns(), columns_, -1);
    if (request_.AnchorRows) WriteAnchors("pafile = *  ; person-row anchor values", matrix_.Rows(), rows_, 1);
    WriteColumnLabels();
    if (request_.Data) WriteRows();
  }

  /// Cells hold sums of responses, which are on no scale of the analysis.
  bool HasSums() const { return matrix_.Repeats() && request_.Repeats == RepeatRule::Sum; }

 private:
  void Line(std::string_view text) { output_.WriteLine(TrimRight(text)); }

  void WriteTitle() {
    std::string_view title = analysis_.Settings.Title;
    if (title.starts_with('^')) title.remove_prefix(1);
    Line("Title = " + std::string(title));
    Line("item = " + columns_.Title() + "  ; column identification");
    Line("person = " + rows_.Title() + "  ; row identification");
  }

  void WriteCodes() {
    Line("xwide =" + GeneralText(width_) + "  ; width of datapoint");
    std::string codes;
    for (std::int32_t code = matrix_.Low(); code <= matrix_.High(); ++code)
      codes += RightJustified(BareText(code), width_);
    Line("codes = \"" + codes + "\"  ; valid data codes");
    if (!matrix_.Repeats()) return;
    if (request_.Repeats == RepeatRule::First) Line("; first data point in cell used");
    if (request_.Repeats == RepeatRule::Last) Line("; last data point in cell used");
    if (request_.Repeats == RepeatRule::Sum) Line("; sum of data points in cell used");
  }

  void WriteLayout() {
    const std::int32_t columns = matrix_.Columns().Size();
    Line("ni =" + GeneralText(columns) + "  ; number of data columns");
    Line("item1 = 1  ; starting column of data");
    Line("name1 =" + GeneralText(std::int64_t{columns} * width_ + 2) + "  ; start of row labels");
    for (const std::string& field : rows_.Fields("@pf")) Line(field);
    Line("namelen =" + GeneralText(rows_.TotalWidth()) + " ; row label length");
  }

  void WriteUnits() {
    const Settings& settings = analysis_.Settings;
    if (settings.Umean != 0) Line("umean =" + GeneralText(settings.Umean) + "  ; user mean measure");
    if (settings.Uscale != 1) Line("uscale =" + GeneralText(settings.Uscale) + "  ; user logit scaling conversion");
    if (settings.Udecimals != 2) Line("udecim =" + GeneralText(settings.Udecimals) + "  ; user logit decimal places");
  }

  void WriteCategories(bool sums) {
    const std::vector<ScaleNumber>& scales = analysis_.Scales.ScaleOrder;
    if (scales.size() != 1) return Line("groups = 0  ; allow each item to define its own rating scale");
    const StatementNumber statement = analysis_.Scales.Scales[scales.front()].ScaleModel;
    const DefinitionNumber definition = analysis_.Models.Statements[statement].ModelDefinition;
    if (definition == kNoDefinition || sums) return;
    Line("clfile = *  ; category labels");
    const std::vector<CategoryEntry>& entries = analysis_.Models.Definitions[definition].Categories;
    // The first entry is that of category -1.
    for (std::size_t at = 1; at < entries.size(); ++at) {
      if (!entries[at].Given) continue;
      const std::string& recode = entries[at].Recode;
      Line(BareText(static_cast<std::int64_t>(at) - 1) + " " + entries[at].Label +
           (recode.empty() ? "" : " (" + recode + ")"));
    }
    Line("*");
  }

  void WriteScaleAnchors() {
    if (analysis_.Scales.ScaleOrder.empty()) return;
    const ScaleNumber scale = analysis_.Scales.ScaleOrder.front();
    const std::vector<std::int32_t> raw = analysis_.Scales.RawCategories(scale);
    const std::vector<float> thresholds = Thresholds(scale, analysis_);
    const ModelType type = analysis_.Models.Statements[analysis_.Scales.Scales[scale].ScaleModel].ModelType;
    Line("safile = *  ; rating structure anchor values");
    for (std::size_t category = 0; category < raw.size(); ++category) {
      // Counts have no end: those that occur are enough.
      if (type == ModelType::Poisson && raw[category] > std::max(matrix_.High(), 1)) break;
      Line(BareText(raw[category]) + " " + Fixed2(thresholds[category] * analysis_.Settings.Uscale));
    }
    Line("*");
  }

  void WriteAnchors(std::string_view heading, const MatrixSide& side, const SideLabels& labels, float direction) {
    Line(heading);
    for (std::int32_t number = 1; number <= side.Size(); ++number) {
      const std::vector<ElementIndex> elements = side.Elements(number);
      Line(BareText(number) + " " + Fixed2(labels.Measure(elements, direction)) + " ; " +
           labels.Label(elements, " + "));
    }
    Line("*");
  }

  void WriteColumnLabels() {
    for (const std::string& field : columns_.Fields("@if")) Line(field);
    Line("&End");
    for (std::int32_t column = 1; column <= matrix_.Columns().Size(); ++column)
      Line(columns_.Label(matrix_.Columns().Elements(column), kLabelSeparator) +
           (column == 1 ? "  ; item-column labels" : ""));
    Line("END LABELS");
  }

  void WriteRows() {
    for (std::int32_t row = 1; row <= matrix_.Rows().Size(); ++row) {
      control_.Poll();
      std::string line;
      for (std::int32_t column = 1; column <= matrix_.Columns().Size(); ++column) {
        const std::optional<std::int32_t> response = matrix_.At(row, column);
        line += RightJustified(response ? BareText(*response) : ".", width_);
      }
      line += " " + rows_.Label(matrix_.Rows().Elements(row), kLabelSeparator);
      Line(line + (row == 1 ? "  ; row data + label" : ""));
    }
  }

  const ZandrelRequest& request_;
  const ResponseMatrix& matrix_;
  const Analysis& analysis_;
  RunControl& control_;
  TextOutput& output_;
  SideLabels rows_;
  SideLabels columns_;
  /// Columns of the file that a response takes up.
  int width_;
};

}  // namespace

void WriteZandrelFile(const ZandrelRequest& request, const Analysis& analysis, ObservationStore& store,
                      RunControl& control, Console& console, TextOutput& output) {
  const ResponseMatrix matrix(request.RowFacets, request.ColumnFacets, request.Repeats, analysis, store, control,
                              console);
  TwoFacetFile file(request, matrix, analysis, control, output);
  if (request.AnchorScale && file.HasSums())
    console.ShowWarning("Zandrel control & data: no structure anchors, since sums of responses are on no scale");
  file.Write();
}

}  // namespace tessaly
