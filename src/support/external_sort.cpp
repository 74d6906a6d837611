// Sorting of text files that need not fit in memory: parts are sorted in memory, written out, and merged.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <optional>

#include "support/failure.h"
#include "support/line_file.h"
#include "support/sort_keys.h"
#include "support/work_file.h"

namespace tessaly {
namespace {

/// A temporary file that is removed unless it is handed on.
class PartFile {
 public:
  explicit PartFile(const std::string& folder) : name_(MakeTemporaryName(folder, "sort", ".txt")) {}
  ~PartFile() {
    if (!name_.empty()) unlink(name_.c_str());
  }
  PartFile(PartFile&& other) noexcept : name_(std::exchange(other.name_, {})) {}
  PartFile& operator=(PartFile&&) = delete;

  const std::string& Name() const { return name_; }
  std::string HandOn() { return std::exchange(name_, {}); }

 private:
  std::string name_;
};

class LineWriter {
 public:
  explicit LineWriter(const std::string& path) : file_(std::fopen(path.c_str(), "we"), &std::fclose) {
    Check(file_ != nullptr);
  }
  void Write(std::string_view line) {
    Check(std::fwrite(line.data(), 1, line.size(), file_.get()) == line.size() && std::fputc('\n', file_.get()) != EOF);
  }
  void Close() { Check(std::fclose(file_.release()) == 0); }

 private:
  static void Check(bool good) {
    if (!good) throw SystemFailure(errno);
  }

  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

/// Lines in memory.
class Part {
 public:
  bool Empty() const { return lines_.empty(); }
  /// Memory that the lines and one more of `next` bytes take.
  std::size_t BytesWith(std::size_t next) const { return text_.size() + next + (lines_.size() + 1) * sizeof(Span); }

  void Add(std::string_view line) {
    lines_.push_back({text_.size(), line.size()});
    text_ += line;
  }

  PartFile WriteSorted(std::size_t skipped, const std::string& folder) {
    std::stable_sort(lines_.begin(), lines_.end(),
                     [&](Span a, Span b) { return KeyOf(Line(a), skipped) < KeyOf(Line(b), skipped); });
    PartFile file(folder);
    LineWriter writer(file.Name());
    for (const Span line : lines_) writer.Write(Line(line));
    writer.Close();
    lines_.clear();
    text_.clear();
    return file;
  }

  static std::string_view KeyOf(std::string_view line, std::size_t skipped) {
    return line.substr(std::min(skipped, line.size()));
  }

 private:
  struct Span {
    std::size_t Start;
    std::size_t Length;
  };
  std::string_view Line(Span span) const { return std::string_view(text_).substr(span.Start, span.Length); }

  std::string text_;
  std::vector<Span> lines_;
};

PartFile Merged(const std::vector<PartFile>& parts, std::size_t skipped, const std::string& folder) {
  struct Source {
    LineFile File;
    std::optional<std::string_view> Line;
  };
  std::vector<Source> sources;
  for (const PartFile& part : parts) {
    Source& source = sources.emplace_back(Source{LineFile(part.Name()), {}});
    source.Line = source.File.Next();
  }
  PartFile file(folder);
  LineWriter writer(file.Name());
  for (;;) {
    Source* lowest = nullptr;
    for (Source& source : sources)
      if (source.Line && (!lowest || Part::KeyOf(*source.Line, skipped) < Part::KeyOf(*lowest->Line, skipped)))
        lowest = &source;
    if (lowest == nullptr) break;
    writer.Write(*lowest->Line);
    lowest->Line = lowest->File.Next();
  }
  writer.Close();
  return file;
}

}  // namespace

std::string ExternalSort(const std::string& path, int column, const std::string& folder, std::size_t partBytes) {
  const auto skipped = static_cast<std::size_t>(std::max(column - 1, 0));
  std::vector<PartFile> parts;
  Part part;
  LineFile source(path);
  while (const auto line = source.Next()) {
    if (!part.Empty() && part.BytesWith(line->size()) > partBytes) parts.push_back(part.WriteSorted(skipped, folder));
    part.Add(*line);
  }
  parts.push_back(part.WriteSorted(skipped, folder));
  return parts.size() == 1 ? parts[0].HandOn() : Merged(parts, skipped, folder).HandOn();
}

}  // namespace tessaly
