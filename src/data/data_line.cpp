#include "data/data_line.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <optional>
#include <utility>

#include "spec/clean_line.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

enum class ByteKind : unsigned char { Plain, Delimiter, Special };

constexpr std::array<ByteKind, 256> ByteKinds() {
  std::array<ByteKind, 256> kinds{};
  for (std::size_t control = 0; control < ' '; ++control) kinds[control] = ByteKind::Special;
  for (const char special : {';', '=', '"', '\'', '*', '_', '\xA0', '\xFF'})
    kinds[static_cast<unsigned char>(special)] = ByteKind::Special;
  kinds[','] = ByteKind::Delimiter;
  kinds['\t'] = ByteKind::Delimiter;
  return kinds;
}

constexpr std::array<ByteKind, 256> kByteKinds = ByteKinds();

ByteKind KindOf(char c) {
  return kByteKinds[static_cast<unsigned char>(c)];
}

/// So many digits are a number below 2^31.
constexpr std::size_t kMostPlainDigits = 9;

/// What lies between `first` and `last` without the blanks around it.
std::string_view Trimmed(const char* first, const char* last) {
  while (first != last && *first == ' ') ++first;
  while (first != last && last[-1] == ' ') --last;
  return {first, static_cast<std::size_t>(last - first)};
}

/// The first byte from `first` on that is no letter, digit or blank, or one of the last seven bytes. Eight bytes are
/// looked at together: the highest bit of each says whether it is in the range.
const char* SkipWords(const char* first, const char* last) {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  for (; last - first >= 8; first += 8) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, first, 8);
    const std::uint64_t low = bytes & (0x7F * kEach);
    const auto from = [&](std::uint64_t text, std::uint64_t c) { return text + (0x80 - c) * kEach; };
    const std::uint64_t small = low | (0x20 * kEach);
    const std::uint64_t letters = from(small, 'a') & ~from(small, 'z' + 1);
    const std::uint64_t digits = from(low, '0') & ~from(low, '9' + 1);
    const std::uint64_t blanks = from(low, ' ') & ~from(low, ' ' + 1);
    const std::uint64_t others = (bytes | ~(letters | digits | blanks)) & (0x80 * kEach);
    if (others != 0) return first + std::countr_zero(others) / 8;
  }
  return first;
}

bool AllEmpty(const std::vector<DataField>& fields) {
  return std::all_of(fields.begin(), fields.end(), [](const DataField& field) { return field.Text.empty(); });
}

/// One field for each run of characters between blanks.
void SplitAtBlanks(std::string_view line, std::vector<DataField>& fields) {
  for (std::size_t end = 0; fields.size() <= kMostDataFields + 2;) {
    const std::size_t first = line.find_first_not_of(' ', end);
    if (first == std::string_view::npos) return;
    end = std::min(line.find(' ', first), line.size());
    fields.emplace_back(line.substr(first, end - first));
  }
}

/// One field for each piece between commas, trimmed.
void SplitAtCommas(std::string_view line, std::vector<DataField>& fields) {
  for (std::size_t first = 0; fields.size() <= kMostDataFields + 2;) {
    const std::size_t comma = std::min(line.find(',', first), line.size());
    fields.emplace_back(Trimmed(line.data() + first, line.data() + comma));
    if (comma == line.size()) return;
    first = comma + 1;
  }
}

/// Sums of larger weights would leave single precision.
constexpr double kMostReplications = 1e9;

/// The number of digits and at most one decimal point, if `text` is that and not above `kMostReplications`.
std::optional<float> ReplicationNumber(std::string_view text) {
  const auto points = std::count(text.begin(), text.end(), '.');
  const auto digits = std::count_if(text.begin(), text.end(), IsDigit);
  if (digits == 0 || points > 1 || static_cast<std::size_t>(points + digits) != text.size()) return {};
  const double number = LeadingNumber(text);
  if (number > kMostReplications) return {};
  return static_cast<float>(number);
}

}  // namespace

DataField::DataField(std::string_view text) : Text(text) {
  if (text.empty() || text.size() > kMostPlainDigits || !std::all_of(text.begin(), text.end(), IsDigit)) return;
  Number = 0;
  for (const char digit : text) Number = 10 * Number + (digit - '0');
}

bool SplitPlainLine(std::string_view raw, std::vector<DataField>& fields) {
  fields.assign(1, {});
  const char* const end = raw.data() + raw.size();
  char delimiter = ',';
  const char* first = raw.data();
  for (std::size_t number = 1; number <= kMostDataFields + 1; ++number) {
    const char* last = first;
    std::uint32_t value = 0;
    for (; last != end && IsDigit(*last); ++last) value = 10 * value + static_cast<std::uint32_t>(*last - '0');
    const auto digits = static_cast<std::size_t>(last - first);
    const bool plainNumber = digits - 1 < kMostPlainDigits && (last == end || *last == delimiter);
    if (plainNumber) {
      fields.emplace_back(std::string_view(first, digits), static_cast<std::int32_t>(value));
    } else {
      last = SkipWords(last, end);
      while (last != end && KindOf(*last) == ByteKind::Plain) ++last;
      if (last != end && KindOf(*last) == ByteKind::Special) return false;
      fields.emplace_back(Trimmed(first, last));
    }
    if (last == end) break;
    // A TAB in a line with commas is a blank.
    if (number == 1) delimiter = *last;
    if (*last != delimiter || number > kMostDataFields) return false;
    first = last + 1;
  }
  if (fields.size() == 2 && fields[1].Text.find(' ') != std::string_view::npos) {
    fields.resize(1);
    SplitAtBlanks(raw, fields);
    return fields.size() <= kMostDataFields + 1;
  }
  if (fields[1].Text.empty() && AllEmpty(fields)) fields.resize(1);
  return true;
}

