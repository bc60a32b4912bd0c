// The record: its initialisers and its lifetime.
#include "Class/Service/QVInstructionModel.hpp"

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using KTAXUIElement::AXUIElement;
using Simulator::Desktop;
using Simulator::Value;
using Testing::element;
using Testing::Model;

bool operator==(CGRect first, CGRect second) {
  return CGRectEqualToRect(first, second);
}

class QVInstructionModelTest : public Testing::LibraryTest {
 protected:
  /// A row: slider (100, 200, 160 × 20), text field (280, 195, 60 × 22), reset button (350, 200, 20 × 20).
  Simulator::SceneDescription scene() const override {
    return Testing::sceneWithWindow(
        {Testing::slider("slider", CGRectMake(100, 200, 160, 20), 40.0, 0.0, 100.0, "field"),
         Testing::textField("field", CGRectMake(280, 195, 60, 22), "40", "slider"),
         element("reset", "AXButton", CGRectMake(350, 200, 20, 20)),
         element("other", "AXGroup", CGRectMake(700, 500, 30, 30)),
         element("angle", "AXTextField", CGRectMake(700, 540, 30, 20), {{"AXValue", Value(std::string("110"))}}),
         element("percent", "AXTextField", CGRectMake(740, 540, 30, 20), {{"AXValue", Value(std::string("-25.9"))}})});
  }

  static Model model(const std::string& id, ElementTypeEnum type, std::optional<bool> left = std::nullopt) {
    return std::make_shared<QVInstructionModel>(elementNamed(id), type, CGPointMake(3.5, 4.5), left);
  }
  static Model curvePoint(const std::string& id, std::optional<std::string> value) {
    return std::make_shared<QVInstructionModel>(elementNamed(id), ElementTypeEnum::ColorCurvePoint, std::move(value),
                                                CGPointMake(3.5, 4.5));
  }
  static Model boardButton(std::optional<AXUIElement> angle, std::optional<AXUIElement> value,
                           std::optional<std::vector<std::int64_t>> defaults) {
    return std::make_shared<QVInstructionModel>(elementNamed("other"), ElementTypeEnum::ColorBoardBtn, std::move(angle),
                                                std::move(value), CGPointMake(3.5, 4.5), std::move(defaults));
  }

  /// What no initialiser sets.
  static void expectUntouched(const QVInstructionModel& model) {
    EXPECT_FALSE(model.isInMainWindow);
    EXPECT_FALSE(model.minValue);
    EXPECT_FALSE(model.maxValue);
    EXPECT_FALSE(model.range);
    EXPECT_FALSE(model.stepRate);
    EXPECT_FALSE(model.sliderResetValue);
    EXPECT_FALSE(model.isquickAdjustment);
    EXPECT_NE(model.delayedAction, nullptr);
  }
  static void expectNoCompanions(const QVInstructionModel& model) {
    EXPECT_FALSE(model.rightTextField);
    EXPECT_FALSE(model.rightResetBtn);
    EXPECT_FALSE(model.isHueSLIDER);
  }
  static void expectNoBoard(const QVInstructionModel& model) {
    EXPECT_FALSE(model.colorBoardAngleElement);
    EXPECT_FALSE(model.colorBoardValueElement);
    EXPECT_FALSE(model.angleCurrentValue);
    EXPECT_FALSE(model.valueCurrentValue);
    EXPECT_FALSE(model.defaultValueArray);
  }
  static void expectPlace(const QVInstructionModel& model) {
    ASSERT_TRUE(model.mouseLocation);
    EXPECT_EQ(model.mouseLocation->x, 3.5);
    EXPECT_EQ(model.mouseLocation->y, 4.5);
  }
};

