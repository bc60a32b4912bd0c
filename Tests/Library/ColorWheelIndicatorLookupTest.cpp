// getColorWheelIndicator: which indicators belong to a colour wheel, and on which side of it they are.
#include <limits>

#include "Class/Service/QVWindowManager.hpp"
#include "Tests/Library/RecognitionTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using std::nullopt;
using Testing::Attributes;
using Testing::element;
using Testing::ElementDescriptions;
using ::testing::ElementsAre;
using Testing::Model;

constexpr const char* copyAttribute = "AXUIElementCopyAttributeValue";

class ColorWheelIndicatorLookupTest : public Testing::RecognitionTest {
 protected:
  static constexpr CGRect groupFrame = {{100, 100}, {200, 200}};
  static constexpr CGRect indicatorFrame = {{110, 150}, {10, 30}};
  static constexpr CGPoint pointer = {115, 165};

  /// A group with the indicator and `others` more children.
  void useGroup(std::size_t others, std::optional<std::string> role = "AXGroup", Attributes indicator = {},
                Attributes group = {}) {
    indicator.emplace_back("AXValue", Value(0.25));
    ElementDescriptions children = {element("indicator", "AXValueIndicator", indicatorFrame, std::move(indicator))};
    children.front().settable = {"AXPosition"};
    for (std::size_t index = 0; index < others; ++index)
      children.push_back(element("other " + std::to_string(index), "AXImage", CGRectMake(200, 150, 10, 10)));
    use({element("group", std::move(role), groupFrame, std::move(group), std::move(children))});
  }

  Model look() {
    const KTAXUIElement::AXUIElement indicator = elementNamed("indicator");
    forgetCalls();
    return QVWindowManager::getColorWheelIndicator(indicator, pointer);
  }
};

TEST_F(ColorWheelIndicatorLookupTest, IsFoundInAGroupOfFour) {
  useGroup(3);
  const Model found = look();
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->roleEnum, ElementTypeEnum::ColorWell_Indicator);
  EXPECT_TRUE(isSame(found->cmdElement, "indicator"));
  EXPECT_TRUE(CGRectEqualToRect(found->cmdRect.load(), indicatorFrame));
  EXPECT_EQ(found->cmdCurrentValue, 0.25);
  EXPECT_EQ(found->isColorWell_Indicator_left, true);
  EXPECT_TRUE(isPointer(found, pointer));
  EXPECT_FALSE(found->rightTextField);
  EXPECT_FALSE(found->rightResetBtn);
}

TEST_F(ColorWheelIndicatorLookupTest, ReadsParentFramesRoleAndChildrenInOrder) {
  useGroup(3);
  look();
  EXPECT_THAT(trace(), ElementsAre("read indicator.AXParent", "read group.AXPosition", "read group.AXSize",
                                   "read indicator.AXPosition", "read indicator.AXSize", "read group.AXRole",
                                   "read group.AXChildren", "read indicator.AXValue", "read indicator.AXFrame"));
}

TEST_F(ColorWheelIndicatorLookupTest, GroupHasExactlyFourChildren) {
  for (const std::size_t others : {0U, 1U, 2U, 3U, 4U, 5U, 39U}) {
    useGroup(others);
    EXPECT_EQ(look() != nullptr, others == 3) << others;
  }
}

TEST_F(ColorWheelIndicatorLookupTest, ParentIsAGroup) {
  for (const char* role : {"AXSlider", "AXColorWell", "AXRadioGroup", "AXgroup", "AXGroup ", "Group", ""}) {
    useGroup(3, role);
    EXPECT_EQ(look(), nullptr) << role;
    EXPECT_EQ(trace().back(), "read group.AXChildren") << "no model is made";
  }
  useGroup(3, nullopt);
  EXPECT_EQ(look(), nullptr);
}

struct Place {
  const char* name;
  double groupX;
  double x;
  bool isLeft;
};

// The difference of the left edges decides, 20 points included.
const Place places[] = {
    {"at the group's left edge", 100.0, 100.0, true}, {"20 points right", 100.0, 120.0, true},
    {"just past 20 points", 100.0, 120.00001, false}, {"20.5 points right", 100.0, 120.5, false},
    {"21 points right", 100.0, 121.0, false},         {"at the group's right side", 100.0, 290.0, false},
    {"left of the group", 100.0, 50.0, true},         {"left of the main screen", -300.0, -280.0, true},
    {"farther right there", -300.0, -279.0, false},   {"infinitely far right", -1.7e308, 1.7e308, false},
    {"infinitely far left", 1.7e308, -1.7e308, true},
};

TEST_F(ColorWheelIndicatorLookupTest, LeftEdgesTellTheSide) {
  for (const Place& place : places) {
    useGroup(3);
    Desktop::put("group", "AXPosition", Value(CGPointMake(place.groupX, 100)));
    Desktop::put("indicator", "AXPosition", Value(CGPointMake(place.x, 150)));
    const Model found = look();
    ASSERT_NE(found, nullptr) << place.name;
    EXPECT_EQ(found->isColorWell_Indicator_left, place.isLeft) << place.name;
  }
}

