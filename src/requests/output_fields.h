// Which fields score and residual files have, chosen by name.
#pragma once

#include <string>
#include <string_view>

#include "requests/request_options.h"
#include "requests/session_state.h"

namespace tessaly {

/// fields= of a score file into `settings.ScoreFields`, and with default= into the user's settings file. Throws
/// `Refusal` for an unknown name, `Halt` if the settings file cannot be written.
void ReadScoreFields(const RequestOptions& options, SessionState& session);
/// fields= and decimals= of a residual file into `settings.ResponseFields`, and so on.
void ReadResponseFields(const RequestOptions& options, SessionState& session);

}  // namespace tessaly
