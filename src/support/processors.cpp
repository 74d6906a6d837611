#include "support/processors.h"

#include <sched.h>

#include <algorithm>
#include <csignal>
#include <system_error>
#include <utility>

namespace tessaly {

int UsableProcessors() {
  cpu_set_t usable;
  CPU_ZERO(&usable);
  if (sched_getaffinity(0, sizeof usable, &usable) != 0) return 1;
  return std::max(CPU_COUNT(&usable), 1);
}

std::thread ThreadWithoutSignals(std::function<void()> run) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  struct Restore {
    const sigset_t& Mask;
    ~Restore() { pthread_sigmask(SIG_SETMASK, &Mask, nullptr); }
  } restore{before};
  try {
    return std::thread(std::move(run));
  } catch (const std::system_error&) {
    return {};
  }
}

}  // namespace tessaly
