#include "spec/settings_file.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "spec/named_marks.h"
#include "spec/setting_values.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"
#include "support/small_text_file.h"
#include "support/work_file.h"

namespace tessaly {

namespace {

constexpr std::size_t kScoreFields = 28;
constexpr std::size_t kResponseFields = 15;
/// Place of the digit of decimals among `ResponseFields`, from 0.
constexpr std::size_t kResponseDecimals = 11;
/// Bad lines of a file that are told one by one: it may be quite another file.
constexpr std::int64_t kMostTold = 5;
constexpr std::string_view kSystemTemporaryFolder = "/tmp";

bool TakeLetter(std::string_view value, std::string_view possible, char& setting) {
  const char letter = FirstLetter(value);
  if (possible.find(letter) == std::string_view::npos) return false;
  setting = letter;
  return true;
}

bool TakeYesNo(std::string_view value, bool& setting) {
  char letter = 'N';
  if (!TakeLetter(value, "YN", letter)) return false;
  setting = letter == 'Y';
  return true;
}

bool TakeEditor(std::string_view value, std::string& editor) {
  const bool open = value.find(' ') != std::string_view::npos && value.front() != '"';
  editor = open ? '"' + std::string(value) + '"' : std::string(value);
  return true;
}

bool TakeScoreFields(std::string_view value, std::string& fields) {
  const bool good = value.size() == kScoreFields;
  fields = good ? UpperAscii(value) : std::string(kScoreFields, 'Y');
  return good;
}

bool TakeResponseFields(std::string_view value, std::string& fields) {
  fields = UpperAscii(value);
  fields.resize(kResponseFields, 'Y');
  if (char& decimals = fields[kResponseDecimals]; !IsDigit(decimals)) decimals = '2';
  return true;
}

bool TakeFonts(std::string_view value, Settings& settings) {
  if (value.empty()) return true;
  const std::size_t tab = value.find('\t');
  if (const std::string_view fonts = TrimBlanks(value.substr(0, tab)); !fonts.empty()) settings.WebpageFont = fonts;
  settings.WebpageBold = tab != std::string_view::npos && IsYes(value.substr(tab + 1));
  return true;
}

bool TakeSeparator(std::string_view value, std::string& separator) {
  separator = DelimiterOf(value);
  return true;
}

std::string Letter(char letter) {
  return {letter};
}
std::string Letter(bool yes) {
  return yes ? "Y" : "N";
}

struct Target {
  InitialSettings& Own;
  Settings& Shared;
};
struct Source {
  const InitialSettings& Own;
  const Settings& Shared;
};

/// One kind of line.
struct SettingLine {
  /// As it is written. Reading goes by the first letter alone.
  std::string_view Name;
  /// Puts a value where it belongs. False if the value is none of this setting. Absent for lines that are not read.
  bool (*Take)(std::string_view value, const Target& to);
  /// The value as written. Absent for lines that are not written with all others.
  std::string (*Value)(const Source& from);
  /// The possible values, for whoever wrote another.
  std::string_view Expected = {};
};

constexpr std::string_view kYesOrNo = "Y or N";
constexpr std::string_view kAskYesOrNo = "A, Y or N";

/// In the order in which they are written.
constexpr SettingLine kLines[] = {
    {"Closeonexit = ", [](std::string_view v, const Target& t) { return TakeLetter(v, "AYN", t.Own.Closeonexit); },
     [](const Source& s) { return Letter(s.Own.Closeonexit); }, kAskYesOrNo},
    {"Editor = ", [](std::string_view v, const Target& t) { return TakeEditor(v, t.Own.EditorCommand); },
     [](const Source& s) { return s.Own.EditorCommand; }},
    {"Folder = ",
     [](std::string_view v, const Target& t) {
       t.Own.TemporaryFolder = v;
       return true;
     },
     [](const Source& s) { return s.Own.TemporaryFolder; }},
    {"Graph empirical curves = ",
     [](std::string_view v, const Target& t) { return TakeLetter(v, "AYN", t.Own.GraphEmpirical); },
     [](const Source& s) { return Letter(s.Own.GraphEmpirical); }, kAskYesOrNo},
    {"Heading lines on output files = ",
     [](std::string_view v, const Target& t) { return TakeYesNo(v, t.Shared.HeadingLinesOption); },
     [](const Source& s) { return Letter(s.Shared.HeadingLinesOption); }, kYesOrNo},
    {"Iteration bars = ", [](std::string_view v, const Target& t) { return TakeYesNo(v, t.Own.IterationBars); },
     [](const Source& s) { return Letter(s.Own.IterationBars); }, kYesOrNo},
    {"Outputask = ", [](std::string_view v, const Target& t) { return TakeYesNo(v, t.Own.Outputask); },
     [](const Source& s) { return Letter(s.Own.Outputask); }, kYesOrNo},
    {"Quotes around labels = ",
     [](std::string_view v, const Target& t) {
       t.Shared.QuoteMark = QuoteMarkOf(v);
       return true;
     },
     [](const Source& s) { return QuoteMarkWord(s.Shared.QuoteMark); }},
    {"Score fields = ", [](std::string_view v, const Target& t) { return TakeScoreFields(v, t.Shared.ScoreFields); },
     [](const Source& s) { return s.Shared.ScoreFields; }, "28 letters, one for each field; all fields are written"},
    {"Tab-type separators = ",
     [](std::string_view v, const Target& t) { return TakeSeparator(v, t.Shared.CsvDelimiter); },
     [](const Source& s) { return DelimiterWord(s.Shared.CsvDelimiter); }},
    {"Webpagefonts = ", [](std::string_view v, const Target& t) { return TakeFonts(v, t.Shared); },
     [](const Source& s) { return s.Shared.WebpageFont + "\t" + (s.Shared.WebpageBold ? "Y" : " "); }},
    {"Xtraask = ", [](std::string_view v, const Target& t) { return TakeYesNo(v, t.Own.Xtraask); },
     [](const Source& s) { return Letter(s.Own.Xtraask); }, kYesOrNo},
    {"ASCII = ", [](std::string_view v, const Target& t) { return TakeLetter(v, "YNW", t.Shared.AsciiOption); },
     [](const Source& s) { return Letter(s.Shared.AsciiOption); }, "Y, N or W"},
    {"Box show = ", [](std::string_view v, const Target& t) { return TakeYesNo(v, t.Shared.BoxShow); },
     [](const Source& s) { return Letter(s.Shared.BoxShow); }, kYesOrNo},
    {"V-UTF8encoded= ", nullptr, [](const Source& s) { return Letter(s.Shared.Encoding.Utf8Encoded); }},
    {"UTF8sub= ", nullptr, [](const Source& s) { return Letter(s.Shared.Encoding.Utf8Sub); }},
    {"yni selection = ",
     [](std::string_view v, const Target& t) { return TakeResponseFields(v, t.Shared.ResponseFields); }, nullptr},
};

const SettingLine* FindLine(std::string_view text) {
  const auto* const found = std::find_if(std::begin(kLines), std::end(kLines), [&](const SettingLine& line) {
    return line.Take != nullptr && FirstLetter(line.Name) == FirstLetter(text);
  });
  return found == std::end(kLines) ? nullptr : found;
}

/// Applies one line. Gives what was expected if its value is impossible, an empty text if all is well.
std::string_view TakeLine(std::string_view text, const Target& to) {
  text = TrimLeft(text);
  const SettingLine* const line = FindLine(text);
  if (line == nullptr) return {};
  const std::string_view value = TrimBlanks(text.substr(text.find('=') + 1));
  return line->Take(value, to) ? std::string_view() : line->Expected;
}

/// The lines of a settings file, or nothing, with a warning where that must surprise the user.
std::optional<std::vector<std::string>> LinesOf(const std::string& path, bool namedByUser, Console& console) {
  std::string reason = "there is no such file";
  try {
    if (auto lines = ReadSmallFile(path)) return lines;
    if (!namedByUser) return {};
  } catch (const Halt& halt) {
    reason = halt.Code == FailureCode::InvalidFileFormat ? FailureDetail(halt) : FailureText(halt, {});
  }
  console.ShowWarning("Settings file " + path + " is not used: " + reason);
  return {};
}

void TakeLines(const std::vector<std::string>& lines, const std::string& file, const Target& to, Console& console) {
  std::int64_t number = 0;
  std::int64_t bad = 0;
  for (const std::string& line : lines) {
    ++number;
    const std::string_view expected = TakeLine(line, to);
    if (expected.empty() || ++bad > kMostTold) continue;
    console.ShowWarning(file + ", line" + GeneralText(number) + ": \"" + QuotedLine(line) + "\" should be " +
                        std::string(expected));
  }
  if (bad > kMostTold) console.ShowWarning(file + ": such lines in all =" + GeneralText(bad));
}

const std::string& WrittenFile(const SettingsLocation& location) {
  if (location.UserFile.empty()) throw Halt{FailureCode::NoFileName, {}};
  return location.UserFile;
}

}  // namespace

InitialSettings ReadSettings(const SettingsLocation& location, Settings& settings, Console& console) {
  InitialSettings initial;
  for (const std::string& path : location.SettingsFiles)
    if (const auto lines = LinesOf(path, location.NamedByUser, console))
      TakeLines(*lines, "Settings file " + path, {initial, settings}, console);
  return initial;
}

void WriteAllSettings(const SettingsLocation& location, const InitialSettings& initial, const Settings& settings) {
  std::vector<std::string> lines;
  for (const SettingLine& line : kLines)
    if (line.Value != nullptr) lines.push_back(std::string(line.Name) + line.Value({initial, settings}));
  SmallFileUpdate(WrittenFile(location)).Replace(lines);
}

void AppendSetting(const SettingsLocation& location, std::string_view line) {
  const std::string& path = WrittenFile(location);
  const SmallFileUpdate update(path);
  std::vector<std::string> lines = ReadSmallFile(path).value_or(std::vector<std::string>());
  lines.emplace_back(line);
  update.Replace(lines);
}

std::string SettleTemporaryFolder(const SettingsEnvironment& environment, InitialSettings& initial, Console& console) {
  if (!environment.TemporaryFolder.empty()) return environment.TemporaryFolder;
  std::string system(kSystemTemporaryFolder);
  std::string& stored = initial.TemporaryFolder;
  if (stored.empty()) return system;
  try {
    const WorkFile test(stored);
    return stored;
  } catch (const Halt& halt) {
    console.ShowWarning("Temporary folder \"" + stored + "\" of the settings takes no files (" + halt.Argument +
                        "): \"" + system + "\" is used");
  }
  stored.clear();
  return system;
}

}  // namespace tessaly
