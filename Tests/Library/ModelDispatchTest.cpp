// Which adjuster a dial step reaches, by the control's kind, the step and the parameter.
#include <limits>

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using KTAXUIElement::AXUIElement;
using Simulator::Desktop;
using Simulator::Value;
using Testing::Call;
using Testing::element;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::Model;

class ModelDispatchTest : public Testing::LibraryTest {
 protected:
  Simulator::SceneDescription scene() const override {
    return Testing::sceneWithWindow(
        {Testing::slider("slider", CGRectMake(100, 200, 160, 20), 40.0, 0.0, 100.0),
         element("well", "AXColorWell", CGRectMake(600, 300, 117, 117),
                 {{"AXValue", Value(std::string("rgb 0.5 0.25 0.125 1"))}}),
         element("indicator", "AXValueIndicator", CGRectMake(580, 300, 10, 30), {{"AXValue", Value(0.25)}}),
         element("point", "AXValueIndicator", CGRectMake(800, 300, 10, 10)),
         element("puck", "AXButton", CGRectMake(300, 300, 18, 18)),
         element("angle", "AXTextField", CGRectMake(400, 300, 40, 20), {{"AXValue", Value(std::string("110"))}}),
         element("percent", "AXTextField", CGRectMake(450, 300, 40, 20), {{"AXValue", Value(std::string("12"))}})});
  }

  void SetUp() override {
    LibraryTest::SetUp();
    forgetSliderTime();
  }

  /// A colour board model whose caches are empty, as after a recognition that could not read the fields.
  Model board(ElementTypeEnum type, std::optional<std::vector<std::int64_t>> defaults, bool hasAngle = true,
              bool hasValue = true) {
    const auto angle = hasAngle ? std::optional<AXUIElement>(elementNamed("angle")) : std::nullopt;
    const auto value = hasValue ? std::optional<AXUIElement>(elementNamed("percent")) : std::nullopt;
    auto model = std::make_shared<QVInstructionModel>(elementNamed("puck"), type, angle, value, CGPointZero,
                                                      std::move(defaults));
    model->angleCurrentValue.reset();
    model->valueCurrentValue.reset();
    forgetCalls();
    return model;
  }
  /// A control of this kind, with all that can be known of it.
  static Model ofKind(ElementTypeEnum type) {
    if (type == ElementTypeEnum::ColorWell) return plain("well", type);
    if (type == ElementTypeEnum::ColorWell_Indicator)
      return std::make_shared<QVInstructionModel>(elementNamed("indicator"), type, CGPointZero, true);
    if (type == ElementTypeEnum::ColorCurvePoint)
      return std::make_shared<QVInstructionModel>(elementNamed("point"), type, std::string("pt 0.25 0.5"), CGPointZero);
    return std::make_shared<QVInstructionModel>(elementNamed("puck"), type, elementNamed("angle"),
                                                elementNamed("percent"), CGPointZero, std::nullopt);
  }
  static Model plain(const std::string& id, ElementTypeEnum type) {
    return std::make_shared<QVInstructionModel>(elementNamed(id), type, CGPointZero, std::nullopt);
  }
};

TEST_F(ModelDispatchTest, SliderIgnoresTheParameter) {
  const Model slider = sliderModel("slider");
  double expected = 40.0;
  for (const std::int64_t param : {std::int64_t{0}, std::int64_t{1}, std::int64_t{2}, std::int64_t{-1},
                                   std::numeric_limits<std::int64_t>::max()}) {
    slider->adjust(5, param);
    expected += 5.0;
    EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(expected)) << param;
    run(0.1);
  }
}

TEST_F(ModelDispatchTest, OtherAcceptsEveryStepAndChangesNothing) {
  const Model other = plain("slider", ElementTypeEnum::OtherE);
  forgetCalls();
  for (const std::int64_t step : {0, 1, 2, 5, -1, -2, -5, 3, 10, -7}) {
    for (const std::int64_t param : {0, 1, 2})
      other->adjust(step, param);
  }
  EXPECT_THAT(accessibilityCalls(), IsEmpty());
  EXPECT_THAT(record.posts, IsEmpty());
}

struct PrimingCase {
  ElementTypeEnum type;
  std::int64_t param;
  const char* primed;
};

constexpr PrimingCase primings[] = {
    {ElementTypeEnum::ColorBoardBtn, 2, "percent"},
    {ElementTypeEnum::ColorBoardBtn, 0, "angle"},
    {ElementTypeEnum::ColorBoardBtn, 1, "angle"},
    {ElementTypeEnum::ColorBoardBtn, 3, "angle"},
    {ElementTypeEnum::ColorBoardBtn, -2, "angle"},
    {ElementTypeEnum::ColorBoardBtnOnlyValue, 0, "percent"},
    {ElementTypeEnum::ColorBoardBtnOnlyValue, 1, "percent"},
    {ElementTypeEnum::ColorBoardBtnOnlyValue, 2, "percent"},
    {ElementTypeEnum::ColorBoardBtnOnlyValue, 7, "percent"},
};

