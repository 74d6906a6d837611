// Which model statement an observation belongs to: the first one whose positions all take its elements.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "state/models.h"

namespace tessaly {

/// No statement takes the elements.
constexpr StatementNumber kNoStatement{-1};

/// How one statement meets the elements of an observation.
struct StatementMeeting {
  enum class Outcome { Matches, Mismatch, Unspecified };
  Outcome Result = Outcome::Matches;
  /// Where the mismatch or the unknown element is.
  PositionNumber Position{0};
};

/// Tests the positions of `statement` from the last to the first. `numbers[p - 1]` and `elements[p - 1]` are element
/// number and record in position p. A position that is not `X` and has no known element ends with `Unspecified`.
StatementMeeting MeetStatement(const ModelStatement& statement, const std::int32_t* numbers,
                               const ElementIndex* elements);

/// Finds the first matching statement when all elements are known. The statements are taken in blocks; in each block a
/// position that restricts elements has its number line cut at the ends of all ranges, and for every piece the set of
/// statements that take it. The statements that match are then the intersection of one set for each position.
class StatementMatcher {
 public:
  explicit StatementMatcher(const Table<StatementNumber, ModelStatement, 0>& statements);

  /// The first statement that takes `numbers` (entry 0 is position 1), all of them known elements, or `kNoStatement`.
  StatementNumber First(const std::int32_t* numbers) const {
    return firstTakesAll_ ? StatementNumber{0} : FirstOfBlocks(numbers);
  }

  /// The first statement whose `MeetStatement` is no mismatch, or `kNoStatement`.
  StatementNumber FirstToSettle(const std::int32_t* numbers, const ElementIndex* elements) const;

 private:
  static constexpr std::int32_t kStatementsPerBlock = 512;
  using Words = std::array<std::uint64_t, kStatementsPerBlock / 64>;

  struct RestrictedPosition {
    std::size_t At = 0;
    /// First element numbers of all pieces but the lowest, ascending.
    std::vector<std::int32_t> Cuts;
    /// `Words` words for each piece, one bit for each statement of the block.
    std::vector<std::uint64_t> Takes;

    /// The words for element `number`.
    const std::uint64_t* TakesOf(std::int32_t number, std::size_t words) const;
  };
  struct Block {
    std::int32_t FirstStatement = 0;
    std::size_t Words = 0;
    std::vector<std::uint64_t> All;
    /// Ascending in `At`.
    std::vector<RestrictedPosition> Restricted;
    /// `Words` words for each position: the statements that ignore it.
    std::vector<std::uint64_t> Ignores;
  };

  static Block MakeBlock(const Table<StatementNumber, ModelStatement, 0>& statements, std::int32_t first);
  StatementNumber FirstOfBlocks(const std::int32_t* numbers) const;
  static StatementNumber FirstInBlock(const Block& block, const std::int32_t* numbers);
  static StatementNumber FirstToSettleInBlock(const Block& block, const std::int32_t* numbers,
                                              const ElementIndex* elements);
  static StatementNumber Lowest(const Block& block, const Words& statements);

  std::vector<Block> blocks_;
  bool firstTakesAll_ = false;
};

}  // namespace tessaly
