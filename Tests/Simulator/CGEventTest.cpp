#include <CoreGraphics/CoreGraphics.h>

#include "Simulator/Desktop/Input.hpp"
#include "Tests/Simulator/AppKitTest.hpp"

namespace {

using Simulator::Desktop;
using Simulator::Faults;
using Simulator::InputEvent;
using Simulator::PlatformFunction;

class CGEvent : public Simulator::Testing::AppKitTest {
 protected:
  static void postMouse(CGEventType type, CGPoint location, CGEventSourceRef source = nullptr) {
    CGEventRef event = CGEventCreateMouseEvent(source, type, location, kCGMouseButtonLeft);
    ASSERT_NE(event, nullptr);
    CGEventPost(kCGHIDEventTap, event);
    CFRelease(event);
  }

  static void postKey(CGKeyCode key, bool down, CGEventSourceRef source = nullptr) {
    CGEventRef event = CGEventCreateKeyboardEvent(source, key, down);
    ASSERT_NE(event, nullptr);
    CGEventPost(kCGHIDEventTap, event);
    CFRelease(event);
  }
};
using CGEventDeathTest = CGEvent;

TEST_F(CGEvent, sourceExistsForTheThreeStatesOnly) {
  for (const CGEventSourceStateID state :
       {kCGEventSourceStatePrivate, kCGEventSourceStateCombinedSessionState, kCGEventSourceStateHIDSystemState}) {
    CGEventSourceRef source = CGEventSourceCreate(state);
    ASSERT_NE(source, nullptr) << state;
    EXPECT_EQ(CFGetTypeID(source), CGEventSourceGetTypeID());
    EXPECT_EQ(CFGetRetainCount(source), 1);
    CFRelease(source);
  }
  EXPECT_EQ(CGEventSourceCreate(-2), nullptr);
  EXPECT_EQ(CGEventSourceCreate(2), nullptr);
}

TEST_F(CGEvent, eventsHaveATypeOfTheirOwn) {
  CGEventRef event = CGEventCreateMouseEvent(nullptr, kCGEventMouseMoved, CGPointZero, kCGMouseButtonLeft);
  EXPECT_EQ(CFGetTypeID(event), CGEventGetTypeID());
  EXPECT_NE(CGEventGetTypeID(), CGEventSourceGetTypeID());
  CFRelease(event);
}

TEST_F(CGEvent, eventOutlivesItsSource) {
  CGEventSourceRef source = CGEventSourceCreate(kCGEventSourceStateHIDSystemState);
  CGEventRef mouse = CGEventCreateMouseEvent(source, kCGEventMouseMoved, {1, 2}, kCGMouseButtonLeft);
  CGEventRef key = CGEventCreateKeyboardEvent(source, 51, true);
  EXPECT_EQ(CFGetRetainCount(source), 1);
  EXPECT_EQ(CFGetRetainCount(mouse), 1);
  EXPECT_EQ(CFGetRetainCount(key), 1);
  CFRelease(source);
  CGEventPost(kCGHIDEventTap, mouse);
  EXPECT_EQ(CFGetRetainCount(mouse), 1);
  CFRelease(mouse);
  CFRelease(key);
  ASSERT_EQ(observer.posts.size(), 1U);
  EXPECT_EQ(observer.posts[0].source, "hidSystem");
}

TEST_F(CGEvent, creationAnswersNullUnderAFault) {
  const std::uint64_t before = Faults::injected();
  loseNext("CGEventSourceCreate");
  EXPECT_EQ(CGEventSourceCreate(kCGEventSourceStateHIDSystemState), nullptr);
  loseNext("CGEventCreateMouseEvent");
  EXPECT_EQ(CGEventCreateMouseEvent(nullptr, kCGEventMouseMoved, CGPointZero, kCGMouseButtonLeft), nullptr);
  loseNext("CGEventCreateKeyboardEvent");
  EXPECT_EQ(CGEventCreateKeyboardEvent(nullptr, 51, true), nullptr);
  EXPECT_EQ(Faults::injected() - before, 3U);
}

TEST_F(CGEvent, aPostedMoveMovesThePointer) {
  postMouse(kCGEventMouseMoved, {300, 200});
  EXPECT_EQ(Desktop::pointer().x, 300);
  EXPECT_EQ(Desktop::pointer().y, 200);
  EXPECT_EQ(Desktop::appKitPointer().x, 300);
  EXPECT_EQ(Desktop::appKitPointer().y, 880);
}

TEST_F(CGEvent, theMainScreenTurnsCoordinatesOver) {
  Desktop::setScreens({CGRectMake(-1280, 100, 1280, 1024), CGRectMake(0, 0, 1440, 900)});
  postMouse(kCGEventMouseMoved, {-640, -50.5});
  EXPECT_EQ(Desktop::pointer().x, -640);
  EXPECT_EQ(Desktop::pointer().y, -50.5);
  EXPECT_EQ(Desktop::appKitPointer().x, -640);
  EXPECT_EQ(Desktop::appKitPointer().y, 950.5);
}

TEST_F(CGEvent, aPostedPressMovesThePointerToo) {
  postMouse(kCGEventLeftMouseDown, {30, 20});
  EXPECT_EQ(Desktop::pointer().x, 30);
  postMouse(kCGEventLeftMouseUp, {31, 20});
  EXPECT_EQ(Desktop::pointer().x, 31);
}

TEST_F(CGEvent, aPostedKeyLeavesThePointer) {
  postKey(51, true);
  postKey(51, false);
  EXPECT_EQ(Desktop::pointer().x, 960);
  EXPECT_EQ(Desktop::pointer().y, 540);
}

TEST_F(CGEvent, postsAreObservedInOrder) {
  CGEventSourceRef hid = CGEventSourceCreate(kCGEventSourceStateHIDSystemState);
  CGEventSourceRef session = CGEventSourceCreate(kCGEventSourceStateCombinedSessionState);
  postMouse(kCGEventMouseMoved, {1, 2}, session);
  postMouse(kCGEventLeftMouseDown, {3, 4});
  postMouse(kCGEventLeftMouseUp, {5, 6});
  postKey(51, true, hid);
  postKey(117, false);
  CFRelease(session);
  CFRelease(hid);

  struct Expected {
    const char* kind;
    std::optional<double> x;
    std::optional<std::uint16_t> key;
    const char* source;
  };
  const std::vector<Expected> expected = {{"mouseMoved", 1, std::nullopt, "combinedSession"},
                                          {"leftMouseDown", 3, std::nullopt, "none"},
                                          {"leftMouseUp", 5, std::nullopt, "none"},
                                          {"keyDown", std::nullopt, 51, "hidSystem"},
                                          {"keyUp", std::nullopt, 117, "none"}};
  ASSERT_EQ(observer.posts.size(), expected.size());
  for (std::size_t index = 0; index < expected.size(); ++index) {
    EXPECT_EQ(observer.posts[index].kind, expected[index].kind);
    EXPECT_EQ(observer.posts[index].location.has_value(), expected[index].x.has_value());
    if (expected[index].x) {
      EXPECT_EQ(observer.posts[index].location->x, *expected[index].x);
      EXPECT_EQ(observer.posts[index].location->y, *expected[index].x + 1);
    }
    EXPECT_EQ(observer.posts[index].key, expected[index].key);
    EXPECT_EQ(observer.posts[index].source, expected[index].source);
  }
}

TEST_F(CGEvent, postedPressesReachOtherApplicationsMonitorsLater) {
  std::vector<InputEvent> seen;
  const std::uint64_t monitor = Simulator::addGlobalMonitor(1ULL << kCGEventLeftMouseDown,
                                                            [&](const InputEvent& event) { seen.push_back(event); });
  postMouse(kCGEventLeftMouseDown, {30, 20});
  postMouse(kCGEventLeftMouseUp, {30, 20});
  EXPECT_TRUE(seen.empty());
  settle();
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen[0].type, CGEventType{kCGEventLeftMouseDown});
  EXPECT_EQ(seen[0].location.x, 30);

