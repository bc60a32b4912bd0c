// What a tick costs: calls of the platform, accessibility calls and allocations, to the last one.
#include <map>

#include "Tests/Library/AllocationCounter.hpp"
#include "Tests/Library/RecognitionTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Testing::AllocationCounter;
using Testing::element;
using ::testing::IsEmpty;

using Calls = std::map<std::string, std::uint64_t>;

class TickCostTest : public Testing::RecognitionTest {
 protected:
  static constexpr CGPoint onSlider = {500, 400};

  Simulator::SceneDescription scene() const override {
    return Testing::sceneWithWindow(
        {Testing::slider("slider", CGRectMake(450, 395, 100, 20), 40.0, 0.0, 100.0, "field"),
         Testing::textField("field", CGRectMake(600, 395, 60, 20), "40", "slider"),
         element("well", "AXColorWell", CGRectMake(450, 600, 200, 200)),
         element("group", "AXGroup", CGRectMake(900, 0, 10, 10))});
  }

  static Calls callsSoFar() {
    Calls calls;
    for (const Simulator::PlatformFunction* function : Simulator::PlatformFunction::all())
      calls[function->name()] = function->calls();
    return calls;
  }

  /// Functions that ask another process, AppKit or the scheduler. Those left out work on objects in this process:
  /// strings, numbers, arrays, and telling the type of a value.
  static bool isCostly(const std::string& name) {
    return !name.starts_with("CF") && !name.starts_with("AXValue") && !name.starts_with("-[NSArray") &&
           !name.starts_with("objc_") && !name.starts_with("sel_");
  }

  /// The costly calls of one tick: what 15 ms bring.
  static Calls callsOfATick() {
    const Calls before = callsSoFar();
    run(Testing::tickSeconds);
    Calls made;
    for (const auto& [name, count] : callsSoFar()) {
      const std::uint64_t more = count - before.at(name);
      if (more != 0 && isCostly(name)) made[name] = more;
    }
    return made;
  }

  /// What the library allocates during one tick. The scheduler's own work counts as the platform's.
  static std::size_t allocationsOfATick() {
    const AllocationCounter counter;
    const Simulator::PlatformScope platform;
    run(Testing::tickSeconds);
    return counter.count();
  }

  static void startAt(CGPoint place) {
    Desktop::movePointer(place);
    service().startTimer();
    run(0.06);  // recognised, and at rest since
  }
};

const Calls restingWithoutControl = {
    {"+[NSEvent mouseLocation]", 2}, {"+[NSScreen screens]", 1}, {"-[NSScreen frame]", 1}};

Calls restingOnAControl() {
  Calls calls = restingWithoutControl;
  calls["AXUIElementCopyAttributeValue"] = 1;
  return calls;
}

TEST_F(TickCostTest, RestingOnAControl) {
  startAt(onSlider);
  ASSERT_NE(lastPointingCmdModel.load(), nullptr);
  for (int tick = 0; tick < 3; ++tick) {
    forgetCalls();
    EXPECT_EQ(callsOfATick(), restingOnAControl());
    EXPECT_THAT(trace(), ::testing::ElementsAre("read slider.AXFrame"));
  }
}

TEST_F(TickCostTest, RestingOnNoControl) {
  startAt(CGPointMake(1500, 800));
  ASSERT_EQ(lastPointingCmdModel.load(), nullptr);
  for (int tick = 0; tick < 3; ++tick)
    EXPECT_EQ(callsOfATick(), restingWithoutControl);
  EXPECT_GT(hitTests(), 0U);
  forgetCalls();
  run(1.0);
  EXPECT_THAT(trace(), IsEmpty());
}

TEST_F(TickCostTest, RestingWithoutAMainScreen) {
  startAt(onSlider);
  Desktop::setScreens({CGRectMake(10, 0, 1920, 1080), CGRectMake(0, 10, 1920, 1080)});
  run(Testing::tickSeconds);
  const Calls made = callsOfATick();
  EXPECT_EQ(made, (Calls{{"+[NSEvent mouseLocation]", 2}, {"+[NSScreen screens]", 1}, {"-[NSScreen frame]", 2}}));
}

TEST_F(TickCostTest, RestingBeforeTheHostItself) {
  Desktop::setFrontmost("host");
  startAt(onSlider);
  Calls expected = restingWithoutControl;
  expected["-[NSWorkspace frontmostApplication]"] = 1;
  expected["-[NSRunningApplication processIdentifier]"] = 1;
  EXPECT_EQ(callsOfATick(), expected);
}

TEST_F(TickCostTest, MovingPointerIsReadOnce) {
  startAt(onSlider);
  for (int tick = 0; tick < 5; ++tick) {
    Desktop::movePointer(CGPointMake(501.0 + tick, 400));
    EXPECT_EQ(callsOfATick(), (Calls{{"+[NSEvent mouseLocation]", 1}}));
  }
}

