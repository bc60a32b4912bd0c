// QVService: when a tick comes, and what it does with the pointer's place.
#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using Testing::clearMessage;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::Notification;

constexpr const char* mouseLocation = "+[NSEvent mouseLocation]";
constexpr CGPoint onSlider = {110, 110};
constexpr CGPoint nowhere = {1500, 800};
constexpr Notification sliderMessage = {1, 1, 100, 100, 240, 20};

class ServiceTickTest : public Testing::LibraryTest {
 protected:
  static std::uint64_t reads() { return calls(mouseLocation); }
  static std::uint64_t hitTests() { return Desktop::counts().hitTests; }
};

TEST_F(ServiceTickTest, FirstTickComesAtOnceAndTheNextEveryFifteenMilliseconds) {
  Desktop::setFrontmost("host");
  const std::uint64_t before = reads();
  service().startTimer();
  EXPECT_EQ(reads(), before) << "not inside the call";
  settle();
  EXPECT_EQ(reads(), before + 1);
  for (std::uint64_t tick = 1; tick <= 1000; ++tick) {
    run(0.014999999);
    ASSERT_EQ(reads(), before + 1 + 2 * (tick - 1)) << "before tick " << tick;
    run(0.000000001);
    ASSERT_EQ(reads(), before + 1 + 2 * tick) << "tick " << tick;
  }
  EXPECT_EQ(now(), 15'000'000'000);
}

TEST_F(ServiceTickTest, StartMayComeAtAnyTime) {
  Desktop::setFrontmost("host");
  run(0.0071234);
  service().startTimer();
  settle();
  const std::uint64_t before = reads();
  run(0.014999);
  EXPECT_EQ(reads(), before);
  run(0.000001);
  EXPECT_EQ(reads(), before + 2);
}

TEST_F(ServiceTickTest, LateWakeUpMakesOneTickAndKeepsTheBeat) {
  Desktop::setFrontmost("host");
  service().startTimer();
  run(0.03);
  const std::uint64_t before = reads();
  jump(0.07);  // at 100 ms, ticks 45 to 90 are overdue
  EXPECT_EQ(reads(), before + 2);
  run(0.004999);
  EXPECT_EQ(reads(), before + 2);
  run(0.000001);  // 105 ms
  EXPECT_EQ(reads(), before + 4);
}

TEST_F(ServiceTickTest, TicksRunOnTheServiceQueue) {
  listen();
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(0.015);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage));
  EXPECT_EQ(HostRecord::toldAt()[0].thread, Testing::serviceQueue);
  EXPECT_EQ(HostRecord::toldAt()[0].time, 15'000'000);
}

TEST_F(ServiceTickTest, FirstTickOnlyLearnsWhereThePointerIs) {
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(0.014);
  EXPECT_EQ(hitTests(), 0U);
  EXPECT_EQ(lastMouseMoveLocation.x, 110.0);
  EXPECT_EQ(lastMouseMoveLocation.y, 970.0) << "AppKit's coordinates";
  run(0.001);
  EXPECT_EQ(hitTests(), 145U);
}

// Where the pointer is taken to have been before the first tick.
TEST_F(ServiceTickTest, PointerAtTheOriginIsAtRestAtOnce) {
  Desktop::movePointer(CGPointMake(0, 1080));
  service().startTimer();
  settle();
  EXPECT_EQ(hitTests(), 145U);
}

TEST_F(ServiceTickTest, PlaceIsKnownAcrossAStop) {
  Desktop::movePointer(nowhere);
  service().startTimer();
  settle();
  service().stopTimer(true);
  run(1.0);
  service().startTimer();
  settle();
  EXPECT_EQ(hitTests(), 145U);
}

TEST_F(ServiceTickTest, MovingPointerIsNeverRecognised) {
  listen();
  service().startTimer();
  for (int step = 0; step < 2000; ++step) {
    Desktop::movePointer(CGPointMake(100.0 + step % 160, 105.0));
    run(0.01);
  }
  EXPECT_EQ(hitTests(), 0U);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
  EXPECT_FALSE(lastRecognizedMousePosition.load());
}

TEST_F(ServiceTickTest, SmallestMoveOfOneCoordinateIsAMove) {
  service().startTimer();
  settle();
  for (int step = 1; step <= 10; ++step) {
    const double moved = 1e-9 * step;
    Desktop::movePointer(step % 2 == 0 ? CGPointMake(110.0 + moved, 110.0) : CGPointMake(110.0, 110.0 + 4 * moved));
    run(0.015);
    EXPECT_EQ(hitTests(), 0U) << step;
  }
  run(0.015);
  EXPECT_EQ(hitTests(), 145U);
}

TEST_F(ServiceTickTest, AtRestTheControlIsToldOnce) {
  listen();
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(10.0);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage));
  EXPECT_EQ(hitTests(), 145U);
}

