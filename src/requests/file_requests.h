// Requests for output files.
#pragma once

#include "requests/request_options.h"
#include "requests/session_state.h"

namespace tessaly {

void RequestAnchorFile(SessionState& session, const RequestOptions& options);
void RequestGraphFile(SessionState& session, const RequestOptions& options);
void RequestResidualFile(SessionState& session, const RequestOptions& options);
void RequestScoreFile(SessionState& session, const RequestOptions& options);
void RequestSimulated(SessionState& session, const RequestOptions& options);
void RequestSettings(SessionState& session, const RequestOptions& options);
void RequestSubsetFile(SessionState& session, const RequestOptions& options);
void RequestZandrel(SessionState& session, const RequestOptions& options);

}  // namespace tessaly
