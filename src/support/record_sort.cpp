#include "support/record_sort.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

#include "support/failure.h"

namespace tessaly {
namespace {

constexpr std::size_t kLeastBuffer = 4096;
/// Reading more at once is no faster.
constexpr std::size_t kMostBuffer = std::size_t{1} << 20;
constexpr std::size_t kWriteBuffer = std::size_t{1} << 16;
/// Entries that are sorted between two polls.
constexpr std::size_t kSortPiece = std::size_t{1} << 18;

/// The first eight bytes of a key, or of what is left of it, as a number that compares as they do.
std::uint64_t KeyPrefix(const char* key, std::size_t keyBytes) {
  std::uint64_t prefix = 0;
  for (std::size_t i = 0; i < 8; ++i) prefix = prefix << 8 | (i < keyBytes ? static_cast<unsigned char>(key[i]) : 0u);
  return prefix;
}

/// Compares what follows the prefix: below, at or above 0 as memcmp.
int CompareRest(const char* a, const char* b, std::size_t keyBytes) {
  return keyBytes > 8 ? std::memcmp(a + 8, b + 8, keyBytes - 8) : 0;
}

/// `bytes` without a last incomplete record, but at least `kLeastBuffer`.
std::size_t BufferOfWholeRecords(std::size_t bytes, std::size_t recordBytes) {
  const std::size_t least = (kLeastBuffer + recordBytes - 1) / recordBytes;
  return std::max(bytes / recordBytes, least) * recordBytes;
}

}  // namespace

/// Sorts the entries of a part by eight bytes of their keys at a time, so that comparing need not look up records.
class RecordSorter::PartSort {
 public:
  PartSort(const char* records, std::size_t recordBytes, std::size_t keyBytes, const std::function<void()>& poll)
      : records_(records), recordBytes_(recordBytes), keyBytes_(keyBytes), poll_(poll) {}

  /// `entries` are in the order of adding, and their keys agree before byte `offset`.
  void Sort(std::span<Entry> entries, std::size_t offset) {
    for (Entry& entry : entries)
      entry.Prefix = KeyPrefix(records_ + recordBytes_ * entry.Number + offset, keyBytes_ - offset);
    SortByPrefix(entries);
    const std::size_t next = offset + 8;
    if (next >= keyBytes_) return;
    for (auto first = entries.begin(); first != entries.end();) {
      const auto last = std::find_if(first, entries.end(), [=](const Entry& e) { return e.Prefix != first->Prefix; });
      if (last - first > 1) Sort({first, last}, next);
      first = last;
    }
  }

 private:
  /// Halves large ranges by their median until they can be sorted without the user having to wait.
  void SortByPrefix(std::span<Entry> entries) {
    const auto before = [](const Entry& a, const Entry& b) {
      return a.Prefix != b.Prefix ? a.Prefix < b.Prefix : a.Number < b.Number;
    };
    const std::size_t half = entries.size() / 2;
    const bool large = entries.size() > kSortPiece;
    if (large) {
      std::nth_element(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(half), entries.end(), before);
    } else {
      std::sort(entries.begin(), entries.end(), before);
    }
    sincePoll_ += entries.size();
    if (sincePoll_ >= kSortPiece) {
      sincePoll_ = 0;
      poll_();
    }
    if (!large) return;
    SortByPrefix(entries.first(half));
    SortByPrefix(entries.subspan(half));
  }

  const char* records_;
  std::size_t recordBytes_;
  std::size_t keyBytes_;
  const std::function<void()>& poll_;
  std::size_t sincePoll_ = 0;
};

/// Writes records one behind the other at the end of the work file.
class RecordSorter::RunWriter {
 public:
  RunWriter(WorkFile& file, std::int64_t position, std::size_t recordBytes, const std::function<void()>& poll)
      : file_(file), position_(position), recordBytes_(recordBytes), poll_(poll) {
    buffer_.reserve(kWriteBuffer + recordBytes);
  }

