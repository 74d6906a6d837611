#include <algorithm>
#include <deque>

#include "spec/read_specification.h"
#include "support/bytes.h"

namespace tessaly {
namespace {

/// The words up to the first ";".
std::deque<std::string> WithoutComment(std::span<const std::string> words) {
  std::deque<std::string> kept;
  for (const std::string& word : words) {
    const std::size_t comment = word.find(';');
    kept.emplace_back(TrimBlanks(std::string_view(word).substr(0, comment)));
    if (comment != std::string::npos) break;
  }
  return kept;
}

/// The next word. One in double quotes runs on to the closing quote, over several words if need be.
std::string TakeWord(std::deque<std::string>& words) {
  std::string word = std::move(words.front());
  words.pop_front();
  if (word.empty() || word.front() != '"') return word;
  std::size_t quote = word.find('"', 1);
  while (quote == std::string::npos) {
    if (words.empty()) throw Halt{FailureCode::MissingQuote, {}};
    quote = words.front().find('"');
    if (quote != std::string::npos) quote += word.size() + 1;
    word += ' ' + words.front();
    words.pop_front();
  }
  if (quote + 1 < word.size()) words.push_front(word.substr(quote + 1));
  return word.substr(1, quote - 1);
}

bool AsksForBatch(std::string_view word) {
  const std::string letters = UpperAscii(word);
  const std::size_t equals = letters.find('=');
  return letters.compare(0, 3, "BAT") == 0 && TrimQuotes(letters.substr(equals + 1)).substr(0, 1) == "Y";
}

}  // namespace

CommandLine ReadCommandLine(std::span<const std::string> words) {
  CommandLine commandLine;
  const std::string whole = Joined({words.begin(), words.end()}, " ");
  if (whole.find(";;") != std::string::npos) commandLine.Comments.push_back(whole);
  std::deque<std::string> left = WithoutComment(words);
  std::size_t files = 0;
  while (!left.empty()) {
    std::string word(TrimBlanks(TakeWord(left)));
    if (word.empty()) continue;
    if (word.find('=') != std::string::npos) {
      commandLine.Batch |= AsksForBatch(word);
      commandLine.ExtraSpecs.push_back(std::move(word));
    } else if (files < commandLine.FileNames.size()) {
      commandLine.FileNames[files++] = std::move(word);
    } else {
      throw Halt{FailureCode::ExtraSpecificationExpected, {}};
    }
  }
  return commandLine;
}

}  // namespace tessaly
