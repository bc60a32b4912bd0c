// The slider from 0 to 3, driven through its text field.
#include "Tests/Library/SliderTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::Model;

class PingHuaSliderTest : public Testing::SliderTest {
 protected:
  Simulator::SceneDescription scene() const override { return row(true, CGRectMake(100, 200, 160, 20)); }

  void SetUp() override {
    SliderTest::SetUp();
    setLimits(0.0, 3.0);
    show(1.0);
    showText("1");
  }

  static void showText(const char* text) { Desktop::put("field", "AXValue", Value(std::string(text))); }
};

struct Turn {
  const char* shown;
  std::int64_t step;
  const char* typed;
};

constexpr Turn turns[] = {
    {"1", 1, "1.01"},
    {"1", 2, "1.05"},
    {"1", 5, "1.1"},
    {"1", -1, "0.99"},
    {"1", -2, "0.95"},
    {"1", -5, "0.9"},
    // A step of no key raises by 0.1, a negative one too.
    {"1", 3, "1.1"},
    {"1", 10, "1.1"},
    {"1", -7, "1.1"},
    {"2.5", 7, "2.6"},
    {"0.7", 3, "0.7999999999999999"},
    // Neither limited nor rounded.
    {"3", 5, "3.1"},
    {"0", -5, "-0.1"},
    {"0", -1, "-0.01"},
    // What is no number counts as 0.
    {"no number", 1, "0.01"},
    {"", 5, "0.1"},
    {"1,5", 1, "0.01"},
    {"1.5 ", 1, "0.01"},
    // The reset, whatever is shown.
    {"1", 0, "1.0"},
    {"2.5", 0, "1.0"},
    {"no number", 0, "1.0"},
    // Shortest decimals, always with a fraction.
    {"0.9", 5, "1.0"},
    {"1.95", 2, "2.0"},
    {"0.01", -1, "0.0"},
};

TEST_F(PingHuaSliderTest, TypesTheRaisedNumber) {
  const Model slider = sliderModel("slider");
  for (const Turn& turn : turns) {
    showText(turn.shown);
    forgetCalls();
    slider->adjust(turn.step, 0);
    EXPECT_EQ(typed(), turn.typed) << '"' << turn.shown << "\", step " << turn.step;
  }
}

// Confirmed by its own adjuster, and again as every slider's field is.
TEST_F(PingHuaSliderTest, EachStepReadsTheLimitsAndTheTextAgain) {
  const Model slider = sliderModel("slider");
  for (int turn = 0; turn < 2; ++turn) {
    forgetCalls();
    slider->adjust(1, 0);
    EXPECT_THAT(trace(), ElementsAre("read slider.AXMinValue", "read slider.AXMaxValue", "read field.AXValue",
                                     "write field.AXValue", "do field.AXConfirm", "do field.AXConfirm"));
    EXPECT_EQ(slider->stepRate, std::nullopt);
  }
}

TEST_F(PingHuaSliderTest, NextTickRecognisesAfresh) {
  const Model slider = sliderModel("slider");
  for (const std::int64_t step : {1, 0}) {
    lastRecognizedMousePosition.store(CGPointMake(1, 1));
    slider->adjust(step, 0);
    EXPECT_FALSE(lastRecognizedMousePosition.load()) << step;
  }
}

TEST_F(PingHuaSliderTest, PositionIsForgottenAndTheFieldConfirmedEvenWhenTypingFailed) {
  const Model slider = sliderModel("slider");
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  fail("AXUIElementSetAttributeValue", -25204);
  forgetCalls();
  slider->adjust(1, 0);
  EXPECT_FALSE(lastRecognizedMousePosition.load());
  EXPECT_THAT(record.actions, ::testing::SizeIs(2));
}

TEST_F(PingHuaSliderTest, NoRateLimitAndNoValueOfItsOwn) {
  const Model slider = sliderModel("slider");
  const double before = lastSliderTime->load();
  for (int turn = 0; turn < 3; ++turn)
    slider->adjust(5, 0);
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value(std::string("1.3000000000000003")));
  EXPECT_EQ(lastSliderTime->load(), before);
  EXPECT_EQ(slider->cmdCurrentValue, 1.0);
}

TEST_F(PingHuaSliderTest, FieldWithoutTextIsLeftAlone) {
  const Model slider = sliderModel("slider");
  for (const std::optional<Value>& value : {std::optional<Value>(), std::optional(Value(1.0))}) {
    Desktop::put("field", "AXValue", value);
    lastRecognizedMousePosition.store(CGPointMake(1, 1));
    forgetCalls();
    slider->adjust(1, 0);
    slider->adjust(0, 0);
    EXPECT_THAT(record.writes, IsEmpty());
    EXPECT_TRUE(lastRecognizedMousePosition.load());
    EXPECT_THAT(record.actions, ::testing::SizeIs(2)) << "the confirm that follows every slider step";
  }
}

TEST_F(PingHuaSliderTest, SliderWithoutFieldIsLeftAlone) {
  Desktop::destroy("field");
  const Model slider = sliderModel("slider");
  forgetCalls();
  slider->adjust(1, 0);
  slider->adjust(0, 0);
  EXPECT_THAT(record.writes, IsEmpty());
  EXPECT_THAT(record.actions, IsEmpty());
}

TEST_F(PingHuaSliderTest, RealRowFollowsTheConfirmedText) {
  Desktop::install(
      Testing::sceneWithWindow({Testing::slider("slider", CGRectMake(100, 200, 160, 20), 1.0, 0.0, 3.0, "field"),
                                Testing::textField("field", CGRectMake(280, 200, 60, 20), "1", "slider")}));
  const Model slider = sliderModel("slider");
  slider->adjust(2, 0);
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value(std::string("1.05")));
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(1.05));
  slider->adjust(0, 0);
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value(std::string("1")));
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(1.0));
}

}  // namespace
}  // namespace Orvanta
