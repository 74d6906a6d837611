#include "support/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <utility>

#include "support/failure.h"

namespace tessaly {

namespace {

/// As `umask` restricts it.
constexpr mode_t kNewFileMode = 0666;

/// Not valid, with the reason in `errno`, if the system refuses.
FileDescriptor OpenToWrite(const std::string& path, int flags, const GivesUp& givesUp = nullptr) {
  while (!givesUp || !givesUp()) {
    FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, kNewFileMode));
    if (file.Valid() || errno != EINTR) return file;
  }
  errno = EINTR;
  return FileDescriptor();
}

}  // namespace

int WriteAll(int descriptor, std::string_view bytes, const GivesUp& givesUp) {
  while (!bytes.empty()) {
    if (givesUp && givesUp()) return EINTR;
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count < 0 ? errno : ENOSPC;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

void CheckWritable(const std::string& path) {
  struct stat status = {};
  const bool existed = stat(path.c_str(), &status) == 0;
  if (existed && S_ISFIFO(status.st_mode)) {
    // Who reads from the pipe would take the end of a trial for that of the file.
    if (access(path.c_str(), W_OK) != 0) throw SystemFailure(errno);
    return;
  }
  if (!OpenToWrite(path, O_APPEND).Valid()) throw SystemFailure(errno);
  // A link that leads nowhere is the user's, and only what it leads to is new.
  char target[PATH_MAX];
  if (!existed && realpath(path.c_str(), target) != nullptr) unlink(target);
}

OutputFile::OutputFile(std::string path, Opening opening, GivesUp givesUp)
    : path_(std::move(path)), givesUp_(std::move(givesUp)), waits_(opening == Opening::WithFirstBlock) {
  if (waits_) return;
  OpenFile();
  if (error_ != 0) throw SystemFailure(error_);
}

OutputFile::~OutputFile() {
  if (!file_.Valid() || error_ != 0) return;
  fcntl(file_.Get(), F_SETFL, O_NONBLOCK);
  WriteAll(file_.Get(), block_);
}

void OutputFile::OpenFile() {
  waits_ = false;
  file_ = OpenToWrite(path_, O_TRUNC, givesUp_);
  if (!file_.Valid()) error_ = errno;
  struct stat status = {};
  // What is on its way to a disk arrives there, also when the program is to end.
  if (file_.Valid() && fstat(file_.Get(), &status) == 0 && S_ISREG(status.st_mode)) givesUp_ = nullptr;
}

void OutputFile::WriteBlock() {
  if (waits_ && !block_.empty()) OpenFile();
  if (file_.Valid() && error_ == 0) {
    // Stands if `givesUp_` throws: nothing is written any more.
    error_ = EINTR;
    error_ = WriteAll(file_.Get(), block_, givesUp_);
  }
  block_.clear();
}

void OutputFile::Close() {
  WriteBlock();
  if (waits_) OpenFile();
  const int closed = file_.Valid() ? file_.Close() : 0;
  if (error_ == 0) error_ = closed;
  if (const int error = std::exchange(error_, 0); error != 0) throw SystemFailure(error);
}

}  // namespace tessaly