  void Add(const char* record) {
    buffer_.insert(buffer_.end(), record, record + recordBytes_);
    if (buffer_.size() >= kWriteBuffer) Flush();
  }

  /// Gives the position behind what was written.
  std::int64_t Flush() {
    file_.Write(position_, buffer_.data(), buffer_.size());
    position_ += static_cast<std::int64_t>(buffer_.size());
    buffer_.clear();
    poll_();
    return position_;
  }

 private:
  WorkFile& file_;
  std::int64_t position_;
  std::size_t recordBytes_;
  const std::function<void()>& poll_;
  std::vector<char> buffer_;
};

/// Merges runs by a tournament: every inner node of the tree keeps the loser of its match, so that the next record
/// costs one match on each level (Knuth, The Art of Computer Programming 3, 5.4.1).
class RecordSorter::Merge {
 public:
  Merge(const WorkFile& file, std::span<const Run> runs, std::size_t recordBytes, std::size_t keyBytes,
        std::size_t memory)
      : file_(file),
        recordBytes_(recordBytes),
        keyBytes_(keyBytes),
        bufferBytes_(BufferOfWholeRecords(std::min(memory / runs.size(), kMostBuffer), recordBytes)),
        buffers_(bufferBytes_ * runs.size()),
        losers_(runs.size(), kNone) {
    sources_.reserve(runs.size());
    for (const Run run : runs) {
      char* const buffer = buffers_.data() + bufferBytes_ * sources_.size();
      Read(sources_.emplace_back(Source{run.Begin, run.End, buffer, nullptr, nullptr, 0}));
    }
    for (std::size_t i = 0; i < sources_.size(); ++i) Play(i);
  }

  const char* Next() {
    if (delivered_) {
      Advance(sources_[winner_]);
      Play(winner_);
    }
    delivered_ = sources_[winner_].Record != nullptr;
    return sources_[winner_].Record;
  }

 private:
  static constexpr std::size_t kNone = ~std::size_t{0};

  struct Source {
    /// What has not been read yet.
    std::int64_t Position;
    std::int64_t End;
    char* Buffer;
    const char* BufferEnd;
    /// The next record of the run; null behind the last one.
    const char* Record;
    std::uint64_t Prefix;
  };

  void Read(Source& source) {
    const auto size =
        static_cast<std::size_t>(std::min(static_cast<std::int64_t>(bufferBytes_), source.End - source.Position));
    if (file_.Read(source.Position, source.Buffer, size) != size) throw Halt{FailureCode::WorkFileProblem, {}};
    source.Position += static_cast<std::int64_t>(size);
    source.BufferEnd = source.Buffer + size;
    source.Record = size == 0 ? nullptr : source.Buffer;
    if (size != 0) source.Prefix = KeyPrefix(source.Record, keyBytes_);
  }

  void Advance(Source& source) {
    source.Record += recordBytes_;
    if (source.Record == source.BufferEnd) return Read(source);
    source.Prefix = KeyPrefix(source.Record, keyBytes_);
  }

  bool Before(std::size_t a, std::size_t b) const {
    const Source& first = sources_[a];
    const Source& second = sources_[b];
    if (first.Record == nullptr || second.Record == nullptr) return second.Record == nullptr;
    if (first.Prefix != second.Prefix) return first.Prefix < second.Prefix;
    const int rest = CompareRest(first.Record, second.Record, keyBytes_);
    return rest != 0 ? rest < 0 : a < b;
  }

  /// Takes a source up from its leaf. While the tree is being filled, the first one at a node waits for its opponent.
  void Play(std::size_t source) {
    for (std::size_t node = (source + losers_.size()) / 2; node > 0; node /= 2) {
      if (losers_[node] == kNone) {
        losers_[node] = source;
        return;
      }
      if (Before(losers_[node], source)) std::swap(losers_[node], source);
    }
    winner_ = source;
  }

