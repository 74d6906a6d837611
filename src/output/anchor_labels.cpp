#include "output/anchor_labels.h"

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "output/spec_text.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

class LabelLines {
 public:
  LabelLines(bool flagAsAnchors, const Analysis& analysis, TextOutput& file)
      : flagAsAnchors_(flagAsAnchors),
        settings_(analysis.Settings),
        facets_(analysis.Facets),
        elements_(analysis.Elements),
        subsets_(analysis.Subsets),
        file_(file) {}

  void WriteFacet(FacetNumber number) const {
    const Facet& facet = facets_[number];
    const std::string priority = facet.FacetPriority == 1 ? "" : BareText(facet.FacetPriority);
    WriteFields(BareText(number.value) + ",", {facet.FacetLabel, Flags(facet), priority}, {});
    if (facet.FacetNullLabel != BareText(settings_.NullElement))
      WriteFields(GeneralText(settings_.NullElement) + "=", {facet.FacetNullLabel}, "Null element");
    for (const ElementIndex element : facet.Elements()) WriteElement(element, facet);
    file_.WriteLine("*");
  }

 private:
  void WriteElement(ElementIndex element, const Facet& facet) const {
    const int group = std::abs(elements_.ElementGroup[element]);
    const float weight = elements_.ElementStats[element].ElementWeight;
    const ElementIndex target = elements_.ElementStats[element].TargetElement;
    const std::vector<std::string> fields = {
        elements_.ElementLabel[element],
        HasValue(element, facet) ? SpecMeasure(elements_.ElementMeasure[element], settings_) : "",
        group == 0 ? "" : BareText(group),
        weight == 1 ? "" : SpecNumber(weight),
        target == kUnspecifiedElement ? "" : BareText(NumberOf(target)),
    };
    WriteFields(GeneralText(elements_.ElementNumber[element]) + "=", fields, SubsetNote(element));
  }

  /// `head` and the fields up to the last one with text.
  void WriteFields(std::string line, const std::vector<std::string>& fields, const std::string& comment) const {
    std::size_t count = fields.size();
    while (count > 0 && fields[count - 1].empty()) --count;
    for (std::size_t i = 0; i < count; ++i) line += fields[i] + ",";
    file_.WriteLine(SpecLine(line, comment));
  }

  std::string Flags(const Facet& facet) const {
    if (!flagAsAnchors_ || facet.FacetType() == 'D') return std::string(TrimRight(facet.FacetFlags));
    return facet.HasFlag('N') ? "AN" : "A";
  }

  bool HasValue(ElementIndex element, const Facet& facet) const {
    const ElementStatus status = elements_.ElementStatus[element];
    if (WithoutMeasure(status) || std::fabs(elements_.ElementMeasure[element]) > settings_.HardwareExponent)
      return false;
    if (flagAsAnchors_) return true;
    if (facet.FacetType() == 'A') return status == ElementStatus::Anchored;
    const bool groupAnchored = facet.FacetType() == 'G' || facet.FacetType() == 'X';
    return !groupAnchored || elements_.ElementGroup[element] > 0;
  }

  std::int32_t NumberOf(ElementIndex element) const {
    return element == kNoElement ? settings_.NullElement : elements_.ElementNumber[element];
  }

  std::string SubsetNote(ElementIndex element) const {
    if (!subsets_.Disjoint() || subsets_.ElementSubsets[element].empty()) return {};
    std::string note = "in subset:";
    for (const std::int32_t subset : subsets_.ElementSubsets[element]) note += GeneralText(subset);
    return note;
  }

  bool flagAsAnchors_;
  const Settings& settings_;
  const FacetTable& facets_;
  const ElementTable& elements_;
  const SubsetTable& subsets_;
  TextOutput& file_;
};

}  // namespace

void WriteAnchorLabels(bool flagAsAnchors, const Analysis& analysis, TextOutput& file) {
  file.WriteLine(analysis.Settings.LabelsBuild == 'N' ? "Labels = Nobuild" : "Labels =");
  const LabelLines lines(flagAsAnchors, analysis, file);
  for (const FacetNumber facet : analysis.Facets.all()) {
    if (!analysis.Facets[facet].FacetLabel.empty()) lines.WriteFacet(facet);
  }
}

}  // namespace tessaly