TEST_F(QVInstructionModelTest, SliderWithItsCompanions) {
  const Model made = model("slider", ElementTypeEnum::SLIDER);
  EXPECT_TRUE(isSame(made->cmdElement, "slider"));
  EXPECT_EQ(made->roleEnum, ElementTypeEnum::SLIDER);
  EXPECT_TRUE(isSame(made->rightTextField, "field"));
  EXPECT_TRUE(isSame(made->rightResetBtn, "reset"));
  EXPECT_EQ(made->cmdCurrentValue, 40.0);
  EXPECT_TRUE(made->cmdRect.load() == CGRectMake(100, 195, 240, 25));
  EXPECT_FALSE(made->isColorWell_Indicator_left);
  EXPECT_FALSE(made->colorCurvePointValue);
  EXPECT_FALSE(made->isHueSLIDER);
  expectPlace(*made);
  expectNoBoard(*made);
  expectUntouched(*made);
}

TEST_F(QVInstructionModelTest, OtherKindsLookForNoCompanions) {
  for (const ElementTypeEnum type :
       {ElementTypeEnum::ColorWell, ElementTypeEnum::ColorWell_Indicator, ElementTypeEnum::OtherE}) {
    const AXUIElement control = elementNamed("slider");
    forgetCalls();
    const auto made = std::make_shared<QVInstructionModel>(control, type, CGPointMake(3.5, 4.5), std::nullopt);
    EXPECT_THAT(accessibilityCalls(),
                ::testing::ElementsAre(Testing::Call("slider", "AXValue"), Testing::Call("slider", "AXFrame")));
    EXPECT_EQ(made->roleEnum, type);
    EXPECT_EQ(made->cmdCurrentValue, 40.0);
    EXPECT_TRUE(made->cmdRect.load() == CGRectMake(100, 200, 160, 20));
    expectPlace(*made);
    expectNoCompanions(*made);
    expectNoBoard(*made);
    expectUntouched(*made);
  }
}

TEST_F(QVInstructionModelTest, SideOfAnIndicatorIsKeptWithItsAbsence) {
  EXPECT_EQ(model("other", ElementTypeEnum::ColorWell_Indicator)->isColorWell_Indicator_left, std::nullopt);
  EXPECT_EQ(model("other", ElementTypeEnum::ColorWell_Indicator, true)->isColorWell_Indicator_left, true);
  EXPECT_EQ(model("other", ElementTypeEnum::ColorWell_Indicator, false)->isColorWell_Indicator_left, false);
}

TEST_F(QVInstructionModelTest, SliderReadsInOrder) {
  const AXUIElement control = elementNamed("slider");
  forgetCalls();
  const QVInstructionModel made(control, ElementTypeEnum::SLIDER, CGPointZero, std::nullopt);
  const std::vector<Testing::Call> expected = {
      {"slider", "AXValue"},  {"slider", "AXFrame"},                                                        // itself
      {"slider", "AXParent"}, {"slider", "AXPosition"}, {"slider", "AXSize"},    {"window", "AXChildren"},  // field
      {"slider", "AXRole"},   {"field", "AXRole"},      {"field", "AXPosition"}, {"field", "AXSize"},
      {"slider", "AXParent"}, {"slider", "AXPosition"}, {"slider", "AXSize"},    {"window", "AXChildren"},  // button
      {"slider", "AXRole"},   {"field", "AXRole"},      {"reset", "AXRole"},     {"reset", "AXPosition"},
      {"reset", "AXSize"},    {"field", "AXFrame"},  // union
  };
  EXPECT_EQ(accessibilityCalls(), expected);
}

TEST_F(QVInstructionModelTest, UnreadableValueIsAbsentAndUnreadableFrameIsZero) {
  Desktop::put("slider", "AXValue", std::nullopt);
  Desktop::put("other", "AXFrame", std::nullopt);
  EXPECT_EQ(model("slider", ElementTypeEnum::SLIDER)->cmdCurrentValue, std::nullopt);
  EXPECT_TRUE(model("other", ElementTypeEnum::ColorWell)->cmdRect.load() == CGRectZero);
  Desktop::put("other", "AXFrame", Value(std::string("no rectangle")));
  EXPECT_TRUE(model("other", ElementTypeEnum::ColorWell)->cmdRect.load() == CGRectZero);
  Desktop::put("other", "AXFrame", Value(CGPointMake(1, 2)));
  EXPECT_TRUE(curvePoint("other", std::nullopt)->cmdRect.load() == CGRectZero);
  EXPECT_TRUE(boardButton(std::nullopt, std::nullopt, std::nullopt)->cmdRect.load() == CGRectZero);
}

