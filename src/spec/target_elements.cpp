#include "spec/target_elements.h"

#include <vector>

namespace tessaly {
namespace {

ElementIndex TargetOf(ElementIndex element, const ElementTable& elements) {
  return element == kNoElement ? kUnspecifiedElement : elements.ElementStats[element].TargetElement;
}

}  // namespace

bool SetTarget(ElementIndex element, ElementIndex target, ElementTable& elements) {
  elements.ElementStats[element].TargetElement = target;
  std::int32_t steps = 0;
  for (ElementIndex at = target; at != kUnspecifiedElement; at = TargetOf(at, elements))
    if (++steps > kMostTargetSteps) return false;
  return true;
}

void FollowTargets(ElementTable& elements) {
  std::vector<ElementIndex> chain;
  for (const ElementIndex element : elements.ElementStats.all()) {
    ElementIndex end = element;
    for (ElementIndex next = TargetOf(end, elements); next != kUnspecifiedElement; next = TargetOf(end, elements)) {
      chain.push_back(end);
      end = next;
    }
    // All of the chain at once, so that long chains are walked only once.
    for (const ElementIndex member : chain) elements.ElementStats[member].TargetElement = end;
    chain.clear();
  }
}

}  // namespace tessaly
