// Requests for curves and for the ruler as a picture.
#pragma once

#include "requests/request_options.h"
#include "requests/session_state.h"

namespace tessaly {

/// Curves as lines "scale,series,x,y", or as pictures.
void RequestCurves(SessionState& session, const RequestOptions& options);
void RequestRuler(SessionState& session, const RequestOptions& options);

}  // namespace tessaly