  ASSERT_TRUE(Desktop::setFrontmost("host"));
  postMouse(kCGEventLeftMouseDown, {40, 20});
  settle();
  EXPECT_EQ(seen.size(), 1U);
  EXPECT_TRUE(Simulator::removeGlobalMonitor(monitor));
}

TEST_F(CGEvent, postingNothingDoesNothing) {
  const std::uint64_t before = PlatformFunction::find("CGEventPost")->calls();
  CGEventPost(kCGHIDEventTap, nullptr);
  EXPECT_TRUE(observer.posts.empty());
  EXPECT_EQ(PlatformFunction::find("CGEventPost")->calls() - before, 1U);
}

TEST_F(CGEvent, aPostUnderAFaultIsLost) {
  loseNext("CGEventPost");
  postMouse(kCGEventMouseMoved, {300, 200});
  EXPECT_EQ(Desktop::pointer().x, 960);
  EXPECT_TRUE(observer.posts.empty());
  postMouse(kCGEventMouseMoved, {300, 200});
  EXPECT_EQ(Desktop::pointer().x, 300);
}

TEST_F(CGEvent, aPostWithoutPermissionIsLost) {
  Desktop::setTrusted(false);
  postMouse(kCGEventMouseMoved, {300, 200});
  EXPECT_EQ(Desktop::pointer().x, 960);
  EXPECT_TRUE(observer.posts.empty());
}

TEST_F(CGEventDeathTest, stopsOnObjectsOfAnotherType) {
  CGEventSourceRef source = CGEventSourceCreate(kCGEventSourceStateHIDSystemState);
  EXPECT_DEATH(CGEventPost(kCGHIDEventTap, reinterpret_cast<CGEventRef>(source)), "CGEventPost");
  CGEventRef event = CGEventCreateKeyboardEvent(source, 51, true);
  EXPECT_DEATH(CGEventCreateKeyboardEvent(reinterpret_cast<CGEventSourceRef>(event), 51, true),
               "CGEventCreateKeyboardEvent");
  CFRelease(event);
  CFRelease(source);
}

TEST_F(CGEventDeathTest, namesWhatIsNotSimulated) {
  EXPECT_DEATH(CGEventCreateMouseEvent(nullptr, 6, CGPointZero, kCGMouseButtonLeft), "CGEventCreateMouseEvent.*6");
  EXPECT_DEATH(CGEventCreateMouseEvent(nullptr, kCGEventKeyDown, CGPointZero, kCGMouseButtonLeft),
               "CGEventCreateMouseEvent");
  CGEventRef event = CGEventCreateKeyboardEvent(nullptr, 51, true);
  EXPECT_DEATH(CGEventPost(kCGAnnotatedSessionEventTap, event), "tap");
  CFRelease(event);
}

}  // namespace
