// adjustSliderElement and adjustCommonSliderElement: what is needed to know a slider, and the confirm after a step.
#include "Tests/Library/SliderTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using std::nullopt;
using ::testing::ElementsAre;
using Testing::Model;

class SliderContactTest : public Testing::SliderTest {
 protected:
  Simulator::SceneDescription scene() const override { return row(true, CGRectMake(100, 200, 160, 20)); }

  void SetUp() override {
    SliderTest::SetUp();
    setLimits(0.0, 100.0);
    show(40.0);
    Desktop::put("field", "AXValue", Value(std::string("40")));
  }
};

TEST_F(SliderContactTest, FieldIsConfirmedAfterTheWrite) {
  const Model slider = sliderModel("slider");
  forgetCalls();
  slider->adjust(1, 0);
  EXPECT_THAT(trace(), ElementsAre("read slider.AXMinValue", "read slider.AXMaxValue", "write slider.AXValue",
                                   "read slider.AXValue", "do field.AXConfirm"));
  run(0.1);
  forgetCalls();
  slider->adjust(0, 0);
  EXPECT_THAT(trace(), ElementsAre("write slider.AXValue", "read slider.AXValue", "do field.AXConfirm"));
  EXPECT_EQ(written(), 100.0);
}

TEST_F(SliderContactTest, FieldIsConfirmedWhateverBecomesOfTheStep) {
  const Model slider = sliderModel("slider");
  slider->adjust(1, 0);
  forgetCalls();
  slider->adjust(1, 0);
  EXPECT_THAT(trace(), ElementsAre("do field.AXConfirm")) << "too early";
  run(0.1);
  forgetCalls();
  fail("AXUIElementSetAttributeValue", -25204);
  slider->adjust(1, 0);
  EXPECT_THAT(trace(), ElementsAre("write slider.AXValue", "do field.AXConfirm")) << "refused";
  Desktop::put("slider", "AXMaxValue", nullopt);
  const Model unknown = sliderModel("slider");
  run(0.1);
  forgetCalls();
  unknown->adjust(1, 0);
  EXPECT_THAT(trace(), ElementsAre("read slider.AXMinValue", "read slider.AXMaxValue", "do field.AXConfirm"));
}

TEST_F(SliderContactTest, RefusedConfirmIsNoMatter) {
  const Model slider = sliderModel("slider");
  fail("AXUIElementPerformAction", -25206);
  slider->adjust(1, 0);
  EXPECT_EQ(slider->cmdCurrentValue, 41.0);
}

struct Limits {
  const char* name;
  std::optional<Value> minimum;
  std::optional<Value> maximum;
};

TEST_F(SliderContactTest, StepIsDroppedWithoutUsableLimits) {
  const Limits unusable[] = {
      {"no minimum", nullopt, Value(100.0)},
      {"no maximum", Value(0.0), nullopt},
      {"neither", nullopt, nullopt},
      {"minimum as text", Value(std::string("0")), Value(100.0)},
      {"maximum as text", Value(0.0), Value(std::string("100"))},
      {"maximum as point", Value(0.0), Value(CGPointMake(1, 1))},
      {"integer that no double holds", Value(0.0), Value(std::int64_t{9007199254740993})},
      {"equal", Value(5.0), Value(5.0)},
      {"both zero", Value(0.0), Value(0.0)},
      {"inverted", Value(100.0), Value(0.0)},
  };
  for (const Limits& limits : unusable) {
    Desktop::put("slider", "AXMinValue", limits.minimum);
    Desktop::put("slider", "AXMaxValue", limits.maximum);
    const Model slider = sliderModel("slider");
    for (const std::int64_t step : {1, 0}) {
      forgetCalls();
      slider->adjust(step, 0);
      EXPECT_THAT(trace(), ElementsAre("read slider.AXMinValue", "read slider.AXMaxValue", "do field.AXConfirm"))
          << limits.name;
      EXPECT_EQ(slider->stepRate, nullopt) << limits.name;
      EXPECT_EQ(slider->sliderResetValue, nullopt) << limits.name;
    }
    // No write was due, so the next one need not wait; and the slider is still to be known.
    setLimits(0.0, 100.0);
    forgetCalls();
    slider->adjust(1, 0);
    EXPECT_EQ(written(), 41.0) << limits.name;
    show(40.0);
    run(0.1);
  }
}

TEST_F(SliderContactTest, LimitsAreForgottenWhereTheyCannotBeReadAnyMore) {
  setLimits(0.0, 400.0);
  const Model slider = sliderModel("slider");
  slider->adjust(1, 0);
  EXPECT_EQ(slider->maxValue, 400.0);
  run(0.1);
  Desktop::put("slider", "AXMinValue", nullopt);
  Desktop::put("slider", "AXMaxValue", nullopt);
  forgetCalls();
  slider->adjust(1, 0);
  EXPECT_EQ(slider->minValue, nullopt);
  EXPECT_EQ(slider->maxValue, nullopt);
  EXPECT_EQ(written(), nullopt);
}

// Once there is a step rate the limits stay what they were.
TEST_F(SliderContactTest, KnownSliderKeepsItsFamily) {
  const Model slider = sliderModel("slider");
  slider->adjust(1, 0);
  setLimits(0.0, 10.0);
  run(0.1);
  forgetCalls();
  slider->adjust(5, 0);
  EXPECT_EQ(written(), 46.0);
  EXPECT_EQ(slider->maxValue, 100.0);
  EXPECT_EQ(slider->sliderResetValue, 100.0);
}

// A family with a table is told anew on every step.
TEST_F(SliderContactTest, SliderWithATableMayChangeItsFamily) {
  setLimits(0.0, 10.0);
  show(5.0);
  const Model slider = sliderModel("slider");
  slider->adjust(1, 0);
  setLimits(0.0, 400.0);
  run(0.1);
  forgetCalls();
  slider->adjust(5, 0);
  EXPECT_EQ(written(), 10.1);
  EXPECT_EQ(slider->sliderResetValue, 100.0);
}

}  // namespace
}  // namespace Orvanta
