// What the fuzz targets share: a world without user, screen and time, and a folder that every input finds empty.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/host.h"
#include "support/work_file.h"

namespace tessaly::fuzz {

/// Ends the process as a finding if what must hold for every input does not.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

/// Of the failures that end the process, input may cause one alone: an anchor that is too extreme. All others mean that
/// the program itself is wrong.
inline void RequireCausedByInput(std::string_view failure) {
  Require(failure.find("Failure (20)! ") != std::string_view::npos);
}

class NoScreen : public Console {
 public:
  void ShowFatal(std::string_view text) override { RequireCausedByInput(text); }
};

class NoClock : public Clock {
 public:
  std::string RunDate() override { return "2001-09-09 01:46:40"; }
  double Seconds() override { return 0; }
};

/// Leaves after a while: some inputs ask for more iterations than a fuzzer can wait for. Counts polls and not seconds,
/// so that an input does the same each time.
class ImpatientUser : public User {
 public:
  UserRequest Poll() override { return ++polls_ > kPatience ? UserRequest::Stop : UserRequest::None; }

 private:
  static constexpr int kPatience = 3000;

  int polls_ = 0;
};

/// A host that is silent and impatient.
struct SilentHost {
  ImpatientUser Nobody;
  NoScreen Silence;
  NoClock Time;
  tessaly::Host Host{Nobody, Silence, Time};
};

/// The bytes of an input as text, without the characters that lead to other folders: an input may name output files,
/// and they must not lie elsewhere. The targets that write files take their inputs through this.
inline std::string ConfinedText(const std::uint8_t* data, std::size_t size) {
  std::string text(data, data + size);
  std::replace(text.begin(), text.end(), '/', '_');
  std::replace(text.begin(), text.end(), '\\', '_');
  return text;
}

/// An input of several files, as in the case files of the tests: what stands before the first line "== NAME" is the
/// first file, with the name `first`.
inline std::vector<std::pair<std::string, std::string>> NamedFiles(std::string_view text, const std::string& first) {
  constexpr std::size_t kMostFiles = 10;
  std::vector<std::pair<std::string, std::string>> files{{first, {}}};
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.starts_with("== ") && files.size() < kMostFiles) {
      files.emplace_back(line.substr(3), "");
    } else {
      files.back().second.append(line).append("\n");
    }
  }
  return files;
}

/// The current folder while it lives: one of its own, emptied now and removed at the end of the process.
class OwnFolder {
 public:
  OwnFolder() : before_(std::filesystem::current_path()) {
    for (const auto& entry : std::filesystem::directory_iterator(Place().Path)) std::filesystem::remove_all(entry);
    std::filesystem::current_path(Place().Path);
  }
  ~OwnFolder() { std::filesystem::current_path(before_); }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

  /// The files of an input, the first one as `spec.txt`: see `NamedFiles`.
  void Unpack(const std::uint8_t* data, std::size_t size) const {
    for (const auto& [name, content] : NamedFiles(ConfinedText(data, size), "spec.txt")) Write(name, content);
  }
  /// A name that no file can have writes none.
  void Write(const std::string& name, std::string_view content) const {
    std::ofstream(name, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
  }
  std::string Read(const std::string& name) const {
    std::ifstream stream(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  struct Folder {
    Folder() : Path(TemporaryFolder() + "/tessaly-fuzz-" + std::to_string(getpid())) {
      std::filesystem::create_directory(Path);
    }
    ~Folder() {
      std::error_code error;
      std::filesystem::remove_all(Path, error);
    }
    std::filesystem::path Path;
  };
  static const Folder& Place() {
    static const Folder folder;
    return folder;
  }

  std::filesystem::path before_;
};

}  // namespace tessaly::fuzz
