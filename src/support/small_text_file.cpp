#include "support/small_text_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "support/failure.h"
#include "support/line_file.h"
#include "support/output_file.h"

namespace tessaly {

namespace {

constexpr int kLockAttempts = 100;
constexpr std::chrono::milliseconds kLockPause{10};
/// Nobody else's business, as the settings and recent files of a user are.
constexpr mode_t kNewFolderMode = 0700;

bool IsText(std::string_view line) {
  return std::none_of(line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 32 && c != '\t'; });
}

void CheckLine(std::string_view line) {
  if (!IsText(line)) throw Halt{FailureCode::InvalidFileFormat, "it is no text"};
}

void CheckFileLength(std::size_t length) {
  if (length > kLongestSmallFile) throw Halt{FailureCode::InvalidFileFormat, "it is too long"};
}

bool Missing(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

std::filesystem::path FolderOfFile(const std::string& path) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  return folder.empty() ? "." : folder;
}

void MakeFolder(const std::filesystem::path& folder) {
  std::filesystem::path made;
  for (const std::filesystem::path& part : folder) {
    made /= part;
    struct stat status = {};
    if (stat(made.c_str(), &status) == 0) continue;
    if (mkdir(made.c_str(), kNewFolderMode) != 0 && errno != EEXIST) throw SystemFailure(errno, made);
  }
}

FileDescriptor OpenFolder(const std::filesystem::path& folder) {
  FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor.Valid()) throw SystemFailure(errno, folder);
  return descriptor;
}

void Lock(const FileDescriptor& folder) {
  for (int attempt = 0; attempt < kLockAttempts; ++attempt) {
    if (flock(folder.Get(), LOCK_EX | LOCK_NB) == 0) return;
    if (errno != EWOULDBLOCK && errno != EINTR) return;
    std::this_thread::sleep_for(kLockPause);
  }
}

/// The file itself where `path` is a link.
std::string LinkTarget(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_symlink(path, error)) return path;
  const std::filesystem::path target = std::filesystem::weakly_canonical(path, error);
  return error ? path : target.string();
}

/// The permissions of the file at `path`, or nothing if there is none. Throws `Halt` if it must not be replaced.
std::optional<mode_t> ReplaceableMode(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT) return {};
    throw SystemFailure(errno, path);
  }
  if (S_ISDIR(status.st_mode)) throw SystemFailure(EISDIR, path);
  if (!S_ISREG(status.st_mode)) throw SystemFailure(ENOTSUP, path);
  // A new file could take its place all the same, but whoever forbade writing meant the contents.
  if (access(path.c_str(), W_OK) != 0) throw SystemFailure(errno, path);
  return status.st_mode & 07777;
}

LineFile OpenSmallFile(const std::string& path) {
  try {
    return LineFile(path);
  } catch (const Halt& halt) {
    throw Halt{halt.Code, path + ": " + FailureText(halt, {})};
  }
}

/// Removes the file of that name, unless it has got another one.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(const std::string& name) : name_(name) {}
  ~UnfinishedFile() { unlink(name_.c_str()); }
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

 private:
  const std::string& name_;
};

std::string TextOf(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    CheckLine(line);
    text.append(line).append("\n");
  }
  CheckFileLength(text.size());
  return text;
}

}  // namespace

std::optional<std::vector<std::string>> ReadSmallFile(const std::string& path) {
  if (Missing(path)) return {};
  LineFile file = OpenSmallFile(path);
  CheckFileLength(static_cast<std::size_t>(file.FileLength()));
  if (const std::string_view format = file.ForeignFormat(); !format.empty())
    throw Halt{FailureCode::InvalidFileFormat, "it has " + std::string(format) + " format"};
  std::vector<std::string> lines;
  std::size_t length = 0;
  while (const std::optional<std::string_view> line = file.Next()) {
    // A device has no length to begin with.
    length += line->size() + 1;
    CheckFileLength(length - 1);
    CheckLine(*line);
    lines.emplace_back(*line);
  }
  return lines;
}

SmallFileUpdate::SmallFileUpdate(std::string path) : path_(std::move(path)) {
  const std::filesystem::path folder = FolderOfFile(path_);
  MakeFolder(folder);
  folder_ = OpenFolder(folder);
  Lock(folder_);
}

void SmallFileUpdate::Replace(const std::vector<std::string>& lines) const {
  const std::string text = TextOf(lines);
  const std::string target = LinkTarget(path_);
  const std::optional<mode_t> mode = ReplaceableMode(target);
  std::string name = target + ".XXXXXX";
  FileDescriptor file(mkostemp(name.data(), O_CLOEXEC));
  if (!file.Valid()) throw SystemFailure(errno, target);
  const UnfinishedFile written(name);
  if (const int error = WriteAll(file.Get(), text); error != 0) throw SystemFailure(error, target);
  // Not every file system has permissions.
  if (mode) fchmod(file.Get(), *mode);
  if (const int error = file.Close(); error != 0) throw SystemFailure(error, target);
  if (std::rename(name.c_str(), target.c_str()) != 0) throw SystemFailure(errno, target);
}

}  // namespace tessaly
