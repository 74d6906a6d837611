// Elements that stand in for others in data.
#pragma once

#include "state/elements.h"

namespace tessaly {

/// Most steps of a chain of targets.
constexpr std::int32_t kMostTargetSteps = 10;

/// Sets the target of `element`. False if the chain that begins there has too many steps, as a circle always has.
bool SetTarget(ElementIndex element, ElementIndex target, ElementTable& elements);
/// Replaces each target by the end of its chain, which must not be circular.
void FollowTargets(ElementTable& elements);

}  // namespace tessaly
