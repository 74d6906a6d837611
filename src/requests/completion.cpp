#include "requests/completion.h"

#include <algorithm>

#include "requests/verbs.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::string_view kBlanks = " \t";

/// The parts of a line that is being typed.
struct Typed {
  std::string Verb;
  /// The word at the end: it is the verb itself if nothing stands before it.
  std::string Last;
};

Typed PartsOf(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  const std::size_t verbEnd = line.find_first_of(kBlanks);
  if (verbEnd == std::string_view::npos) return {{}, std::string(line)};
  return {LowerAscii(line.substr(0, verbEnd)), std::string(line.substr(line.find_last_of(kBlanks) + 1))};
}

std::vector<std::string> ValuesOf(const OptionInfo& option, const Analysis& analysis) {
  std::vector<std::string> values;
  const auto count = [&](std::int32_t last) {
    for (std::int32_t number = 1; number <= last; ++number) values.push_back(BareText(number));
  };
  if (option.Kind == ValueKind::Words) {
    const char separator = option.Values.find('|') == std::string_view::npos ? ',' : '|';
    for (const std::string_view word : SplitAt(option.Values, separator)) values.emplace_back(word);
  } else if (option.Kind == ValueKind::Facets) {
    count(analysis.Facets.size());
  } else if (option.Kind == ValueKind::Scales) {
    count(static_cast<std::int32_t>(analysis.Scales.ScaleOrder.size()));
  }
  return values;
}

const OptionInfo* FindOption(const Typed& typed) {
  const Verb* const verb = FindVerb(typed.Verb);
  const std::size_t equals = typed.Last.find('=');
  if (verb == nullptr || equals == std::string::npos) return nullptr;
  const std::string name = LowerAscii(typed.Last.substr(0, equals));
  const auto found = std::find_if(verb->Options.begin(), verb->Options.end(),
                                  [&](const OptionInfo& option) { return option.Name == name; });
  return found == verb->Options.end() ? nullptr : &*found;
}

/// Words that may stand behind `verb` as a whole.
std::vector<std::string> WordsAfter(const std::string& verb) {
  std::vector<std::string> words;
  if (verb == "show") return {"settings", "files"};
  if (verb == "help") {
    for (const std::string_view name : VerbNames()) words.emplace_back(name);
  } else if (const Verb* const known = FindVerb(verb)) {
    for (const std::string_view name : OptionNames(*known)) words.push_back(std::string(name) + "=");
    words.emplace_back("help");
  }
  return words;
}

std::vector<std::string> FirstWords() {
  std::vector<std::string> words = WordsAfter("help");
  words.insert(words.end(), {"help", "show", "quit"});
  return words;
}

}  // namespace

std::vector<std::string> CompletionsOf(std::string_view line, const Analysis& analysis) {
  const Typed typed = PartsOf(line);
  std::vector<std::string> words;
  if (const OptionInfo* const option = FindOption(typed)) {
    const std::string before = typed.Last.substr(0, typed.Last.find_last_of("=,") + 1);
    for (const std::string& value : ValuesOf(*option, analysis)) words.push_back(before + value);
  } else {
    words = typed.Verb.empty() ? FirstWords() : WordsAfter(typed.Verb);
  }
  std::erase_if(words, [&](const std::string& word) { return !word.starts_with(typed.Last); });
  std::sort(words.begin(), words.end());
  return words;
}

bool EndsInFileName(std::string_view line) {
  const OptionInfo* const option = FindOption(PartsOf(line));
  return option != nullptr && option->Kind == ValueKind::File;
}

}  // namespace tessaly
