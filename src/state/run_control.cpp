#include "state/run_control.h"

#include <algorithm>

namespace tessaly {

void RunControl::Poll() {
  if (polling_) return;
  polling_ = true;
  const UserRequest request = user_.Poll();
  polling_ = false;
  switch (request) {
    case UserRequest::None:
      break;
    case UserRequest::Finish:
      FastForward = true;
      break;
    case UserRequest::Faster:
      Faster();
      break;
    case UserRequest::Slower:
      Slower();
      break;
    case UserRequest::Stop:
      throw Stopped{StopReason::User};
  }
}

void RunControl::Faster() {
  if (!IterationKeysOn) return;
  if (NewtonStep == 0) {
    CurveDamping *= 1.5F;
  } else {
    NewtonStep = std::min(NewtonStep * 1.1F, 1.0F);
  }
}

void RunControl::Slower() {
  if (!IterationKeysOn) return;
  if (NewtonStep == 0) {
    CurveDamping *= 0.75F;
  } else {
    NewtonStep *= 0.9F;
  }
}

std::function<bool()> PollsWhileWaiting(RunControl* control) {
  if (control == nullptr) return nullptr;
  return [control] {
    control->Poll();
    return false;
  };
}

}  // namespace tessaly