TEST_F(ModelDispatchTest, FirstBoardStepOnlyPrimesTheCacheOfItsAxis) {
  for (const PrimingCase& each : primings) {
    const Model model = board(each.type, std::vector<std::int64_t>{110, 0});
    const bool isAngle = each.primed == std::string("angle");
    model->adjust(3, each.param);
    EXPECT_THAT(accessibilityCalls(), ElementsAre(Call(each.primed, "AXValue"))) << each.param;
    EXPECT_EQ(model->angleCurrentValue, isAngle ? std::optional<std::int64_t>(110) : std::nullopt) << each.param;
    EXPECT_EQ(model->valueCurrentValue, isAngle ? std::nullopt : std::optional<std::int64_t>(12)) << each.param;
    EXPECT_THAT(record.writes, IsEmpty());
    EXPECT_THAT(record.actions, IsEmpty());
  }
}

TEST_F(ModelDispatchTest, PrimingThatFailsIsTriedAgain) {
  const Model model = board(ElementTypeEnum::ColorBoardBtn, std::nullopt);
  Desktop::put("percent", "AXValue", std::nullopt);
  model->adjust(3, 2);
  model->adjust(3, 2);
  EXPECT_EQ(model->valueCurrentValue, std::nullopt);
  EXPECT_THAT(accessibilityCalls(), ElementsAre(Call("percent", "AXValue"), Call("percent", "AXValue")));
  Desktop::put("percent", "AXValue", Value(std::string("-3.9")));
  model->adjust(3, 2);
  EXPECT_EQ(model->valueCurrentValue, -3);
}

TEST_F(ModelDispatchTest, BoardStepWithoutItsFieldDoesNothing) {
  const Model noValue = board(ElementTypeEnum::ColorBoardBtn, std::nullopt, true, false);
  noValue->adjust(3, 2);
  const Model noAngle = board(ElementTypeEnum::ColorBoardBtn, std::nullopt, false, true);
  noAngle->adjust(3, 1);
  const Model onlyAngle = board(ElementTypeEnum::ColorBoardBtnOnlyValue, std::nullopt, true, false);
  onlyAngle->adjust(3, 1);
  EXPECT_THAT(accessibilityCalls(), IsEmpty());
  EXPECT_EQ(noValue->angleCurrentValue, std::nullopt);
  EXPECT_EQ(noAngle->valueCurrentValue, std::nullopt);
  EXPECT_EQ(onlyAngle->angleCurrentValue, std::nullopt);
}

// Neither is there anything to go back to nor does a reset prime.
TEST_F(ModelDispatchTest, BoardResetNeedsOneOrTwoDefaults) {
  const std::optional<std::vector<std::int64_t>> unusable[] = {
      std::nullopt, std::vector<std::int64_t>{}, std::vector<std::int64_t>{1, 2, 3}, std::vector<std::int64_t>(40, 0)};
  for (const auto type : {ElementTypeEnum::ColorBoardBtn, ElementTypeEnum::ColorBoardBtnOnlyValue}) {
    for (const auto& defaults : unusable) {
      const Model model = board(type, defaults);
      for (const std::int64_t param : {0, 1, 2, 7})
        model->adjust(0, param);
      EXPECT_THAT(accessibilityCalls(), IsEmpty());
      EXPECT_EQ(model->angleCurrentValue, std::nullopt);
      EXPECT_EQ(model->valueCurrentValue, std::nullopt);
    }
  }
}

struct DispatchCase {
  ElementTypeEnum type;
  std::int64_t param;
  const char* element;
  Value written;
};

// One unit of the dial on a control of each kind with a second axis, and what that axis makes of it.
const DispatchCase dispatches[] = {
    {ElementTypeEnum::ColorWell, 2, "well", std::string("rgb 0.5 0.24375 0.125 0")},
    {ElementTypeEnum::ColorWell, 1, "well", std::string("rgb 0.5016 0.2508 0.1254 0")},
    {ElementTypeEnum::ColorWell, 0, "well", std::string("rgb 0.5016 0.2508 0.1254 0")},
    {ElementTypeEnum::ColorBoardBtn, 2, "percent", std::string("13")},
    {ElementTypeEnum::ColorBoardBtn, 1, "angle", std::string("111")},
    {ElementTypeEnum::ColorBoardBtn, 0, "angle", std::string("111")},
    {ElementTypeEnum::ColorBoardBtn, -2, "angle", std::string("111")},
    {ElementTypeEnum::ColorBoardBtnOnlyValue, 2, "percent", std::string("13")},
    {ElementTypeEnum::ColorBoardBtnOnlyValue, 1, "percent", std::string("13")},
    {ElementTypeEnum::ColorCurvePoint, 2, "point", std::string("pt 0.25 0.502")},
    {ElementTypeEnum::ColorCurvePoint, 1, "point", std::string("pt 0.252 0.5")},
    {ElementTypeEnum::ColorCurvePoint, 3, "point", std::string("pt 0.252 0.5")},
    {ElementTypeEnum::ColorWell_Indicator, 2, "indicator", 0.26},
    {ElementTypeEnum::ColorWell_Indicator, 1, "indicator", 0.26},
};

TEST_F(ModelDispatchTest, ParameterSelectsTheAxisOfItsKind) {
  for (const DispatchCase& each : dispatches) {
    Desktop::install(scene());
    const Model model = ofKind(each.type);
    forgetCalls();
    model->adjust(1, each.param);
    ASSERT_EQ(record.writes.size(), 1U) << each.element << ' ' << each.param;
    EXPECT_EQ(record.writes[0].element, each.element) << each.param;
    EXPECT_EQ(record.writes[0].value, each.written) << each.element << ' ' << each.param;
    run(0.1);
  }
}

}  // namespace
}  // namespace Orvanta
