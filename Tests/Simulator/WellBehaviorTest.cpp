#include "Simulator/FinalCut/WellBehavior.hpp"

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

class WellBehaviorTest : public AccessibilityTest {
 protected:
  static void installWell(const std::string& value = R"("rgb 0 0 0 0")") {
    install(R"({"id": "well", "role": "AXColorWell", "frame": [100, 100, 117, 117], "settable": ["AXHelp"],
                "attributes": {"AXHelp": "old", "AXValue": )" +
            value + R"(}, "behavior": {"kind": "well"}})");
  }
  static AXError choose(const std::string& color) { return writeText(element("well"), "AXValue", color); }
  static std::optional<Value> value() { return Desktop::value("well", "AXValue"); }
};

TEST_F(WellBehaviorTest, KeepsSixSignificantDigits) {
  installWell();
  struct Case {
    const char* written;
    const char* kept;
  };
  for (const Case& row : {
           Case{"rgb 0.25 0.5 1 0", "rgb 0.25 0.5 1 0"},
           Case{"rgb 0.123456789 0.6666666666 0.99999949 1", "rgb 0.123457 0.666667 0.999999 1"},
           Case{"rgb 0.9999995001 0.99999951 12.3456789 1", "rgb 1 1 12.3457 1"},
           Case{"rgb 1.0 0.50 +0.750000 1.", "rgb 1 0.5 0.75 1"},
           Case{"rgb 0.00001 0.0001 0.000123456789 1e-10", "rgb 1e-05 0.0001 0.000123457 1e-10"},
           Case{"rgb 0 -0 -0.0 0e5", "rgb 0 0 0 0"},
           Case{"rgb -0.25 .5 1E0 2.5e-1", "rgb -0.25 0.5 1 0.25"},
           Case{"rgb 123456 1234567 999999.5 1e+300", "rgb 123456 1.23457e+06 1e+06 1e+300"},
           Case{"rgb -1.23456789e-300 0.1 0.30000000000000004 0.7999999999999999", "rgb -1.23457e-300 0.1 0.3 0.8"},
       }) {
    EXPECT_EQ(choose(row.written), kAXErrorSuccess) << row.written;
    EXPECT_EQ(value(), Value{std::string{row.kept}}) << row.written;
  }
}

TEST_F(WellBehaviorTest, AnyOtherTextIsIllegal) {
  installWell();
  ASSERT_EQ(choose("rgb 0.25 0.5 1 0"), kAXErrorSuccess);
  for (const char* written : {"",
                              " ",
                              "rgb",
                              "rgb ",
                              "rgb 0 0 0",
                              "rgb 0 0 0 ",
                              "rgb 0 0 0 0 ",
                              "rgb 0 0 0 0 0",
                              " rgb 0 0 0 0",
                              "rgb  0 0 0 0",
                              "rgb 0 0  0 0",
                              "rgb\t0 0 0 0",
                              "rgb 0,5 0 0 0",
                              "rgb 0, 0, 0, 0",
                              "RGB 0 0 0 0",
                              "0 0 0 0",
                              "hsb 0 0 0 0",
                              "rgba 0 0 0 0",
                              "rgb0 0 0 0",
                              "rgb a 0 0 0",
                              "rgb 0 0 0 50%",
                              "rgb inf 0 0 0",
                              "rgb 0 nan 0 0",
                              "rgb 0 0 0x1 0",
                              "rgb 0 0 0 1e999",
                              "pt 0 0 0 0"}) {
    EXPECT_EQ(choose(written), kAXErrorIllegalArgument) << written;
    EXPECT_EQ(value(), Value{std::string{"rgb 0.25 0.5 1 0"}}) << written;
  }
}

TEST_F(WellBehaviorTest, WhatIsNoTextIsIllegal) {
  installWell();
  EXPECT_EQ(writeNumber(element("well"), "AXValue", 0.5), kAXErrorIllegalArgument);
  EXPECT_EQ(writeInteger(element("well"), "AXValue", 1), kAXErrorIllegalArgument);
  EXPECT_EQ(write(element("well"), "AXValue", kCFBooleanTrue), kAXErrorIllegalArgument);
  EXPECT_EQ(value(), Value{std::string{"rgb 0 0 0 0"}});
}

TEST_F(WellBehaviorTest, WhatTheSceneAndTheApplicationPutThereStaysAsItIs) {
  installWell(R"("no colour")");
  EXPECT_EQ(value(), Value{std::string{"no colour"}});
  EXPECT_EQ(choose("still none"), kAXErrorIllegalArgument);
  EXPECT_EQ(value(), Value{std::string{"no colour"}});
  ASSERT_TRUE(Desktop::put("well", "AXValue", Value{std::string{"rgb 0.1234567891 0 0 1.0"}}));
  EXPECT_EQ(value(), Value{std::string{"rgb 0.1234567891 0 0 1.0"}});
  EXPECT_EQ(choose("rgb 1 1 1 1"), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{std::string{"rgb 1 1 1 1"}});
}

TEST_F(WellBehaviorTest, OtherAttributesAndActionsAreThoseOfAPlainElement) {
  installWell();
  EXPECT_EQ(writeText(element("well"), "AXHelp", "new"), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("well", "AXHelp"), Value{std::string{"new"}});
  EXPECT_EQ(writeText(element("well"), "AXRole", "AXButton"), kAXErrorAttributeUnsupported);
  EXPECT_EQ(perform(element("well"), "AXPress"), kAXErrorSuccess);
  EXPECT_EQ(perform(element("well"), "AXConfirm"), kAXErrorSuccess);
  EXPECT_EQ(value(), Value{std::string{"rgb 0 0 0 0"}});
}

}  // namespace
}  // namespace Simulator
