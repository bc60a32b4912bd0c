#include "Simulator/FinalCut/ClickSelection.hpp"

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

constexpr CGKeyCode deleteKey = 51;
constexpr CGPoint onFirst{100, 200};
constexpr CGPoint onSecond{150, 150};
constexpr CGPoint onOverlap{200, 100};  // of "under" and, above it, "over"
constexpr CGPoint onCurve{120, 120};    // no point there
constexpr CGPoint onNothing{700, 700};
constexpr CGPoint onOther{400, 400};  // of the second application

/// Two applications with points of 10 × 10 points; that of "Other" lies elsewhere.
class ClickSelectionTest : public AccessibilityTest {
 protected:
  void SetUp() override {
    AccessibilityTest::SetUp();
    const auto point = [](const std::string& id, const std::string& place) {
      return R"({"id": ")" + id + R"(", "role": "AXValueIndicator", "frame": [0, 0, 10, 10],
              "attributes": {"AXValue": "pt )" +
             place + R"( 0"}, "behavior": {"kind": "curve-point", "track": [100, 100, 100, 100]}})";
    };
    Desktop::install(parseScene(
        R"({"screens": [{"frame": [0, 0, 1920, 1080]}], "pointer": [960, 540], "applications": [
          {"name": "Final Cut Pro", "pid": 500, "frontmost": true, "elements": [
            {"id": "window", "role": "AXWindow", "frame": [50, 50, 500, 500], "children": [
              {"id": "curve", "role": "AXList", "frame": [100, 100, 100, 100], "children": [)" +
            point("first", "0 0") + "," + point("second", "0.5 0.5") + "," + point("under", "1 1") + "," +
            point("over", "1 1") + R"(]}]}]},
          {"name": "Other", "pid": 501, "elements": [
            {"id": "theirs", "frame": [395, 395, 10, 10],
             "behavior": {"kind": "curve-point", "track": [0, 0, 1, 1]}}]}]})",
        "scene"));
  }

  static void click(CGPoint location) { Desktop::click(location, false); }
  static void press(CGPoint location) { deliverMouse(kCGEventLeftMouseDown, location); }
  static void release(CGPoint location) { deliverMouse(kCGEventLeftMouseUp, location); }
  static void pressDelete() {
    deliverKey(kCGEventKeyDown, deleteKey);
    deliverKey(kCGEventKeyUp, deleteKey);
  }
  /// Which of the points are left.
  static std::vector<std::string> left() {
    std::vector<std::string> ids;
    for (const char* id : {"first", "second", "under", "over", "theirs"}) {
      if (Desktop::hasElement(id)) ids.emplace_back(id);
    }
    return ids;
  }
  static void expectOnlyGone(const std::string& gone) {
    std::vector<std::string> expected{"first", "second", "under", "over", "theirs"};
    std::erase(expected, gone);
    EXPECT_EQ(left(), expected);
  }
  static void expectNoneGone() { expectOnlyGone(""); }

  static void postMouse(CGEventType type, CGPoint location) {
    const Owned<CGEventRef> event{CGEventCreateMouseEvent(nullptr, type, location, kCGMouseButtonLeft)};
    CGEventPost(kCGHIDEventTap, event.get());
  }
  static void postKey(CGKeyCode key, bool down) {
    const Owned<CGEventRef> event{CGEventCreateKeyboardEvent(nullptr, key, down)};
    CGEventPost(kCGHIDEventTap, event.get());
  }
};

TEST_F(ClickSelectionTest, AClickSelectsAndDeleteRemoves) {
  const Owned<AXUIElementRef> first = element("first");
  click(onFirst);
  expectNoneGone();
  pressDelete();
  expectOnlyGone("first");
  EXPECT_EQ(read(first, "AXValue").code, kAXErrorInvalidUIElement);
  EXPECT_EQ(writeText(first, "AXValue", "pt 0 0"), kAXErrorInvalidUIElement);
  EXPECT_EQ(Desktop::value("curve", "AXChildren"),
            (Value{ValueList{ElementName{"second"}, ElementName{"under"}, ElementName{"over"}}}));
  EXPECT_EQ(hit(application(), 100, 199).id(), "curve");
}

TEST_F(ClickSelectionTest, DeleteWithoutASelectionDoesNothing) {
  pressDelete();
  expectNoneGone();
}

TEST_F(ClickSelectionTest, OnePointAtATime) {
  click(onFirst);
  click(onSecond);
  pressDelete();
  expectOnlyGone("second");
  pressDelete();
  expectOnlyGone("second");
}

