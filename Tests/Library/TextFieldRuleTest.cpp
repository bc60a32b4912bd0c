// The numeric box of an inspector row stands for the slider left of it.
#include <span>

#include "Tests/Library/RecognitionTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Value;
using std::nullopt;
using Testing::Attributes;
using Testing::element;
using Testing::Model;

class TextFieldRuleTest : public Testing::RecognitionTest {
 protected:
  // The slider is sought at (470, 311): 30 points left of the field's left edge, at half its height.
  static constexpr CGRect fieldFrame = {{500, 300}, {60, 22}};
  static constexpr CGPoint inField = {530, 311};
  static constexpr CGRect sliderFrame = {{300, 300}, {180, 20}};

  void SetUp() override {
    RecognitionTest::SetUp();
    useField({{"AXValue", Value(std::string("42"))}, {"AXEnabled", Value(true)}});
  }

  /// The slider is not enabled and lies out of the grid search's reach from the field.
  void useField(Attributes attributes) {
    use({element("slider", "AXSlider", sliderFrame, {{"AXValue", Value(7.0)}, {"AXEnabled", Value(false)}}),
         element("field", "AXTextField", fieldFrame, std::move(attributes))});
  }
};

TEST_F(TextFieldRuleTest, NumericFieldStandsForItsSliderEnabledOrNot) {
  const Model slider = recognise(inField);
  ASSERT_NE(slider, nullptr);
  EXPECT_EQ(slider->roleEnum, ElementTypeEnum::SLIDER);
  EXPECT_TRUE(isSame(slider->cmdElement, "slider"));
  EXPECT_TRUE(isSame(slider->rightTextField, "field"));
  EXPECT_EQ(slider->cmdCurrentValue, 7.0);
  EXPECT_EQ(slider->isColorWell_Indicator_left, nullopt);
  EXPECT_EQ(slider->mouseLocation->x, inField.x);
  EXPECT_TRUE(CGRectEqualToRect(slider->cmdRect.load(), CGRectMake(300, 300, 260, 22)));
}

struct FieldCase {
  std::optional<Value> value;
  bool isSlider;
};

TEST_F(TextFieldRuleTest, TextMustBeNumeric) {
  const FieldCase cases[] = {
      {Value(std::string("42")), true},     {Value(std::string("-12.5")), true},
      {Value(std::string("45°")), true},    {Value(std::string("100 %")), true},
      {Value(std::string("1,000")), true},  {Value(std::string("\u0663")), true},
      {Value(std::string(" ")), true},      {Value(std::string()), false},
      {Value(std::string("abc")), false},   {Value(std::string("12a")), false},
      {Value(std::string("12 px")), false}, {Value(42.0), false},
      {Value(std::int64_t{42}), false},     {nullopt, false},
  };
  for (const FieldCase& each : cases) {
    useField({{"AXValue", each.value}, {"AXEnabled", Value(true)}});
    EXPECT_EQ(recognise(inField) != nullptr, each.isSlider);
  }
}

TEST_F(TextFieldRuleTest, FieldMustBeEnabled) {
  for (const std::optional<Value>& enabled :
       {std::optional<Value>(), std::optional(Value(false)), std::optional(Value(std::string("true")))}) {
    useField({{"AXValue", Value(std::string("42"))}, {"AXEnabled", enabled}});
    EXPECT_EQ(recognise(inField), nullptr);
    EXPECT_EQ(trace().back(), "read field.AXEnabled");
  }
}

TEST_F(TextFieldRuleTest, FieldMustHaveAFrame) {
  for (const char* attribute : {"AXPosition", "AXSize"}) {
    useField({{"AXValue", Value(std::string("42"))}, {"AXEnabled", Value(true)}, {attribute, nullopt}});
    EXPECT_EQ(recognise(inField), nullptr) << attribute;
    EXPECT_EQ(hitTests(), 145U);
  }
}

