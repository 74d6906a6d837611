#include "shell/cli/command_words.h"

#include <string_view>

#include "support/failure.h"
#include "support/line_file.h"

namespace tessaly {

namespace {

constexpr std::string_view kRequest = "--request";
constexpr std::string_view kRequests = "--requests";
/// A longer file is none of requests, or a device without end.
constexpr std::size_t kLongestRequests = std::size_t{1} << 24;

void AddFile(const std::string& name, CommandWords& words) {
  try {
    LineFile file(name);
    words.RequestFiles.push_back(name);
    std::size_t length = 0;
    while (const auto line = file.Next()) {
      length += line->size() + 1;
      if (length > kLongestRequests) throw Halt{FailureCode::InvalidFileFormat, {}};
      words.Requests.emplace_back(*line);
    }
  } catch (const Halt& halt) {
    words.Problem = "Failure opening the file of requests " + name + ": " + FailureText(halt, {});
  }
}

}  // namespace

CommandWords SortCommandWords(const std::vector<std::string>& words) {
  CommandWords sorted;
  for (std::size_t at = 0; at < words.size() && sorted.Problem.empty(); ++at) {
    const std::string& word = words[at];
    const std::size_t equals = word.find('=');
    const std::string_view name = std::string_view(word).substr(0, equals);
    if (name != kRequest && name != kRequests) {
      sorted.Analysis.push_back(word);
      continue;
    }
    if (equals == std::string::npos && at + 1 == words.size()) {
      sorted.Problem = word + " has nothing behind it. Please give " +
                       (name == kRequest ? "a request, such as --request help" : "the name of a file of requests");
      break;
    }
    const std::string value = equals == std::string::npos ? words[++at] : word.substr(equals + 1);
    if (name == kRequest) {
      sorted.Requests.push_back(value);
    } else {
      AddFile(value, sorted);
    }
  }
  return sorted;
}

}  // namespace tessaly
