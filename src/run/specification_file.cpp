#include "run/specification_file.h"

#include <filesystem>
#include <optional>

#include "spec/file_names.h"
#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {

namespace {

bool NamesFolder(std::string_view name) {
  return !name.empty() && FolderOf(name).size() == name.size();
}

void ChangeFolder(const std::string& name, Console& console) {
  std::error_code error;
  std::filesystem::current_path(FindInputFile(name, {}), error);
  if (error) throw SystemFailure(error.value());
  console.ShowMessage("Current folder: " + std::filesystem::current_path().string());
}

std::string AskForName(User& user) {
  const std::optional<std::string> answer = user.Ask("What is the specification file name? ");
  if (!answer) throw Halt{FailureCode::NoFileName, {}};
  return std::string(TrimQuotes(*answer));
}

/// Each specification as one word: "iter = 1" becomes "iter=1".
std::string WithoutBlanksAtEquals(std::string_view text) {
  std::string joined;
  for (const char c : text) {
    if (c == '=') joined.resize(TrimRight(joined).size());
    if (c == ' ' && joined.ends_with('=')) continue;
    joined += c;
  }
  return joined;
}

/// Asks for extra specifications. False if the user wants another file instead.
bool AskForExtraSpecs(CommandLine& commandLine, Host& host) {
  const auto answer =
      host.user.Ask("Extra specifications (keyword=value keyword=value ..., no blanks inside), or Enter for none: ");
  if (!answer) {
    host.console.ShowMessage("*** Cancelled ***");
    return false;
  }
  const std::string joined = WithoutBlanksAtEquals(*answer);
  for (const std::string_view word : SplitAt(joined, ' ')) {
    if (!word.empty()) commandLine.ExtraSpecs.emplace_back(word);
  }
  return true;
}

}  // namespace

void SettleSpecificationFile(CommandLine& commandLine, bool askForExtraSpecs, Host& host) {
  const bool mayAsk = host.user.Present() && !commandLine.Batch;
  std::string& name = commandLine.FileNames.front();
  for (;;) {
    if (NamesFolder(name) && mayAsk) {
      ChangeFolder(name, host.console);
      name.clear();
    }
    if (name == "*") name.clear();
    if (name.empty()) {
      if (!mayAsk) throw Halt{FailureCode::NoFileName, {}};
      name = AskForName(host.user);
      continue;
    }
    if (mayAsk && !std::filesystem::exists(name)) {
      host.console.ShowWarning("Failure opening Specification file: " + name);
      name.clear();
      continue;
    }
    if (!mayAsk || !askForExtraSpecs || !commandLine.ExtraSpecs.empty() || AskForExtraSpecs(commandLine, host)) return;
    name.clear();
  }
}

}  // namespace tessaly
