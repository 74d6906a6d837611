// Lines per second of the data phase (split, resolve, match, store), beside awk adding up the last field of the same
// file.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "data/data_reader.h"
#include "data/observation_store.h"
#include "run/run_analysis.h"
#include "support/work_file.h"

namespace {

using namespace tessaly;

constexpr std::int64_t kLines = 1000000;
constexpr std::int32_t kExaminees = 10000;

/// A specification and a data file of three facets, removed at the end.
class Design {
 public:
  Design() : folder_(std::filesystem::temp_directory_path() / "tessaly-bench") {
    std::filesystem::create_directories(folder_);
    std::ofstream(Specification()) << "Facets=3\nModels=?,?,?,R4\nLabels=\n1,Examinee\n1-10000\n*\n2,Rater\n1-200\n*\n"
                                      "3,Task\n1-10\n*\nData=design.csv\n";
    std::ofstream data(Data());
    std::uint64_t state = 1;
    for (std::int64_t n = 0; n < kLines; ++n) {
      state = state * 6364136223846793005U + 1442695040888963407U;
      const auto random = static_cast<std::uint32_t>(state >> 33);
      data << 1 + n * kExaminees / kLines << ',' << 1 + random % 200 << ',' << 1 + random / 200 % 10 << ','
           << random / 2000 % 5 << '\n';
    }
  }
  ~Design() { std::filesystem::remove_all(folder_); }
  Design(const Design&) = delete;
  Design& operator=(const Design&) = delete;

  std::string Specification() const { return folder_ / "design.txt"; }
  std::string Data() const { return folder_ / "design.csv"; }
  std::string Folder() const { return folder_.string() + "/"; }

 private:
  std::filesystem::path folder_;
};

const Design& TheDesign() {
  static const Design design;
  return design;
}

class NoClock : public Clock {
 public:
  std::string RunDate() override { return {}; }
  double Seconds() override { return 0; }
};

void DataPhase(benchmark::State& state) {
  const Design& design = TheDesign();
  User nobody;
  Console silence;
  NoClock clock;
  Host host{nobody, silence, clock};
  for (auto _ : state) {
    Analysis analysis;
    RunControl control(nobody);
    InputStack input(analysis.Input, silence, design.Folder());
    input.Open(design.Specification(), "Specification");
    ReadSpecification(analysis, {}, host, input);
    MatchScalesToModels(analysis.Models, analysis.Scales, analysis.Input, silence);
    ObservationWriter writer(TemporaryFolder(), ElementLayout(analysis.Facets, analysis.Fields));
    ReadData(analysis, nullptr, design.Folder(), writer, control, host);
    const ObservationStore store = std::move(writer).Seal();
    if (store.ValidResponses() != kLines) state.SkipWithError("not all lines were stored");
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}

void Awk(benchmark::State& state) {
  const std::string command = "awk -F, '{s+=$NF} END{print s}' " + TheDesign().Data() + " > /dev/null";
  for (auto _ : state) {
    if (std::system(command.c_str()) != 0) state.SkipWithError("awk failed");
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}

BENCHMARK(DataPhase)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Awk)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