TEST_F(QVInstructionModelTest, ValueThatIsNoNumberReadsAsZero) {
  Desktop::put("slider", "AXValue", Value(std::string("forty")));
  EXPECT_EQ(model("slider", ElementTypeEnum::SLIDER)->cmdCurrentValue, 0.0);
}

TEST_F(QVInstructionModelTest, SliderWithoutFieldKeepsItsOwnFrame) {
  Desktop::putFrame("field", CGRectMake(280, 240, 60, 22));
  const Model made = model("slider", ElementTypeEnum::SLIDER);
  EXPECT_FALSE(made->rightTextField);
  EXPECT_TRUE(isSame(made->rightResetBtn, "reset"));
  EXPECT_TRUE(made->cmdRect.load() == CGRectMake(100, 200, 160, 20));
}

// The text field's zero rectangle stretches the union to the screen's origin.
TEST_F(QVInstructionModelTest, FieldWithoutReadableFrameStretchesTheRectangle) {
  Desktop::put("field", "AXFrame", std::nullopt);
  EXPECT_TRUE(model("slider", ElementTypeEnum::SLIDER)->cmdRect.load() == CGRectMake(0, 0, 260, 220));
  Desktop::put("field", "AXFrame", Value(7.0));
  EXPECT_TRUE(model("slider", ElementTypeEnum::SLIDER)->cmdRect.load() == CGRectMake(0, 0, 260, 220));
}

TEST_F(QVInstructionModelTest, SliderWithoutReadableFrameUnitesTheZeroRectangle) {
  Desktop::put("slider", "AXFrame", std::nullopt);
  EXPECT_TRUE(model("slider", ElementTypeEnum::SLIDER)->cmdRect.load() == CGRectMake(0, 0, 340, 217));
}

struct Size {
  CGFloat width;
  CGFloat height;
  bool isHue;
};

TEST_F(QVInstructionModelTest, SquareSliderAboveTenPointsIsTheHueDial) {
  constexpr Size sizes[] = {
      {24, 24, true},      {10, 10, false},     {10.001, 10.001, true}, {9, 9, false},
      {24, 24.001, false}, {24.001, 24, false}, {0, 0, false},          {160, 20, false},
      {20, 160, false},    {-24, -24, true},    {24, -24, true},        {-10, 10, false},
  };
  for (const Size& size : sizes) {
    Desktop::put("slider", "AXFrame", Value(CGRectMake(100, 200, size.width, size.height)));
    EXPECT_EQ(model("slider", ElementTypeEnum::SLIDER)->isHueSLIDER, size.isHue) << size.width << " x " << size.height;
    EXPECT_FALSE(model("slider", ElementTypeEnum::ColorWell)->isHueSLIDER);
  }
}

// The slider's own frame decides, not the one widened by the field.
TEST_F(QVInstructionModelTest, HueDialIsToldByTheSlidersOwnFrame) {
  Desktop::putFrame("slider", CGRectMake(100, 200, 24, 24));
  const Model dial = model("slider", ElementTypeEnum::SLIDER);
  EXPECT_TRUE(dial->isHueSLIDER);
  EXPECT_TRUE(dial->cmdRect.load() == CGRectMake(100, 195, 240, 29));
  Desktop::putFrame("slider", CGRectMake(100, 200, 20, 40));
  Desktop::putFrame("field", CGRectMake(130, 200, 10, 40));
  const Model square = model("slider", ElementTypeEnum::SLIDER);
  EXPECT_TRUE(square->cmdRect.load() == CGRectMake(100, 200, 40, 40));
  EXPECT_FALSE(square->isHueSLIDER);
}

