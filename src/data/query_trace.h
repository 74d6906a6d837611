// The trace of `Query=Y`: how each response finds its model statement, shown while somebody watches.
#pragma once

#include <string>
#include <string_view>

#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// What the trace tells of a data line or response.
enum class QueryState {
  BlankLine,
  NoReplication,
  Datum,
  NoDatum,
  Unspecified,
  NoStatement,
  Mismatch,
  Matched,
  TreatedAsMissing,
  Recoded,
  Negative,
  NonNumeric,
};

/// Shows the trace on the status line and waits at the states that end a response.
class QueryTrace {
 public:
  /// The trace is on if `Query=Y` and somebody is there to watch; then lists the model statements.
  QueryTrace(Analysis& analysis, Host& host);

  bool On() const { return analysis_.Settings.QueryOption; }
  /// Adds the state's words and `detail` to the text of the line at hand. The answer "5", "F5" or none at all to the
  /// waiting text switches the trace off for the rest of the run.
  void Show(QueryState state, std::string_view detail = {}) {
    if (On()) ShowState(state, detail);
  }

 private:
  void ShowState(QueryState state, std::string_view detail);

  Analysis& analysis_;
  Host& host_;
};

}  // namespace tessaly
