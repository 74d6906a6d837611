#include "output/anchor_file.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>

#include "data/data_files.h"
#include "output/anchor_labels.h"
#include "output/anchor_models.h"
#include "output/anchor_scales.h"
#include "output/settings_lines.h"
#include "reports/esubtotals_table.h"
#include "spec/clean_line.h"
#include "spec/file_names.h"
#include "spec/input_stack.h"
#include "spec/keywords.h"
#include "support/bytes.h"

namespace tessaly {

namespace {

/// Keywords that the file has in a form of its own.
constexpr std::string_view kRebuilt[] = {
    "Dvalues=", "Esubtotals=", "Glabel=", "Labels=", "Models=", "Rating scale=", "Umean="};
/// A rerun must not write over what this run has written.
constexpr std::string_view kCommentedOut[] = {"Output=", "Anchorfile="};

bool IsOneOf(std::string_view name, std::span<const std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Reads keyword lines out of a specification, and steps over the lines of blocks.
class KeywordLines {
 public:
  explicit KeywordLines(InputStack& source) : source_(source) {}

  /// The next line with a keyword, as it stands, or nothing at the end. What it has to say is in `Split` and `Name`.
  std::optional<std::string_view> Next() {
    while (const std::optional<std::string_view> raw = source_.NextRawLine())
      if (Take(*raw)) return raw;
    return {};
  }
  const SplitLine& Split() const { return split_; }
  std::string_view Name() const { return keyword_->Name; }

  /// False for a line without keyword.
  bool Take(std::string_view raw) {
    CleanLine(raw, true, work_);
    if (work_.empty()) return false;
    if (!IsLetter(work_.front())) {
      if (work_.front() == '*') inModels_ = false;
      return false;
    }
    // A statement may begin with an X.
    if (inModels_ && UpperAscii(work_.front()) == 'X') return false;
    split_ = SplitSpecLine(work_);
    keyword_ = FindKeyword(split_.Keyword);
    inModels_ = keyword_ != nullptr && keyword_->Name == "Models=";
    return keyword_ != nullptr;
  }

 private:
  InputStack& source_;
  std::string work_;
  SplitLine split_;
  const Keyword* keyword_ = nullptr;
  bool inModels_ = false;
};

class AnchorWriter {
 public:
  AnchorWriter(const AnchorRequest& request, const Analysis& analysis, Console& console, TextOutput& file)
      : request_(request),
        analysis_(analysis),
        file_(file),
        folder_(FolderOf(analysis.Settings.SpecFileName)),
        source_(at_, console, folder_),
        lines_(source_) {}

  void Write() {
    source_.Open(analysis_.Settings.SpecFileName, "Specification");
    WriteInFront(request_.CurrentSettings ? SettingsLines(analysis_) : request_.ExtraSpecs);
    const std::string dataLine = WriteKeywordsUpToData();
    WriteBlocks();
    if (!analysis_.Settings.InlineData) return;
    file_.WriteLine(request_.IncludeData ? dataLine : "Data=");
    if (!request_.IncludeData) return;
    while (const std::optional<std::string_view> raw = source_.NextRawLine()) file_.WriteLine(*raw);
  }

 private:
  void WriteInFront(const std::vector<std::string>& specs) {
    for (const std::string& spec : specs) {
      if (spec.starts_with(';')) {
        file_.WriteLine(spec);
      } else if (lines_.Take(spec)) {
        WriteKeyword(spec);
      }
    }
  }

  /// Gives the line behind which the data stand.
  std::string WriteKeywordsUpToData() {
    while (const std::optional<std::string_view> raw = lines_.Next()) {
      if (lines_.Name() == "Data=" && lines_.Split().Value(1).empty()) return std::string(*raw);
      if (!request_.CurrentSettings) WriteKeyword(*raw);
    }
    return {};
  }

  void WriteKeyword(std::string_view raw) {
    if (IsOneOf(lines_.Name(), kRebuilt)) return;
    if (IsOneOf(lines_.Name(), kCommentedOut)) {
      file_.WriteLine(";" + std::string(raw));
    } else if (lines_.Name() == "Data=") {
      file_.WriteLine(DataLine(raw, lines_.Split().Value(1)));
    } else {
      file_.WriteLine(raw);
    }
  }

  /// `raw`, unless its files would not be found from where the anchor file lies.
  std::string DataLine(std::string_view raw, std::string_view value) const {
    std::vector<std::string> paths;
    bool moved = false;
    for (const std::string& name : DataFileNames(std::string(value))) {
      paths.push_back(FindInputFile(name, folder_));
      moved |= FindInputFile(name, FolderOf(file_.Path())) != paths.back();
      // Such a path cannot be written.
      if (paths.back() != name && paths.back().find_first_of(",=;+\t") != std::string::npos) return std::string(raw);
    }
    return moved ? "Data = " + Joined(paths, "+") : std::string(raw);
  }

  void WriteBlocks() {
    const Settings& settings = analysis_.Settings;
    file_.WriteLine(UmeanLine(settings));
    WriteLines(GlabelLines(analysis_));
    const AnchorScaleNames names(analysis_.Models, analysis_.Scales);
    WriteAnchorModels(names, analysis_, file_);
    WriteAnchorScales(request_.FlagAsAnchors, names, analysis_, file_);
    WriteAnchorLabels(request_.FlagAsAnchors, analysis_, file_);
    WriteLines(DvaluesLines(settings));
    WriteLines(EsubtotalsBlock(settings.Esubtotals));
  }

  void WriteLines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) file_.WriteLine(line);
  }

  const AnchorRequest& request_;
  const Analysis& analysis_;
  TextOutput& file_;
  std::string folder_;
  InputLine at_;
  InputStack source_;
  KeywordLines lines_;
};

}  // namespace

void WriteAnchorFile(const AnchorRequest& request, const Analysis& analysis, Console& console, TextOutput& file) {
  console.ShowMessage("Writing anchor file: " + file.Path());
  AnchorWriter(request, analysis, console, file).Write();
}

}  // namespace tessaly
