// The system's clocks.
#pragma once

#include <string>

#include "support/host.h"

namespace tessaly {

/// Local time; with SOURCE_DATE_EPOCH in the environment the run date is that instant in UTC, so that reports can be
/// reproduced byte for byte.
class SystemClock : public Clock {
 public:
  std::string RunDate() override;
  double Seconds() override;
};

}  // namespace tessaly
