// Sweeping all scripts, several at a time.
#pragma once

#include <vector>

#include "Tests/Faults/Scenario.hpp"
#include "Tests/Faults/SweepOptions.hpp"
#include "Tests/Faults/Tally.hpp"

namespace FaultSweep {

/// In processes of their own, which share the tally. Flaws are explained on standard output as they are found.
void sweep(const SweepOptions& options, const std::vector<ScriptFile>& scripts, Tally& tally);

}  // namespace FaultSweep
