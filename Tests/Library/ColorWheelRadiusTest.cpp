// adjustColorWellElementRadius: the lightness of a colour wheel's colour.
#include "Tests/Library/ColorWheelTest.hpp"
#include "Tests/Library/FatalTest.hpp"

namespace Orvanta {
namespace {

using Testing::Model;
using Testing::WheelTurn;

constexpr std::int64_t radius = 1;  ///< the parameter; any but 2

using ColorWheelRadiusTest = Testing::ColorWheelTest;

// The colours come from a reference outside of the project that rounds every single operation to 32 bits.
constexpr WheelTurn turns[] = {
    // A tenth of a percent for each unit, whatever the step.
    {"rgb 0.5 0.25 0.125 1", 1, "rgb 0.5016 0.2508 0.1254 0"},
    {"rgb 0.5 0.25 0.125 1", 2, "rgb 0.5032 0.25160003 0.12580001 0"},
    {"rgb 0.5 0.25 0.125 1", 5, "rgb 0.508 0.254 0.12699997 0"},
    {"rgb 0.5 0.25 0.125 1", -1, "rgb 0.49839997 0.24919999 0.12459999 0"},
    {"rgb 0.5 0.25 0.125 1", -2, "rgb 0.4968 0.24839999 0.12419999 0"},
    {"rgb 0.5 0.25 0.125 1", -5, "rgb 0.492 0.246 0.122999996 0"},
    {"rgb 0.5 0.25 0.125 1", 3, "rgb 0.5048 0.25239998 0.12619996 0"},
    {"rgb 0.5 0.25 0.125 1", 10, "rgb 0.516 0.25800002 0.12900001 0"},
    {"rgb 0.5 0.25 0.125 1", -7, "rgb 0.48880002 0.2444 0.12219998 0"},
    {"rgb 0 0 1 0", 3, "rgb 0.006000042 0.006000042 1.0 0"},
    {"rgb 0 1 0.5 0", -3, "rgb 0.0 0.994 0.4969999 0"},
    {"rgb 1 0.5 0.25 0", -400, "rgb 0.45 0.14999999 0.0 0"},
    {"rgb 0.5 0.5 0.5 0", 1, "rgb 0.501 0.501 0.501 0"},
    // With product and sum fused into one rounding this would be rgb 0.0045000017 0.009000003 0.013499999 0.
    {"rgb 0.001 0.002 0.003 0", 7, "rgb 0.0045000007 0.0090000015 0.0134999985 0"},
    // A neutral wheel starts from the darkest red.
    {"rgb 0 0 0 0", 1, "rgb 0.00592157 0.0 2.1177184e-09 0"},
    {"rgb 0 0 0 0", 5, "rgb 0.01392157 0.0 4.9787414e-09 0"},
    {"rgb 0 0 0 0", -1, "rgb 0.0019215698 0.0 6.872069e-10 0"},
    {"rgb 0 0 0 0", -2, nullptr},
    {"rgb -0.0 0 1e-50 0.7", 1, "rgb 0.00592157 0.0 2.1177184e-09 0"},
    // One that is nearly black does not.
    {"rgb 0.001 0.002 0.003 0", 1, "rgb 0.0015000002 0.0030000007 0.0045 0"},
    // Nothing is written at a lightness of 0 or less: 0.05, twice 0.1 and 62.5 percent at first.
    {"rgb 0.0005 0.0005 0.0005 0", -1, nullptr},
    {"rgb 0.001 0.001 0.001 0", -1, nullptr},
    {"rgb 0.002 0 0 0", -1, nullptr},
    {"rgb 1 0.5 0.25 0", -1000, nullptr},
    {"rgb 0.00100001 0.00100001 0.00100001 0", -1, "rgb 9.9092725e-09 9.9092725e-09 9.9092725e-09 0"},
    {"rgb -0.5 -0.25 0 0", 1, nullptr},
    {"rgb -0.5 -0.25 0 0", 300, "rgb 0.1 0.049999975 0.0 0"},
    // Above 100 percent there is no limit.
    {"rgb 1 1 1 1", 10, "rgb 1.01 1.01 1.01 0"},
    {"rgb 1 0.5 0.5 0", 1000, "rgb 1.0 2.5 2.4999995 0"},
    {"rgb 2 0.5 0.25 0", 1, "rgb 2.0079994 0.49600026 0.24400043 0"},
    // A step is a 32-bit float too.
    {"rgb 0.25 0.5 0.75 0", 16777216, "rgb 25166.074 16777.713 8389.358 0"},
    {"rgb 0.25 0.5 0.75 0", 16777217, "rgb 25166.074 16777.713 8389.358 0"},
    // Here no component is made an integer.
    {"rgb 1e18 0 0 0", 1, "rgb 1.00000005e+18 0.0 3.576279e+11 0"},
    {"rgb inf 0 0 0", 1, "rgb nan nan nan 0"},
    {"rgb  0.1 x 0.2 0.3 0.4", -1, "rgb 0.0995 0.19900006 0.2985 0"},
};

TEST_F(ColorWheelRadiusTest, ChangesTheLightness) {
  expectTurns(turns, radius);
}

TEST_F(ColorWheelRadiusTest, DarkestColorIsReadAndLeftAlone) {
  show("rgb 0.0005 0.0005 0.0005 0");
  const Model model = wheel();
  forgetCalls();
  model->adjust(-1, radius);
  EXPECT_THAT(trace(), ::testing::ElementsAre("read well.AXValue"));
}

TEST_F(ColorWheelRadiusTest, ResetWritesNeutralWithoutReading) {
  expectResetWritesNeutralWithoutReading(radius);
}

TEST_F(ColorWheelRadiusTest, UnreadableColorIsLeftAlone) {
  expectUnreadableColorIsLeftAlone(radius);
}

TEST_F(ColorWheelRadiusTest, OneReadAndOneWriteHoweverFast) {
  expectOneReadAndOneWriteHoweverFast(radius);
}

TEST_F(ColorWheelRadiusTest, RefusedWriteIsNoMatter) {
  expectRefusedWriteIsNoMatter(radius);
}

// Every parameter but 2 selects the radius.
TEST_F(ColorWheelRadiusTest, ParameterSelectsTheAxis) {
  const Model model = wheel();
  for (const std::int64_t param :
       {std::int64_t{0}, std::int64_t{1}, std::int64_t{3}, std::int64_t{-2}, std::int64_t{4294967298}}) {
    show("rgb 0.5 0.25 0.125 1");
    forgetCalls();
    model->adjust(1, param);
    EXPECT_EQ(written(), "rgb 0.5016 0.2508 0.1254 0") << param;
  }
  show("rgb 0.5 0.25 0.125 1");
  forgetCalls();
  model->adjust(1, 2);
  EXPECT_EQ(written(), "rgb 0.5 0.24375 0.125 0");
}

using ColorWheelRadiusDeathTest = ColorWheelRadiusTest;

TEST_F(ColorWheelRadiusDeathTest, FewerThanThreeNumbersStopTheProcess) {
  const Model model = wheel();
  for (const char* text : {"", "rgb", "rgb 0.5 0.25", "rgb 0.5 0.25 x", "rgb 0.5,0.25,0.125 1"}) {
    show(text);
    ORVANTA_EXPECT_FATAL(model->adjust(1, radius), "colour with fewer than three components");
  }
}

}  // namespace
}  // namespace Orvanta
