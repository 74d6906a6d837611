// Keywords that name files.
#pragma once

#include <string>
#include <string_view>

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// `Data=`: the first name stands. Without any, the data follow in the specification; with one already given, the rest
/// of the specification is read over.
void ReadData(SpecContext& context, const SplitLine& line);
/// `Output=`: report, anchor, residual and graph file.
void ReadOutput(SpecContext& context, const SplitLine& line);

/// These keep a name that the file already has.
void ReadAnchorfile(SpecContext& context, const SplitLine& line);
void ReadGraphfile(SpecContext& context, const SplitLine& line);
void ReadResidualfile(SpecContext& context, const SplitLine& line);
void ReadSimulated(SpecContext& context, const SplitLine& line);
/// `Scorefile=` always sets the name.
void ReadScorefile(SpecContext& context, const SplitLine& line);
/// `CSV=`.
void ReadCsv(SpecContext& context, const SplitLine& line);
/// `Seed=`.
void ReadSeed(SpecContext& context, const SplitLine& line);

/// Sets the name of a file, unless `name` is empty.
void TakeIfNamed(std::string& file, std::string_view name);

}  // namespace tessaly
