// Keywords whose value is more than a yes, a number or a list.
#pragma once

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

void ReadAscii(SpecContext& context, const SplitLine& line);
void ReadBarcharts(SpecContext& context, const SplitLine& line);
void ReadBias(SpecContext& context, const SplitLine& line);
void ReadConvergence(SpecContext& context, const SplitLine& line);
void ReadDelements(SpecContext& context, const SplitLine& line);
void ReadFair(SpecContext& context, const SplitLine& line);
/// Shows the value in force on the status line.
void ReadHardware(SpecContext& context, const SplitLine& line);
void ReadInterRater(SpecContext& context, const SplitLine& line);
void ReadInvalidLines(SpecContext& context, const SplitLine& line);
void ReadMissing(SpecContext& context, const SplitLine& line);
void ReadNewton(SpecContext& context, const SplitLine& line);
/// Throws `Halt{NullOutOfRange}`.
void ReadNull(SpecContext& context, const SplitLine& line);
void ReadPtBiserial(SpecContext& context, const SplitLine& line);
void ReadQuoteMark(SpecContext& context, const SplitLine& line);
void ReadReplication(SpecContext& context, const SplitLine& line);
void ReadStandardErrors(SpecContext& context, const SplitLine& line);
void ReadSubsets(SpecContext& context, const SplitLine& line);
void ReadT3onscreen(SpecContext& context, const SplitLine& line);
void ReadT8(SpecContext& context, const SplitLine& line);
void ReadTables(SpecContext& context, const SplitLine& line);
void ReadTitle(SpecContext& context, const SplitLine& line);
void ReadUdecimals(SpecContext& context, const SplitLine& line);
/// These two throw `Halt{UmeanTooLate}` once values in user units have been read.
void ReadUmean(SpecContext& context, const SplitLine& line);
void ReadUscale(SpecContext& context, const SplitLine& line);
void ReadUtf8Encoded(SpecContext& context, const SplitLine& line);
void ReadUtf8Sub(SpecContext& context, const SplitLine& line);
void ReadVertical(SpecContext& context, const SplitLine& line);
void ReadXtreme(SpecContext& context, const SplitLine& line);
void ReadZscore(SpecContext& context, const SplitLine& line);
/// Accepts a line without effect.
void Ignore(SpecContext& context, const SplitLine& line);

}  // namespace tessaly