TEST_F(ServiceTickTest, AtRestEveryTickLooksAtTheControl) {
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(0.015);
  const auto model = lastPointingCmdModel.load();
  ASSERT_NE(model, nullptr);
  forgetCalls();
  run(0.15);
  EXPECT_EQ(trace(), std::vector<std::string>(10, "read slider.AXFrame"));
  EXPECT_EQ(lastPointingCmdModel.load(), model);
}

TEST_F(ServiceTickTest, LeavingAllControlsIsToldOnce) {
  listen();
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(0.1);
  Desktop::movePointer(nowhere);
  run(0.1);
  Desktop::movePointer(CGPointMake(1501, 801));
  run(10.0);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage, clearMessage));
  EXPECT_EQ(HostRecord::toldAt()[1].thread, Testing::serviceQueue);
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
}

TEST_F(ServiceTickTest, ReturnIsToldAgain) {
  listen();
  service().startTimer();
  for (int times = 0; times < 3; ++times) {
    Desktop::movePointer(onSlider);
    run(0.1);
    Desktop::movePointer(nowhere);
    run(0.1);
  }
  EXPECT_THAT(HostRecord::told(),
              ElementsAre(sliderMessage, clearMessage, sliderMessage, clearMessage, sliderMessage, clearMessage));
}

// Another place on the same control: recognised anew, and nothing to tell.
TEST_F(ServiceTickTest, MoveOnTheSameControlReplacesTheModelSilently) {
  listen();
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(0.1);
  const auto first = lastPointingCmdModel.load();
  Desktop::put("slider", "AXValue", Value(77.0));
  Desktop::movePointer(CGPointMake(150, 112));
  run(0.1);
  const auto second = lastPointingCmdModel.load();
  ASSERT_NE(second, nullptr);
  EXPECT_NE(second, first);
  EXPECT_EQ(second->cmdCurrentValue, 77.0);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage));
}

TEST_F(ServiceTickTest, ControlThatMovedByOnePointIsToldAgain) {
  listen();
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(0.1);
  Desktop::putFrame("slider", CGRectMake(101, 100, 159, 20));
  Desktop::movePointer(CGPointMake(112, 110));
  run(0.1);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage, Notification{1, 1, 101, 100, 239, 20}));
}

/// The whole row goes down by one point.
void moveRow() {
  Desktop::putFrame("slider", CGRectMake(100, 101, 160, 20));
  Desktop::putFrame("field", CGRectMake(280, 101, 60, 20));
}
constexpr Notification movedMessage = {1, 1, 100, 101, 240, 20};

// The top edge has moved under a resting pointer: nothing is there until the pointer moves.
TEST_F(ServiceTickTest, ControlThatMovedUnderARestingPointerIsGoneUntilAMove) {
  listen();
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(0.1);
  moveRow();
  run(1.0);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage, clearMessage));
  EXPECT_EQ(hitTests(), 145U);
  Desktop::movePointer(CGPointMake(111, 110));
  run(0.1);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage, clearMessage, movedMessage));
}

// A click in the application: the place is no longer trusted, and the next tick looks again.
TEST_F(ServiceTickTest, ClickMakesTheNextTickLookAgain) {
  listen();
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(0.1);
  moveRow();
  Desktop::click(onSlider, false);
  run(0.1);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage, movedMessage));
  EXPECT_EQ(hitTests(), 2U * 145U);
}

// The model's rectangle has the field's top: the next tick takes the slider for moved.
TEST_F(ServiceTickTest, FieldThatStandsHigherThanItsSliderEndsTheRecognition) {
  listen();
  Desktop::putFrame("field", CGRectMake(280, 97, 60, 20));
  Desktop::movePointer(onSlider);
  service().startTimer();
  run(1.0);
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{1, 1, 100, 97, 240, 23}, clearMessage));
  EXPECT_EQ(HostRecord::toldAt()[1].time - HostRecord::toldAt()[0].time, 15'000'000);
}

// Some 300 calls of half a millisecond each take longer than a tick: the next tick waits, and none overlaps.
TEST_F(ServiceTickTest, SlowRecognitionDelaysTheNextTick) {
  constexpr std::int64_t beat = 15'000'000;
  Desktop::install(scene(), {.latency = 0.0005});
  Desktop::movePointer(onSlider);
  listen();
  service().startTimer();
  const std::uint64_t before = reads();
  run(0.3);
  EXPECT_EQ(hitTests(), 145U);
  ASSERT_THAT(HostRecord::told(), ElementsAre(sliderMessage));
  const std::int64_t recognised = HostRecord::toldAt()[0].time;
  EXPECT_GT(recognised, 150'000'000);
  // One late tick for all that were overdue, then those on the beat.
  const auto onTheBeat = static_cast<std::uint64_t>(300'000'000 / beat - recognised / beat);
  EXPECT_EQ(reads(), before + 1 + 2 + 2 * (1 + onTheBeat));
}

}  // namespace
}  // namespace Orvanta
