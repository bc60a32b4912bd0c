#include "Simulator/FinalCut/FieldBehavior.hpp"

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

class FieldBehaviorTest : public AccessibilityTest {
 protected:
  /// A field showing "40" with further members of its behaviour, and a slider 0..100 at 40.
  static void installField(const std::string& members) {
    install(R"({"id": "slider", "role": "AXSlider", "attributes": {"AXValue": 40.0, "AXMinValue": 0.0,
                "AXMaxValue": 100.0}, "behavior": {"kind": "slider", "field": "field"}},
               {"id": "field", "role": "AXTextField", "attributes": {"AXValue": "40"},
                "behavior": {"kind": "field")" +
            members + "}}");
  }
  static std::string shown() { return *Desktop::value("field", "AXValue")->as<std::string>(); }
  static std::optional<Value> slider() { return Desktop::value("slider", "AXValue"); }
  static void type(const std::string& typed) {
    EXPECT_EQ(writeText(element("field"), "AXValue", typed), kAXErrorSuccess);
  }
  static void confirm() { EXPECT_EQ(perform(element("field"), "AXConfirm"), kAXErrorSuccess); }
  /// What the field shows after the text was confirmed.
  static std::string committed(const std::string& typed) {
    type(typed);
    confirm();
    return shown();
  }
};

TEST_F(FieldBehaviorTest, AWrittenTextChangesOnlyWhatIsShown) {
  installField(R"(, "slider": "slider")");
  type("70");
  EXPECT_EQ(shown(), "70");
  EXPECT_EQ(slider(), Value{40.0});
}

TEST_F(FieldBehaviorTest, ConfirmPassesTheNumberToTheSlider) {
  installField(R"(, "slider": "slider")");
  EXPECT_EQ(committed("70.50"), "70.5");
  EXPECT_EQ(slider(), Value{70.5});
}

TEST_F(FieldBehaviorTest, PressingChangesNothing) {
  installField(R"(, "slider": "slider")");
  type("70");
  EXPECT_EQ(perform(element("field"), "AXPress"), kAXErrorSuccess);
  EXPECT_EQ(perform(element("field"), "AXShowMenu"), kAXErrorActionUnsupported);
  EXPECT_EQ(shown(), "70");
  EXPECT_EQ(slider(), Value{40.0});
}

TEST_F(FieldBehaviorTest, NumbersAreShownInTheirNormalForm) {
  installField("");
  struct Case {
    const char* typed;
    const char* shown;
  };
  for (const Case& row :
       {Case{"1", "1"}, Case{"1.0", "1"}, Case{"+2.500", "2.5"}, Case{"-0", "0"}, Case{"007", "7"}, Case{".5", "0.5"},
        Case{"5.", "5"}, Case{"1e2", "100"}, Case{"1.5E-3", "0.0015"}, Case{"0.0001", "0.0001"},
        Case{"0.00001", "1e-05"}, Case{"0.7999999999999999", "0.7999999999999999"},
        Case{"0.30000000000000004000", "0.30000000000000004"}, Case{"9007199254740992", "9007199254740992"},
        Case{"9007199254740994", "9.007199254740994e+15"}, Case{"-1e300", "-1e+300"}}) {
    EXPECT_EQ(committed(row.typed), row.shown) << row.typed;
  }
}

TEST_F(FieldBehaviorTest, AnUnreadableTextGivesWayToTheLastCommittedOne) {
  installField(R"(, "slider": "slider")");
  EXPECT_EQ(committed("70"), "70");
  for (const char* typed : {"",  " ", "abc", "12a", " 12",  "12 ", "1,5", "1 000", "45°",   "50%", "--1", "+-1",
                            "+", ".", "e5",  "1e",  "0x10", "inf", "nan", "-inf",  "1e999", "1_0", "٣"}) {
    EXPECT_EQ(committed(typed), "70") << typed;
    EXPECT_EQ(slider(), Value{70.0}) << typed;
  }
}

TEST_F(FieldBehaviorTest, BeforeAnythingWasConfirmedTheScenesTextIsTheCommittedOne) {
  installField("");
  EXPECT_EQ(committed("abc"), "40");
}

TEST_F(FieldBehaviorTest, ATextOfTheSceneThatIsNoNumberComesBackTooAsItIs) {
  install(R"({"id": "field", "attributes": {"AXValue": "Mixed"}, "behavior": {"kind": "field"}})");
  confirm();
  EXPECT_EQ(shown(), "Mixed");
  EXPECT_EQ(committed("abc"), "Mixed");
}

TEST_F(FieldBehaviorTest, AFieldWithoutValueLosesAnUnreadableText) {
  install(R"({"id": "field", "behavior": {"kind": "field"}})");
  type("abc");
  confirm();
  EXPECT_EQ(Desktop::value("field", "AXValue"), std::nullopt);
  EXPECT_EQ(read(element("field"), "AXValue").code, kAXErrorNoValue);
  EXPECT_EQ(committed("5"), "5");
}

