// The flags of a running analysis, and the only place where it learns what the user wants.
#pragma once

#include <cstdint>
#include <functional>

#include "support/failure.h"
#include "support/host.h"

namespace tessaly {

enum class Phase : std::int16_t { Recount = 0, Prox = 1, Jmle = 2, Reports = 3, Bias = 4 };

/// Run flags and the user poll.
class RunControl {
 public:
  explicit RunControl(User& user) : user_(user) {}
  RunControl(const RunControl&) = delete;
  RunControl& operator=(const RunControl&) = delete;

  /// Asks the user. Called with every status line, at progress ticks and every 100 observations. A call from inside a
  /// poll does nothing. Throws `Stopped` when the user wants to leave.
  void Poll();

  /// The user asked to finish the current iterating stage now.
  bool FastForward = false;
  tessaly::Phase Phase = tessaly::Phase::Recount;
  std::int32_t Iteration = 0;
  /// Multiplier of curve-fitting steps and of step calibrations.
  float CurveDamping = 1;
  /// 0: curve-fitting; otherwise the Newton-Raphson step size.
  float NewtonStep = 0;
  /// Whether requests to go faster or slower have an effect.
  bool IterationKeysOn = false;

 private:
  void Faster();
  void Slower();

  User& user_;
  bool polling_ = false;
};

/// For what may keep the program waiting (`GivesUp`): polls `control`, so that `Stopped` comes out of the wait. Empty
/// without `control`.
std::function<bool()> PollsWhileWaiting(RunControl* control);

}  // namespace tessaly
