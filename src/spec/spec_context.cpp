#include "spec/spec_context.h"

namespace tessaly {

void SpecContext::TellUnavailable(std::string_view what) {
  if (!ToldUnavailable.emplace(what).second) return;
  Host.console.ShowWarning(std::string(what) + " is not available in this version: ignored");
}

}  // namespace tessaly
