#include "requests/request_help.h"

#include "requests/nearest_word.h"
#include "requests/verbs.h"
#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {

namespace {

constexpr int kNameWidth = 18;

std::string Entry(std::string_view name, std::string_view text) {
  return "  " + PadToWidth(name, kNameWidth) + std::string(text);
}

}  // namespace

std::vector<std::string> RequestHelp(std::string_view name) {
  std::vector<std::string> lines;
  if (name.empty()) {
    lines.push_back("Requests, each with options name=value behind it:");
    for (const Verb& verb : Verbs()) lines.push_back(Entry(verb.Name, verb.Summary));
    lines.push_back(Entry("show settings", "The settings in force"));
    lines.push_back(Entry("show files", "The files of the analysis and of requests"));
    lines.push_back(Entry("help", "This list; \"table7 help\" or \"help table7\" lists the options of table7"));
    lines.push_back(Entry("quit", "Ends the program"));
    return lines;
  }
  const Verb* const verb = FindVerb(name);
  if (verb == nullptr) throw Refusal{"\"" + QuotedLine(name) + "\" is no request." + Suggestion(name, VerbNames())};
  lines.push_back(std::string(verb->Name) + ": " + std::string(verb->Summary) + ". Options:");
  for (const OptionInfo& option : verb->Options) {
    lines.push_back(Entry(std::string(option.Name) + "=", option.Values));
    lines.push_back(Entry("", option.Text));
  }
  return lines;
}

}  // namespace tessaly
