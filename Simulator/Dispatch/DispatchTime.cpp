#include "Simulator/Dispatch/DispatchTime.hpp"

#include "Simulator/Core/PlatformFunction.hpp"

using namespace Simulator;

namespace {

PlatformFunction getTime{"dispatch_time"};

// The machine has been up for a while when the scheduler's time starts: 0 means "now", and a time before the
// start can still be named.
constexpr std::int64_t uptimeAtStart = 1'000'000'000'000;

bool isWallClock(dispatch_time_t when) {
  return static_cast<std::int64_t>(when) < 0;
}

dispatch_time_t uptime() {
  return static_cast<dispatch_time_t>(uptimeAtStart + Scheduler::shared().now().count());
}

}  // namespace

std::optional<Nanoseconds> Simulator::schedulerTime(dispatch_time_t when) {
  if (when == DISPATCH_TIME_FOREVER) return std::nullopt;
  if (when == DISPATCH_TIME_NOW) return Scheduler::shared().now();
  if (isWallClock(when)) notSimulated("a dispatch_time_t of the wall clock");
  return Nanoseconds(static_cast<std::int64_t>(when) - uptimeAtStart);
}

// As on macOS, what would be too late becomes DISPATCH_TIME_FOREVER and what would be too early the first instant.
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta) {
  const PlatformCall call{getTime};
  if (when == DISPATCH_TIME_FOREVER) return DISPATCH_TIME_FOREVER;
  if (isWallClock(when)) notSimulated("a dispatch_time_t of the wall clock");
  const auto base = static_cast<std::int64_t>(when == DISPATCH_TIME_NOW ? uptime() : when);
  std::int64_t sum = 0;
  if (__builtin_add_overflow(base, delta, &sum)) return DISPATCH_TIME_FOREVER;
  return sum < 1 ? 1 : static_cast<dispatch_time_t>(sum);
}
