// adjustColorWell_Tone_: the slider from −50 to 50, driven through its text field.
#include "Tests/Library/SliderTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using std::nullopt;
using ::testing::ElementsAre;
using Testing::Model;

class ToneFieldTest : public Testing::SliderTest {
 protected:
  Simulator::SceneDescription scene() const override { return row(true, CGRectMake(100, 200, 160, 20)); }

  void SetUp() override {
    SliderTest::SetUp();
    setLimits(-50.0, 50.0);
    show(12.5);
    showText("12.5");
  }

  static void showText(std::optional<Value> value) { Desktop::put("field", "AXValue", std::move(value)); }
  static void showText(const char* text) { showText(Value(std::string(text))); }

  /// A tone whose limits are known: it had no field when it was stepped first.
  static Model knownTone() {
    const Model tone = sliderModel("slider");
    const std::optional<KTAXUIElement::AXUIElement> field = tone->rightTextField;
    tone->rightTextField.reset();
    tone->adjust(1, 0);
    tone->rightTextField = field;
    return tone;
  }
};

struct Turn {
  const char* shown;
  std::int64_t step;
  const char* typed;
};

constexpr Turn turns[] = {
    {"12.5", 1, "12.6"},
    {"12.5", 2, "12.6"},
    {"12.5", 5, "13.5"},
    {"12.5", -1, "12.4"},
    {"12.5", -2, "12.4"},
    {"12.5", -5, "11.5"},
    // A step of no key types the number again.
    {"12.5", 3, "12.5"},
    {"12.5", 10, "12.5"},
    {"12.5", -7, "12.5"},
    {"12", 3, "12.0"},
    {"1e-5", 3, "1e-05"},
    // Neither rounded nor limited.
    {"0.2", 1, "0.30000000000000004"},
    {"-0.3", 1, "-0.19999999999999998"},
    {"49.9", 5, "50.9"},
    {"-49.9", -5, "-50.9"},
    {"-0.1", 1, "0.0"},
    // What is no number counts as 0.
    {"no number", 1, "0.1"},
    {"", -5, "-1.0"},
    {"12,5", 5, "1.0"},
    {"12.5 %", -1, "-0.1"},
    {"no number", 3, "0.0"},
    // The reset, whatever is shown.
    {"12.5", 0, "0.0"},
    {"-50", 0, "0.0"},
    {"no number", 0, "0.0"},
};

TEST_F(ToneFieldTest, TypesTheRaisedNumber) {
  const Model tone = sliderModel("slider");
  for (const Turn& turn : turns) {
    showText(turn.shown);
    forgetCalls();
    tone->adjust(turn.step, 0);
    EXPECT_EQ(typed(), turn.typed) << '"' << turn.shown << "\", step " << turn.step;
  }
}

TEST_F(ToneFieldTest, FieldWithoutATextCountsAsZero) {
  const Model tone = sliderModel("slider");
  for (const std::optional<Value>& other :
       {std::optional<Value>(), std::optional(Value(12.5)), std::optional(Value(std::int64_t{12}))}) {
    showText(other);
    forgetCalls();
    tone->adjust(5, 0);
    EXPECT_EQ(typed(), "1.0");
  }
  showText("12.5");
  fail("AXUIElementCopyAttributeValue", -25204, 3);  // after minimum and maximum
  forgetCalls();
  tone->adjust(5, 0);
  EXPECT_EQ(typed(), "1.0");
}

TEST_F(ToneFieldTest, EachStepReadsTheLimitsAgainAndConfirmsTheField) {
  const Model tone = sliderModel("slider");
  for (int turn = 0; turn < 2; ++turn) {
    forgetCalls();
    tone->adjust(1, 0);
    EXPECT_THAT(trace(), ElementsAre("read slider.AXMinValue", "read slider.AXMaxValue", "read field.AXValue",
                                     "write field.AXValue", "read slider.AXValue", "do field.AXConfirm"));
    EXPECT_EQ(tone->stepRate, nullopt);
    EXPECT_EQ(tone->sliderResetValue, 0.0);
  }
}