void SplitAnyLine(std::string_view raw, std::string& work, std::vector<DataField>& fields) {
  fields.assign(1, {});
  CleanLine(raw, false, work);
  if (work.empty()) return;
  std::replace(work.begin(), work.end(), '=', ',');
  const bool commas = work.find(',') != std::string::npos;
  std::replace(work.begin(), work.end(), '\xFF', commas ? ' ' : ',');
  const char separator = work.find(',') != std::string::npos ? ' ' : ',';
  std::replace(work.begin(), work.end(), '\t', separator);
  work.erase(work.find_last_not_of(' ') + 1);
  work.erase(0, work.find_first_not_of(' '));
  std::replace_if(
      work.begin(), work.end(), [](char c) { return c == '"' || c == '\''; }, separator);
  if (work.empty()) return;
  if (work.front() == '*') {
    fields.emplace_back(std::string_view(work).substr(0, 1));
  } else if (work.find(',') == std::string::npos) {
    SplitAtBlanks(work, fields);
  } else {
    SplitAtCommas(work, fields);
  }
}

DataLine::DataLine(const ColumnTable& columns, std::string replicationPrefix)
    : columns_(columns), prefix_(std::move(replicationPrefix)), supplied_(columns.size()), counters_(columns.size()) {
  for (const ColumnNumber column : columns.all()) {
    if (columns[column].OnTheLine()) continue;
    allOnTheLine_ = false;
    supplied_[column] = Replaced(columns[column].DvalueText, '_', '-');
    const std::string counter = UpperAscii(columns[column].DvalueText);
    if (counter == "$L" || counter == "$C") counters_[column] = counter[1];
  }
}

void DataLine::Split(std::string_view raw, std::int64_t fileLines, std::int64_t dataLines) {
  replication_ = 1;
  replicationField_.clear();
  plain_ = SplitPlainLine(raw, fields_);
  if (!plain_) SplitAnyLine(raw, work_, fields_);
  blank_ = fields_.size() == 1;
  if (blank_) return;
  // A quote mark in front has become a delimiter: such a line does not start with its first field.
  const std::string_view first = fields_[1].Text;
  const bool fromStart = plain_ || first.data() == work_.data();
  if (fromStart && !prefix_.empty() && !first.empty() && UpperAscii(first.front()) == prefix_.front())
    TakeReplication();
  if (!allOnTheLine_ && !EndsData()) SupplyColumns(fileLines, dataLines);
  if (fields_.size() > kMostDataFields + 1) throw Halt{FailureCode::TooManyFields, {}};
  if (!plain_) ReadUnderlinesAsHyphens();
}

void DataLine::TakeReplication() {
  const std::string_view first = fields_[1].Text;
  if (first.size() <= prefix_.size() || UpperAscii(first.substr(0, prefix_.size())) != prefix_) return;
  const std::string_view behind = first.substr(prefix_.size());
  const std::optional<float> number = ReplicationNumber(TrimBlanks(behind));
  if (!number) return;
  replication_ = *number;
  replicationField_ = prefix_ + std::string(behind);
  fields_.erase(fields_.begin() + 1);
}

void DataLine::SupplyColumns(std::int64_t fileLines, std::int64_t dataLines) {
  delimited_.swap(fields_);
  fields_.assign(1, {});
  for (std::size_t next = 1; next < delimited_.size() && fields_.size() <= kMostDataFields + 1;) {
    const ColumnNumber column{static_cast<std::int32_t>(fields_.size())};
    const bool onTheLine = !columns_.holds(column) || columns_[column].OnTheLine();
    fields_.push_back(onTheLine ? delimited_[next++] : DataField(Supplied(column, fileLines, dataLines)));
  }
}

std::string_view DataLine::Supplied(ColumnNumber column, std::int64_t fileLines, std::int64_t dataLines) {
  if (columns_[column].Derived()) supplied_[column].clear();
  if (counters_[column] == 'L') supplied_[column] = BareText(fileLines);
  if (counters_[column] == 'C') supplied_[column] = BareText(dataLines);
  return supplied_[column];
}

void DataLine::ReadUnderlinesAsHyphens() {
  for (const ColumnNumber column : columns_.all()) {
    if (column.value > FieldCount()) return;
    if (!columns_[column].OnTheLine()) continue;
    const std::string_view field = fields_[static_cast<std::size_t>(column.value)].Text;
    const auto first = work_.begin() + (field.data() - work_.data());
    std::replace(first, first + static_cast<std::ptrdiff_t>(field.size()), '_', '-');
  }
}

void DataLine::SetDerived(ColumnNumber column, std::string text) {
  supplied_[column] = std::move(text);
  if (column.value <= FieldCount()) fields_[static_cast<std::size_t>(column.value)] = DataField(supplied_[column]);
}

}  // namespace tessaly
