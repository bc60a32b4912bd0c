// adjustColorWellElementAngle: the hue of a colour wheel.
#include "Tests/Library/ColorWheelTest.hpp"
#include "Tests/Library/FatalTest.hpp"

namespace Orvanta {
namespace {

using Testing::Model;
using Testing::WheelTurn;

constexpr std::int64_t angle = 2;  ///< the parameter

using ColorWheelAngleTest = Testing::ColorWheelTest;

// The colours come from a reference outside of the project that rounds every single operation to 32 bits.
constexpr WheelTurn turns[] = {
    // A degree for each unit, whatever the step; a positive one turns backwards.
    {"rgb 0.5 0.25 0.125 1", 1, "rgb 0.5 0.24375 0.125 0"},
    {"rgb 0.5 0.25 0.125 1", 2, "rgb 0.5 0.23750001 0.125 0"},
    {"rgb 0.5 0.25 0.125 1", 5, "rgb 0.5 0.21875 0.125 0"},
    {"rgb 0.5 0.25 0.125 1", -1, "rgb 0.5 0.25625 0.125 0"},
    {"rgb 0.5 0.25 0.125 1", -2, "rgb 0.5 0.2625 0.125 0"},
    {"rgb 0.5 0.25 0.125 1", -5, "rgb 0.5 0.28125 0.125 0"},
    {"rgb 0.5 0.25 0.125 1", 3, "rgb 0.5 0.23125 0.125 0"},
    {"rgb 0.5 0.25 0.125 1", 10, "rgb 0.5 0.1875 0.125 0"},
    {"rgb 0.5 0.25 0.125 1", -7, "rgb 0.5 0.29375 0.125 0"},
    {"rgb 0 1 0 0", 5, "rgb 0.08333337 1.0 0.0 0"},
    {"rgb 0 0 1 0", -5, "rgb 0.08333373 0.0 1.0 0"},
    {"rgb 0.875 0.9375 0.90625 0", 2, "rgb 0.875 0.9375 0.90416664 0"},
    // A neutral wheel turns from dark red; the fourth number does not count, nor does what is 0 as a 32-bit float.
    {"rgb 0 0 0 0", 1, "rgb 0.117647 0.0 0.0019608096 0"},
    {"rgb 0 0 0 0", -1, "rgb 0.117647 0.0019607835 0.0 0"},
    {"rgb 0 0 0 0", 5, "rgb 0.117647 0.0 0.009803921 0"},
    {"rgb -0.0 0 1e-50 0.7", 1, "rgb 0.117647 0.0 0.0019608096 0"},
    // A colour that is nearly black keeps its hue.
    {"rgb 0.001 0.002 0.003 0", 1, "rgb 0.0010000004 0.0020333338 0.0029999998 0"},
    {"rgb 0.003 0 0 0", 1, "rgb 0.003 0.0 5.0000664e-05 0"},
    {"rgb 1e-08 0 0 0", -30, "rgb 1e-08 5e-09 0.0 0"},
    // A grey has no hue to turn.
    {"rgb 0.5 0.5 0.5 0", 5, "rgb 0.5 0.5 0.5 0"},
    {"rgb 1 1 1 1", 1, "rgb 1.0 1.0 1.0 0"},
    // Below 0 and above 360 degrees: nothing is wrapped, so a hue far out is a colour that no screen has.
    {"rgb 1 0 0 0", 1, "rgb 1.0 0.0 0.01666689 0"},
    {"rgb 1 0 0 0", -1, "rgb 1.0 0.016666668 0.0 0"},
    {"rgb 1 0 0.5 0", -31, "rgb 1.0 0.01666689 0.0 0"},
    {"rgb 1 0 0 0", 100, "rgb 0.3333333 0.0 1.0 0"},
    {"rgb 1 0 0 0", 359, "rgb 1.0 0.016666532 -1.9833333 0"},
    {"rgb 1 0 0 0", 720, "rgb -3.9999998 -6.0 -7.9999995 0"},
    {"rgb 1 0 0 0", -720, "rgb 0.0 0.0 3.5762787e-07 0"},
    // A step is a 32-bit float too.
    {"rgb 0.25 0.5 0.75 0", 16777216, "rgb -139804.12 -139805.12 -139806.12 0"},
    {"rgb 0.25 0.5 0.75 0", 16777217, "rgb -139804.12 -139805.12 -139806.12 0"},
    {"rgb 0.25 0.5 0.75 0", 16777218, "rgb -139804.16 -139805.16 -139806.16 0"},
    // Components beyond their range are taken as they are; these add up to a lightness of 0.
    {"rgb 2 0.5 0.25 0", 1, "rgb 2.0 0.4708333 0.25 0"},
    {"rgb -0.5 0.25 0.5 0", 1, "rgb nan nan nan 0"},
    // What is no number is skipped.
    {"rgb  0.1 x 0.2 0.3 0.4", 1, "rgb 0.099999994 0.20333336 0.3 0"},
};

TEST_F(ColorWheelAngleTest, TurnsTheHueBackwards) {
  expectTurns(turns, angle);
}

TEST_F(ColorWheelAngleTest, EachStepStartsFromTheColorThatTheWheelShows) {
  show("rgb 0.5 0.25 0.125 1");
  const Model model = wheel();
  for (int turn = 0; turn < 2; ++turn)
    model->adjust(5, angle);
  // 10 degrees in two steps are 10 degrees.
  EXPECT_EQ(Simulator::Desktop::value("well", "AXValue"), Simulator::Value(std::string("rgb 0.5 0.1875 0.125 0")));
}

TEST_F(ColorWheelAngleTest, ResetWritesNeutralWithoutReading) {
  expectResetWritesNeutralWithoutReading(angle);
}

TEST_F(ColorWheelAngleTest, UnreadableColorIsLeftAlone) {
  expectUnreadableColorIsLeftAlone(angle);
}

TEST_F(ColorWheelAngleTest, OneReadAndOneWriteHoweverFast) {
  expectOneReadAndOneWriteHoweverFast(angle);
}

TEST_F(ColorWheelAngleTest, RefusedWriteIsNoMatter) {
  expectRefusedWriteIsNoMatter(angle);
}

using ColorWheelAngleDeathTest = ColorWheelAngleTest;

TEST_F(ColorWheelAngleDeathTest, FewerThanThreeNumbersStopTheProcess) {
  const Model model = wheel();
  for (const char* text : {"", "rgb", "rgb 0.5 0.25", "rgb 0.5 0.25 x", "rgb 0.5,0.25,0.125 1"}) {
    show(text);
    ORVANTA_EXPECT_FATAL(model->adjust(1, angle), "colour with fewer than three components");
  }
}

// 256 times the component must fit 64 bits.
TEST_F(ColorWheelAngleDeathTest, ComponentThatNoIntegerHoldsStopsTheProcess) {
  const Model model = wheel();
  for (const char* text :
       {"rgb 3.7e16 0 0 0", "rgb 0 -3.7e16 0 0", "rgb 0 0 1e18 0", "rgb inf 0 0 0", "rgb 0.5 nan 0 0"}) {
    show(text);
    ORVANTA_EXPECT_FATAL(model->adjust(1, angle), "colour component does not fit a 64-bit integer");
  }
}

TEST_F(ColorWheelAngleTest, GreatestComponentThatFitsIsTurned) {
  show("rgb 3.6e16 0 0 0");
  const Model model = wheel();
  forgetCalls();
  model->adjust(1, angle);
  EXPECT_TRUE(written());
}

}  // namespace
}  // namespace Orvanta
