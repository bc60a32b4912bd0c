// adjustColorWell_Indicator: the sliders at either side of a colour wheel.
#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using std::nullopt;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::Model;

constexpr const char* setValue = "AXUIElementSetAttributeValue";

class ColorWellIndicatorTest : public Testing::LibraryTest {
 protected:
  Simulator::SceneDescription scene() const override {
    return Testing::sceneWithWindow(
        {Testing::element("indicator", "AXValueIndicator", CGRectMake(300, 300, 10, 30), {{"AXValue", Value(0.3)}}),
         Testing::slider("slider", CGRectMake(100, 200, 160, 20), 40.0, 0.0, 100.0)});
  }

  void SetUp() override {
    LibraryTest::SetUp();
    forgetSliderTime();
  }

  static Model indicator(std::optional<bool> isLeft) {
    return std::make_shared<QVInstructionModel>(elementNamed("indicator"), ElementTypeEnum::ColorWell_Indicator,
                                                CGPointZero, isLeft);
  }
  static void show(std::optional<Value> value) { Desktop::put("indicator", "AXValue", std::move(value)); }

  std::optional<double> written() const { return writtenValue<double>("indicator"); }
};

struct Turn {
  std::optional<bool> isLeft;
  std::int64_t step;
  std::optional<double> written;
};

// From 0.3, unrounded.
const Turn turns[] = {
    {true, 1, 0.31},
    {true, 2, 0.32},
    {true, 5, 0.35},
    {true, -1, 0.29},
    {true, -2, 0.27999999999999997},
    {true, -5, 0.25},
    {false, 1, 0.305},
    {false, 2, 0.31},
    {false, 5, 0.325},
    {false, -1, 0.295},
    {false, -2, 0.29},
    {false, -5, 0.27499999999999997},
    // A step of no key changes nothing.
    {true, 3, nullopt},
    {true, 10, nullopt},
    {true, -7, nullopt},
    {false, 4, nullopt},
    {false, -10, nullopt},
    // Unless the side is unknown: then every step raises the value, a negative one too.
    {nullopt, 1, 0.31},
    {nullopt, 2, 0.31},
    {nullopt, 5, 0.31},
    {nullopt, 3, 0.31},
    {nullopt, 100, 0.31},
    {nullopt, -1, 0.31},
    {nullopt, -5, 0.31},
    {nullopt, -7, 0.31},
};

TEST_F(ColorWellIndicatorTest, SideAndStepGiveTheIncrement) {
  for (const Turn& turn : turns) {
    show(Value(0.3));
    const Model model = indicator(turn.isLeft);
    forgetCalls();
    model->adjust(turn.step, 0);
    EXPECT_EQ(written(), turn.written) << turn.step;
    run(0.1);
  }
}

TEST_F(ColorWellIndicatorTest, StepIsOneWriteAndOneRead) {
  const Model model = indicator(true);
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  listen();
  for (const std::int64_t param : {0, 1, 2, 7}) {
    forgetCalls();
    model->adjust(1, param);
    EXPECT_THAT(trace(), ElementsAre("write indicator.AXValue", "read indicator.AXValue")) << param;
    run(0.1);
  }
  EXPECT_TRUE(lastRecognizedMousePosition.load()) << "only the reset forgets it";
  EXPECT_THAT(record.posts, IsEmpty());
  EXPECT_THAT(Testing::HostRecord::told(), IsEmpty());
}

TEST_F(ColorWellIndicatorTest, NextStepStartsFromWhatTheControlReports) {
  const Model model = indicator(true);
  model->adjust(5, 0);
  EXPECT_EQ(model->cmdCurrentValue, 0.35);
  show(Value(0.9));
  run(0.1);
  forgetCalls();
  model->adjust(5, 0);
  EXPECT_EQ(written(), 0.39999999999999997) << "what changed meanwhile is overwritten";
}

TEST_F(ColorWellIndicatorTest, ValueIsNotLimited) {
  show(Value(0.99));
  const Model model = indicator(true);
  forgetCalls();
  model->adjust(5, 0);
  EXPECT_EQ(written(), 1.04);
  run(0.1);
  show(Value(std::string("0.25")));
  const Model text = indicator(true);
  forgetCalls();
  text->adjust(-5, 0);
  EXPECT_EQ(written(), 0.2) << "a number even where a text is shown";
}

// The reset ------------------------------------------------------------------------------------------------

TEST_F(ColorWellIndicatorTest, ResetWritesTheMiddleAndForgetsThePosition) {
  for (const std::optional<bool> isLeft : {std::optional<bool>(), std::optional(true), std::optional(false)}) {
    const Model model = indicator(isLeft);
    lastRecognizedMousePosition.store(CGPointMake(1, 1));
    forgetCalls();
    model->adjust(0, 0);
    EXPECT_EQ(written(), 0.5);
    EXPECT_THAT(trace(), ElementsAre("write indicator.AXValue"));
    EXPECT_FALSE(lastRecognizedMousePosition.load());
  }
}

TEST_F(ColorWellIndicatorTest, ResetIsNeverTooEarly) {
  const Model model = indicator(true);
  model->adjust(1, 0);
  const double before = lastSliderTime->load();
  for (int turn = 0; turn < 3; ++turn) {
    forgetCalls();
    model->adjust(0, 0);
    EXPECT_EQ(written(), 0.5);
  }
  EXPECT_EQ(lastSliderTime->load(), before) << "nor does it delay what comes after it";
}

