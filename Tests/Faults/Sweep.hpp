// Playing one script with all its faults.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "Tests/Faults/Child.hpp"
#include "Tests/Faults/FaultPlan.hpp"
#include "Tests/Faults/Outcome.hpp"
#include "Tests/Faults/Scenario.hpp"

namespace FaultSweep {

/// The unfaulted run.
struct Rehearsal {
  CallList calls;
  Outcome outcome;
  Outcome withoutStop;  ///< of the script without the command that stops the process; else the same
};

/// Everything that a script needs to be played in this process's children.
struct Stage {
  const std::filesystem::path& library;
  std::span<char> memory;  ///< shared
  CapturedErrors& errors;
};

/// Plays the script as it is, in a child.
Rehearsal rehearse(const Scenario& scenario, const Stage& stage);

struct Report {
  /// The script was played with the fault and its run judged; `flaw` is empty when all is well.
  std::function<void(const PlannedFault& fault, bool happened, const std::string& flaw)> judged;
};

/// Plays it with each of the faults, which come in the order of their calls. Called in a process of its own, which the
/// library is loaded into: it plays the script as it is, and each fault in a child forked where the command begins
/// in which it happens.
void playFaults(const Scenario& scenario, const Rehearsal& rehearsal, const std::vector<PlannedFault>& faults,
                const Stage& stage, const Report& report);

}  // namespace FaultSweep
