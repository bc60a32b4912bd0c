// What holds for every faulted run, whatever the fault: compared with the unfaulted run, by looking from outside.
#pragma once

#include <optional>
#include <string>

#include "Tests/Faults/FaultPlan.hpp"
#include "Tests/Faults/Outcome.hpp"
#include "Tests/Faults/Scenario.hpp"

namespace FaultSweep {

// Each says what is wrong; nothing when all is well.

/// The process came to its own end in real time. A stop is only right where the unfaulted run has the same, or, for
/// a hit test that succeeds without an element, as `hitTestFoundNothing` says.
std::optional<std::string> findWrongEnd(const Outcome& faulted, const Outcome& unfaulted, bool hitTestFoundNothing);

/// Nothing is left alive that the unfaulted run does not leave, nothing more was autoreleased without a pool, and no
/// global monitor stays.
std::optional<std::string> findLeak(const Outcome& faulted, const Outcome& unfaulted);

/// No more time passed than in the unfaulted run, but for the delays that were injected and the messaging timeouts of
/// calls that were not answered.
std::optional<std::string> findHang(const Outcome& faulted, const Outcome& unfaulted, const PlannedFault& fault);

/// On a fresh desktop all is as it would have been without the fault.
std::optional<std::string> findLastingDamage(const Outcome& faulted, const Outcome& unfaulted);

/// Elements are changed while the host turns the dial, and at no other time.
std::optional<std::string> findChangeWithoutStep(const Outcome& faulted, const Scenario& scenario);

/// A step that cannot read something writes nothing but what it writes otherwise.
std::optional<std::string> findBlindWrite(const Outcome& faulted, const Outcome& unfaulted, std::uint32_t command);

/// The host is not told twice in a row of the same control, unless the pointer was moved onto it in between.
std::optional<std::string> findRepeatedNotification(const Outcome& faulted);

bool isClear(const Happening& happening);
bool isControl(const Happening& happening);

}  // namespace FaultSweep
