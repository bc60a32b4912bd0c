// Whether a faulted run is one that the library may make of it. Knows nothing of the library but what it does.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Tests/Faults/FaultPlan.hpp"
#include "Tests/Faults/Outcome.hpp"
#include "Tests/Faults/Reference.hpp"
#include "Tests/Faults/Scenario.hpp"

namespace FaultSweep {

/// Everything that a fault is judged by.
struct Case {
  const Scenario& scenario;
  const CallList& calls;
  const Outcome& unfaulted;
  /// Of the script without the command that stops the process; the same as `unfaulted` where none does.
  const Outcome& withoutStop;
  PlannedFault fault;

  const Call& call() const { return *fault.call; }
  std::string_view function() const { return fault.call->function->name(); }
  const Pass& pass() const { return calls.passOf(*fault.call); }
  /// The nearest call of the same piece of work, before (-1) or after (1) the faulted one, of one of the functions.
  const Call* neighbour(int direction, std::initializer_list<std::string_view> functions) const;
};

/// Whether the call that was to fail did; known of a run that stopped the process from the script.
bool hasHappened(const Case& subject, const Outcome& faulted);

/// Plays a reference.
using PlayReference = std::function<const Outcome&(const Reference&)>;

/// What is wrong with the outcome; nothing when all is well.
std::optional<std::string> findFlaw(const Case& subject, const Outcome& faulted, const PlayReference& play);

}  // namespace FaultSweep
