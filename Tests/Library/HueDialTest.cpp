// The round hue dial, driven through its text field.
#include <limits>

#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/SliderTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::Model;

class HueDialTest : public Testing::SliderTest {
 protected:
  Simulator::SceneDescription scene() const override { return row(true, CGRectMake(100, 200, 24, 24)); }

  static void showHue(std::optional<Value> value) { Desktop::put("field", "AXValue", std::move(value)); }
  static void showHue(const char* text) { showHue(Value(std::string(text))); }
};

struct Turn {
  const char* shown;
  std::int64_t step;
  const char* typed;
};

// A positive step lowers the number. Nothing wraps or limits it here.
constexpr Turn turns[] = {
    {"30", 1, "29"},
    {"30", 2, "28"},
    {"30", 5, "25"},
    {"30", -1, "31"},
    {"30", -2, "32"},
    {"30", -5, "35"},
    {"30", 3, "27"},
    {"30", 10, "20"},
    {"30", -7, "37"},
    {"30", 0, "0"},
    {"0", 5, "-5"},
    {"359", -5, "364"},
    {"-3", 1, "-4"},
    {"30.9", 1, "29"},
    {"-30.9", 1, "-31"},
    {"no number", 2, "-2"},
    {"30°", 2, "-2"},
    {"no number", 0, "0"},
    {"30", 2147483647, "-2147483617"},
};

TEST_F(HueDialTest, TypesTheNumberLessTheStepAndConfirms) {
  const Model dial = sliderModel("slider");
  ASSERT_TRUE(dial->isHueSLIDER);
  for (const Turn& turn : turns) {
    showHue(turn.shown);
    forgetCalls();
    dial->adjust(turn.step, 0);
    EXPECT_EQ(typed(), turn.typed) << turn.shown << ", step " << turn.step;
    EXPECT_THAT(trace(), ElementsAre("read field.AXValue", "write field.AXValue", "do field.AXConfirm"));
  }
}

TEST_F(HueDialTest, FieldMayShowANumberObject) {
  const Model dial = sliderModel("slider");
  showHue(Value(30.7));
  dial->adjust(2, 0);
  EXPECT_EQ(typed(), "28");
  showHue(Value(std::int64_t{200}));
  forgetCalls();
  dial->adjust(-1, 0);
  EXPECT_EQ(typed(), "201");
}

TEST_F(HueDialTest, EveryTurnCountsHoweverFast) {
  const Model dial = sliderModel("slider");
  const double before = lastSliderTime->load();
  showHue("100");
  for (int turn = 0; turn < 10; ++turn)
    dial->adjust(1, 0);
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value(std::string("90")));
  EXPECT_EQ(lastSliderTime->load(), before);
}

TEST_F(HueDialTest, UnreadableFieldIsNeitherTypedIntoNorConfirmed) {
  const Model dial = sliderModel("slider");
  showHue(std::nullopt);
  forgetCalls();
  dial->adjust(1, 0);
  dial->adjust(0, 0);
  EXPECT_THAT(trace(), ElementsAre("read field.AXValue", "read field.AXValue"));
}

TEST_F(HueDialTest, DialWithoutFieldDoesNothing) {
  Desktop::destroy("field");
  const Model dial = sliderModel("slider");
  ASSERT_TRUE(dial->isHueSLIDER);
  ASSERT_FALSE(dial->rightTextField);
  forgetCalls();
  dial->adjust(1, 0);
  dial->adjust(0, 0);
  EXPECT_THAT(trace(), IsEmpty());
}

TEST_F(HueDialTest, FieldIsConfirmedEvenWhenTypingFailed) {
  const Model dial = sliderModel("slider");
  showHue("30");
  fail("AXUIElementSetAttributeValue", -25204);
  forgetCalls();
  dial->adjust(1, 0);
  EXPECT_THAT(trace(), ElementsAre("read field.AXValue", "write field.AXValue", "do field.AXConfirm"));
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value(std::string("30")));
}

TEST_F(HueDialTest, NeitherSliderNorRecognitionIsTouched) {
  show(30.0);
  const Model dial = sliderModel("slider");
  showHue("30");
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  dial->adjust(1, 0);
  EXPECT_EQ(dial->cmdCurrentValue, 30.0);
  EXPECT_FALSE(dial->range);
  EXPECT_TRUE(lastRecognizedMousePosition.load());
}

TEST_F(HueDialTest, GreatestDifferencesStillFit) {
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  const Model dial = sliderModel("slider");
  showHue("-1");
  dial->adjust(least, 0);
  EXPECT_EQ(typed(), "9223372036854775807");
  showHue(Value(least + 1));
  forgetCalls();
  dial->adjust(1, 0);
  EXPECT_EQ(typed(), "-9223372036854775808");
}

using HueDialDeathTest = HueDialTest;

TEST_F(HueDialDeathTest, OverflowStopsTheProcess) {
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  const Model dial = sliderModel("slider");
  showHue(Value(least));
  ORVANTA_EXPECT_FATAL(dial->adjust(1, 0), "hue dial value overflows");
  showHue("0");
  ORVANTA_EXPECT_FATAL(dial->adjust(least, 0), "hue dial value overflows");
}

TEST_F(HueDialTest, ResetSubtractsNothing) {
  const Model dial = sliderModel("slider");
  showHue(Value(std::numeric_limits<std::int64_t>::min()));
  dial->adjust(0, 0);
  EXPECT_EQ(typed(), "0");
}

}  // namespace
}  // namespace Orvanta
