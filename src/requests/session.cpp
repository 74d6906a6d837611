#include "requests/session.h"

#include <algorithm>
#include <new>
#include <optional>
#include <system_error>

#include "output/settings_lines.h"
#include "requests/completion.h"
#include "requests/nearest_word.h"
#include "requests/request_help.h"
#include "requests/request_line.h"
#include "requests/request_options.h"
#include "requests/verbs.h"
#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {

namespace {

constexpr std::string_view kModify = "modify";
constexpr std::string_view kShow = "show";
constexpr std::string_view kShowable[] = {"settings", "files"};

bool AsksForNothing(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t\r");
  return first == std::string_view::npos || line[first] == ';' || line[first] == '#';
}

std::vector<std::string_view> KnownWords() {
  std::vector<std::string_view> words = VerbNames();
  words.insert(words.end(), {"help", kShow});
  return words;
}

void CheckOptions(const Verb& verb, const RequestLine& request) {
  const std::vector<std::string_view> names = OptionNames(verb);
  const std::string of = " of " + std::string(verb.Name);
  for (const std::string& word : request.Words) {
    throw Refusal{"\"" + QuotedLine(word) + "\" is no option" + of +
                  ". Options are written name=value, without blanks" + " around the \"=\"." + Suggestion(word, names)};
  }
  for (const RequestLine::Option& option : request.Options) {
    if (std::find(names.begin(), names.end(), option.Name) == names.end())
      throw Refusal{"\"" + QuotedLine(option.Name) + "=\" is no option" + of + "." + Suggestion(option.Name, names)};
  }
}

/// The verb of "table7 help" and "help table7", empty for "help"; nothing for other requests.
std::optional<std::string> HelpAskedFor(const RequestLine& request) {
  if (request.Verb == "help") return request.Words.empty() ? std::string() : request.Words.front();
  const bool behind = request.Options.empty() && request.Words == std::vector<std::string>{"help"};
  return behind ? std::optional(request.Verb) : std::nullopt;
}

/// The verb of a request whose words are all right.
const Verb& CheckRequest(const RequestLine& request) {
  const Verb* const verb = FindVerb(request.Verb);
  if (verb == nullptr)
    throw Refusal{"\"" + QuotedLine(request.Verb) + "\" is no request." + Suggestion(request.Verb, KnownWords()) +
                  " \"help\" lists them all"};
  CheckOptions(*verb, request);
  return *verb;
}

/// What "show" is to show.
std::string_view ShownBy(const RequestLine& request) {
  const std::string_view what = request.Words.empty() ? std::string_view() : request.Words.front();
  const bool known = std::find(std::begin(kShowable), std::end(kShowable), what) != std::end(kShowable);
  if (known && request.Words.size() == 1 && request.Options.empty()) return what;
  throw Refusal{"Please write \"show settings\" or \"show files\"." +
                (what.empty() || known ? "" : Suggestion(what, kShowable))};
}

void ShowLines(const std::vector<std::string>& lines, Console& console) {
  for (const std::string& line : lines) console.ShowMessage(line);
}

}  // namespace

Session::Session(Analysis& analysis, FinishedRun& run, Host& host, SettingsEnvironment environment)
    : state_{analysis, run, host, std::move(environment), StandardErrors(analysis.Elements, analysis.Settings.RealSE),
             {},       {},  {}} {}

bool Session::Carry(std::string_view line) {
  Console& console = state_.Host.console;
  try {
    if (!AsksForNothing(line)) CarryOut(line);
    return true;
  } catch (const Refusal& refusal) {
    console.ShowWarning(refusal.Text);
  } catch (const Halt& halt) {
    for (const std::string& text : FailureReport(halt, state_.A.Limits(), {}, 0, {})) console.ShowWarning(text);
  } catch (const FatalError& error) {
    console.ShowWarning(error.Text);
  } catch (const std::bad_alloc&) {
    console.ShowWarning("There is not enough memory for this request");
  }
  return false;
}

void Session::CarryOut(std::string_view line) {
  const RequestLine request = ReadRequestLine(line);
  if (const auto help = HelpAskedFor(request)) return ShowLines(RequestHelp(*help), state_.Host.console);
  if (request.Verb == kShow) return Show(ShownBy(request));
  const Verb& verb = CheckRequest(request);
  const RequestOptions options(request, state_.A);
  if (verb.Name == kModify) return verb.Carry(state_, options);
  const SettingsScope scope(state_.A.Settings);
  verb.Carry(state_, options);
}

void Session::Show(std::string_view what) {
  if (what == "settings") return ShowLines(SettingsLines(state_.A), state_.Host.console);
  for (const SessionFile& file : state_.Files) state_.Host.console.ShowMessage(file.Label + " = " + file.Path);
  for (const std::string& name : state_.Run.Files) state_.Host.console.ShowMessage("Analysis = " + name);
}

std::vector<std::string> Session::Completions(std::string_view line) const {
  return CompletionsOf(line, state_.A);
}

bool Session::ExpectsFile(std::string_view line) {
  return EndsInFileName(line);
}

bool EndsSession(std::string_view line) {
  const std::string word = LowerAscii(TrimBlanks(line));
  return word == "quit" || word == "exit";
}

bool AnswerHelp(std::string_view line, Console& console) {
  try {
    const auto help = HelpAskedFor(ReadRequestLine(line));
    if (help) ShowLines(RequestHelp(*help), console);
    return help.has_value();
  } catch (const Refusal& refusal) {
    console.ShowWarning(refusal.Text);
    return false;
  }
}

std::string RequestProblem(std::string_view line) {
  try {
    if (AsksForNothing(line) || EndsSession(line)) return {};
    const RequestLine request = ReadRequestLine(line);
    if (HelpAskedFor(request)) return {};
    if (request.Verb == kShow) {
      ShownBy(request);
    } else {
      CheckRequest(request);
    }
    return {};
  } catch (const Refusal& refusal) {
    return refusal.Text;
  }
}

}  // namespace tessaly
