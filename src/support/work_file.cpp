#include "support/work_file.h"

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>

#include "support/failure.h"

namespace tessaly {
namespace {

struct NewFile {
  FileDescriptor File;
  std::string Name;
  int Error = 0;
};

NewFile CreateUnique(const std::string& folder, std::string_view prefix, std::string_view extension) {
  NewFile created;
  created.Name.append(folder).append("/").append(prefix).append("XXXXXX").append(extension);
  const int descriptor = mkostemps(created.Name.data(), static_cast<int>(extension.size()), O_CLOEXEC);
  if (descriptor < 0) created.Error = errno;
  created.File = FileDescriptor(descriptor);
  return created;
}

Halt WorkFileFailure(const std::string& name, int error) {
  return {FailureCode::WorkFileProblem, name + ": " + std::generic_category().message(error)};
}

}  // namespace

std::string TemporaryFolder() {
  const char* const named = getenv("TMPDIR");
  return named != nullptr && *named != '\0' ? named : "/tmp";
}

std::string TemporaryFolderOr(const std::string& folder) {
  return folder.empty() ? TemporaryFolder() : folder;
}

std::string MakeTemporaryName(const std::string& folder, std::string_view prefix, std::string_view extension) {
  NewFile created = CreateUnique(folder, prefix, extension);
  if (created.Error != 0) created = CreateUnique(TemporaryFolder(), prefix, extension);
  if (created.Error != 0) throw SystemFailure(created.Error);
  return std::move(created.Name);
}

TemporaryFiles::~TemporaryFiles() {
  for (const std::string& name : names_) unlink(name.c_str());
}

const std::string& TemporaryFiles::Add(const std::string& folder, std::string_view prefix, std::string_view extension) {
  // Once the file is there, nothing may fail before its name is kept.
  names_.emplace_back();
  return names_.back() = MakeTemporaryName(folder, prefix, extension);
}

WorkFile::WorkFile(const std::string& folder) {
  NewFile created = CreateUnique(folder, "work", "");
  if (created.Error != 0) throw WorkFileFailure(created.Name, created.Error);
  name_ = std::move(created.Name);
  file_ = std::move(created.File);
  unlink(name_.c_str());
}

void WorkFile::Write(std::int64_t position, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t count = pwrite(file_.Get(), data, size, position);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) throw WorkFileFailure(name_, count < 0 ? errno : ENOSPC);
    data += count;
    size -= static_cast<std::size_t>(count);
    position += count;
  }
}

std::size_t WorkFile::Read(std::int64_t position, char* data, std::size_t size) const {
  std::size_t total = 0;
  while (total < size) {
    const ssize_t count = pread(file_.Get(), data + total, size - total, position + static_cast<std::int64_t>(total));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw WorkFileFailure(name_, errno);
    if (count == 0) break;
    total += static_cast<std::size_t>(count);
  }
  return total;
}

}  // namespace tessaly