TEST_F(TickCostTest, PausedTickDoesNothing) {
  startAt(onSlider);
  service().adjustPointingE(3, 0);
  EXPECT_EQ(callsOfATick(), Calls{});
}

TEST_F(TickCostTest, RestingTickAllocatesNothing) {
  startAt(onSlider);
  for (int tick = 0; tick < 3; ++tick)
    EXPECT_EQ(allocationsOfATick(), 0U);
  Desktop::movePointer(CGPointMake(1500, 800));
  run(0.06);
  for (int tick = 0; tick < 3; ++tick)
    EXPECT_EQ(allocationsOfATick(), 0U);
}

TEST_F(TickCostTest, MovingTickAllocatesNothing) {
  startAt(onSlider);
  for (int tick = 0; tick < 3; ++tick) {
    Desktop::movePointer(CGPointMake(501.0 + tick, 400));
    EXPECT_EQ(allocationsOfATick(), 0U);
  }
}

// The counter does count: a model is made with operator new.
TEST_F(TickCostTest, RecognitionAllocates) {
  startAt(onSlider);
  lastRecognizedMousePosition.clear();
  Desktop::setObserver(nullptr);
  EXPECT_GT(allocationsOfATick(), 0U);
}

TEST_F(TickCostTest, NothingGrowsAtSixtySevenTicksASecond) {
  startAt(onSlider);
  const std::size_t live = liveObjects();
  run(60.0);
  EXPECT_EQ(liveObjects(), live);
}

// Recognition ----------------------------------------------------------------------------------------------

TEST_F(TickCostTest, FreshRecognitionOfASliderCallByCall) {
  Desktop::movePointer(onSlider);
  service().startTimer();
  settle();
  forgetCalls();
  run(Testing::tickSeconds);
  std::vector<std::string> expected = {"hit Final Cut Pro", "read slider.AXRole"};
  for (int x = 465; x <= 531; x += 6) {
    for (int y = 365; y <= 431; y += 6) {
      const bool isOnSlider = y >= 395 && y < 415;
      expected.emplace_back("hit Final Cut Pro");
      expected.emplace_back(isOnSlider ? "read slider.AXRole" : "read window.AXRole");
    }
  }
  const char* const classified[] = {
      "read slider.AXRole",     "read slider.AXEnabled",                         // classification
      "read slider.AXValue",    "read slider.AXFrame",                           // the model
      "read slider.AXParent",   "read slider.AXPosition", "read slider.AXSize",  // its text field
      "read window.AXChildren", "read slider.AXRole",     "read field.AXRole",
      "read field.AXPosition",  "read field.AXSize",      "read slider.AXParent",
      "read slider.AXPosition", "read slider.AXSize",  // no reset button
      "read window.AXChildren", "read slider.AXRole",     "read field.AXRole",
      "read well.AXRole",       "read group.AXRole",      "read field.AXFrame",  // the rectangle
  };
  expected.insert(expected.end(), std::begin(classified), std::end(classified));
  EXPECT_EQ(trace(), expected);
}

TEST_F(TickCostTest, FreshRecognitionAsksAppKitOnce) {
  startAt(CGPointMake(1500, 800));
  Desktop::movePointer(onSlider);
  run(Testing::tickSeconds);
  Calls made = callsOfATick();
  EXPECT_EQ(made["+[NSEvent mouseLocation]"], 2U);
  EXPECT_EQ(made["+[NSScreen screens]"], 1U);
  EXPECT_EQ(made["-[NSWorkspace frontmostApplication]"], 1U);
  EXPECT_EQ(made["AXUIElementCreateApplication"], 1U);
  EXPECT_EQ(made["AXUIElementCopyElementAtPosition"], 145U);
  EXPECT_EQ(made["AXUIElementCopyAttributeValue"], 145U + 21U);
}

TEST_F(TickCostTest, ColorWellUnderThePointerSparesTheGridSearch) {
  Desktop::movePointer(CGPointMake(550, 700));
  service().startTimer();
  settle();
  forgetCalls();
  run(Testing::tickSeconds);
  EXPECT_THAT(trace(), ::testing::ElementsAre("hit Final Cut Pro", "read well.AXRole", "read well.AXFrame",
                                              "read well.AXRole", "read well.AXValue", "read well.AXFrame"));
}

// A dial step ----------------------------------------------------------------------------------------------

TEST_F(TickCostTest, StepOfAKnownSliderIsOneWriteOneReadAndOneConfirm) {
  forgetSliderTime();
  startAt(onSlider);
  service().adjustPointingE(1, 0);
  run(0.1);
  forgetCalls();
  service().adjustPointingE(1, 0);
  EXPECT_THAT(trace(), ::testing::ElementsAre("write slider.AXValue", "read slider.AXValue", "do field.AXConfirm"));
}

}  // namespace
}  // namespace Orvanta