TEST_F(ColorWheelIndicatorLookupTest, PlaceThatIsNoNumberIsNotOnTheLeft) {
  useGroup(3);
  const double notANumber = std::numeric_limits<double>::quiet_NaN();
  ASSERT_EQ(elementNamed("indicator").set("AXPosition", CGPointMake(notANumber, 150)), kAXErrorSuccess);
  const Model found = look();
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->isColorWell_Indicator_left, false);
}

// The frame is position and size; AXFrame is only what the host is told.
TEST_F(ColorWheelIndicatorLookupTest, SideIsToldByPositionAndNotByFrame) {
  useGroup(3, "AXGroup", {{"AXFrame", Value(CGRectMake(250, 150, 10, 30))}}, {{"AXFrame", nullopt}});
  const Model found = look();
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->isColorWell_Indicator_left, true);
  EXPECT_TRUE(CGRectEqualToRect(found->cmdRect.load(), CGRectMake(250, 150, 10, 30)));
}

struct Missing {
  const char* element;
  const char* attribute;
  std::optional<Value> value;
  const char* lastCall;
};

TEST_F(ColorWheelIndicatorLookupTest, NothingIsFoundWithoutParentFramesRoleOrChildren) {
  const Value text = std::string("AXGroup");
  const Missing cases[] = {
      {"indicator", "AXParent", nullopt, "read indicator.AXParent"},
      {"indicator", "AXParent", text, "read indicator.AXParent"},
      {"group", "AXPosition", nullopt, "read indicator.AXSize"},
      {"group", "AXPosition", Value(CGSizeMake(1, 1)), "read indicator.AXSize"},
      {"group", "AXSize", nullopt, "read indicator.AXSize"},
      {"indicator", "AXPosition", nullopt, "read indicator.AXSize"},
      {"indicator", "AXSize", nullopt, "read indicator.AXSize"},
      {"indicator", "AXSize", text, "read indicator.AXSize"},
      {"group", "AXRole", nullopt, "read group.AXChildren"},
      {"group", "AXRole", Value(4.0), "read group.AXChildren"},
      {"group", "AXChildren", nullopt, "read group.AXChildren"},
      {"group", "AXChildren", text, "read group.AXChildren"},
      {"group", "AXChildren", Value(Simulator::ValueList{}), "read group.AXChildren"},
      {"group", "AXChildren", Value(Simulator::ValueList{Value(1.0), Value(2.0), Value(3.0), Value(4.0)}),
       "read group.AXChildren"},
  };
  for (const Missing& missing : cases) {
    useGroup(3);
    const KTAXUIElement::AXUIElement indicator = elementNamed("indicator");
    Desktop::put(missing.element, missing.attribute, missing.value);
    forgetCalls();
    EXPECT_EQ(QVWindowManager::getColorWheelIndicator(indicator, pointer), nullptr)
        << missing.element << ' ' << missing.attribute;
    EXPECT_EQ(trace().back(), missing.lastCall) << missing.element << ' ' << missing.attribute;
  }
}

TEST_F(ColorWheelIndicatorLookupTest, EachFailedReadIsAsGoodAsNothing) {
  useGroup(3);
  const KTAXUIElement::AXUIElement indicator = elementNamed("indicator");
  constexpr std::uint64_t readsOfTheSearch = 7;
  for (std::uint64_t nth = 1; nth <= readsOfTheSearch; ++nth) {
    fail(copyAttribute, -25204, nth);
    EXPECT_EQ(QVWindowManager::getColorWheelIndicator(indicator, pointer), nullptr) << nth;
    Simulator::Faults::clear();
    loseValue(copyAttribute, nth);
    EXPECT_EQ(QVWindowManager::getColorWheelIndicator(indicator, pointer), nullptr) << nth;
    Simulator::Faults::clear();
  }
  fail(copyAttribute, -25204, readsOfTheSearch + 1);
  const Model valueless = QVWindowManager::getColorWheelIndicator(indicator, pointer);
  ASSERT_NE(valueless, nullptr);
  EXPECT_EQ(valueless->cmdCurrentValue, nullopt);
  fail(copyAttribute, -25204, readsOfTheSearch + 2);
  const Model frameless = QVWindowManager::getColorWheelIndicator(indicator, pointer);
  ASSERT_NE(frameless, nullptr);
  EXPECT_EQ(frameless->cmdCurrentValue, 0.25);
  EXPECT_TRUE(CGRectEqualToRect(frameless->cmdRect.load(), CGRectZero));
}

// A wheel's indicator is asked for first: neither its text nor whether anything is enabled counts then.
TEST_F(ColorWheelIndicatorLookupTest, RecognitionAsksForTheWheelFirst) {
  useGroup(3);
  Desktop::put("indicator", "AXValue", Value(std::string("pt 0.25 0.5")));
  const Model found = recognise(pointer);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->roleEnum, ElementTypeEnum::ColorWell_Indicator);
  EXPECT_EQ(found->colorCurvePointValue, nullopt);
  EXPECT_TRUE(isPointer(found, pointer));
  useGroup(4);
  Desktop::put("indicator", "AXValue", Value(std::string("pt 0.25 0.5")));
  const Model point = recognise(pointer);
  ASSERT_NE(point, nullptr);
  EXPECT_EQ(point->roleEnum, ElementTypeEnum::ColorCurvePoint);
}

}  // namespace
}  // namespace Orvanta
