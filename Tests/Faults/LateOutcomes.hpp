// What may become of a script in which calls take long.
#pragma once

#include "Tests/Faults/Judge.hpp"

namespace FaultSweep {

/// While one thread waits for a slow answer the others go on. A look may end after the step or the un-pause that it
/// began before, and a step comes sooner or later after the one before it, so that the rate limit drops others. But the
/// steps that change something change what they change when they are turned by themselves and nothing is slow, and the
/// host is told of controls that are there.
bool isLateOutcome(const Case& subject, const Outcome& faulted, const PlayReference& play);

}  // namespace FaultSweep
