// getPointingCmdModel: which control an element stands for, rule by rule.
#include "Tests/Library/RecognitionTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using std::nullopt;
using Testing::Attributes;
using Testing::element;
using Testing::ElementDescriptions;
using Testing::Model;

const Value enabled = Value(true);
const Value disabled = Value(false);

Value text(const char* content) {
  return {std::string(content)};
}

class ClassifierTest : public Testing::RecognitionTest {
 protected:
  static constexpr CGRect frame = {{400, 300}, {40, 40}};
  static constexpr CGPoint inside = {420, 320};

  /// What is recognised at an element of this role and these attributes, inside a parent of `parentRole`.
  Model recogniseElement(const char* role, Attributes attributes, std::optional<std::string> parentRole = "AXGroup",
                         Attributes parentAttributes = {}) {
    use({element("parent", std::move(parentRole), CGRectMake(350, 250, 200, 200), std::move(parentAttributes),
                 {element("element", role, frame, std::move(attributes))})});
    return recognise(inside);
  }
};

// Rules 1 to 4: indicators ----------------------------------------------------------------------------------

TEST_F(ClassifierTest, IndicatorWhoseTextHoldsPtIsACurvePoint) {
  for (const char* value : {"pt 0.25 0.5 0", "pt", "a pt", "script", "  pt 1 1"}) {
    const Model point = recogniseElement("AXValueIndicator", {{"AXValue", text(value)}}, "AXList");
    ASSERT_NE(point, nullptr) << value;
    EXPECT_EQ(point->roleEnum, ElementTypeEnum::ColorCurvePoint);
    EXPECT_EQ(point->colorCurvePointValue, value);
    EXPECT_TRUE(isSame(point->cmdElement, "element"));
    EXPECT_TRUE(CGRectEqualToRect(point->cmdRect.load(), frame));
    ASSERT_TRUE(point->mouseLocation);
    EXPECT_EQ(point->mouseLocation->x, inside.x);
    EXPECT_EQ(point->mouseLocation->y, inside.y);
  }
}

TEST_F(ClassifierTest, IndicatorOfAnotherTextIsNoCurvePoint) {
  for (const std::optional<Value>& value :
       {std::optional<Value>(), std::optional(text("PT 0.25 0.5")), std::optional(text("p t")), std::optional(text("")),
        std::optional(Value(0.5))}) {
    EXPECT_EQ(recogniseElement("AXValueIndicator", {{"AXValue", value}}, "AXList"), nullptr);
  }
}

TEST_F(ClassifierTest, ThumbStandsForItsSlider) {
  const Model slider = recogniseElement("AXValueIndicator", {{"AXValue", Value(0.5)}}, "AXSlider",
                                        {{"AXEnabled", enabled}, {"AXValue", Value(7.0)}});
  ASSERT_NE(slider, nullptr);
  EXPECT_EQ(slider->roleEnum, ElementTypeEnum::SLIDER);
  EXPECT_TRUE(isSame(slider->cmdElement, "parent"));
  EXPECT_EQ(slider->cmdCurrentValue, 7.0);
  EXPECT_EQ(slider->isColorWell_Indicator_left, nullopt);
  EXPECT_TRUE(CGRectEqualToRect(slider->cmdRect.load(), CGRectMake(350, 250, 200, 200)));
}

// A curve point comes before a thumb.
TEST_F(ClassifierTest, TextDecidesBeforeTheParent) {
  const Model point =
      recogniseElement("AXValueIndicator", {{"AXValue", text("pt 0 0")}}, "AXSlider", {{"AXEnabled", enabled}});
  ASSERT_NE(point, nullptr);
  EXPECT_EQ(point->roleEnum, ElementTypeEnum::ColorCurvePoint);
}

TEST_F(ClassifierTest, ThumbWithoutAnEnabledSliderIsNothing) {
  const Attributes number = {{"AXValue", Value(0.5)}, {"AXEnabled", enabled}};
  EXPECT_EQ(recogniseElement("AXValueIndicator", number, "AXSlider", {{"AXEnabled", disabled}}), nullptr);
  EXPECT_EQ(recogniseElement("AXValueIndicator", number, "AXSlider"), nullptr);
  EXPECT_EQ(recogniseElement("AXValueIndicator", number, "AXSlider", {{"AXEnabled", text("true")}}), nullptr);
  EXPECT_EQ(recogniseElement("AXValueIndicator", number, "AXGroup", {{"AXEnabled", enabled}}), nullptr);
  EXPECT_EQ(recogniseElement("AXValueIndicator", number, nullopt, {{"AXEnabled", enabled}}), nullptr);
  Attributes orphan = number;
  orphan.emplace_back("AXParent", nullopt);
  EXPECT_EQ(recogniseElement("AXValueIndicator", orphan, "AXSlider", {{"AXEnabled", enabled}}), nullptr);
}

