// What a second processor needs.
#pragma once

#include <functional>
#include <thread>

namespace tessaly {

/// How many processors this program may use at once; at least 1.
int UsableProcessors();

/// Starts a thread that leaves all signals to the others; gives one that is not joinable when there can be no more
/// threads.
std::thread ThreadWithoutSignals(std::function<void()> run);

}  // namespace tessaly
