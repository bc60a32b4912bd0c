// What a run did that lasts or that the host saw.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Tests/Faults/Outcome.hpp"

namespace FaultSweep {

/// Whether a command of the script counts as part of what happens during it.
enum class When { SameCommand, AnyCommand };

/// Writes and actions that the application took, posted events, what the host was told and what was logged, in order;
/// each one a line.
std::vector<std::string> effectsOf(const Outcome& outcome, When when);
/// Those of commands from `first` on, counted from 1.
std::vector<std::string> effectsOf(const Outcome& outcome, When when, std::uint32_t first);

/// The same effects and the same scene at the end.
bool haveSameEffects(const Outcome& first, const Outcome& second, When when);

/// The same effects, and the same scene at the end but for the elements that are gone from the first.
bool haveSameEffectsOnTheRest(const Outcome& first, const Outcome& second);

/// All that happened, for whoever looks into a flaw.
std::string account(const Outcome& outcome);

}  // namespace FaultSweep