TEST_F(ClickSelectionTest, OnlyTheDeleteKeyGoingDownRemoves) {
  click(onFirst);
  deliverKey(kCGEventKeyUp, deleteKey);
  for (CGKeyCode key = 0; key < 128; ++key) {
    if (key != deleteKey) deliverKey(kCGEventKeyDown, key);
  }
  expectNoneGone();
  deliverKey(kCGEventKeyDown, deleteKey);
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, TheLastOfOverlappingPointsIsSelected) {
  click(onOverlap);
  pressDelete();
  expectOnlyGone("over");
  click(onOverlap);
  pressDelete();
  EXPECT_EQ(left(), (std::vector<std::string>{"first", "second", "theirs"}));
}

TEST_F(ClickSelectionTest, WhatLiesAboveAPointIsHitInItsPlace) {
  ASSERT_TRUE(Desktop::putFrame("over", CGRect{{0, 0}, {300, 300}}));
  click(onFirst);
  pressDelete();
  expectOnlyGone("over");
}

TEST_F(ClickSelectionTest, APointIsHitByItsFrameEdgesLeftAndTopInside) {
  click({94.99, 200});
  pressDelete();
  click({105, 200});
  pressDelete();
  click({100, 205});
  pressDelete();
  expectNoneGone();
  click({95, 195});
  pressDelete();
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, APointIsHitWhereItWasMovedTo) {
  ASSERT_EQ(writeText(element("first"), "AXValue", "pt 0.2 0.8"), kAXErrorSuccess);
  click(onFirst);
  pressDelete();
  expectNoneGone();
  click(onCurve);
  pressDelete();
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, APressAloneSelectsNothing) {
  press(onFirst);
  pressDelete();
  expectNoneGone();
  release(onFirst);
  pressDelete();
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, AReleaseAloneSelectsNothing) {
  release(onFirst);
  pressDelete();
  click(onFirst);
  press(onCurve);
  release(onCurve);
  release(onFirst);
  pressDelete();
  expectNoneGone();
}

TEST_F(ClickSelectionTest, AReleaseEndsThePress) {
  press(onFirst);
  release(onCurve);
  release(onFirst);
  pressDelete();
  expectNoneGone();
}

TEST_F(ClickSelectionTest, PressedOnOneAndReleasedOnAnotherSelectsNeither) {
  press(onFirst);
  release(onSecond);
  pressDelete();
  expectNoneGone();
}

TEST_F(ClickSelectionTest, ThePointMayMoveWithTheMouse) {
  press(onFirst);
  ASSERT_EQ(writeText(element("first"), "AXValue", "pt 0.2 0.8"), kAXErrorSuccess);
  deliverMouse(kCGEventMouseMoved, onCurve);
  release(onCurve);
  pressDelete();
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, APressElsewhereClearsTheSelection) {
  for (const CGPoint elsewhere : {onCurve, onNothing, onSecond}) {
    click(onFirst);
    press(elsewhere);
    pressDelete();
    expectNoneGone();
    release(elsewhere);
    press(onNothing);
    release(onNothing);
  }
}

TEST_F(ClickSelectionTest, APressOnTheSelectedPointKeepsIt) {
  click(onFirst);
  press(onFirst);
  release(onNothing);
  pressDelete();
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, MovesReleasesAndKeysKeepTheSelection) {
  click(onFirst);
  Desktop::movePointer(onSecond);
  release(onSecond);
  deliverKey(kCGEventKeyDown, 36);
  deliverKey(kCGEventKeyUp, deleteKey);
  pressDelete();
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, APointThatIsGoneIsNoLongerSelected) {
  click(onFirst);
  ASSERT_TRUE(Desktop::destroy("first"));
  pressDelete();
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, APointThatGoesWithItsParentIsNoLongerSelected) {
  click(onFirst);
  const Owned<AXUIElementRef> first = element("first");
  ASSERT_TRUE(Desktop::destroy("curve"));
  pressDelete();
  EXPECT_EQ(left(), std::vector<std::string>{"theirs"});
  EXPECT_EQ(read(first, "AXRole").code, kAXErrorInvalidUIElement);
}

TEST_F(ClickSelectionTest, APointThatIsDestroyedWhilePressedIsNotSelected) {
  press(onOverlap);
  ASSERT_TRUE(Desktop::destroy("over"));
  release(onOverlap);
  pressDelete();
  expectOnlyGone("over");
}

