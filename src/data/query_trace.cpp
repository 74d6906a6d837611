#include "data/query_trace.h"

#include <optional>

#include "data/data_line.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

struct StateWords {
  QueryState State;
  std::string_view Words;
  bool Waits;
};

constexpr StateWords kStates[] = {
    {QueryState::BlankLine, "blank", true},
    {QueryState::NoReplication, "R0 replications for datum", true},
    {QueryState::Datum, "datum: ", false},
    {QueryState::NoDatum, "no datum: ", true},
    {QueryState::Unspecified, "unspecified ", true},
    {QueryState::NoStatement, "no matching model", true},
    {QueryState::Mismatch, "datum ", false},
    {QueryState::Matched, "matched", true},
    {QueryState::TreatedAsMissing, "datum treated as Missing", true},
    {QueryState::Recoded, "datum recoded to ", false},
    {QueryState::Negative, "negative datum ignored", true},
    {QueryState::NonNumeric, "non-numeric datum ignored", true},
};

constexpr bool InOrder() {
  for (std::size_t at = 0; at < std::size(kStates); ++at)
    if (static_cast<std::size_t>(kStates[at].State) != at) return false;
  return true;
}
static_assert(InOrder());

/// The keys of a window, and behind them what a terminal has in their place.
constexpr std::string_view kWaiting =
    "Press F4 for next match, F5 to discontinue Query=Y, or use Estimation menu (or Enter, 5, Ctrl+C) ";

}  // namespace

QueryTrace::QueryTrace(Analysis& analysis, Host& host) : analysis_(analysis), host_(host) {
  if (!host.user.Present()) analysis.Settings.QueryOption = false;
  if (!On()) return;
  host.console.ShowMessage("Query=Y in effect!  Data matching displayed:");
  for (const StatementNumber number : analysis.Models.Statements.all())
    host.console.ShowMessage(analysis.Models.Statements[number].StatementText() +
                             " ; active model statement for Query=Yes" + GeneralText(number.value + 1));
}

void QueryTrace::ShowState(QueryState state, std::string_view detail) {
  const StateWords& words = kStates[static_cast<std::size_t>(state)];
  std::string text = QuotedLine(analysis_.Input.LastLine) + " ";
  host_.console.ShowMessage(text.append(words.Words).append(QuotedLine(detail)));
  if (!words.Waits) return;
  const std::optional<std::string> answer = host_.user.AskKey(kWaiting);
  const std::string key = answer ? UpperAscii(TrimBlanks(*answer)) : "F5";
  if (key == "5" || key == "F5") analysis_.Settings.QueryOption = false;
}

}  // namespace tessaly
