// Requests from the person at the terminal, or from a pipe.
#pragma once

#include <string>

#include "requests/session.h"
#include "shell/cli/terminal_user.h"
#include "support/host.h"

namespace tessaly {

/// Offers the prompt until the user leaves, or reads lines from a pipe or file at standard input until they end. A pipe
/// in which nothing has come or ended two seconds after the call is nobody's. False if a request was refused or failed.
/// Ctrl+C leaves the request at hand, not the program. Throws `Stopped` for other signals.
bool ServeRequests(Session& session, TerminalUser& user, Console& console, const std::string& historyFile);

}  // namespace tessaly
