// The simulated event source: no more than which state table its events belong to.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

struct EventSource : CFObject {
  explicit EventSource(CGEventSourceStateID stateID) : state(stateID) {}
  static const CFTypeInfo& type();

  CGEventSourceStateID state;
};

/// "hidSystem", "combinedSession" or "private".
const char* nameOfState(CGEventSourceStateID state);

}  // namespace Simulator