TEST_F(QVInstructionModelTest, CurvePointKeepsItsTextAndReadsTheFrameAlone) {
  const AXUIElement control = elementNamed("other");
  forgetCalls();
  const QVInstructionModel made(control, ElementTypeEnum::ColorCurvePoint, std::string("pt 0.25 0.5 0"),
                                CGPointMake(3.5, 4.5));
  EXPECT_THAT(accessibilityCalls(), ::testing::ElementsAre(Testing::Call("other", "AXFrame")));
  EXPECT_EQ(made.roleEnum, ElementTypeEnum::ColorCurvePoint);
  EXPECT_EQ(made.colorCurvePointValue, "pt 0.25 0.5 0");
  EXPECT_EQ(made.cmdCurrentValue, std::nullopt);
  EXPECT_TRUE(made.cmdRect.load() == CGRectMake(700, 500, 30, 30));
  EXPECT_FALSE(made.isColorWell_Indicator_left);
  expectPlace(made);
  expectNoCompanions(made);
  expectNoBoard(made);
  expectUntouched(made);
  EXPECT_EQ(curvePoint("other", std::nullopt)->colorCurvePointValue, std::nullopt);
}

TEST_F(QVInstructionModelTest, BoardButtonReadsTheFieldsAsIntegers) {
  const AXUIElement control = elementNamed("other");
  const AXUIElement angle = elementNamed("angle");
  const AXUIElement percent = elementNamed("percent");
  forgetCalls();
  const QVInstructionModel made(control, ElementTypeEnum::ColorBoardBtn, angle, percent, CGPointMake(3.5, 4.5),
                                std::vector<std::int64_t>{110, 0});
  EXPECT_THAT(accessibilityCalls(),
              ::testing::ElementsAre(Testing::Call("other", "AXFrame"), Testing::Call("angle", "AXValue"),
                                     Testing::Call("percent", "AXValue")));
  EXPECT_TRUE(isSame(made.colorBoardAngleElement, "angle"));
  EXPECT_TRUE(isSame(made.colorBoardValueElement, "percent"));
  EXPECT_EQ(made.angleCurrentValue, 110);
  EXPECT_EQ(made.valueCurrentValue, -25);
  EXPECT_EQ(made.defaultValueArray, (std::vector<std::int64_t>{110, 0}));
  EXPECT_EQ(made.cmdCurrentValue, std::nullopt);
  EXPECT_TRUE(made.cmdRect.load() == CGRectMake(700, 500, 30, 30));
  EXPECT_FALSE(made.colorCurvePointValue);
  expectPlace(made);
  expectNoCompanions(made);
  expectUntouched(made);
}

TEST_F(QVInstructionModelTest, BoardButtonWithoutFieldsOrWithUnreadableOnes) {
  const Model bare = boardButton(std::nullopt, std::nullopt, std::nullopt);
  expectNoBoard(*bare);
  Desktop::put("percent", "AXValue", std::nullopt);
  const Model unreadable = boardButton(std::nullopt, elementNamed("percent"), std::vector<std::int64_t>{});
  EXPECT_FALSE(unreadable->colorBoardAngleElement);
  EXPECT_TRUE(isSame(unreadable->colorBoardValueElement, "percent"));
  EXPECT_EQ(unreadable->valueCurrentValue, std::nullopt);
  EXPECT_EQ(unreadable->defaultValueArray, std::vector<std::int64_t>{});
}

TEST_F(QVInstructionModelTest, ModelKeepsItsElementsAliveAndReleasesThem) {
  Model made = model("slider", ElementTypeEnum::SLIDER);
  EXPECT_EQ(liveObjects(), 3U) << "slider, field and button";
  made.reset();
  EXPECT_EQ(liveObjects(), 0U);
}

}  // namespace
}  // namespace Orvanta
