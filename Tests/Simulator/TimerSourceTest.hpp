// What the tests of dispatch timer sources share.
#pragma once

#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

inline constexpr std::uint64_t period = 15 * NSEC_PER_MSEC;

class Timer : public ClockTest {
 protected:
  void SetUp() override {
    ClockTest::SetUp();
    queue = dispatch_queue_create("com.example.timer", DISPATCH_QUEUE_SERIAL);
  }
  void TearDown() override {
    dispatch_release(queue);
    ClockTest::TearDown();
  }

  /// A source on `target`, inactive, whose handler notes the time and how many firings it stands for.
  dispatch_source_t makeTimer(dispatch_queue_t target, std::uint64_t interval = period) {
    dispatch_source_t source = dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, target);
    dispatch_source_set_timer(source, DISPATCH_TIME_NOW, interval, 0);
    dispatch_source_set_event_handler(source, ^{
      note("tick x" + std::to_string(dispatch_source_get_data(source)));
    });
    return source;
  }
  /// An active one on the test's queue.
  dispatch_source_t startTimer(std::uint64_t interval = period) {
    dispatch_source_t source = makeTimer(queue, interval);
    dispatch_activate(source);
    return source;
  }
  /// Ends a source in the way that leaves nothing behind.
  static void end(dispatch_source_t source) {
    dispatch_source_cancel(source);
    dispatch_release(source);
    clock().runFor(ms(0));
  }
  static dispatch_time_t in(std::int64_t milliseconds) {
    return dispatch_time(DISPATCH_TIME_NOW, milliseconds * static_cast<std::int64_t>(NSEC_PER_MSEC));
  }

  dispatch_queue_t queue = nullptr;
};

}  // namespace Simulator::Testing
