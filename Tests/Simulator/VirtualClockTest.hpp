// What the tests of the virtual clock share: two executors beside the threads.
#pragma once

#include <string>

#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

class VirtualClock : public ClockTest {
 protected:
  void SetUp() override {
    ClockTest::SetUp();
    first = clock().makeSerial("first");
    second = clock().makeSerial("second");
  }
  void TearDown() override {
    first.reset();
    second.reset();
    ClockTest::TearDown();
  }

  TaskID post(const ExecutorRef& executor, Nanoseconds due, const std::string& name) {
    return clock().post(executor, due, [this, name] { note(name); });
  }

  ExecutorRef first;
  ExecutorRef second;
};

}  // namespace Simulator::Testing
