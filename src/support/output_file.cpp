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

FileDescriptor OpenToWrite(const std::string& path, int flags) {
  for (;;) {
    FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, kNewFileMode));
    if (file.Valid()) return file;
    if (errno != EINTR) throw SystemFailure(errno);
  }
}

}  // namespace

int WriteAll(int descriptor, std::string_view bytes, bool (*givesUp)()) {
  while (!bytes.empty()) {
    if (givesUp != nullptr && givesUp()) return EINTR;
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
  OpenToWrite(path, O_APPEND);
  // A link that leads nowhere is the user's, and only what it leads to is new.
  char target[PATH_MAX];
  if (!existed && realpath(path.c_str(), target) != nullptr) unlink(target);
}

OutputFile::OutputFile(std::string path) : path_(std::move(path)), file_(OpenToWrite(path_, O_TRUNC)) {}

void OutputFile::WriteBlock() {
  if (file_.Valid() && error_ == 0) error_ = WriteAll(file_.Get(), block_);
  block_.clear();
}

void OutputFile::Close() {
  if (!file_.Valid()) return;
  WriteBlock();
  const int closed = file_.Close();
  if (error_ == 0) error_ = closed;
  if (error_ != 0) throw SystemFailure(error_);
}

}  // namespace tessaly
