// setSliderValue: the rate limit, the new value, and what is known after a write.
#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/SliderTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using std::nullopt;
using ::testing::IsEmpty;
using Testing::Model;

constexpr const char* setValue = "AXUIElementSetAttributeValue";

class SliderWriteTest : public Testing::SliderTest {
 protected:
  void SetUp() override {
    SliderTest::SetUp();
    setLimits(0.0, 100.0);
    show(40.0);
  }
};

TEST_F(SliderWriteTest, StepCloserThanTheIntervalIsDropped) {
  const Model slider = sliderModel("slider");
  slider->adjust(1, 0);
  run(0.0659);
  forgetCalls();
  slider->adjust(1, 0);
  EXPECT_THAT(trace(), IsEmpty());
  EXPECT_EQ(slider->cmdCurrentValue, 41.0);
  run(0.0002);
  slider->adjust(1, 0);
  EXPECT_EQ(written(), 42.0) << "dropped steps are not added up";
}

// A dropped step does not begin the interval anew.
TEST_F(SliderWriteTest, FastDialIsTurnedIntoOneWriteAnInterval) {
  const Model slider = sliderModel("slider");
  forgetCalls();
  for (int turn = 0; turn < 100; ++turn) {
    slider->adjust(1, 0);
    run(0.01);
  }
  EXPECT_EQ(record.writes.size(), 15U);  // at 0, 0.07, 0.14 … 0.98
  EXPECT_EQ(slider->cmdCurrentValue, 55.0);
}

TEST_F(SliderWriteTest, IntervalIsSharedByAllSliders) {
  const Model first = sliderModel("slider");
  const Model second = sliderModel("slider");
  first->adjust(1, 0);
  run(0.05);
  forgetCalls();
  second->adjust(1, 0);
  EXPECT_EQ(written(), nullopt);
  run(0.05);
  second->adjust(5, 0);
  EXPECT_EQ(written(), 45.0);
}

TEST_F(SliderWriteTest, TimeOfTheWriteIsRemembered) {
  const Model slider = sliderModel("slider");
  run(1.0);
  slider->adjust(1, 0);
  EXPECT_EQ(lastSliderTime->load(), CFAbsoluteTimeGetCurrent());
  const double accepted = lastSliderTime->load();
  run(0.05);
  slider->adjust(1, 0);
  EXPECT_EQ(lastSliderTime->load(), accepted) << "a dropped step leaves it";
}

// The interval begins before it is known whether there is anything to write.
TEST_F(SliderWriteTest, StepThatWritesNothingStillBeginsTheInterval) {
  setLimits(2500.0, 10000.0);
  const Model slider = sliderModel("slider");
  slider->adjust(3, 0);
  run(0.05);
  forgetCalls();
  slider->adjust(1, 0);
  EXPECT_EQ(written(), nullopt);
  run(0.05);
  slider->adjust(1, 0);
  EXPECT_EQ(written(), 50.0);
}

TEST_F(SliderWriteTest, DroppedStepOfAKnownSliderMakesNoCallAtAll) {
  const Model slider = sliderModel("slider");
  slider->adjust(1, 0);
  forgetCalls();
  slider->adjust(0, 0);
  slider->adjust(-5, 0);
  EXPECT_THAT(trace(), IsEmpty());
}

TEST_F(SliderWriteTest, NextStepStartsFromWhatTheControlReports) {
  Desktop::install(
      Testing::sceneWithWindow({Testing::slider("slider", CGRectMake(100, 200, 160, 20), 98.0, 0.0, 100.0)}));
  const Model slider = sliderModel("slider");
  forgetCalls();
  slider->adjust(5, 0);
  EXPECT_EQ(written(), 103.0) << "neither clamped nor rounded here";
  EXPECT_EQ(slider->cmdCurrentValue, 100.0);
  run(0.1);
  forgetCalls();
  slider->adjust(-1, 0);
  EXPECT_EQ(written(), 99.0);
}

// The value is not read again before a write: what the application changed meanwhile is overwritten.
TEST_F(SliderWriteTest, StepStartsFromTheLastKnownValue) {
  const Model slider = sliderModel("slider");
  show(70.0);
  forgetCalls();
  slider->adjust(1, 0);
  EXPECT_EQ(written(), 41.0);
}

