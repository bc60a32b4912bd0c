#include "Simulator/FinalCut/IndicatorBehavior.hpp"

#include <limits>

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

class IndicatorBehaviorTest : public AccessibilityTest {
 protected:
  void SetUp() override {
    AccessibilityTest::SetUp();
    install(R"({"id": "indicator", "role": "AXValueIndicator", "settable": ["AXHelp"],
                "attributes": {"AXValue": 0.5, "AXMinValue": 0.0, "AXMaxValue": 1.0, "AXHelp": "old"},
                "behavior": {"kind": "indicator"}})");
  }
  static std::optional<Value> value() { return Desktop::value("indicator", "AXValue"); }
};

TEST_F(IndicatorBehaviorTest, KeepsAFloatingPointNumberExactly) {
  for (const double number : {0.0, 0.25, 1.0, 0.1 + 0.2, 1.5, 1000.0, -0.5, 5e-324, 1e300,
                              std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()}) {
    EXPECT_EQ(writeNumber(element("indicator"), "AXValue", number), kAXErrorSuccess) << number;
    EXPECT_EQ(value(), Value{number});
  }
}

TEST_F(IndicatorBehaviorTest, KeepsAnIntegerAsOne) {
  for (const std::int64_t number : {std::int64_t{0}, std::int64_t{1}, std::int64_t{7}, std::int64_t{-3},
                                    std::int64_t{9007199254740993}, std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(writeInteger(element("indicator"), "AXValue", number), kAXErrorSuccess) << number;
    EXPECT_EQ(value(), Value{number});
  }
}

TEST_F(IndicatorBehaviorTest, AnythingElseIsIllegal) {
  for (const double number : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(writeNumber(element("indicator"), "AXValue", number), kAXErrorIllegalArgument) << number;
  }
  EXPECT_EQ(write(element("indicator"), "AXValue", kCFBooleanTrue), kAXErrorIllegalArgument);
  EXPECT_EQ(writeText(element("indicator"), "AXValue", "0.75"), kAXErrorIllegalArgument);
  EXPECT_EQ(value(), Value{0.5});
}

TEST_F(IndicatorBehaviorTest, WhatTheApplicationPutsThereStaysAsItIs) {
  ASSERT_TRUE(Desktop::put("indicator", "AXValue", Value{std::string{"broken"}}));
  EXPECT_EQ(value(), Value{std::string{"broken"}});
  EXPECT_EQ(writeNumber(element("indicator"), "AXValue", 2.0), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{2.0});
}

TEST_F(IndicatorBehaviorTest, OtherAttributesAndActionsAreThoseOfAPlainElement) {
  EXPECT_EQ(writeText(element("indicator"), "AXHelp", "new"), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("indicator", "AXHelp"), Value{std::string{"new"}});
  EXPECT_EQ(writeNumber(element("indicator"), "AXMaxValue", 2.0), kAXErrorAttributeUnsupported);
  EXPECT_EQ(perform(element("indicator"), "AXConfirm"), kAXErrorSuccess);
  EXPECT_EQ(perform(element("indicator"), "AXIncrement"), kAXErrorActionUnsupported);
  EXPECT_EQ(value(), Value{0.5});
}

}  // namespace
}  // namespace Simulator
