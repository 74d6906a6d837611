#include "data/statement_matcher.h"

#include <algorithm>
#include <bit>

namespace tessaly {
namespace {

constexpr std::size_t kBitsPerWord = 64;

bool Restricts(const ModelStatement& statement, PositionNumber position) {
  return statement.ModelLow[position] >= 0;
}

void Mark(std::uint64_t* words, std::size_t bit) {
  words[bit / kBitsPerWord] |= std::uint64_t{1} << (bit % kBitsPerWord);
}

/// The element numbers at which a range begins or has just ended.
std::vector<std::int32_t> RangeCuts(const Table<StatementNumber, ModelStatement, 0>& statements,
                                    IndexRange<StatementNumber> block, PositionNumber position) {
  std::vector<std::int32_t> cuts;
  for (const StatementNumber number : block) {
    const ModelStatement& statement = statements[number];
    if (!Restricts(statement, position)) continue;
    cuts.push_back(statement.ModelLow[position]);
    cuts.push_back(statement.ModelHigh[position] + 1);
  }
  std::sort(cuts.begin(), cuts.end());
  cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
  return cuts;
}

}  // namespace

StatementMeeting MeetStatement(const ModelStatement& statement, const std::int32_t* numbers,
                               const ElementIndex* elements) {
  using Outcome = StatementMeeting::Outcome;
  for (PositionNumber position = statement.ModelLow.last(); position.value > 0; --position) {
    const auto at = static_cast<std::size_t>(position.value - 1);
    const std::int32_t low = statement.ModelLow[position];
    if (low == kIgnoredPosition) continue;
    if (elements[at].value < 0) return {Outcome::Unspecified, position};
    if (low >= 0 && (numbers[at] < low || numbers[at] > statement.ModelHigh[position]))
      return {Outcome::Mismatch, position};
  }
  return {};
}

StatementMatcher::StatementMatcher(const Table<StatementNumber, ModelStatement, 0>& statements) {
  for (std::int32_t first = 0; first < statements.size(); first += kStatementsPerBlock)
    blocks_.push_back(MakeBlock(statements, first));
  firstTakesAll_ = !statements.empty() && std::none_of(statements[{0}].ModelLow.begin(), statements[{0}].ModelLow.end(),
                                                       [](std::int32_t low) { return low >= 0; });
}

StatementMatcher::Block StatementMatcher::MakeBlock(const Table<StatementNumber, ModelStatement, 0>& statements,
                                                    std::int32_t first) {
  const std::int32_t last = std::min(first + kStatementsPerBlock, statements.size()) - 1;
  const IndexRange<StatementNumber> inBlock({first}, {last});
  const auto count = static_cast<std::size_t>(last - first) + 1;
  Block block{first, (count + kBitsPerWord - 1) / kBitsPerWord, {}, {}, {}};
  block.All.assign(block.Words, ~std::uint64_t{0});
  if (count % kBitsPerWord != 0) block.All.back() = (std::uint64_t{1} << (count % kBitsPerWord)) - 1;

  const auto& positions = statements[{first}].ModelLow;
  block.Ignores.assign(static_cast<std::size_t>(positions.size()) * block.Words, 0);
  for (const PositionNumber position : positions.all()) {
    const auto at = static_cast<std::size_t>(position.value - 1);
    for (const StatementNumber number : inBlock)
      if (statements[number].ModelLow[position] == kIgnoredPosition)
        Mark(&block.Ignores[at * block.Words], static_cast<std::size_t>(number.value - first));
    RestrictedPosition restricted{at, RangeCuts(statements, inBlock, position), {}};
    if (restricted.Cuts.empty()) continue;
    const std::size_t pieces = restricted.Cuts.size() + 1;
    restricted.Takes.assign(pieces * block.Words, 0);
    for (const StatementNumber number : inBlock) {
      const ModelStatement& statement = statements[number];
      const auto bit = static_cast<std::size_t>(number.value - first);
      for (std::size_t piece = 0; piece < pieces; ++piece) {
        const bool inside = piece > 0 && restricted.Cuts[piece - 1] >= statement.ModelLow[position] &&
                            restricted.Cuts[piece - 1] <= statement.ModelHigh[position];
        if (Restricts(statement, position) && !inside) continue;
        Mark(&restricted.Takes[piece * block.Words], bit);
      }
    }
    block.Restricted.push_back(std::move(restricted));
  }
  return block;
}

const std::uint64_t* StatementMatcher::RestrictedPosition::TakesOf(std::int32_t number, std::size_t words) const {
  const auto piece = static_cast<std::size_t>(std::upper_bound(Cuts.begin(), Cuts.end(), number) - Cuts.begin());
  return &Takes[piece * words];
}

StatementNumber StatementMatcher::FirstOfBlocks(const std::int32_t* numbers) const {
  for (const Block& block : blocks_)
    if (const StatementNumber statement = FirstInBlock(block, numbers); statement != kNoStatement) return statement;
  return kNoStatement;
}

StatementNumber StatementMatcher::FirstInBlock(const Block& block, const std::int32_t* numbers) {
  Words matching;
  std::copy(block.All.begin(), block.All.end(), matching.begin());
  for (const RestrictedPosition& restricted : block.Restricted) {
    const std::uint64_t* takes = restricted.TakesOf(numbers[restricted.At], block.Words);
    for (std::size_t word = 0; word < block.Words; ++word) matching[word] &= takes[word];
  }
  return Lowest(block, matching);
}

StatementNumber StatementMatcher::FirstToSettle(const std::int32_t* numbers, const ElementIndex* elements) const {
  for (const Block& block : blocks_)
    if (const StatementNumber statement = FirstToSettleInBlock(block, numbers, elements); statement != kNoStatement)
      return statement;
  return kNoStatement;
}

StatementNumber StatementMatcher::FirstToSettleInBlock(const Block& block, const std::int32_t* numbers,
                                                       const ElementIndex* elements) {
  Words undecided;
  Words unspecified{};
  std::copy(block.All.begin(), block.All.end(), undecided.begin());
  auto restricted = block.Restricted.rbegin();
  for (std::size_t at = block.Ignores.size() / block.Words; at-- > 0;) {
    const bool restricts = restricted != block.Restricted.rend() && restricted->At == at;
    if (elements[at].value < 0) {
      const std::uint64_t* ignores = &block.Ignores[at * block.Words];
      for (std::size_t word = 0; word < block.Words; ++word) {
        unspecified[word] |= undecided[word] & ~ignores[word];
        undecided[word] &= ignores[word];
      }
    } else if (restricts) {
      const std::uint64_t* takes = restricted->TakesOf(numbers[at], block.Words);
      for (std::size_t word = 0; word < block.Words; ++word) undecided[word] &= takes[word];
    }
    if (restricts) ++restricted;
  }
  for (std::size_t word = 0; word < block.Words; ++word) undecided[word] |= unspecified[word];
  return Lowest(block, undecided);
}

StatementNumber StatementMatcher::Lowest(const Block& block, const Words& statements) {
  for (std::size_t word = 0; word < block.Words; ++word) {
    if (statements[word] == 0) continue;
    const auto bit = static_cast<std::int32_t>(word * kBitsPerWord) + std::countr_zero(statements[word]);
    return StatementNumber{block.FirstStatement + bit};
  }
  return kNoStatement;
}

}  // namespace tessaly
