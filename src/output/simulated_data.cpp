#include "output/simulated_data.h"

#include <optional>
#include <string>
#include <vector>

#include "data/observation_pass.h"
#include "output/crossed_combinations.h"
#include "output/data_line_writer.h"
#include "output/random_draws.h"
#include "output/response_texts.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Draws responses as they stand in data lines.
class ResponseDraws {
 public:
  ResponseDraws(std::int32_t seed, const Analysis& analysis, ResponseKernel& kernel)
      : analysis_(analysis),
        kernel_(kernel),
        draws_(static_cast<std::uint64_t>(seed)),
        texts_(analysis),
        raw_(analysis.Scales.ScaleCount()) {}

  const std::string& Draw(ScaleNumber scale, ModelType type, float measure) {
    const std::int32_t top = analysis_.Scales.Scales[scale].ScaleTopCategory;
    kernel_.CategoryProbabilities(scale, type, top, measure);
    std::vector<std::int32_t>& raw = raw_[scale];
    if (raw.empty()) raw = analysis_.Scales.RawCategories(scale);
    return TextOf(scale, raw[static_cast<std::size_t>(DrawCategory(top))]);
  }

  const std::string& TextOf(ScaleNumber scale, std::int32_t rawCategory) { return texts_.TextOf(scale, rawCategory); }

 private:
  /// The category in whose share of the interval from 0 to 1 the next uniform number lies. What rounding leaves behind
  /// the last share, and counts above the top, belong to the highest category that is possible.
  std::int32_t DrawCategory(std::int32_t top) {
    double left = draws_.Uniform();
    std::int32_t highest = 0;
    for (std::int32_t category = 0; category <= top; ++category) {
      const auto probability = static_cast<double>(kernel_.Probability(category));
      if (left < probability) return category;
      left -= probability;
      if (probability > 0) highest = category;
    }
    return highest;
  }

  const Analysis& analysis_;
  ResponseKernel& kernel_;
  RandomDraws draws_;
  ResponseTexts texts_;
  Table<ScaleNumber, std::vector<std::int32_t>, 0> raw_;
};

void WriteComments(bool match, std::int32_t seed, const Settings& settings, const DataLineWriter& lines,
                   TextOutput& output) {
  std::string_view title = settings.Title;
  if (title.starts_with('^')) title.remove_prefix(1);
  output.WriteLine(match ? "; Simulated data matching the empirical data structure"
                         : "; Simulated fully-crossed complete data");
  output.WriteLine("; " + std::string(title));
  output.WriteLine("; matching: " + (settings.DataFileName.empty() ? settings.SpecFileName : settings.DataFileName));
  output.WriteLine("; seed: " + BareText(seed));
  for (const ColumnNumber column : lines.CountingColumns())
    output.WriteLine("; the elements of data column " + BareText(column.value) +
                     " stand on these lines: please remove its Dvalues= entry to read them");
}

}  // namespace

void WriteSimulatedData(bool match, std::int32_t seed, const Analysis& analysis, ObservationStore& store,
                        ResponseKernel& kernel, RunControl& control, Console& console, TextOutput& output) {
  DataLineWriter lines(analysis, output);
  ResponseDraws responses(seed, analysis, kernel);
  if (match) {
    WriteComments(match, seed, analysis.Settings, lines, output);
    // As they were read: the pass takes elements out that are compared with themselves.
    std::vector<ElementIndex> elements(static_cast<std::size_t>(analysis.Fields.ActiveFacetCount()));
    for (const Observation& obs : ObservationPass(store, analysis, control, console)) {
      if (!TakesPart(obs.Status)) continue;
      store.Read(obs.ObservationIndex, elements.data());
      lines.Write({obs.CurrentStatement, obs.Replication, elements.data(),
                   responses.Draw(obs.CurrentScale, obs.CurrentType, obs.MeasureSum),
                   responses.TextOf(obs.CurrentScale, obs.ObsResponse)});
    }
  } else {
    CrossedCombinations combinations(lines.RangePosition(), analysis, store, control, console);
    WriteComments(match, seed, analysis.Settings, lines, output);
    while (const std::optional<Combination> combination = combinations.Next()) {
      const ModelType type = analysis.Models.Statements[combination->Statement].ModelType;
      lines.Write({combination->Statement, 1, combination->Elements,
                   responses.Draw(combination->Scale, type, combination->MeasureSum), ""});
    }
  }
  lines.Finish();
}

}  // namespace tessaly
