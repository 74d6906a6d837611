// How much there is to be had.
#pragma once

#include <cstdint>

namespace tessaly {

/// Bytes of memory that can be taken without driving other programs, or this one, out of it; more than any machine has
/// if the system does not tell. Systems give out more than they have, and end a program that then uses it.
std::uint64_t AvailableMemory();

}  // namespace tessaly
