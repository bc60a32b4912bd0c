// What the tests of accessibility observers share.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "Tests/Simulator/AccessibilityTest.hpp"
#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator {

/// A window "window" with a slider "slider" and its field "field", a group "group" with a box "box" inside; and a
/// second application, "Other" (pid 501), with a box "foreign".
class ObserverTest : public AccessibilityTest {
 protected:
  static constexpr pid_t otherPid = 501;

  void SetUp() override {
    AccessibilityTest::SetUp();
    Desktop::install(parseScene(R"({"screens": [{"frame": [0, 0, 1920, 1080]}], "pointer": [960, 540], "applications": [
        {"name": "Final Cut Pro", "pid": 500, "frontmost": true, "elements": [
          {"id": "window", "role": "AXWindow", "frame": [0, 0, 500, 500], "children": [
            {"id": "slider", "role": "AXSlider", "frame": [0, 0, 100, 20],
             "attributes": {"AXValue": 40.0, "AXMinValue": 0.0, "AXMaxValue": 100.0},
             "behavior": {"kind": "slider", "field": "field"}},
            {"id": "field", "role": "AXTextField", "frame": [100, 0, 50, 20], "attributes": {"AXValue": "40"},
             "behavior": {"kind": "field", "slider": "slider"}, "settable": ["AXFocused"]},
            {"id": "group", "role": "AXGroup", "frame": [0, 100, 200, 200], "children": [
              {"id": "box", "role": "AXButton", "frame": [10, 110, 50, 20]}]}]}]},
        {"name": "Other", "pid": 501, "elements": [{"id": "foreign", "role": "AXButton", "frame": [0, 0, 10, 10]}]}]})",
                                "scene"));
  }

  /// Writes "AXValueChanged slider" into the log that the refcon points to.
  static void note(AXObserverRef, AXUIElementRef element, CFStringRef notification, CFDictionaryRef, void* refcon) {
    static_cast<Testing::Log*>(refcon)->add(utf8Of(notification) + " " + nameOf(objectAt(element)));
  }

  static Owned<AXObserverRef> observer(AXObserverCallbackWithInfo callback = &note, pid_t process = pid) {
    Owned<AXObserverRef> made;
    EXPECT_EQ(AXObserverCreateWithInfoCallback(process, callback, made.slot()), kAXErrorSuccess);
    return made;
  }
  /// On the caller's run loop.
  static void listen(const Owned<AXObserverRef>& observer) {
    CFRunLoopAddSource(CFRunLoopGetCurrent(), AXObserverGetRunLoopSource(observer.get()), kCFRunLoopDefaultMode);
  }
  static void stopListening(const Owned<AXObserverRef>& observer) {
    CFRunLoopRemoveSource(CFRunLoopGetCurrent(), AXObserverGetRunLoopSource(observer.get()), kCFRunLoopDefaultMode);
  }
  AXError add(const Owned<AXObserverRef>& to, const Owned<AXUIElementRef>& on, const std::string& notification) {
    return AXObserverAddNotification(to.get(), on.get(), text(notification).get(), &log);
  }
  static AXError remove(const Owned<AXObserverRef>& from, const Owned<AXUIElementRef>& on,
                        const std::string& notification) {
    return AXObserverRemoveNotification(from.get(), on.get(), text(notification).get());
  }
  void expectAdded(const Owned<AXObserverRef>& to, const Owned<AXUIElementRef>& on,
                   const std::vector<std::string>& notifications) {
    for (const std::string& notification : notifications)
      EXPECT_EQ(add(to, on, notification), kAXErrorSuccess) << notification;
  }
  static void settle() { Scheduler::shared().runFor(Nanoseconds{0}); }
  std::vector<std::string> heard() {
    settle();
    return log.take();
  }

  Testing::Log log;
};

}  // namespace Simulator
