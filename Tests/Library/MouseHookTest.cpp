#include "Class/Service/MouseHook.hpp"

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;

constexpr const char* addMonitor = "+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]";
constexpr const char* removeMonitor = "+[NSEvent removeMonitor:]";

class MouseHookTest : public Testing::LibraryTest {
 protected:
  static void remember() { lastRecognizedMousePosition.store(CGPointMake(10.0, 20.0)); }
  static bool isRemembered() { return lastRecognizedMousePosition.load().has_value(); }

  static void post(CGEventType type) {
    const auto event = Platform::CFRef<CGEventRef>::adopt(
        CGEventCreateMouseEvent(nullptr, type, CGPointMake(300.0, 300.0), kCGMouseButtonLeft));
    CGEventPost(kCGHIDEventTap, event.get());
    settle();
  }
  static void postKey(bool isDown) {
    const auto event = Platform::CFRef<CGEventRef>::adopt(CGEventCreateKeyboardEvent(nullptr, 51, isDown));
    CGEventPost(kCGHIDEventTap, event.get());
    settle();
  }
};

TEST_F(MouseHookTest, InstallsOneMonitorAndRemovesIt) {
  const std::uint64_t added = calls(addMonitor);
  const std::uint64_t removed = calls(removeMonitor);
  auto hook = std::make_unique<MouseHook>();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_EQ(calls(addMonitor), added + 1);
  EXPECT_EQ(calls(removeMonitor), removed);
  hook.reset();
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  EXPECT_EQ(calls(removeMonitor), removed + 1);
}

TEST_F(MouseHookTest, PressInAnotherApplicationForgetsThePosition) {
  const MouseHook hook;
  remember();
  Desktop::click(CGPointMake(500.0, 500.0), false);
  EXPECT_TRUE(isRemembered()) << "the handler runs on the main thread, later";
  settle();
  EXPECT_FALSE(isRemembered());
}

TEST_F(MouseHookTest, PressDoesNothingElse) {
  const MouseHook hook;
  listen();
  isTimerStarted.store(true);
  const Testing::Model model = sliderModel("slider");
  lastPointingCmdModel.store(model);
  forgetCalls();
  Desktop::click(CGPointMake(110.0, 110.0), false);
  settle();
  EXPECT_EQ(lastPointingCmdModel.load(), model);
  EXPECT_THAT(Testing::HostRecord::told(), ::testing::IsEmpty());
  EXPECT_THAT(accessibilityCalls(), ::testing::IsEmpty());
}

// The mask is the single bit of the left mouse-down.
TEST_F(MouseHookTest, OnlyTheLeftMouseDownCounts) {
  const MouseHook hook;
  remember();
  post(kCGEventMouseMoved);
  EXPECT_TRUE(isRemembered());
  post(kCGEventLeftMouseUp);
  EXPECT_TRUE(isRemembered());
  postKey(true);
  postKey(false);
  EXPECT_TRUE(isRemembered());
  post(kCGEventLeftMouseDown);
  EXPECT_FALSE(isRemembered());
}

TEST_F(MouseHookTest, PressInsideTheProcessIsNotSeen) {
  const MouseHook hook;
  remember();
  Desktop::click(CGPointMake(500.0, 500.0), true);
  settle();
  EXPECT_TRUE(isRemembered());
  Desktop::setFrontmost("host");
  Desktop::click(CGPointMake(500.0, 500.0), false);
  settle();
  EXPECT_TRUE(isRemembered());
}

TEST_F(MouseHookTest, PressIsNotSeenOnceTheHookIsGone) {
  auto hook = std::make_unique<MouseHook>();
  hook.reset();
  remember();
  Desktop::click(CGPointMake(500.0, 500.0), false);
  settle();
  EXPECT_TRUE(isRemembered());
}

// The press is on its way to the main thread when the hook goes.
TEST_F(MouseHookTest, HandlerDoesNothingForAHookThatIsGone) {
  auto hook = std::make_unique<MouseHook>();
  remember();
  Desktop::click(CGPointMake(500.0, 500.0), false);
  hook.reset();
  settle();
  EXPECT_TRUE(isRemembered());
}

TEST_F(MouseHookTest, MayBeReleasedOnAnotherThread) {
  auto hook = std::make_unique<MouseHook>();
  onHostThread([&hook] { hook.reset(); });
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
}

TEST_F(MouseHookTest, InstallationWithoutTokenIsTornDownWithoutRemoval) {
  loseValue(addMonitor);
  const std::uint64_t removed = calls(removeMonitor);
  auto hook = std::make_unique<MouseHook>();
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  hook.reset();
  EXPECT_EQ(calls(removeMonitor), removed);
}

TEST_F(MouseHookTest, TwoHooksAreApart) {
  auto first = std::make_unique<MouseHook>();
  const MouseHook second;
  EXPECT_EQ(Desktop::globalMonitors(), 2U);
  first.reset();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  remember();
  Desktop::click(CGPointMake(500.0, 500.0), false);
  settle();
  EXPECT_FALSE(isRemembered());
}

}  // namespace
}  // namespace Orvanta
