// Any bytes as data lines. The first character chooses the specification that reads them, so that every road from a
// field to an observation is walked: numbers and labels, ranges, derived columns, recoding, lines that are skipped.
#include <array>

#include "data/data_reader.h"
#include "data/observation_store.h"
#include "fuzz/harness.h"
#include "spec/input_stack.h"
#include "spec/read_specification.h"
#include "state/run_control.h"
#include "support/failure.h"

using namespace tessaly;

namespace {

constexpr std::array<std::string_view, 8> kSpecifications = {
    // Numbers and ranges.
    "Facets=3\nModels=?,?,?,R9\nLabels=\n1,P\n1-9\n*\n2,J\n1-5\n*\n3,I\n1-9=i\n*\n",
    // Labels, lines that are skipped.
    "Facets=2\nDelements=LN\nInvalid lines=Repeated\nModels=\n?,#,R5\nann,?,D\n*\nLabels=Nobuild\n1,P\n1,ann\n2,bob\n3,"
    "c d\n*\n2,J\n1-5\n*\n",
    // Columns from labels, from groups, and from counters.
    "Facets=4\nDvalues=\n2,1,1,1\n3,1,$G\n4,$L\n*\nModels=?,?,?,?,B3\nLabels=\n1,P\n1,1one,,1\n2,2two,,2\n*\n2,J\n1-"
    "5\n*\n"
    "3,K\n1-5\n*\n4,L\n",
    // Columns without facet or for the same facet, differences of two elements.
    "Facets=2\nEntered=1,0,2,2\nModels=?,?,-?,R9K\nLabels=\n1,P\n1-9\n*\n2,J\n1-5\n*\n",
    // Recoding, missing responses, text responses.
    "Facets=2\nMissing=.,99\nModels=?,?,mine\nRating "
    "scale=mine,R9,S,O\n0,zero,,,a\n1,one,0,A,b\n2,two,1,A,5-7\n3,,,,\n*\n"
    "Labels=\n1,P\n1-9\n*\n2,J\n1-5\n*\n",
    // Counts, proportions, many statements with weights.
    "Facets=2\nReplication=W\nModels=\n1,?,P\n2-3,?,B100,2\n4,X,M\n#,5,R\n?,?,R254K,0.5\n*\nLabels=\n1,P\n1-9\n*\n2,"
    "J\n"
    "1-5\n*\n",
    // Traced, with elements that nobody listed.
    "Facets=3\nQuery=Y\nNull=5\nModels=?,?,?,R\nLabels=\n1,P\n*\n2,J,,,A\n1=x,,1\n*\n3,I\n9\n*\n",
    // Derived columns that go round.
    "Facets=3\nDvalues=\n1,2,1,1\n2,3,4,1\n*\nDelements=1N,2L,3NL\nModels=?,?,?,M\nLabels=\n1,P\n1-9\n*\n2,J\n1,2b\n5,"
    "j\n*"
    "\n3,I\n1,xyz1\n2,uvw2\n*\n",
};

Analysis Prepared(std::string_view specification) {
  const fuzz::OwnFolder folder;
  folder.Write("spec.txt", specification);
  fuzz::SilentHost host;
  Analysis analysis;
  InputStack input(analysis.Input, host.Silence, "");
  input.Open("spec.txt", "Specification");
  ReadSpecification(analysis, {}, host.Host, input);
  MatchScalesToModels(analysis.Models, analysis.Scales, analysis.Input, host.Silence);
  analysis.Settings.DataFileName = "data.txt";
  return analysis;
}

/// Every observation as it was stored must be one that the tables know.
void ReadBack(const Analysis& analysis, ObservationStore store) {
  std::vector<ElementIndex> elements(static_cast<std::size_t>(analysis.Fields.ActiveFacetCount()));
  for (std::int64_t number = 1; number <= store.ValidResponses(); ++number) {
    const ObservationRecord record = store.Read(number, elements.data());
    fuzz::Require(analysis.Models.Cells.holds(record.ObsCell));
    for (const ElementIndex element : elements)
      fuzz::Require(element == kNoElement || analysis.Elements.ElementStatus.holds(element));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::array<Analysis, kSpecifications.size()> prepared = [] {
    std::array<Analysis, kSpecifications.size()> analyses;
    std::transform(kSpecifications.begin(), kSpecifications.end(), analyses.begin(), Prepared);
    return analyses;
  }();
  if (size == 0) return 0;
  Analysis analysis = prepared[data[0] % prepared.size()];
  const fuzz::OwnFolder folder;
  folder.Write("data.txt", fuzz::ConfinedText(data + 1, size - 1));
  fuzz::SilentHost host;
  RunControl control(host.Nobody);
  const ElementLayout layout(analysis.Facets, analysis.Fields);
  ObservationWriter writer(TemporaryFolder(), layout);
  try {
    ReadData(analysis, nullptr, "", writer, control, host.Host);
    ReadBack(analysis, std::move(writer).Seal());
  } catch (const Halt& halt) {
    FailureReport(halt, analysis.Limits(), "Data line", analysis.Input.LineNumber, analysis.Input.LastLine);
  } catch (const Stopped&) {
  }
  return 0;
}