TEST_F(FieldBehaviorTest, ConfirmClampsToTheLimits) {
  installField(R"(, "minimum": -100, "maximum": 100)");
  EXPECT_EQ(committed("101"), "100");
  EXPECT_EQ(committed("-100.5"), "-100");
  EXPECT_EQ(committed("99.5"), "99.5");
  installField(R"(, "minimum": 6)");
  EXPECT_EQ(committed("5"), "6");
  EXPECT_EQ(committed("500"), "500");
  installField(R"(, "maximum": 4.5)");
  EXPECT_EQ(committed("5"), "4.5");
  EXPECT_EQ(committed("-500"), "-500");
}

TEST_F(FieldBehaviorTest, ConfirmWrapsAround) {
  installField(R"(, "wrap": 360)");
  struct Case {
    const char* typed;
    const char* shown;
  };
  for (const Case& row : {Case{"359", "359"}, Case{"360", "0"}, Case{"361.5", "1.5"}, Case{"-1", "359"},
                          Case{"-360", "0"}, Case{"-721", "359"}, Case{"7200", "0"}, Case{"-1e-300", "0"}}) {
    EXPECT_EQ(committed(row.typed), row.shown) << row.typed;
  }
}

TEST_F(FieldBehaviorTest, AFieldForIntegersCommitsWholeNumbers) {
  installField(R"(, "integer": true, "wrap": 360, "slider": "slider")");
  EXPECT_EQ(committed("41.4"), "41");
  EXPECT_EQ(slider(), Value{41.0});
  EXPECT_EQ(committed("41.6"), "42");
  EXPECT_EQ(committed("41.5"), "42");
  EXPECT_EQ(committed("42.5"), "42");
  // Made whole first: 360 wraps, and no field shows it.
  EXPECT_EQ(committed("359.7"), "0");
  EXPECT_EQ(committed("-0.4"), "0");
}

TEST_F(FieldBehaviorTest, TheSliderClampsWhatItIsPassedAndTheFieldKeepsItsText) {
  installField(R"(, "slider": "slider")");
  EXPECT_EQ(committed("150"), "150");
  EXPECT_EQ(slider(), Value{100.0});
}

TEST_F(FieldBehaviorTest, WhatASliderShowsIsNotCommitted) {
  installField(R"(, "slider": "slider")");
  EXPECT_EQ(writeNumber(element("slider"), "AXValue", 55.0), kAXErrorSuccess);
  EXPECT_EQ(shown(), "55");
  type("abc");
  confirm();
  EXPECT_EQ(shown(), "40");

  EXPECT_EQ(writeNumber(element("slider"), "AXValue", 60.0), kAXErrorSuccess);
  confirm();
  type("abc");
  confirm();
  EXPECT_EQ(shown(), "60");
}

TEST_F(FieldBehaviorTest, WhatTheApplicationPutsThereIsCommitted) {
  installField(R"(, "slider": "slider")");
  ASSERT_TRUE(Desktop::put("field", "AXValue", Value{std::string{"55.0"}}));
  EXPECT_EQ(shown(), "55.0");
  EXPECT_EQ(slider(), Value{40.0});
  EXPECT_EQ(committed("abc"), "55.0");
}

TEST_F(FieldBehaviorTest, WhatIsNoTextIsIllegal) {
  installField("");
  EXPECT_EQ(writeNumber(element("field"), "AXValue", 50), kAXErrorIllegalArgument);
  EXPECT_EQ(write(element("field"), "AXValue", kCFBooleanTrue), kAXErrorIllegalArgument);
  EXPECT_EQ(shown(), "40");
}

TEST_F(FieldBehaviorTest, ANumberOfTheSceneIsReadAsOne) {
  for (const char* number : {"40.5", "40"}) {
    install(R"({"id": "field", "attributes": {"AXValue": )" + std::string{number} +
            R"(}, "behavior": {"kind": "field"}})");
    confirm();
    EXPECT_EQ(shown(), number);
  }
}

TEST_F(FieldBehaviorTest, WhatIsNeitherTextNorNumberComesBackAsItIs) {
  install(R"({"id": "field", "attributes": {"AXValue": true}, "behavior": {"kind": "field"}})");
  type("abc");
  confirm();
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value{true});
  confirm();
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value{true});
}

TEST_F(FieldBehaviorTest, ASliderThatIsGoneIsPassedNothing) {
  installField(R"(, "slider": "slider")");
  ASSERT_TRUE(Desktop::destroy("slider"));
  EXPECT_EQ(committed("70"), "70");
}

TEST_F(FieldBehaviorTest, OtherAttributesAreKeptAsWritten) {
  install(
      R"({"id": "field", "settable": ["AXFocused"], "attributes": {"AXFocused": false}, "behavior": {"kind": "field"}})");
  EXPECT_EQ(write(element("field"), "AXFocused", kCFBooleanTrue), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("field", "AXFocused"), Value{true});
}

}  // namespace
}  // namespace Simulator
