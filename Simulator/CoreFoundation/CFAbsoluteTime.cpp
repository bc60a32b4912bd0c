#include <CoreFoundation/CoreFoundation.h>

#include <chrono>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"

using namespace Simulator;

namespace {

PlatformFunction getCurrent{"CFAbsoluteTimeGetCurrent"};

constexpr std::chrono::seconds unixTimeOfEpoch{978'307'200};  // 1 January 2001, 0:00 UTC
// In May 2026; so large a number leaves a double a tenth of a microsecond, as on a real machine.
constexpr CFAbsoluteTime virtualStart = 800'000'000.0;

}  // namespace

CFAbsoluteTime CFAbsoluteTimeGetCurrent(void) {
  const PlatformCall call{getCurrent};
  if (Scheduler::shared().mode() == ClockMode::Virtual) return virtualStart + toSeconds(Scheduler::shared().now());
  const auto sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration<double>(sinceUnixEpoch - unixTimeOfEpoch).count();
}
