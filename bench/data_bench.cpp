// Lines per second of the data phase (split, resolve, match, store), beside awk adding up the last field of the same
// file.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "data/data_reader.h"
#include "data/observation_store.h"
#include "run/run_analysis.h"
#include "support/work_file.h"

namespace {

using namespace tessaly;

constexpr std::int64_t kLines = 1000000;
constexpr std::int32_t kExaminees = 10000;
constexpr std::int64_t kTasksOfRange = 9;

/// How the lines of a data file look.
struct LineForm {
  std::string_view Name;
  std::string_view Examinee;
  std::string_view Rater;
  /// Empty for a range of tasks.
  std::string_view Task;
  std::string_view Response;
  std::string_view End;
  std::int64_t Responses = 1;
};

constexpr LineForm kForms[] = {
    {"numbers", "", ",", ",", ",", "\n"},
    {"labels", "Examinee ", ",Rater ", ",Task ", ",", "\n"},
    {"range", "", ",", "", ",", "\n", kTasksOfRange},
    {"quoted", "\"", "\",\"", "\",\"", "\",\"", "\"\n"},
    {"tabs", "", "\t", "\t", "\t", "\n"},
};

/// A specification and a data file of three facets, removed at the end.
class Design {
 public:
  explicit Design(const LineForm& form)
      : responses_(kLines * form.Responses),
        folder_(std::filesystem::temp_directory_path() / ("tessaly-bench-" + std::string(form.Name))) {
    std::filesystem::create_directories(folder_);
    WriteSpecification(form.Name == "labels");
    std::ofstream data(Data());
    std::uint64_t state = 1;
    for (std::int64_t n = 0; n < kLines; ++n) {
      state = state * 6364136223846793005U + 1442695040888963407U;
      const auto random = static_cast<std::uint32_t>(state >> 33);
      data << form.Examinee << 1 + n * kExaminees / kLines << form.Rater << 1 + random % 200;
      if (form.Task.empty()) {
        data << ",1-" << form.Responses;
      } else {
        data << form.Task << 1 + random / 200 % 10;
      }
      for (std::int64_t response = 0; response < form.Responses; ++response)
        data << form.Response << (random / 2000 >> response) % 5;
      data << form.End;
    }
  }
  ~Design() { std::filesystem::remove_all(folder_); }
  Design(const Design&) = delete;
  Design& operator=(const Design&) = delete;

  std::string Specification() const { return folder_ / "design.txt"; }
  std::string Data() const { return folder_ / "design.csv"; }
  std::string Folder() const { return folder_.string() + "/"; }
  std::int64_t Responses() const { return responses_; }

 private:
  void WriteSpecification(bool labels) const {
    std::ofstream specification(Specification());
    specification << "Facets=3\nModels=?,?,?,R4\nDelements=" << (labels ? 'L' : 'N') << "\nLabels=\n";
    const auto facet = [&](int number, std::string_view name, int elements) {
      specification << number << ',' << name << '\n';
      for (int element = 1; element <= elements; ++element)
        specification << element << ',' << name << ' ' << element << '\n';
      specification << "*\n";
    };
    facet(1, "Examinee", kExaminees);
    facet(2, "Rater", 200);
    facet(3, "Task", 10);
    specification << "Data=design.csv\n";
  }

  std::int64_t responses_;
  std::filesystem::path folder_;
};

class NoClock : public Clock {
 public:
  std::string RunDate() override { return {}; }
  double Seconds() override { return 0; }
};

void DataPhase(benchmark::State& state, const LineForm& form) {
  const Design design(form);
  User nobody;
  Console silence;
  NoClock clock;
  Host host{nobody, silence, clock};
  for (auto _ : state) {
    state.PauseTiming();
    Analysis analysis;
    RunControl control(nobody);
    InputStack input(analysis.Input, silence, design.Folder());
    input.Open(design.Specification(), "Specification");
    ReadSpecification(analysis, {}, host, input);
    MatchScalesToModels(analysis.Models, analysis.Scales, analysis.Input, silence);
    state.ResumeTiming();
    ObservationWriter writer(TemporaryFolder(), ElementLayout(analysis.Facets, analysis.Fields));
    ReadData(analysis, nullptr, design.Folder(), writer, control, host);
    const ObservationStore store = std::move(writer).Seal();
    if (store.ValidResponses() != design.Responses()) state.SkipWithError("not all responses were stored");
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}

void Awk(benchmark::State& state, const LineForm& form) {
  const Design design(form);
  const std::string command = "awk -F, '{s+=$NF} END{print s}' " + design.Data() + " > /dev/null";
  for (auto _ : state) {
    if (std::system(command.c_str()) != 0) state.SkipWithError("awk failed");
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}

const bool registered = [] {
  for (const LineForm& form : kForms) {
    const std::string name(form.Name);
    benchmark::RegisterBenchmark(("DataPhase/" + name).c_str(), DataPhase, form)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark(("Awk/" + name).c_str(), Awk, form)->Unit(benchmark::kMillisecond)->UseRealTime();
  }
  return true;
}();

}  // namespace