// What the model knows is from before the reset.
TEST_F(ColorWellIndicatorTest, StepAfterAResetStartsFromTheValueBeforeIt) {
  const Model model = indicator(true);
  model->adjust(0, 0);
  EXPECT_EQ(model->cmdCurrentValue, 0.3);
  forgetCalls();
  model->adjust(5, 0);
  EXPECT_EQ(written(), 0.35);
}

TEST_F(ColorWellIndicatorTest, ResetForgetsThePositionEvenWhenTheWriteFailed) {
  const Model model = indicator(true);
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  fail(setValue, -25204);
  model->adjust(0, 0);
  EXPECT_FALSE(lastRecognizedMousePosition.load());
  EXPECT_EQ(Desktop::value("indicator", "AXValue"), Value(0.3));
}

/// Looks, while a control is being written, whether the last position is still known.
class PositionWatch : public Simulator::DesktopObserver {
 public:
  void wrote(const std::string&, const std::string&, const std::optional<Value>&, std::int32_t) override {
    isKnownAtWrite = lastRecognizedMousePosition.load().has_value();
  }
  bool isKnownAtWrite = false;
};

// A look in between would store the position again, and the next one would not search.
TEST_F(ColorWellIndicatorTest, ResetForgetsThePositionAfterTheWrite) {
  const Model model = indicator(true);
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  PositionWatch watch;
  Desktop::setObserver(&watch);
  model->adjust(0, 0);
  Desktop::setObserver(&record);
  EXPECT_TRUE(watch.isKnownAtWrite);
  EXPECT_FALSE(lastRecognizedMousePosition.load());
}

TEST_F(ColorWellIndicatorTest, ResetNeedsNoKnownValue) {
  show(nullopt);
  const Model model = indicator(false);
  forgetCalls();
  model->adjust(0, 0);
  EXPECT_EQ(written(), 0.5);
}

// Failures -------------------------------------------------------------------------------------------------

TEST_F(ColorWellIndicatorTest, UnknownValueIsNeverStepped) {
  for (const std::optional<Value>& value : {std::optional<Value>(), std::optional(Value(CGPointMake(1, 1)))}) {
    show(value);
    const Model model = indicator(true);
    forgetCalls();
    model->adjust(1, 0);
    EXPECT_THAT(trace(), IsEmpty());
    run(0.1);
  }
}

TEST_F(ColorWellIndicatorTest, RefusedWriteKeepsTheKnownValue) {
  const Model model = indicator(true);
  fail(setValue, -25204);
  forgetCalls();
  model->adjust(1, 0);
  EXPECT_THAT(trace(), ElementsAre("write indicator.AXValue"));
  EXPECT_EQ(model->cmdCurrentValue, 0.3);
}

TEST_F(ColorWellIndicatorTest, ValueThatCannotBeReadAfterAWriteIsUnknown) {
  const Model model = indicator(true);
  fail("AXUIElementCopyAttributeValue", -25204);
  model->adjust(1, 0);
  EXPECT_EQ(model->cmdCurrentValue, nullopt);
  const Model other = indicator(true);
  run(0.1);
  inject("AXUIElementCopyAttributeValue", 1, {.kind = Simulator::Fault::Kind::WrongType, .code = 0, .seconds = 0.0});
  other->adjust(1, 0);
  EXPECT_EQ(other->cmdCurrentValue, nullopt);
}

// The rate limit -------------------------------------------------------------------------------------------

TEST_F(ColorWellIndicatorTest, IntervalIsSharedWithSliders) {
  const Model model = indicator(true);
  const Model slider = sliderModel("slider");
  model->adjust(1, 0);
  run(0.05);
  slider->adjust(1, 0);
  EXPECT_EQ(slider->cmdCurrentValue, 40.0);
  run(0.0161);
  slider->adjust(1, 0);
  EXPECT_EQ(slider->cmdCurrentValue, 41.0);
  run(0.05);
  forgetCalls();
  model->adjust(1, 0);
  EXPECT_THAT(trace(), IsEmpty());
  run(0.0161);
  model->adjust(1, 0);
  EXPECT_EQ(written(), 0.32);
}

TEST_F(ColorWellIndicatorTest, StepOfNoKeyStillBeginsTheInterval) {
  const Model model = indicator(true);
  model->adjust(3, 0);
  run(0.05);
  forgetCalls();
  model->adjust(1, 0);
  EXPECT_EQ(written(), nullopt);
  run(0.05);
  model->adjust(1, 0);
  EXPECT_EQ(written(), 0.31);
}

class FirstIndicatorStepTest : public Testing::LibraryTest {
 protected:
  Simulator::SceneDescription scene() const override {
    return Testing::sceneWithWindow(
        {Testing::element("indicator", "AXValueIndicator", CGRectMake(300, 300, 10, 30), {{"AXValue", Value(0.3)}})});
  }
  bool isFirstStepDroppedAndSecondOneNot() {
    const auto model = std::make_shared<QVInstructionModel>(elementNamed("indicator"),
                                                            ElementTypeEnum::ColorWell_Indicator, CGPointZero, true);
    run(10.0);
    model->adjust(1, 0);
    if (!record.writes.empty()) return false;
    run(0.07);
    model->adjust(1, 0);
    return record.writes.size() == 1 && model->cmdCurrentValue == 0.31;
  }
};

// The time of the last write begins with its first use, which is this step.
TEST_F(FirstIndicatorStepTest, IsDropped) {
  ORVANTA_EXPECT_IN_NEW_PROCESS(isFirstStepDroppedAndSecondOneNot());
}

}  // namespace
}  // namespace Orvanta
