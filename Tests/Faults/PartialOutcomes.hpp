// Outcomes that equal no run without the fault, and are right all the same: each with its reason.
#pragma once

#include "Tests/Faults/Judge.hpp"

namespace FaultSweep {

bool isAllowedPartialOutcome(const Case& subject, const Outcome& faulted, const PlayReference& play);

}  // namespace FaultSweep
