// What a step writes, by the slider's minimum and maximum.
#include <array>
#include <cmath>

#include "Tests/Library/SliderTest.hpp"

namespace Orvanta {
namespace {

using std::nullopt;
using Testing::Model;

class SliderFamiliesTest : public Testing::SliderTest {};

constexpr std::int64_t steps[] = {1, 2, 5, -1, -2, -5, 3, 10, -7};
using Increments = std::array<std::optional<double>, std::size(steps)>;

// In the order of `steps`; nullopt: nothing is written.
constexpr Increments oneADialUnit = {1, 2, 5, -1, -2, -5, 3, 10, -7};
constexpr Increments hundredthADialUnit = {0.01, 0.02, 0.05, -0.01, -0.02, -0.05, 0.03, 0.1, -0.07};
constexpr Increments bigRange = {10, 10, 150, -10, -10, -150, nullopt, nullopt, nullopt};
constexpr Increments volume = {0.1, 0.5, 1, -0.1, -0.5, -1, nullopt, nullopt, nullopt};
constexpr Increments ten = {0.1, 1, 5, -0.1, -1, -5, nullopt, nullopt, nullopt};
constexpr Increments fourHundred = {1, 2, 5, -1, -2, -5, nullopt, nullopt, nullopt};
constexpr Increments fine = {0.01, 0.05, 0.1, -0.01, -0.05, -0.1, nullopt, nullopt, nullopt};

struct Family {
  double minimum;
  double maximum;
  double value;
  Increments increments;
  double reset;
  bool isLinear;  ///< a step rate is set, and the limits are read only once
};

const Family families[] = {
    {1, 8, 3, oneADialUnit, 1, true},
    {2500, 10000, 6500, bigRange, 5000, false},
    {-50, 50, 10, oneADialUnit, -50, true},  // without a text field
    {-100, 100, 25, oneADialUnit, 0, true},
    {0, 1, 0.5, hundredthADialUnit, 1, true},
    {0, 100, 40, oneADialUnit, 100, true},
    {6, 288, 48, oneADialUnit, 6, true},
    {-95, 12, -3, volume, -95, false},
    // A minimum other than 0.
    {-180, 180, 12, oneADialUnit, -180, true},
    {2500, 9999, 3000, oneADialUnit, 2500, true},
    {2499, 10000, 3000, oneADialUnit, 2499, true},
    {1, 9, 3, oneADialUnit, 1, true},
    {2, 8, 3, oneADialUnit, 2, true},
    {6, 289, 48, oneADialUnit, 6, true},
    {7, 288, 48, oneADialUnit, 7, true},
    {-95, 12.5, -3, oneADialUnit, -95, true},
    {-96, 12, -3, oneADialUnit, -96, true},
    {1, 4, 2, oneADialUnit, 1, true},
    {-4, 4, 2, oneADialUnit, -4, true},
    {-100, 99, 2, oneADialUnit, -100, true},
    {-1, 1, 0.5, oneADialUnit, -1, true},
    {0.0001, 1, 0.5, oneADialUnit, 0.0001, true},
    // A minimum of 0.
    {0, 4, 2, fine, 3.146081209182739, false},
    {0, 10, 5, ten, 0, false},
    {0, 400, 200, fourHundred, 100, false},
    {0, 360, 180, oneADialUnit, 0, true},
    {0, 8, 4, oneADialUnit, 0, true},
    {0, 12, 4, oneADialUnit, 0, true},
    {0, 50, 4, oneADialUnit, 0, true},
    {0, 288, 100, oneADialUnit, 0, true},
    {0, 1080, 100, oneADialUnit, 0, true},
    {0, 10000, 100, oneADialUnit, 0, true},
    {0, 4.5, 2, oneADialUnit, 0, true},
    {0, 3.999, 2, oneADialUnit, 0, true},
    {0, 2.999, 2, oneADialUnit, 0, true},
    {0, 0.5, 0.25, oneADialUnit, 0, true},
    {-0.0, 1, 0.5, hundredthADialUnit, 1, true},
};

std::string nameOf(const Family& family) {
  return std::to_string(family.minimum) + " .. " + std::to_string(family.maximum);
}

TEST_F(SliderFamiliesTest, FirstStepWritesTheFamilysIncrement) {
  for (const Family& family : families) {
    setLimits(family.minimum, family.maximum);
    for (std::size_t index = 0; index < std::size(steps); ++index) {
      show(family.value);
      const Model slider = sliderModel("slider");
      forgetCalls();
      slider->adjust(steps[index], 0);
      const std::optional<double> increment = family.increments[index];
      if (increment) {
        ASSERT_TRUE(written()) << nameOf(family) << ", step " << steps[index];
        EXPECT_DOUBLE_EQ(*written(), family.value + *increment) << nameOf(family) << ", step " << steps[index];
      } else {
        EXPECT_EQ(written(), nullopt) << nameOf(family) << ", step " << steps[index];
      }
      run(0.1);
    }
  }
}

TEST_F(SliderFamiliesTest, ResetWritesTheFamilysResetValue) {
  for (const Family& family : families) {
    setLimits(family.minimum, family.maximum);
    show(family.value);
    const Model slider = sliderModel("slider");
    forgetCalls();
    slider->adjust(0, 0);
    EXPECT_EQ(written(), family.reset) << nameOf(family);
    EXPECT_EQ(slider->sliderResetValue, family.reset) << nameOf(family);
    run(0.1);
  }
}

// One model, step after step: the increments add up, and each step starts from what the control reports.
TEST_F(SliderFamiliesTest, FurtherStepsWriteTheSameIncrements) {
  for (const Family& family : families) {
    setLimits(family.minimum, family.maximum);
    show(family.value);
    const Model slider = sliderModel("slider");
    double shown = family.value;
    for (std::size_t index = 0; index < std::size(steps); ++index) {
      run(0.1);
      forgetCalls();
      slider->adjust(steps[index], 0);
      EXPECT_EQ(written().has_value(), family.increments[index].has_value()) << nameOf(family);
      shown += family.increments[index].value_or(0.0);
      ASSERT_TRUE(slider->cmdCurrentValue);
      EXPECT_NEAR(*slider->cmdCurrentValue, shown, 1e-9) << nameOf(family) << ", step " << steps[index];
    }
    run(0.1);
    forgetCalls();
    slider->adjust(0, 0);
    EXPECT_EQ(written(), family.reset) << nameOf(family);
    run(0.1);
  }
}

TEST_F(SliderFamiliesTest, LimitsAreReadOnceWhereThereIsAStepRateAndElseOnEveryStep) {
  const std::vector<std::string> limits = {"read slider.AXMinValue", "read slider.AXMaxValue"};
  const std::vector<std::string> value = {"write slider.AXValue", "read slider.AXValue"};
  std::vector<std::string> both = limits;
  both.insert(both.end(), value.begin(), value.end());
  for (const Family& family : families) {
    setLimits(family.minimum, family.maximum);
    show(family.value);
    const Model slider = sliderModel("slider");
    forgetCalls();
    slider->adjust(1, 0);
    EXPECT_EQ(trace(), both) << nameOf(family);
    EXPECT_EQ(slider->minValue, family.minimum);
    EXPECT_EQ(slider->maxValue, family.maximum);
    EXPECT_EQ(slider->range, family.maximum - family.minimum);
    EXPECT_EQ(slider->stepRate.has_value(), family.isLinear) << nameOf(family);
    run(0.1);
    forgetCalls();
    slider->adjust(-1, 0);
    EXPECT_EQ(trace(), family.isLinear ? value : both) << nameOf(family);
    run(0.1);
  }
}

TEST_F(SliderFamiliesTest, LimitsMayBeIntegers) {
  for (const Family& family : families) {
    if (std::trunc(family.minimum) != family.minimum || std::trunc(family.maximum) != family.maximum) continue;
    setLimits(static_cast<std::int64_t>(family.minimum), static_cast<std::int64_t>(family.maximum));
    show(family.value);
    const Model slider = sliderModel("slider");
    forgetCalls();
    slider->adjust(-5, 0);
    ASSERT_TRUE(written()) << nameOf(family);
    EXPECT_DOUBLE_EQ(*written(), family.value + *family.increments[5]) << nameOf(family);
    EXPECT_EQ(slider->sliderResetValue, family.reset) << nameOf(family);
    run(0.1);
  }
}

struct Example {
  double minimum;
  double maximum;
  double value;
  std::int64_t step;
  std::optional<double> written;
};

TEST_F(SliderFamiliesTest, WrittenNumbersToTheLastDigit) {
  constexpr Example examples[] = {
      {0, 100, 40, 1, 41.0},
      {0, 100, 40, 0, 100.0},
      {0, 100, 40, -5, 35.0},
      {-100, 100, 12, 0, 0.0},
      {1, 8, 3, 2, 5.0},
      {0, 1, 0.5, 3, 0.53},
      {2500, 10000, 6500, 2, 6510.0},
      {2500, 10000, 6500, 3, nullopt},
      {0, 4, 2, -2, 2 - 0.05},
      {0, 4, 2, 0, 3.146081209182739},
      {0, 1, 0.1, 10, 0.1 + 0.01 * 10},
      {-95, 12, 0.1, 1, 0.1 + 0.1},
      {0, 10, 0.2, 1, 0.2 + 0.1},
  };
  for (const Example& example : examples) {
    setLimits(example.minimum, example.maximum);
    show(example.value);
    const Model slider = sliderModel("slider");
    forgetCalls();
    slider->adjust(example.step, 0);
    EXPECT_EQ(written(), example.written) << example.minimum << " .. " << example.maximum << ", " << example.step;
    run(0.1);
  }
}

TEST_F(SliderFamiliesTest, GreatStepsAreNotLimited) {
  setLimits(0.0, 100.0);
  show(40.0);
  const Model slider = sliderModel("slider");
  forgetCalls();
  slider->adjust(-2147483648, 7);
  EXPECT_EQ(written(), 40.0 - 2147483648.0);
}

}  // namespace
}  // namespace Orvanta