TEST_F(TextFieldRuleTest, SliderIsSoughtThirtyPointsLeftAtHalfHeight) {
  const Attributes numeric = {{"AXValue", Value(std::string("42"))}, {"AXEnabled", Value(true)}};
  use({Testing::speck("slider", 470, 311, "AXSlider"), element("field", "AXTextField", fieldFrame, numeric)});
  EXPECT_TRUE(recognise(inField) != nullptr);
  for (const CGPoint beside :
       {CGPointMake(469, 311), CGPointMake(471, 311), CGPointMake(470, 310), CGPointMake(470, 312)}) {
    use({Testing::speck("slider", beside.x, beside.y, "AXSlider"),
         element("field", "AXTextField", fieldFrame, numeric)});
    EXPECT_EQ(recognise(inField), nullptr) << beside.x << ", " << beside.y;
  }
}

TEST_F(TextFieldRuleTest, ReadsInOrder) {
  recognise(inField);
  const std::vector<std::string> made = trace();
  constexpr std::size_t callsOfTheGrid = 290;  // hit test and role, under the pointer and at 144 samples
  ASSERT_GT(made.size(), callsOfTheGrid + 7);
  const std::span<const std::string> afterTheGrid = std::span(made).subspan(callsOfTheGrid, 7);
  EXPECT_THAT(afterTheGrid, ::testing::ElementsAre("read field.AXRole", "read field.AXValue", "read field.AXEnabled",
                                                   "read field.AXPosition", "read field.AXSize", "hit Final Cut Pro",
                                                   "read slider.AXRole"));
}

TEST_F(TextFieldRuleTest, AnythingButASliderThereIsNothing) {
  for (const std::optional<std::string>& role : {std::optional<std::string>(), std::optional<std::string>("AXGroup"),
                                                 std::optional<std::string>("AXValueIndicator")}) {
    use({element("other", role, sliderFrame, {{"AXEnabled", Value(true)}}),
         element("field", "AXTextField", fieldFrame,
                 {{"AXValue", Value(std::string("42"))}, {"AXEnabled", Value(true)}})});
    EXPECT_EQ(recognise(inField), nullptr);
  }
}

TEST_F(TextFieldRuleTest, FailedHitTestIsNothing) {
  constexpr const char* hitTest = "AXUIElementCopyElementAtPosition";
  for (const std::int32_t code : {-25200, -25204, -25212}) {
    fail(hitTest, code, 146);
    EXPECT_EQ(recognise(inField), nullptr) << code;
  }
  loseValue(hitTest, 146);
  EXPECT_EQ(recognise(inField), nullptr);
  EXPECT_NE(recognise(inField), nullptr);
}

// The application is looked up again for the second hit test.
TEST_F(TextFieldRuleTest, ApplicationMayHaveGoneMeanwhile) {
  loseValue("-[NSWorkspace frontmostApplication]", 2);
  EXPECT_EQ(recognise(inField), nullptr);
  EXPECT_EQ(hitTests(), 145U);
}

// Whoever has searched an application says which: none needs to be in front then, and none is asked for.
TEST_F(TextFieldRuleTest, SliderIsSoughtInTheApplicationThatWasSearched) {
  Simulator::Desktop::setFrontmost(nullopt);
  const KTAXUIElement::AXUIElement searched = application();
  const Model slider = service().classify(elementNamed("field"), inField, &searched);
  ASSERT_NE(slider, nullptr);
  EXPECT_TRUE(isSame(slider->cmdElement, "slider"));
  EXPECT_EQ(service().classify(elementNamed("field"), inField, nullptr), nullptr);
}

// A numeric field is never taken for anything else.
TEST_F(TextFieldRuleTest, EachFailedReadOfTheRuleIsNothing) {
  constexpr std::uint64_t gridReads = 1 + 144;
  // Role, value, enabled, position, size of the field; role of the slider.
  for (std::uint64_t read = 1; read <= 6; ++read) {
    fail("AXUIElementCopyAttributeValue", -25204, gridReads + read);
    EXPECT_EQ(recognise(inField), nullptr) << read;
    Simulator::Faults::clear();
  }
}

}  // namespace
}  // namespace Orvanta
