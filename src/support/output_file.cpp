#include "support/output_file.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "support/failure.h"

namespace tessaly {

void CheckWritable(const std::string& path) {
  std::error_code error;
  const bool existed = std::filesystem::exists(path, error);
  std::FILE* const file = std::fopen(path.c_str(), "abe");
  if (file == nullptr) throw SystemFailure(errno);
  std::fclose(file);
  if (!existed) std::filesystem::remove(path, error);
}

OutputFile::OutputFile(std::string path) : path_(std::move(path)), file_(std::fopen(path_.c_str(), "wbe")) {
  if (file_ == nullptr) throw SystemFailure(errno);
}

OutputFile::~OutputFile() {
  if (file_ != nullptr) std::fclose(file_);
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : path_(std::move(other.path_)), file_(std::exchange(other.file_, nullptr)), error_(other.error_) {}

void OutputFile::Write(std::string_view bytes) {
  if (bytes.empty() || error_ != 0) return;
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) error_ = errno;
}

void OutputFile::Close() {
  if (file_ == nullptr) return;
  const bool flushed = std::fflush(file_) == 0;
  if (!flushed && error_ == 0) error_ = errno;
  const bool closed = std::fclose(std::exchange(file_, nullptr)) == 0;
  if (!closed && error_ == 0) error_ = errno;
  if (error_ != 0) throw SystemFailure(error_);
}

}  // namespace tessaly