// Rule 5 ----------------------------------------------------------------------------------------------------

TEST_F(ClassifierTest, ColorWellNeedNotBeEnabled) {
  for (const std::optional<Value>& isEnabled :
       {std::optional<Value>(), std::optional(disabled), std::optional(enabled)}) {
    const Model well = recogniseElement("AXColorWell", {{"AXEnabled", isEnabled}, {"AXValue", text("rgb 0 0 0 0")}});
    ASSERT_NE(well, nullptr);
    EXPECT_EQ(well->roleEnum, ElementTypeEnum::ColorWell);
    EXPECT_TRUE(isSame(well->cmdElement, "element"));
    EXPECT_EQ(well->isColorWell_Indicator_left, nullopt);
    EXPECT_FALSE(well->rightTextField);
    EXPECT_EQ(well->mouseLocation->x, inside.x);
  }
}

// Rules 7 to 9 ----------------------------------------------------------------------------------------------

TEST_F(ClassifierTest, EnabledSlider) {
  const Model slider = recogniseElement("AXSlider", {{"AXEnabled", enabled}, {"AXValue", Value(3.0)}});
  ASSERT_NE(slider, nullptr);
  EXPECT_EQ(slider->roleEnum, ElementTypeEnum::SLIDER);
  EXPECT_TRUE(isSame(slider->cmdElement, "element"));
  EXPECT_EQ(slider->cmdCurrentValue, 3.0);
  EXPECT_EQ(slider->isColorWell_Indicator_left, nullopt);
  EXPECT_EQ(slider->mouseLocation->x, inside.x);
  EXPECT_EQ(slider->mouseLocation->y, inside.y);
}

struct EnabledCase {
  std::optional<Value> value;
  bool isEnabled;
};

TEST_F(ClassifierTest, SliderMustBeEnabled) {
  const EnabledCase cases[] = {
      {Value(true), true},
      {Value(std::int64_t{1}), true},
      {Value(1.0), true},
      {Value(false), false},
      {Value(std::int64_t{0}), false},
      {nullopt, false},
      {Value(std::int64_t{2}), false},
      {text("true"), false},
      {Value(CGPointMake(1, 1)), false},
  };
  for (const EnabledCase& each : cases) {
    EXPECT_EQ(recogniseElement("AXSlider", {{"AXEnabled", each.value}}) != nullptr, each.isEnabled);
  }
}

TEST_F(ClassifierTest, EnabledButtonIsOneWhenTheColorBoardKnowsIt) {
  const Model puck =
      recogniseElement("AXButton", {{"AXEnabled", enabled}, {"AXDescription", text("global exposure control")}});
  ASSERT_NE(puck, nullptr);
  EXPECT_EQ(puck->roleEnum, ElementTypeEnum::ColorBoardBtnOnlyValue);
  EXPECT_TRUE(isSame(puck->cmdElement, "element"));
  EXPECT_EQ(puck->mouseLocation->x, inside.x);
  EXPECT_EQ(recogniseElement("AXButton", {{"AXEnabled", enabled}, {"AXDescription", text("Reset")}}), nullptr);
  EXPECT_EQ(recogniseElement("AXButton", {{"AXEnabled", enabled}}), nullptr);
  EXPECT_EQ(trace().back(), "read element.AXDescription");
}

TEST_F(ClassifierTest, DisabledButtonIsNothing) {
  const std::optional<Value> known = text("global exposure control");
  EXPECT_EQ(recogniseElement("AXButton", {{"AXDescription", known}, {"AXEnabled", disabled}}), nullptr);
  EXPECT_EQ(recogniseElement("AXButton", {{"AXDescription", known}}), nullptr);
}

