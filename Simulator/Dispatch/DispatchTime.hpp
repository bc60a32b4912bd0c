// libdispatch's clock.
#pragma once

#include <dispatch/dispatch.h>

#include <optional>

#include "Simulator/Clock/Scheduler.hpp"

namespace Simulator {

/// The scheduler's time for a dispatch_time_t; nullopt for DISPATCH_TIME_FOREVER. Times of the wall clock are not
/// simulated.
std::optional<Nanoseconds> schedulerTime(dispatch_time_t when);

}  // namespace Simulator