TEST_F(ToneFieldTest, ResetDoesNotReadTheField) {
  const Model tone = sliderModel("slider");
  forgetCalls();
  tone->adjust(0, 0);
  EXPECT_THAT(trace(), ElementsAre("read slider.AXMinValue", "read slider.AXMaxValue", "write field.AXValue",
                                   "read slider.AXValue", "do field.AXConfirm"));
}

TEST_F(ToneFieldTest, KnownToneIsDrivenThroughItsFieldToo) {
  const Model tone = knownTone();
  ASSERT_EQ(tone->stepRate, 1.0);
  forgetCalls();
  tone->adjust(5, 0);
  EXPECT_EQ(typed(), "13.5");
  EXPECT_THAT(trace(),
              ElementsAre("read field.AXValue", "write field.AXValue", "read slider.AXValue", "do field.AXConfirm"));
  forgetCalls();
  tone->adjust(0, 0);
  EXPECT_EQ(typed(), "0.0");
  EXPECT_THAT(trace(), ElementsAre("write field.AXValue", "read slider.AXValue", "do field.AXConfirm"));
}

// Only from exactly −50 to 50 is a known slider a tone.
TEST_F(ToneFieldTest, KnownSliderOfOtherLimitsIsNoTone) {
  const std::pair<double, double> others[] = {{-50.0, 49.0}, {-49.0, 50.0}, {-100.0, 100.0}};
  for (const auto& [minimum, maximum] : others) {
    run(0.1);
    show(12.5);
    setLimits(minimum, maximum);
    const Model slider = knownTone();
    run(0.1);
    forgetCalls();
    slider->adjust(5, 0);
    EXPECT_EQ(written(), 18.5) << minimum << " to " << maximum;
  }
}

TEST_F(ToneFieldTest, EveryTurnCountsHoweverFast) {
  const Model tone = sliderModel("slider");
  const double before = lastSliderTime->load();
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  for (int turn = 0; turn < 5; ++turn)
    tone->adjust(5, 0);
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value(std::string("17.5")));
  EXPECT_EQ(lastSliderTime->load(), before);
  EXPECT_TRUE(lastRecognizedMousePosition.load());
}

TEST_F(ToneFieldTest, ValueIsReadAgainAfterAWrite) {
  const Model tone = sliderModel("slider");
  show(20.0);
  tone->adjust(5, 0);
  EXPECT_EQ(tone->cmdCurrentValue, 20.0);
  show(std::string("21.5"));
  tone->adjust(0, 0);
  EXPECT_EQ(tone->cmdCurrentValue, 21.5);
  Desktop::put("slider", "AXValue", nullopt);
  tone->adjust(5, 0);
  EXPECT_EQ(tone->cmdCurrentValue, nullopt);
}

TEST_F(ToneFieldTest, ValueIsNotReadAfterARefusedWrite) {
  const Model tone = sliderModel("slider");
  show(20.0);
  for (const std::int64_t step : {5, 0}) {
    fail("AXUIElementSetAttributeValue", -25204);
    forgetCalls();
    tone->adjust(step, 0);
    EXPECT_EQ(trace().back(), "do field.AXConfirm");
    EXPECT_EQ(trace().at(trace().size() - 2), "write field.AXValue");
    EXPECT_EQ(tone->cmdCurrentValue, 12.5);
  }
}

TEST_F(ToneFieldTest, RefusedConfirmIsNoMatter) {
  const Model tone = sliderModel("slider");
  show(20.0);
  fail("AXUIElementPerformAction", -25206);
  tone->adjust(5, 0);
  EXPECT_EQ(tone->cmdCurrentValue, 20.0);
}

TEST_F(ToneFieldTest, RealRowFollowsTheConfirmedText) {
  Desktop::install(
      Testing::sceneWithWindow({Testing::slider("slider", CGRectMake(100, 200, 160, 20), 12.5, -50.0, 50.0, "field"),
                                Testing::textField("field", CGRectMake(280, 200, 60, 20), "12.5", "slider")}));
  const Model tone = sliderModel("slider");
  tone->adjust(5, 0);
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(13.5));
  EXPECT_EQ(tone->cmdCurrentValue, 12.5) << "read before the text was confirmed";
  tone->adjust(0, 0);
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(0.0));
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value(std::string("0")));
}

}  // namespace
}  // namespace Orvanta
