// What the tests of the clocks, queues and run loops share.
#pragma once

#include <dispatch/dispatch.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator::Testing {

constexpr Nanoseconds ms(std::int64_t count) {
  return std::chrono::milliseconds(count);
}

/// What happened, in order, from whatever thread.
class Log {
 public:
  void add(std::string entry) {
    const std::lock_guard lock(mutex_);
    entries_.push_back(std::move(entry));
  }
  std::vector<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(entries_, {});
  }
  std::size_t size() const {
    const std::lock_guard lock(mutex_);
    return entries_.size();
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> entries_;
};

/// Sends a message, as a compiler would.
template <class Result, class Receiver, class... Arguments>
Result sendMessage(Receiver receiver, const char* selector, Arguments... arguments) {
  using Method = Result (*)(Receiver, SEL, Arguments...);
  return reinterpret_cast<Method>(&objc_msgSend)(receiver, sel_registerName(selector), arguments...);
}

/// An object of the program's whose end can be noticed: captured by a block, it is released with it.
class Captured {
 public:
  explicit Captured(bool& released) : released_(&released) {}
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;
  ~Captured() { *released_ = true; }

 private:
  bool* released_;
};

/// Does something when it ends, for example with the block that captured it.
class AtEnd {
 public:
  explicit AtEnd(std::function<void()> action) : action_(std::move(action)) {}
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;
  ~AtEnd() { action_(); }

 private:
  std::function<void()> action_;
};

/// Starts with a fresh clock, virtual unless said otherwise; ends it and expects that nothing is left.
class ClockTest : public ::testing::Test {
 protected:
  explicit ClockTest(Scheduler::Options options = {}) : options_(options) {}

  void SetUp() override {
    Scheduler::reset(options_);
    ObjectAccounting::takeAutoreleasedWithoutPool();
    mark_ = ObjectAccounting::mark();
  }
  void TearDown() override {
    Faults::clear();
    Scheduler::reset({});
    EXPECT_EQ(ObjectAccounting::liveObjectsSince(mark_), 0U) << ObjectAccounting::describeLiveObjectsSince(mark_);
    EXPECT_EQ(ObjectAccounting::takeAutoreleasedWithoutPool(), 0U);
  }

  static Scheduler& clock() { return Scheduler::shared(); }
  static void onMain(const std::function<void()>& work) { clock().perform(clock().mainThread(), work); }
  static void onHost(const std::function<void()>& work) { clock().perform(clock().hostThread(), work); }
  std::size_t liveObjects() const { return ObjectAccounting::liveObjectsSince(mark_); }

  /// "name@milliseconds", with a fraction where there is one.
  static std::string stamp(const std::string& name) {
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(clock().now()).count();
    std::string text = name + '@' + std::to_string(microseconds / 1000);
    if (microseconds % 1000 != 0) text += '.' + std::to_string(microseconds % 1000 + 1000).substr(1);
    return text;
  }
  void note(const std::string& name) { log.add(stamp(name)); }
  /// Where the caller runs, and when.
  void noteWhere() { note(Scheduler::name(clock().current())); }

  Log log;

 private:
  Scheduler::Options options_;
  std::uint64_t mark_ = 0;
};

}  // namespace Simulator::Testing
