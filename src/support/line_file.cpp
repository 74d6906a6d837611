#include "support/line_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {
namespace {

constexpr std::size_t kBlock = std::size_t{256} << 10;

std::string_view ForeignName(std::string_view start) {
  const std::string_view mark = start.substr(0, 2);
  if (mark == "{\\") return "RTF";
  if (mark == "\xFF\xFE" || mark == "\xFE\xFF") return "Unicode";
  // The same without a mark: every other byte of plain letters is 0.
  if (mark.size() == 2 && (mark[0] == '\0') != (mark[1] == '\0')) return "Unicode";
  return {};
}

int OpenForReading(const std::string& path, const std::function<void()>& interrupted) {
  for (;;) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0) return descriptor;
    if (errno != EINTR) throw SystemFailure(errno);
    if (interrupted) interrupted();
  }
}

void CheckLineLength(std::size_t length) {
  if (length > static_cast<std::size_t>(LineFile::kLongestLine)) throw Halt{FailureCode::InvalidFileFormat, {}};
}

}  // namespace

LineFile::LineFile(std::string path, std::function<void()> interrupted)
    : path_(std::move(path)), interrupted_(std::move(interrupted)), file_(OpenForReading(path_, interrupted_)) {
  struct stat status = {};
  if (fstat(file_.Get(), &status) != 0) throw SystemFailure(errno);
  if (S_ISDIR(status.st_mode)) throw SystemFailure(EISDIR);
  if (S_ISREG(status.st_mode)) length_ = status.st_size;
}

/// Moves the unread bytes to the front and reads more behind them, or finds that there are no more.
void LineFile::Refill() {
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  lineEndsKnown_ = false;
  if (end_ == buffer_.size()) buffer_.resize(buffer_.empty() ? kBlock : 2 * buffer_.size());
  ssize_t count = 0;
  while ((count = read(file_.Get(), buffer_.data() + end_, buffer_.size() - end_)) < 0) {
    if (errno != EINTR) throw SystemFailure(errno, path_);
    if (interrupted_) interrupted_();
  }
  end_ += static_cast<std::size_t>(count);
  sourceEnded_ = count == 0;
}

void LineFile::Start() {
  if (started_) return;
  while (end_ < kByteOrderMark.size() && !sourceEnded_) Refill();
  started_ = true;
  const std::string_view start(buffer_.data(), end_);
  foreignFormat_ = ForeignName(start);
  if (start.substr(0, kByteOrderMark.size()) != kByteOrderMark) return;
  begin_ = kByteOrderMark.size();
  if (begin_ == end_) Refill();
  onlyMark_ = begin_ == end_;
}

/// The place of the first CR or LF from `from` on, or `end_`.
std::size_t LineFile::FindLineEnd(std::size_t from) {
  const char* const data = buffer_.data();
  const auto find = [&](char c) {
    const void* const found = from < end_ ? std::memchr(data + from, c, end_ - from) : nullptr;
    return found == nullptr ? end_ : static_cast<std::size_t>(static_cast<const char*>(found) - data);
  };
  // Remembered, because a buffer without one of the two must not be searched for it at every line.
  if (!lineEndsKnown_ || nextLf_ < from) nextLf_ = find('\n');
  if (!lineEndsKnown_ || nextCr_ < from) nextCr_ = find('\r');
  lineEndsKnown_ = true;
  return std::min(nextLf_, nextCr_);
}

std::optional<std::string_view> LineFile::Next() {
  if (!started_) Start();
  std::size_t lineEnd = begin_;
  // Two more bytes: the other half of the line end may follow, and `AtEnd` must know without moving the buffer.
  while ((lineEnd = FindLineEnd(lineEnd)) + 2 >= end_ && !sourceEnded_) {
    const std::size_t length = lineEnd - begin_;
    CheckLineLength(length);
    Refill();
    lineEnd = begin_ + length;
  }
  if (lineEnd == begin_ && begin_ == end_) {
    if (!std::exchange(onlyMark_, false)) return {};
    return std::string_view();
  }
  const std::string_view line(buffer_.data() + begin_, lineEnd - begin_);
  CheckLineLength(line.size());
  begin_ = lineEnd;
  if (begin_ < end_) ++begin_;
  if (begin_ < end_ && buffer_[begin_] == (buffer_[lineEnd] == '\r' ? '\n' : '\r')) ++begin_;
  return line;
}

bool LineFile::AtEnd() {
  Start();
  return begin_ == end_ && !onlyMark_;
}

std::string_view LineFile::ForeignFormat() {
  Start();
  return foreignFormat_;
}

}  // namespace tessaly