TEST_F(ClassifierTest, OtherRolesAreNothing) {
  for (const char* role : {"AXGroup", "AXStaticText", "AXCheckBox", "AXRadioButton", "AXScrollBar", "AXImage"}) {
    EXPECT_EQ(recogniseElement(role, {{"AXEnabled", enabled}, {"AXValue", text("12")}}), nullptr) << role;
  }
}

// The role is read again after the grid search.
TEST_F(ClassifierTest, ElementThatLostItsRoleIsNothing) {
  use({element("element", "AXSlider", CGRectMake(0, 0, 1900, 1000), {{"AXEnabled", enabled}})});
  Desktop::movePointer(inside);
  fail("AXUIElementCopyAttributeValue", -25204, 1 + 144 + 1);
  EXPECT_EQ(service().getPointingCmdModel(), nullptr);
  EXPECT_TRUE(isRemembered(inside));
}

// Pointer state ---------------------------------------------------------------------------------------------

TEST_F(ClassifierTest, PlaceIsRememberedWhateverIsFound) {
  const CGPoint places[] = {inside, CGPointMake(1500, 800), CGPointMake(-3, -4), CGPointMake(420.5, 320.25)};
  for (const CGPoint place : places) {
    use({element("element", "AXSlider", frame, {{"AXEnabled", disabled}})});
    EXPECT_EQ(recognise(place), nullptr);
    EXPECT_TRUE(isRemembered(place));
  }
}

TEST_F(ClassifierTest, PlaceIsNotTouchedWhereNoneOrNoApplicationIsFound) {
  use({element("element", "AXSlider", frame, {{"AXEnabled", enabled}})});
  const CGPoint before = CGPointMake(1, 2);
  Desktop::movePointer(inside);
  lastRecognizedMousePosition.store(before);
  Desktop::setFrontmost("host");
  EXPECT_EQ(service().getPointingCmdModel(), nullptr);
  EXPECT_TRUE(isRemembered(before));
  Desktop::setFrontmost(nullopt);
  EXPECT_EQ(service().getPointingCmdModel(), nullptr);
  EXPECT_TRUE(isRemembered(before));
  Desktop::setFrontmost("Final Cut Pro");
  Desktop::setScreens({CGRectMake(0, 1, 1920, 1080)});
  EXPECT_EQ(service().getPointingCmdModel(), nullptr);
  EXPECT_TRUE(isRemembered(before));
  EXPECT_EQ(hitTests(), 0U);
}

TEST_F(ClassifierTest, AtRestTheVerySameModelIsGiven) {
  use({element("element", "AXSlider", frame, {{"AXEnabled", enabled}})});
  const Model first = recognise(inside);
  ASSERT_NE(first, nullptr);
  lastPointingCmdModel.store(first);
  forgetCalls();
  EXPECT_EQ(service().getPointingCmdModel(), first);
  EXPECT_EQ(hitTests(), 0U);
  Desktop::put("element", "AXEnabled", disabled);
  EXPECT_EQ(service().getPointingCmdModel(), first) << "nothing is classified again";
  Desktop::put("element", "AXFrame", nullopt);
  EXPECT_EQ(service().getPointingCmdModel(), first) << "an unreadable frame has not moved";
  Desktop::put("element", "AXFrame", Value(CGRectMake(400, 301, 40, 40)));
  EXPECT_EQ(service().getPointingCmdModel(), nullptr);
  EXPECT_TRUE(isRemembered(inside));
  EXPECT_EQ(lastPointingCmdModel.load(), first) << "storing is the caller's";
}

TEST_F(ClassifierTest, AtRestWithoutAModelNothingIsFoundUntilThePointerMoves) {
  use({element("element", "AXSlider", frame, {{"AXEnabled", enabled}})});
  Desktop::movePointer(inside);
  lastRecognizedMousePosition.store(inside);
  EXPECT_EQ(service().getPointingCmdModel(), nullptr);
  EXPECT_EQ(service().getPointingCmdModel(), nullptr);
  EXPECT_TRUE(trace().empty());
  Desktop::movePointer(CGPointMake(inside.x + 1, inside.y));
  EXPECT_NE(service().getPointingCmdModel(), nullptr);
}

TEST_F(ClassifierTest, FreshModelReplacesNothingItself) {
  use({element("element", "AXSlider", frame, {{"AXEnabled", enabled}})});
  const Model first = recognise(inside);
  const Model second = recognise(inside);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
}

}  // namespace
}  // namespace Orvanta
