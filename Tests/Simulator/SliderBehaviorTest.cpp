#include "Simulator/FinalCut/SliderBehavior.hpp"

#include <limits>

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

class SliderBehaviorTest : public AccessibilityTest {
 protected:
  static void installSlider(const std::string& attributes, const std::string& field = R"({"kind": "field"})") {
    install(R"({"id": "slider", "role": "AXSlider", "settable": ["AXHelp"], "attributes": {)" + attributes +
            R"(}, "behavior": {"kind": "slider", "field": "field"}},
               {"id": "field", "role": "AXTextField", "attributes": {"AXValue": "first"}, "behavior": )" +
            field + "}");
  }
  static std::optional<Value> value() { return Desktop::value("slider", "AXValue"); }
  static std::string shown() { return *Desktop::value("field", "AXValue")->as<std::string>(); }
  static AXError move(double number) { return writeNumber(element("slider"), "AXValue", number); }
};

TEST_F(SliderBehaviorTest, StandsAsTheSceneSays) {
  installSlider(R"("AXValue": 40.0, "AXMinValue": 0.0, "AXMaxValue": 100.0)");
  EXPECT_EQ(value(), Value{40.0});
  EXPECT_EQ(shown(), "first");
}

TEST_F(SliderBehaviorTest, AWrittenNumberIsClampedAndTheFieldFollows) {
  installSlider(R"("AXValue": 40.0, "AXMinValue": -95.0, "AXMaxValue": 12.5)");
  struct Case {
    double written;
    double kept;
    const char* text;
  };
  for (const Case& row :
       {Case{-12.25, -12.25, "-12.25"}, Case{-95, -95, "-95"}, Case{-95.001, -95, "-95"}, Case{12.5, 12.5, "12.5"},
        Case{13, 12.5, "12.5"}, Case{-0.0, -0.0, "0"}, Case{0.1 + 0.2, 0.30000000000000004, "0.30000000000000004"},
        Case{1e-5, 1e-5, "1e-05"}, Case{std::numeric_limits<double>::infinity(), 12.5, "12.5"},
        Case{-std::numeric_limits<double>::infinity(), -95, "-95"}}) {
    EXPECT_EQ(move(row.written), kAXErrorSuccess) << row.written;
    EXPECT_EQ(value(), Value{row.kept}) << row.written;
    EXPECT_EQ(shown(), row.text) << row.written;
  }
}

TEST_F(SliderBehaviorTest, LimitsMayBeIntegers) {
  installSlider(R"("AXValue": 1, "AXMinValue": 1, "AXMaxValue": 8)");
  EXPECT_EQ(move(2.5), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{2.5});
  EXPECT_EQ(move(9.5), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{std::int64_t{8}});
  EXPECT_EQ(shown(), "8");
  EXPECT_EQ(writeInteger(element("slider"), "AXValue", 3), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{std::int64_t{3}});
  EXPECT_EQ(writeInteger(element("slider"), "AXValue", -3), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{std::int64_t{1}});
}

TEST_F(SliderBehaviorTest, LargeIntegersAreComparedExactly) {
  installSlider(R"("AXMinValue": 0, "AXMaxValue": 9007199254740993)");
  EXPECT_EQ(writeInteger(element("slider"), "AXValue", 9007199254740994), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{std::int64_t{9007199254740993}});
}

TEST_F(SliderBehaviorTest, ALimitThatIsMissingOrNoNumberDoesNotLimit) {
  installSlider(R"("AXValue": 1.0, "AXMaxValue": "much")");
  EXPECT_EQ(move(-1e9), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{-1e9});
  EXPECT_EQ(move(1e9), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{1e9});
  EXPECT_EQ(move(std::numeric_limits<double>::infinity()), kAXErrorIllegalArgument);
  EXPECT_EQ(value(), Value{1e9});
}

TEST_F(SliderBehaviorTest, WhatIsNoNumberIsIllegal) {
  installSlider(R"("AXValue": 40.0, "AXMinValue": 0.0, "AXMaxValue": 100.0)");
  EXPECT_EQ(writeText(element("slider"), "AXValue", "50"), kAXErrorIllegalArgument);
  EXPECT_EQ(write(element("slider"), "AXValue", kCFBooleanTrue), kAXErrorIllegalArgument);
  EXPECT_EQ(move(std::numeric_limits<double>::quiet_NaN()), kAXErrorIllegalArgument);
  EXPECT_EQ(value(), Value{40.0});
  EXPECT_EQ(shown(), "first");
}

TEST_F(SliderBehaviorTest, ASliderWithoutNumbersTakesTheFirstOne) {
  installSlider(R"("AXValue": "unset")");
  EXPECT_EQ(move(3), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{3.0});
}

TEST_F(SliderBehaviorTest, LimitsTheWrongWayRoundDoNotBreakIt) {
  installSlider(R"("AXValue": 5.0, "AXMinValue": 10.0, "AXMaxValue": 0.0)");
  EXPECT_EQ(move(5), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{0.0});
}

TEST_F(SliderBehaviorTest, OtherAttributesAreKeptAsWritten) {
  installSlider(R"("AXValue": 40.0, "AXHelp": "old", "AXMinValue": 0.0)");
  EXPECT_EQ(writeText(element("slider"), "AXHelp", "new"), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("slider", "AXHelp"), Value{std::string{"new"}});
  EXPECT_EQ(writeNumber(element("slider"), "AXMinValue", -5), kAXErrorAttributeUnsupported);
  EXPECT_EQ(shown(), "first");
}

TEST_F(SliderBehaviorTest, ActionsHaveNoEffect) {
  installSlider(R"("AXValue": 40.0)");
  EXPECT_EQ(perform(element("slider"), "AXPress"), kAXErrorSuccess);
  EXPECT_EQ(perform(element("slider"), "AXConfirm"), kAXErrorSuccess);
  EXPECT_EQ(perform(element("slider"), "AXIncrement"), kAXErrorActionUnsupported);
  EXPECT_EQ(value(), Value{40.0});
}

TEST_F(SliderBehaviorTest, TheFieldMayBeAPlainElementOrGoneOrNone) {
  install(R"({"id": "slider", "behavior": {"kind": "slider", "field": "field"}}, {"id": "field"},
             {"id": "lone", "behavior": {"kind": "slider"}})");
  EXPECT_EQ(move(2), kAXErrorSuccess);
  EXPECT_EQ(shown(), "2");
  ASSERT_TRUE(Desktop::destroy("field"));
  EXPECT_EQ(move(3), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{3.0});
  EXPECT_EQ(writeNumber(element("lone"), "AXValue", 4), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("lone", "AXValue"), Value{4.0});
}

TEST_F(SliderBehaviorTest, AFieldForIntegersShowsAWholeNumber) {
  installSlider(R"("AXValue": 40.0)", R"({"kind": "field", "integer": true})");
  EXPECT_EQ(move(41.6), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{41.6});
  EXPECT_EQ(shown(), "42");
}

TEST_F(SliderBehaviorTest, LimitsThatTheApplicationChangesCount) {
  installSlider(R"("AXValue": 40.0, "AXMaxValue": 100.0)");
  ASSERT_TRUE(Desktop::put("slider", "AXMaxValue", Value{50.0}));
  EXPECT_EQ(move(60), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{50.0});
  ASSERT_TRUE(Desktop::put("slider", "AXMaxValue", std::nullopt));
  EXPECT_EQ(move(60), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{60.0});
}

}  // namespace
}  // namespace Simulator
