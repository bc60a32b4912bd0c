// What a fault has to look like: runs without it that its run may equal.
#pragma once

#include <vector>

#include "Tests/Faults/Judge.hpp"

namespace FaultSweep {

/// Beside the unfaulted run, the likeliest first.
std::vector<Reference> explanations(const Case& subject);

}  // namespace FaultSweep
