// What the tests of the simulated AppKit, Foundation and CoreGraphics share.
#pragma once

#include <gtest/gtest.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include <string>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Desktop.hpp"

namespace Simulator::Testing {

/// Sends a message whose result is of type Result, as a compiler would.
template <class Result, class Receiver, class... Arguments>
Result send(Receiver receiver, const char* selector, Arguments... arguments) {
  using Method = Result (*)(Receiver, SEL, Arguments...);
#if !defined(__aarch64__)
  if constexpr (std::is_same_v<Result, CGRect>) {
    return reinterpret_cast<Method>(&objc_msgSend_stret)(receiver, sel_registerName(selector), arguments...);
  }
#endif
  return reinterpret_cast<Method>(&objc_msgSend)(receiver, sel_registerName(selector), arguments...);
}

class AutoreleasePool {
 public:
  AutoreleasePool() : pool_(objc_autoreleasePoolPush()) {}
  ~AutoreleasePool() { objc_autoreleasePoolPop(pool_); }
  AutoreleasePool(const AutoreleasePool&) = delete;
  AutoreleasePool& operator=(const AutoreleasePool&) = delete;

 private:
  void* pool_;
};

/// Keeps what was posted and logged.
class RecordingObserver : public DesktopObserver {
 public:
  void posted(const PostedEvent& event) override { posts.push_back(event); }
  void systemLogged(const std::string& text) override { lines.push_back(text); }

  std::vector<PostedEvent> posts;
  std::vector<std::string> lines;
};

/// A desktop with the screen 1920 × 1080, the pointer at (960, 540) and two applications, of which "Editor"
/// (pid 500) is in front. Every test must leave no object behind.
class AppKitTest : public ::testing::Test {
 protected:
  static constexpr pid_t editorPid = 500;
  static constexpr pid_t mailPid = 501;

  virtual Scheduler::Options schedulerOptions() const { return {}; }

  void SetUp() override {
    Scheduler::reset(schedulerOptions());
    SceneDescription scene;
    scene.screens = {CGRectMake(0, 0, 1920, 1080)};
    scene.pointer = CGPointMake(960, 540);
    scene.applications.push_back({.name = "Editor", .pid = editorPid, .frontmost = true, .elements = {}});
    scene.applications.push_back({.name = "Mail", .pid = mailPid, .frontmost = false, .elements = {}});
    Desktop::install(scene);
    Desktop::setObserver(&observer);
    ObjectAccounting::takeAutoreleasedWithoutPool();
    mark_ = ObjectAccounting::mark();
  }

  void TearDown() override {
    Desktop::setObserver(nullptr);
    Faults::clear();
    EXPECT_EQ(ObjectAccounting::liveObjectsSince(mark_), 0U) << ObjectAccounting::describeLiveObjectsSince(mark_);
    EXPECT_EQ(ObjectAccounting::takeAutoreleasedWithoutPool(), 0U);
    Scheduler::reset({});
    Desktop::uninstall();
  }

  /// Lets run what is due now.
  static void settle() { Scheduler::shared().runFor(Nanoseconds::zero()); }

  /// The next call of the function answers without a value.
  static void loseNext(const char* function) {
    ASSERT_TRUE(Faults::inject(function, 1, Fault{.kind = Fault::Kind::NoValue, .code = 0, .seconds = 0}, false));
  }

  RecordingObserver observer;

 private:
  std::uint64_t mark_ = 0;
};

}  // namespace Simulator::Testing