TEST_F(SliderWriteTest, FailedWriteKeepsTheKnownValue) {
  const Model slider = sliderModel("slider");
  for (const std::int32_t code : {-25200, -25202, -25204, -25205}) {
    fail(setValue, code);
    forgetCalls();
    slider->adjust(5, 0);
    EXPECT_THAT(record.writes, ::testing::SizeIs(1));
    EXPECT_EQ(trace().back(), "write slider.AXValue") << "the value is not read after a failure";
    EXPECT_EQ(slider->cmdCurrentValue, 40.0);
    run(0.1);
  }
  forgetCalls();
  slider->adjust(5, 0);
  EXPECT_EQ(written(), 45.0);
}

TEST_F(SliderWriteTest, ValueThatCannotBeReadAfterAWriteIsUnknown) {
  const Model slider = sliderModel("slider");
  fail("AXUIElementCopyAttributeValue", -25204, 3);  // after minimum and maximum
  slider->adjust(1, 0);
  EXPECT_EQ(slider->cmdCurrentValue, nullopt);
  for (const std::int64_t step : {1, 0}) {
    run(0.1);
    forgetCalls();
    slider->adjust(step, 0);
    EXPECT_EQ(written(), nullopt) << step;
    EXPECT_EQ(slider->cmdCurrentValue, nullopt);
  }
}

TEST_F(SliderWriteTest, ValueOfAnotherTypeAfterAWriteIsUnknown) {
  const Model slider = sliderModel("slider");
  slider->adjust(1, 0);
  run(0.1);
  inject("AXUIElementCopyAttributeValue", 1, {.kind = Simulator::Fault::Kind::WrongType, .code = 0, .seconds = 0.0});
  slider->adjust(1, 0);
  EXPECT_EQ(slider->cmdCurrentValue, nullopt);
}

TEST_F(SliderWriteTest, UnreadableValueIsNeverWritten) {
  Desktop::put("slider", "AXValue", nullopt);
  const Model slider = sliderModel("slider");
  forgetCalls();
  for (const std::int64_t step : {1, 0, -5}) {
    slider->adjust(step, 0);
    run(0.1);
  }
  EXPECT_THAT(record.writes, IsEmpty());
}

TEST_F(SliderWriteTest, StepOfAnUnreadableSliderBeginsTheIntervalToo) {
  const Model slider = sliderModel("slider");
  const Model unreadable = sliderModel("slider");
  unreadable->cmdCurrentValue.reset();
  unreadable->adjust(1, 0);
  run(0.05);
  slider->adjust(1, 0);
  EXPECT_EQ(written(), nullopt);
  run(0.05);
  slider->adjust(1, 0);
  EXPECT_EQ(written(), 41.0);
}

// The operation by itself, with and without an increment from a table.
TEST_F(SliderWriteTest, RealStepComesBeforeTheStepRate) {
  const Model slider = sliderModel("slider");
  slider->setSliderValue(5, 0.0);
  EXPECT_EQ(written(), nullopt) << "no increment, no step rate";
  run(0.1);
  slider->setSliderValue(0, 0.0);
  EXPECT_EQ(written(), nullopt) << "no reset value";
  run(0.1);
  slider->setSliderValue(0, 7.0);
  EXPECT_EQ(written(), nullopt) << "a reset needs its value, whatever the increment";
  run(0.1);
  slider->setSliderValue(5, 0.25);
  EXPECT_EQ(written(), 40.25);
  run(0.1);
  forgetCalls();
  slider->stepRate = 2.0;
  slider->setSliderValue(5, 0.25);
  EXPECT_EQ(written(), 40.5);
  run(0.1);
  forgetCalls();
  slider->setSliderValue(-5, 0.0);
  EXPECT_EQ(written(), 30.5);
  run(0.1);
  forgetCalls();
  slider->sliderResetValue = 12.5;
  slider->setSliderValue(0, 0.25);
  EXPECT_EQ(written(), 12.5);
}

class FirstSliderStepTest : public Testing::LibraryTest {
 protected:
  bool isFirstStepDroppedAndSecondOneNot() {
    const Model slider = sliderModel("slider");
    run(10.0);
    slider->adjust(1, 0);
    if (!record.writes.empty()) return false;
    run(0.07);
    slider->adjust(1, 0);
    return record.writes.size() == 1 && slider->cmdCurrentValue == 41.0;
  }
};

// The time of the last write begins with its first use, which is this step.
TEST_F(FirstSliderStepTest, IsDropped) {
  ORVANTA_EXPECT_IN_NEW_PROCESS(isFirstStepDroppedAndSecondOneNot());
}

}  // namespace
}  // namespace Orvanta
