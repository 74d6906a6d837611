// The request for bias/interaction tables.
#pragma once

#include "requests/request_options.h"
#include "requests/session_state.h"

namespace tessaly {

/// Makes the bias runs again, or one for other facets.
void RequestBias(SessionState& session, const RequestOptions& options);

}  // namespace tessaly