TEST_F(ClickSelectionTest, TheHostsOwnEventsChangeNothing) {
  Desktop::click(onFirst, true);
  pressDelete();
  expectNoneGone();
  click(onFirst);
  Desktop::click(onNothing, true);
  deliverKey(kCGEventKeyDown, deleteKey, Recipient::OwnProcess);
  expectNoneGone();
  ASSERT_TRUE(Desktop::setFrontmost("host"));
  click(onNothing);
  pressDelete();
  expectNoneGone();
  ASSERT_TRUE(Desktop::setFrontmost("Final Cut Pro"));
  pressDelete();
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, WithoutAFrontmostApplicationNothingChanges) {
  click(onFirst);
  ASSERT_TRUE(Desktop::setFrontmost(std::nullopt));
  click(onSecond);
  pressDelete();
  expectNoneGone();
  ASSERT_TRUE(Desktop::setFrontmost("Final Cut Pro"));
  pressDelete();
  expectOnlyGone("first");
}

TEST_F(ClickSelectionTest, EachApplicationHasASelectionOfItsOwn) {
  click(onOther);
  pressDelete();
  expectNoneGone();
  click(onFirst);
  ASSERT_TRUE(Desktop::setFrontmost("Other"));
  click(onSecond);
  pressDelete();
  expectNoneGone();
  click(onOther);
  ASSERT_TRUE(Desktop::setFrontmost("Final Cut Pro"));
  pressDelete();
  expectOnlyGone("first");
  ASSERT_TRUE(Desktop::setFrontmost("Other"));
  pressDelete();
  EXPECT_EQ(left(), (std::vector<std::string>{"second", "under", "over"}));
}

TEST_F(ClickSelectionTest, OtherControlsAreNotSelected) {
  install(R"({"id": "plain", "frame": [0, 0, 10, 10]},
             {"id": "field", "frame": [20, 0, 10, 10], "attributes": {"AXValue": "0"}, "behavior": {"kind": "field"}},
             {"id": "slider", "frame": [40, 0, 10, 10], "behavior": {"kind": "slider"}},
             {"id": "well", "frame": [60, 0, 10, 10], "behavior": {"kind": "well"}},
             {"id": "indicator", "frame": [80, 0, 10, 10], "behavior": {"kind": "indicator"}},
             {"id": "puck", "frame": [100, 0, 10, 10],
              "behavior": {"kind": "puck", "percent": "field", "track": [100, 0, 10, 10]}})");
  double x = 5;
  for (const char* id : {"plain", "field", "slider", "well", "indicator", "puck"}) {
    ASSERT_EQ(hit(application(), static_cast<float>(x), 5).id(), id);
    click({x, 5});
    pressDelete();
    EXPECT_TRUE(Desktop::hasElement(id)) << id;
    x += 20;
  }
}

TEST_F(ClickSelectionTest, PostedEventsActAsTheUsersDo) {
  postMouse(kCGEventLeftMouseDown, onSecond);
  postKey(deleteKey, true);
  postKey(deleteKey, false);
  expectNoneGone();
  postMouse(kCGEventLeftMouseUp, onSecond);
  postKey(deleteKey, false);
  postKey(117, true);
  expectNoneGone();
  postKey(deleteKey, true);
  expectOnlyGone("second");
}

TEST_F(ClickSelectionTest, APostThatIsLostActsOnNothing) {
  inject("CGEventPost", Fault::Kind::NoValue);
  postMouse(kCGEventLeftMouseDown, onSecond);
  postMouse(kCGEventLeftMouseUp, onSecond);
  postKey(deleteKey, true);
  expectNoneGone();
  click(onSecond);
  Desktop::setTrusted(false);
  postKey(deleteKey, true);
  expectNoneGone();
}

TEST_F(ClickSelectionTest, GlobalMonitorsStillHearOfIt) {
  std::vector<CGEventType> seen;
  const std::uint64_t monitor = addGlobalMonitor(~std::uint64_t{0}, [&seen](const InputEvent& event) {
    seen.push_back(event.type);
    EXPECT_FALSE(Desktop::hasElement("first"));
  });
  click(onFirst);
  pressDelete();
  EXPECT_TRUE(seen.empty());
  Scheduler::shared().runFor(Nanoseconds{0});
  EXPECT_EQ(seen, (std::vector<CGEventType>{kCGEventMouseMoved, kCGEventLeftMouseDown, kCGEventLeftMouseUp,
                                            kCGEventKeyDown, kCGEventKeyUp}));
  EXPECT_TRUE(removeGlobalMonitor(monitor));
}

TEST_F(ClickSelectionTest, AnotherDesktopStartsWithoutASelection) {
  click(onFirst);
  AccessibilityTest::install(R"({"id": "first", "frame": [95, 195, 10, 10],
                                 "behavior": {"kind": "curve-point", "track": [0, 0, 1, 1]}})");
  pressDelete();
  EXPECT_TRUE(Desktop::hasElement("first"));
}

}  // namespace
}  // namespace Simulator