  const WorkFile& file_;
  std::size_t recordBytes_;
  std::size_t keyBytes_;
  std::size_t bufferBytes_;
  std::vector<char> buffers_;
  std::vector<Source> sources_;
  /// Node n has the children 2n and 2n + 1; source i is the leaf at i + number of sources.
  std::vector<std::size_t> losers_;
  std::size_t winner_ = 0;
  bool delivered_ = false;
};

RecordSorter::RecordSorter(std::string folder, std::size_t recordBytes, std::size_t keyBytes, std::size_t partBytes)
    : folder_(std::move(folder)),
      recordBytes_(recordBytes),
      keyBytes_(keyBytes),
      partBytes_(partBytes),
      fullPart_(std::max(partBytes / (recordBytes + sizeof(Entry)), std::size_t{1}) * recordBytes) {
  records_.reserve(fullPart_);
}

RecordSorter::~RecordSorter() = default;

bool RecordSorter::PartInOrder() const {
  for (std::size_t at = recordBytes_; at < records_.size(); at += recordBytes_)
    if (std::memcmp(records_.data() + at - recordBytes_, records_.data() + at, keyBytes_) > 0) return false;
  return true;
}

void RecordSorter::SortPart(const std::function<void()>& poll) {
  if (PartInOrder()) return;
  const std::size_t count = PartCount();
  entries_.reserve(fullPart_ / recordBytes_);
  for (std::size_t i = 0; i < count; ++i) entries_.push_back({0, i});
  PartSort(records_.data(), recordBytes_, keyBytes_, poll).Sort(entries_, 0);
}

void RecordSorter::WritePart(const std::function<void()>& poll) {
  SortPart(poll);
  if (!file_) file_.emplace(folder_);
  // A part that goes on where the one before it ended makes no new run: records in order become one run.
  if (runs_.empty() || std::memcmp(lastKeyWritten_.data(), PartRecord(0), keyBytes_) > 0)
    runs_.push_back({fileEnd_, fileEnd_});
  RunWriter writer(*file_, fileEnd_, recordBytes_, poll);
  const std::size_t count = PartCount();
  for (std::size_t i = 0; i < count; ++i) writer.Add(PartRecord(i));
  fileEnd_ = runs_.back().End = writer.Flush();
  lastKeyWritten_.assign(PartRecord(count - 1), keyBytes_);
  records_.clear();
  entries_.clear();
}

/// Puts runs `first` to `first + count` - 1 together as one, at the end of the file.
void RecordSorter::MergeRuns(std::size_t first, std::size_t count, const std::function<void()>& poll) {
  Merge merge(*file_, std::span(runs_).subspan(first, count), recordBytes_, keyBytes_, partBytes_);
  RunWriter writer(*file_, fileEnd_, recordBytes_, poll);
  while (const char* const record = merge.Next()) writer.Add(record);
  runs_[first] = {fileEnd_, writer.Flush()};
  fileEnd_ = runs_[first].End;
  const auto merged = runs_.begin() + static_cast<std::ptrdiff_t>(first);
  runs_.erase(merged + 1, merged + static_cast<std::ptrdiff_t>(count));
}

void RecordSorter::Sort(const std::function<void()>& poll) {
  if (!file_) return SortPart(poll);
  WritePart(poll);
  records_ = std::vector<char>();
  entries_ = std::vector<Entry>();
  const std::size_t ways = std::max(partBytes_ / BufferOfWholeRecords(0, recordBytes_), std::size_t{2});
  // Only neighbours are merged, so that equal keys stay in order, and only as many as must be.
  for (std::size_t at = 0; runs_.size() > ways; ++at) {
    if (at + 1 >= runs_.size()) at = 0;
    MergeRuns(at, std::min({ways, runs_.size() - ways + 1, runs_.size() - at}), poll);
  }
  merge_ = std::make_unique<Merge>(*file_, runs_, recordBytes_, keyBytes_, partBytes_);
}

const char* RecordSorter::Next() {
  if (merge_) return merge_->Next();
  return next_ < PartCount() ? PartRecord(next_++) : nullptr;
}

}  // namespace tessaly
