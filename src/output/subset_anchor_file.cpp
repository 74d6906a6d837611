#include "output/subset_anchor_file.h"

#include <cstdint>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/number_text.h"

namespace tessaly {

namespace {

/// Highest group number that `Labels=` takes.
constexpr std::int32_t kHighestGroup = 32760;

/// The first subset of an element, 0 for none.
std::int32_t FirstSubset(ElementIndex element, const SubsetTable& subsets) {
  if (!subsets.ElementSubsets.holds(element) || subsets.ElementSubsets[element].empty()) return 0;
  return subsets.ElementSubsets[element].front();
}

/// Group numbers that no element has: those above all others, then any.
std::vector<std::int32_t> FreeGroups(const ElementTable& elements) {
  std::set<std::int32_t> used;
  for (const std::int16_t group : elements.ElementGroup) used.insert(std::abs(std::int32_t{group}));
  std::vector<std::int32_t> free;
  const std::int32_t highest = used.empty() ? 0 : *used.rbegin();
  for (std::int32_t group = highest + 1; group <= kHighestGroup; ++group) free.push_back(group);
  for (std::int32_t group = 1; group < highest; ++group)
    if (!used.contains(group)) free.push_back(group);
  return free;
}

class SubsetAnchorFile {
 public:
  SubsetAnchorFile(const Analysis& analysis, TextOutput& output)
      : analysis_(analysis), output_(output), freeGroups_(FreeGroups(analysis.Elements)) {}

  void WriteFacet(FacetNumber number) {
    const Facet& facet = analysis_.Facets[number];
    const std::map<std::int32_t, std::int32_t> groups = GroupsOf(facet);
    if (groups.size() < 2 || groups.size() > freeGroups_.size()) return;
    output_.WriteLine("");
    output_.WriteLine(proposed_ ? "And/or group anchor this facet:"
                                : "Group anchor this facet and/or the other facets (please experiment to see what "
                                  "works):");
    output_.WriteLine("");
    output_.WriteLine(BareText(number.value) + "," + facet.FacetLabel +
                      ", G ; group-anchoring at Umean =" + GeneralText(analysis_.Settings.Umean) + " with" +
                      GeneralText(static_cast<std::int64_t>(groups.size())) + " subsets");
    output_.WriteLine(
        " ; these element specifications can be placed in your Labels= after the existing element specifications for "
        "this facet");
    for (const ElementIndex element : facet.Elements()) WriteElement(element, groups);
    output_.WriteLine("*");
    proposed_ = true;
  }

  bool Proposed() const { return proposed_; }

 private:
  /// The group of each subset of the facet, as far as there are free ones: in the order of the elements.
  std::map<std::int32_t, std::int32_t> GroupsOf(const Facet& facet) const {
    std::map<std::int32_t, std::int32_t> groups;
    for (const ElementIndex element : facet.Elements()) {
      const std::int32_t subset = FirstSubset(element, analysis_.Subsets);
      if (subset == 0 || groups.contains(subset)) continue;
      const std::size_t next = groups.size();
      groups[subset] = next < freeGroups_.size() ? freeGroups_[next] : 0;
    }
    return groups;
  }

  void WriteElement(ElementIndex element, const std::map<std::int32_t, std::int32_t>& groups) {
    const auto group = groups.find(FirstSubset(element, analysis_.Subsets));
    if (group == groups.end()) return;
    output_.WriteLine(BareText(analysis_.Elements.ElementNumber[element]) + "," +
                      analysis_.Elements.ElementLabel[element] + "," + BareText(analysis_.Settings.Umean) + "," +
                      BareText(group->second));
  }

  const Analysis& analysis_;
  TextOutput& output_;
  std::vector<std::int32_t> freeGroups_;
  bool proposed_ = false;
};

}  // namespace

void WriteSubsetAnchorFile(const Analysis& analysis, Console& console, TextOutput& output) {
  console.ShowMessage("Constructing subset-group-anchor file:");
  console.ShowProgress(">", false);
  output.WriteLine("To resolve subset problems, copy-and-paste after Labels=");
  output.WriteLine("Non-center= must reference a facet that is not anchored or group-anchored.");
  SubsetAnchorFile file(analysis, output);
  for (const FacetNumber facet : analysis.Facets.all()) {
    file.WriteFacet(facet);
    console.ShowProgress(".", false);
  }
  if (!file.Proposed())
    output.WriteLine(
        " Sorry! Group-anchor file could not be constructed automatically. Please see Table 7 for subset numbers.");
  console.ShowProgress("<", true);
}

}  // namespace tessaly
