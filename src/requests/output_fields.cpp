#include "requests/output_fields.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "requests/nearest_word.h"
#include "spec/settings_file.h"
#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {

namespace {

/// In the order of the letters of `ScoreFields`.
constexpr std::array<std::string_view, 28> kScoreFields = {
    "Score",      "Count",    "Obs.Avge", "FairAvge", "Measure",   "S.E.",     "InfitMS",
    "InfitZ",     "OutfitMS", "OutfitZ",  "PtMea",    "PtMeExp",   "Discrim",  "Displace",
    "Status",     "Group",    "Weight",   "Sign",     "InfChiSqu", "Infitdf",  "InfPr2s",
    "OutfChiSqu", "Outfitdf", "OutfPr2s", "E-Number", "E-Label",   "F-Number", "F-Label"};

/// Headings that score files have by the settings, and the fields that they are.
constexpr std::array<std::array<std::string_view, 2>, 6> kOtherHeadings = {{{"T.Score", "Score"},
                                                                            {"T.Count", "Count"},
                                                                            {"FairMAvge", "FairAvge"},
                                                                            {"FairZAvge", "FairAvge"},
                                                                            {"PtBis", "PtMea"},
                                                                            {"PtBisI", "PtMea"}}};

/// In the order of the characters of `ResponseFields`, of which one is no field.
constexpr std::array<std::string_view, 15> kResponseFields = {"Obs",     "Stp", "Exp",    "Res",     "Var",
                                                              "StRes",   "Wt",  "LProb",  "Measure", "E-Number",
                                                              "E-Label", "",    "Status", "Displ",   "E-Measure"};
constexpr std::size_t kDecimalsPlace = 11;

/// What counts of a name.
std::string Bare(std::string_view name) {
  std::string bare = LowerAscii(name);
  std::erase_if(bare, [](char c) { return c == '.' || c == '-' || c == ' '; });
  return bare;
}

/// `item` without what does not count, whichever of its headings it is.
std::string FieldName(std::string_view item) {
  std::string name = Bare(item);
  for (const auto& [heading, field] : kOtherHeadings)
    if (Bare(heading) == name) return Bare(field);
  return name;
}

std::size_t PlaceOf(std::string_view item, std::span<const std::string_view> names) {
  const std::string wanted = FieldName(item);
  const auto found = std::find_if(names.begin(), names.end(),
                                  [&](std::string_view name) { return !name.empty() && Bare(name) == wanted; });
  if (found != names.end()) return static_cast<std::size_t>(found - names.begin());
  std::vector<std::string_view> known;
  std::copy_if(names.begin(), names.end(), std::back_inserter(known), [](auto name) { return !name.empty(); });
  throw Refusal{"There is no field " + QuotedLine(item) + "." + Suggestion(item, known) + " Fields are " +
                Joined({known.begin(), known.end()}, ", ")};
}

/// 'Y' for each field that `list` names, or for all.
std::string Selected(std::string_view list, std::span<const std::string_view> names) {
  const std::vector<std::string_view> items = ListItems(list);
  const bool all = items.size() == 1 && Bare(items.front()) == "all";
  std::string letters(names.size(), all ? 'Y' : 'N');
  if (items.empty()) throw Refusal{"fields= names no field. Please name some, with commas between them, or all"};
  for (const std::string_view item : items)
    if (!all) letters[PlaceOf(item, names)] = 'Y';
  return letters;
}

void KeepAsDefault(const RequestOptions& options, const std::string& line, SessionState& session) {
  if (!options.YesNo("default", false)) return;
  AppendSetting(LocateSettings(session.Environment), line);
  session.Host.console.ShowMessage("Default done: " + line);
}

}  // namespace

void ReadScoreFields(const RequestOptions& options, SessionState& session) {
  std::string& letters = session.A.Settings.ScoreFields;
  if (const auto list = options.Text("fields")) letters = Selected(*list, kScoreFields);
  KeepAsDefault(options, "Score selection = " + letters, session);
}

void ReadResponseFields(const RequestOptions& options, SessionState& session) {
  std::string& letters = session.A.Settings.ResponseFields;
  letters.resize(kResponseFields.size(), 'Y');
  const char decimals = letters[kDecimalsPlace];
  if (const auto list = options.Text("fields")) letters = Selected(*list, kResponseFields);
  const auto given = options.Whole("decimals", 0, 9);
  letters[kDecimalsPlace] = given ? static_cast<char>('0' + *given) : decimals;
  KeepAsDefault(options, "yni selection = " + letters, session);
}

}  // namespace tessaly
