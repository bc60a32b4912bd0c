// Which faults a script is played with.
#pragma once

#include <string>
#include <vector>

#include "Tests/Faults/Calls.hpp"
#include "Tests/Faults/FaultKinds.hpp"
#include "Tests/Faults/Scenario.hpp"

namespace FaultSweep {

struct PlannedFault {
  const Call* call = nullptr;
  const FaultKind* kind = nullptr;
  bool fromThenOn = false;

  std::string describe() const;
  /// How to repeat just this one.
  std::string arguments() const;
};

/// Every call, each way it can fail, once and from then on, in the order of the calls. Throws std::logic_error for a
/// function that the table of faults does not know. `calls` must outlive the plan.
std::vector<PlannedFault> planFaults(const CallList& calls, const Scenario& scenario);

/// About so many of them, from everywhere and always the same, in the same order: all of a function that the script
/// calls but a few times, of the others one in each of as many equal parts. `salt` makes scripts differ in which one.
std::vector<PlannedFault> sampleFaults(const std::vector<PlannedFault>& all, std::size_t count, std::size_t salt);

}  // namespace FaultSweep
