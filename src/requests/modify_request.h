// "Modify Specifications": settings for the requests to come.
#pragma once

#include "requests/request_options.h"
#include "requests/session_state.h"

namespace tessaly {

/// Changes settings of reports; nothing if one of the options cannot be read. Measures stay as they are: an orientation
/// changes what reports call a facet, not how its measures were estimated.
void RequestModify(SessionState& session, const RequestOptions& options);

}  // namespace tessaly
