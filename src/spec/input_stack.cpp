#include "spec/input_stack.h"

#include <algorithm>

#include "spec/clean_line.h"
#include "spec/file_names.h"
#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::int64_t kLinesBetweenPolls = 10000;

}  // namespace

void InputStack::Open(const std::string& path, std::string_view kind) {
  files_.clear();
  includes_ = 0;
  at_ = {};
  if (sources_ != nullptr) sources_->clear();
  Push(path, kind);
}

std::optional<std::string_view> InputStack::NextRawLine() {
  while (const std::optional<std::string_view> line = NextPhysicalLine()) {
    CountLine();
    if (control_ != nullptr && at_.LineNumber % kLinesBetweenPolls == 0) control_->Poll();
    at_.LastLine.assign(*line);
    if (line->empty() || line->front() != '%') return line;
    PushInclude(*line);
  }
  return {};
}

void InputStack::CountLine() {
  ++at_.LineNumber;
  OpenFile& file = files_.back();
  ++file.LinesRead;
  if (!fileChanged_) return;
  fileChanged_ = false;
  if (sources_ != nullptr) sources_->push_back({at_.LineNumber, file.Path, file.LinesRead});
}

std::optional<std::string_view> InputStack::NextPhysicalLine() {
  while (!files_.empty()) {
    if (const std::optional<std::string_view> line = files_.back().Lines.Next()) return line;
    if (files_.size() == 1) return {};
    files_.pop_back();
    fileChanged_ = true;
  }
  return {};
}

void InputStack::Push(const std::string& path, std::string_view kind) {
  try {
    const auto poll = [control = control_] {
      if (control != nullptr) control->Poll();
    };
    files_.push_back({LineFile(path, poll), path});
    fileChanged_ = true;
  } catch (const Halt&) {
    console_.ShowWarning("Failure opening " + std::string(kind) + " file: " + path);
    throw;
  }
  if (std::find(opened_.begin(), opened_.end(), path) == opened_.end()) opened_.push_back(path);
  const std::string title = std::string(kind) + " file - " + path + " - ";
  const std::string format(files_.back().Lines.ForeignFormat());
  if (!format.empty()) {
    console_.ShowWarning(title + "has " + format + " format. Please re-format.");
    throw Halt{FailureCode::InvalidFileFormat, {}};
  }
  if (kind == "Specification" && files_.back().Lines.AtEnd()) {
    console_.ShowWarning(title + "is empty.");
    throw Halt{FailureCode::FileEmpty, {}};
  }
}

void InputStack::PushInclude(std::string_view line) {
  std::string name;
  CleanLine(line.substr(1), true, name);
  if (name.empty()) throw Halt{FailureCode::NoFileName, {}};
  if (files_.size() > static_cast<std::size_t>(kDeepestInclude))
    RefuseInclude(name, "is included more than" + GeneralText(kDeepestInclude) + " deep: does it include itself?");
  if (++includes_ > kMostIncludes)
    RefuseInclude(name, "comes after" + GeneralText(kMostIncludes) + " others: do files include each other?");
  console_.ShowMessage("Reading % include file: " + name);
  Push(FindInputFile(name, folder_), "% include");
}

void InputStack::RefuseInclude(const std::string& name, const std::string& reason) {
  console_.ShowWarning("% include file - " + name + " - " + reason);
  throw Halt{FailureCode::IncompatibleFile, name};
}

}  // namespace tessaly
