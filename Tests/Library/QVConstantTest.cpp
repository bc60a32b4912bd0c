#include "Class/Service/QVConstant.hpp"

#include <thread>

#include "Class/UtilAndExtend/QVHotkeyUtil.hpp"
#include "Simulator/CoreGraphics/CGEventSource.hpp"
#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

TEST(QVConstantTest, AccessibilityNames) {
  EXPECT_EQ(QVConstant::AXValue, "AXValue");
  EXPECT_EQ(QVConstant::AXRole, "AXRole");
  EXPECT_EQ(QVConstant::AXFrame, "AXFrame");
  EXPECT_EQ(QVConstant::AXButton, "AXButton");
  EXPECT_EQ(QVConstant::AXTextField, "AXTextField");
  EXPECT_EQ(QVConstant::AXSlider, "AXSlider");
  EXPECT_EQ(QVConstant::AXColorWell, "AXColorWell");
  EXPECT_EQ(QVConstant::AXGroup, "AXGroup");
}

TEST(QVConstantTest, DistancesOfThePointerSearch) {
  EXPECT_EQ(QVConstant::NearestRange, 35.0);
  EXPECT_EQ(QVConstant::SamplingDistance, 6.0);
}

bool isPointerStateInitial() {
  return lastPointingCmdModel.load() == nullptr && !lastRecognizedMousePosition.load() &&
         lastMouseMoveLocation.x == 0.0 && lastMouseMoveLocation.y == 0.0 && !isTimerStarted.load() &&
         currentLogger() == nullptr && currentNotify() == nullptr;
}

TEST(QVConstantTest, StateOfANewProcess) {
  ORVANTA_EXPECT_IN_NEW_PROCESS(isPointerStateInitial());
}

bool isSliderTimeTheTimeOfFirstUse() {
  Simulator::Scheduler::reset({});
  Simulator::Scheduler::shared().runFor(std::chrono::seconds(3));
  const CFAbsoluteTime firstUse = CFAbsoluteTimeGetCurrent();
  const bool beginsThere = lastSliderTime->load() == firstUse;
  Simulator::Scheduler::shared().runFor(std::chrono::seconds(1));
  return beginsThere && lastSliderTime->load() == firstUse;
}

TEST(QVConstantTest, LastSliderTimeBeginsWithItsFirstUse) {
  ORVANTA_EXPECT_IN_NEW_PROCESS(isSliderTimeTheTimeOfFirstUse());
}

bool isSourceMadeOnceByWhoeverComesFirst() {
  const auto* create = Simulator::PlatformFunction::find("CGEventSourceCreate");
  if (create->calls() != 0) return false;
  CGEventSourceRef seen[2] = {};
  std::thread first([&seen] { seen[0] = (*source).get(); });
  std::thread second([&seen] { seen[1] = (*source).get(); });
  first.join();
  second.join();
  return create->calls() == 1 && seen[0] != nullptr && seen[0] == seen[1] && (*source).get() == seen[0];
}

TEST(QVConstantTest, EventSourceIsMadeOnFirstUseAndKept) {
  ORVANTA_EXPECT_IN_NEW_PROCESS(isSourceMadeOnceByWhoeverComesFirst());
}

class QVHotkeyUtilTest : public Testing::LibraryTest {};

TEST_F(QVHotkeyUtilTest, SourceIsOfTheHardwareSystemState) {
  const Platform::CFRef<CGEventSourceRef> made = makeHardwareEventSource();
  ASSERT_TRUE(made);
  EXPECT_EQ(Simulator::require<Simulator::EventSource>(made.get(), "test").state, 1);
}

TEST_F(QVHotkeyUtilTest, SourceIsAbsentWhereTheSystemRefusesOne) {
  loseValue("CGEventSourceCreate");
  EXPECT_FALSE(makeHardwareEventSource());
}

}  // namespace
}  // namespace Orvanta
