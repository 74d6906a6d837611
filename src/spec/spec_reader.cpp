#include "spec/spec_reader.h"

#include <utility>

#include "spec/clean_line.h"
#include "support/failure.h"

namespace tessaly {

std::optional<std::string_view> SpecReader::ReadLine() {
  if (std::exchange(unread_, false)) return work_;
  while (const std::optional<std::string_view> raw = input_.NextRawLine()) {
    if (raw->size() > kLongestLine) throw Halt{FailureCode::InvalidFileFormat, {}};
    length_ += raw->size() + 1;
    if (length_ > kLongestSpecification)
      throw Halt{FailureCode::IncompatibleFile, "the specification has more than 512 MB: do files include each other?"};
    if (HasVisibleComment(*raw)) comments_.emplace_back(*raw);
    CleanLine(*raw, true, work_);
    if (!work_.empty()) return work_;
  }
  return {};
}

std::optional<SplitLine> SpecReader::NextBlockLine() {
  const std::optional<std::string_view> work = ReadLine();
  if (!work) return {};
  SplitLine line = SplitBlockLine(*work);
  if (line.IsBlockEnd()) return {};
  return line;
}

void SpecReader::SkipRest() {
  unread_ = false;
  while (input_.NextRawLine()) continue;
}

}  // namespace tessaly
