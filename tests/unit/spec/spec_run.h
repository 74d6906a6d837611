// One specification text read to its end, with all that was said on the way.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "spec/file_names.h"
#include "spec/read_specification.h"

namespace tessaly {

/// A folder that lives as long as the test.
class TestFolder {
 public:
  TestFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "spec_XXXXXX").string();
    path_ = std::string(mkdtemp(path.data())) + "/";
  }
  ~TestFolder() { std::filesystem::remove_all(path_); }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  /// Writes a file and gives its path.
  std::string Write(const std::string& name, std::string_view text) const {
    std::ofstream(path_ + name, std::ios::binary) << text;
    return path_ + name;
  }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

class RecordingConsole : public Console {
 public:
  void ShowMessage(std::string_view text) override { Messages.emplace_back(text); }
  void ShowWarning(std::string_view text) override { Warnings.emplace_back(text); }
  void ShowProgress(std::string_view text, bool /*endLine*/) override { Progress += text; }

  std::vector<std::string> Messages;
  std::vector<std::string> Warnings;
  std::string Progress;
};

class FixedClock : public Clock {
 public:
  std::string RunDate() override { return "2020-02-29 12:00:00"; }
  double Seconds() override { return 0; }
};

/// Reads a specification as the driver does, up to the scales. A failure is kept as the line that reports it.
class SpecRun {
 public:
  explicit SpecRun(std::string_view text, const std::vector<std::string>& words = {}) {
    TestFolder folder;
    Read(folder.Write("spec.txt", text), words);
  }
  /// `path` instead of a text.
  static SpecRun OfFile(const std::string& path) {
    SpecRun run;
    run.Read(path, {});
    return run;
  }

  tessaly::Analysis A;
  RecordingConsole Said;
  /// "Error F..." of a halt, the text of a fatal error; empty if all went well.
  std::string Error;
  /// Lines that are left behind the specification.
  std::vector<std::string> Rest;

  /// The failure with the line that it quotes: "line | Error F...".
  std::string Blamed() const { return Error.empty() ? Error : A.Input.LastLine + " | " + Error; }

 private:
  SpecRun() = default;

  void Read(const std::string& path, const std::vector<std::string>& words) {
    User user;
    FixedClock clock;
    Host host{user, Said, clock};
    InputStack input(A.Input, Said, std::string(FolderOf(path)));
    try {
      const CommandLine commandLine = ReadCommandLine(words);
      input.Open(path, "Specification");
      ReadSpecification(A, commandLine, host, input);
      MatchScalesToModels(A.Models, A.Scales, A.Input, Said);
      while (const auto line = input.NextRawLine()) Rest.emplace_back(*line);
    } catch (const Halt& halt) {
      Error = FailureLine(halt, A.Limits(), A.Input.LineNumber);
    } catch (const FatalError& error) {
      Error = error.Text;
    }
  }
};

/// Two facets with two elements each, behind `settings`.
inline std::string WithTwoFacets(std::string_view settings) {
  return "Facets=2\n" + std::string(settings) + "\nLabels=\n1,Persons\n1,Ann\n2,Bob\n*\n2,Items\n1\n2\n*\n";
}

}  // namespace tessaly
