// The words of the command line: what belongs to the analysis, and the requests behind it.
#pragma once

#include <string>
#include <vector>

namespace tessaly {

struct CommandWords {
  /// File names and specifications of the analysis.
  std::vector<std::string> Analysis;
  /// In the order of the command line, those of files line by line.
  std::vector<std::string> Requests;
  /// The files of `Requests`.
  std::vector<std::string> RequestFiles;
  /// Why the words cannot be used; empty if they can.
  std::string Problem;
};

/// Tells --request TEXT and --requests FILE (also with "=") from the other words.
CommandWords SortCommandWords(const std::vector<std::string>& words);

}  // namespace tessaly
