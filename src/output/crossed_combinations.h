// All combinations of the elements that the data hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "data/observation_store.h"
#include "data/statement_matcher.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// A combination of elements with the model statement, scale and net measure (logit) of its response.
struct Combination {
  /// By position, entry 0 is position 1; 0 where the statement ignores the position.
  const ElementIndex* Elements = nullptr;
  StatementNumber Statement{0};
  ScaleNumber Scale{0};
  float MeasureSum = 0;
};

/// Crosses the elements of all positions: those that the used observations hold there, and no element where a
/// statement ignores the position. Left out is what no observation could be: combinations that match no statement, or
/// have no estimated scale (`#` in several positions), or an element that `Dvalues=` does not derive from its source;
/// and elements that meet themselves.
class CrossedCombinations {
 public:
  /// `fastest` is the position that changes most often, 0 for the last one. Throws `Halt{IncompatibleFile}` if there
  /// are more than 100,000,000 combinations.
  CrossedCombinations(PositionNumber fastest, const Analysis& analysis, ObservationStore& store, RunControl& control,
                      Console& console);

  /// The next combination, which holds until the next call; nothing behind the last one.
  std::optional<Combination> Next();

 private:
  /// A position whose element depends on that of another one.
  struct Derivation {
    std::size_t Position;
    std::size_t Source;
    std::map<ElementIndex, ElementIndex> Derived;
  };

  void FindDerivations();
  void CollectElements(ObservationStore& store, Console& console);
  void LimitCount() const;
  void NumberCells();
  bool Advance();
  std::optional<Combination> Match();
  bool Consistent(const ModelStatement& statement) const;
  CellNumber CellOf(StatementNumber statement);

  const Analysis& analysis_;
  RunControl& control_;
  StatementMatcher matcher_;
  std::vector<Derivation> derivations_;
  /// Positions from 0, the slowest first.
  std::vector<std::size_t> order_;
  std::vector<std::vector<ElementIndex>> choices_;
  /// By statement and the elements of its `#` positions.
  std::map<std::vector<std::int32_t>, CellNumber> cells_;

  std::int64_t tried_ = 0;
  std::vector<std::size_t> at_;
  std::vector<ElementIndex> elements_;
  std::vector<std::int32_t> numbers_;
  std::vector<std::int32_t> cellKey_;
};

}  // namespace tessaly
