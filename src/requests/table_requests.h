// Requests for the tables of the main analysis.
#pragma once

#include "requests/request_options.h"
#include "requests/session_state.h"

namespace tessaly {

void RequestTable4(SessionState& session, const RequestOptions& options);
void RequestTable5(SessionState& session, const RequestOptions& options);
void RequestTable6(SessionState& session, const RequestOptions& options);
void RequestTable7(SessionState& session, const RequestOptions& options);
void RequestTable8(SessionState& session, const RequestOptions& options);

}  // namespace tessaly
