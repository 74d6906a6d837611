// The specification phase: command line, specification file, tables.
#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "spec/input_stack.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// The words of a command line, told apart.
struct CommandLine {
  /// Specification, report, anchor, residual and graph file; empty where not given.
  std::array<std::string, 5> FileNames;
  /// Words `keyword=value`, in order.
  std::vector<std::string> ExtraSpecs;
  bool Batch = false;
  /// Files that the shell reads, which no output may overwrite.
  std::vector<std::string> OtherInputs;
  /// The whole line, if it holds a comment that is to be shown (";;").
  std::vector<std::string> Comments;
};

/// Tells the words of a command line apart. Throws `Halt{MissingQuote}`, and `Halt{ExtraSpecificationExpected}` for a
/// sixth file name.
CommandLine ReadCommandLine(std::span<const std::string> words);

/// Reads extra specifications and the specification file into `analysis`, then builds models, labels and field map.
/// `input` must have been opened on the specification file; with inline data it is left at their first line.
/// Throws `Halt` with `analysis.Input` at the line to blame.
void ReadSpecification(Analysis& analysis, const CommandLine& commandLine, Host& host, InputStack& input);

/// Joins rating scale definitions and model statements: types, tops, weights. Throws `Halt{InvalidScaleType}`, with
/// `at` at the statement and its scale code.
void MatchScalesToModels(ModelTables& models, ScaleTables& scales, InputLine& at, Console& console);

}  // namespace tessaly
