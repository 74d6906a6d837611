// An open file of the operating system, closed when its owner goes.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace tessaly {

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor = -1) : descriptor_(descriptor) {}
  ~FileDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  /// Gives 0, or the system's error: the last that it says about what was written.
  int Close() {
    const int failed = close(std::exchange(descriptor_, -1)) == 0 ? 0 : errno;
    // Interrupted or not, the descriptor is gone and the bytes are with the system.
    return failed == EINTR ? 0 : failed;
  }

  int Get() const { return descriptor_; }
  bool Valid() const { return descriptor_ >= 0; }

 private:
  int descriptor_;
};

}  // namespace tessaly
