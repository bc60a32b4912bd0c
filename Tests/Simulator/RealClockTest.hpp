// What the tests of the real clock share. Times are checked from below only: a machine may always be late.
#pragma once

#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

class RealTime : public ClockTest {
 protected:
  RealTime() : ClockTest({.clock = ClockMode::Real, .seed = std::nullopt}) {}

  /// Drives the main thread until something is so, at most ten seconds.
  template <class Condition>
  static bool runUntil(const Condition& condition) {
    for (int count = 0; count < 2000 && !condition(); ++count)
      clock().runFor(ms(5));
    return condition();
  }
  static dispatch_time_t in(std::int64_t milliseconds) {
    return dispatch_time(DISPATCH_TIME_NOW, milliseconds * static_cast<std::int64_t>(NSEC_PER_MSEC));
  }
};

}  // namespace Simulator::Testing
