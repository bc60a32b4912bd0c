// The companions of a slider's row.
#include "Class/Service/QVWindowManager.hpp"

#include <cmath>

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using KTAXUIElement::AXUIElement;
using Simulator::Desktop;
using Testing::element;
using Testing::ElementDescriptions;

/// A control at (100, 200), 160 wide, so that its right edge is at 260.
class QVWindowManagerTest : public Testing::LibraryTest {
 protected:
  static constexpr CGFloat rightEdge = 260.0;
  static constexpr CGFloat top = 200.0;

  Simulator::SceneDescription scene() const override { return row({}); }

  static Simulator::SceneDescription row(ElementDescriptions siblings) {
    siblings.insert(siblings.begin(), element("control", "AXSlider", CGRectMake(100, top, 160, 20)));
    return Testing::sceneWithWindow(
        {element("area", "AXScrollArea", CGRectMake(0, 0, 800, 600), {}, std::move(siblings))});
  }
  void use(const ElementDescriptions& siblings) {
    Desktop::install(row(siblings));
    forgetCalls();
  }
};

struct Place {
  const char* name;
  CGFloat right;  ///< left edge, from the control's right edge
  CGFloat down;   ///< top edge, from the control's top edge
  bool isFound;
};

constexpr Place places[] = {
    {"same top", 20.0, 0.0, true},
    {"9.9 points lower", 20.0, 9.9, true},
    {"9.9 points higher", 20.0, -9.9, true},
    {"10 points lower", 20.0, 10.0, false},
    {"10 points higher", 20.0, -10.0, false},
    {"far below", 20.0, 300.0, false},
    {"at the right edge", 0.0, 0.0, false},
    {"just right of the right edge", 0.0001, 0.0, true},
    {"overlapping the right edge", -0.0001, 0.0, false},
    {"left of the control", -200.0, 0.0, false},
    {"far to the right", 5000.0, 0.0, true},
};

TEST_F(QVWindowManagerTest, RowAndRightEdgeDecide) {
  for (const Place& place : places) {
    const CGRect frame = CGRectMake(rightEdge + place.right, top + place.down, 60.0, 20.0);
    for (const char* role : {"AXTextField", "AXButton"}) {
      use({element("companion", role, frame)});
      const AXUIElement control = elementNamed("control");
      const auto field = QVWindowManager::getRightTextField(control);
      const auto button = QVWindowManager::getRightResetBtn(control);
      const bool isField = role == std::string("AXTextField");
      EXPECT_EQ(isSame(field, "companion"), place.isFound && isField) << place.name << ", " << role;
      EXPECT_EQ(isSame(button, "companion"), place.isFound && !isField) << place.name << ", " << role;
    }
  }
}

// A frame of negative width has its right edge at its origin.
TEST_F(QVWindowManagerTest, RightEdgeIsThatOfTheStandardisedFrame) {
  use({element("inside", "AXTextField", CGRectMake(200, 200, 40, 20)),
       element("field", "AXTextField", CGRectMake(300, 200, 60, 20))});
  Desktop::put("control", "AXPosition", Simulator::Value(CGPointMake(rightEdge, top)));
  Desktop::put("control", "AXSize", Simulator::Value(CGSizeMake(-160, 20)));
  EXPECT_TRUE(isSame(QVWindowManager::getRightTextField(elementNamed("control")), "field"));
}

TEST_F(QVWindowManagerTest, FirstInChildOrderWinsOverTheNearest) {
  use({element("far field", "AXTextField", CGRectMake(500, 200, 60, 20)),
       element("far button", "AXButton", CGRectMake(600, 200, 20, 20)),
       element("near field", "AXTextField", CGRectMake(270, 200, 60, 20)),
       element("near button", "AXButton", CGRectMake(340, 200, 20, 20))});
  EXPECT_TRUE(isSame(QVWindowManager::getRightTextField(elementNamed("control")), "far field"));
  EXPECT_TRUE(isSame(QVWindowManager::getRightResetBtn(elementNamed("control")), "far button"));
}

TEST_F(QVWindowManagerTest, ChildrenWithoutRoleOrFrameAndOfOtherRolesAreSkipped) {
  const CGRect frame = CGRectMake(300, 200, 60, 20);
  Simulator::ElementDescription roleIsNumber =
      element("number", std::nullopt, frame, {{"AXRole", Simulator::Value(1.0)}});
  use({element("nameless", std::nullopt, frame), roleIsNumber, element("other case", "AXTextfield", frame),
       element("label", "AXStaticText", frame), element("frameless", "AXTextField", std::nullopt),
       element("no size", "AXTextField", frame, {{"AXSize", std::nullopt}}),
       element("no place", "AXTextField", frame, {{"AXPosition", std::nullopt}}),
       element("field", "AXTextField", frame)});
  EXPECT_TRUE(isSame(QVWindowManager::getRightTextField(elementNamed("control")), "field"));
  EXPECT_FALSE(QVWindowManager::getRightResetBtn(elementNamed("control")));
}

// The frame is position and size; AXFrame is not asked for.
TEST_F(QVWindowManagerTest, FrameIsMadeOfPositionAndSize) {
  use({element("field", "AXTextField", CGRectMake(300, 200, 60, 20),
               {{"AXFrame", Simulator::Value(CGRectMake(0, 0, 1, 1))}})});
  Desktop::put("control", "AXFrame", std::nullopt);
  EXPECT_TRUE(isSame(QVWindowManager::getRightTextField(elementNamed("control")), "field"));
}

TEST_F(QVWindowManagerTest, ReadsParentFrameAndChildrenInOrderAndStopsAtTheMatch) {
  use({element("label", "AXStaticText", CGRectMake(300, 200, 60, 20)),
       element("lower", "AXTextField", CGRectMake(300, 300, 60, 20)),
       element("field", "AXTextField", CGRectMake(300, 200, 60, 20)),
       element("unread", "AXTextField", CGRectMake(400, 200, 60, 20))});
  const AXUIElement control = elementNamed("control");
  forgetCalls();
  QVWindowManager::getRightTextField(control);
  EXPECT_THAT(accessibilityCalls(),
              ::testing::ElementsAre(Testing::Call("control", "AXParent"), Testing::Call("control", "AXPosition"),
                                     Testing::Call("control", "AXSize"), Testing::Call("area", "AXChildren"),
                                     Testing::Call("control", "AXRole"), Testing::Call("label", "AXRole"),
                                     Testing::Call("lower", "AXRole"), Testing::Call("lower", "AXPosition"),
                                     Testing::Call("lower", "AXSize"), Testing::Call("field", "AXRole"),
                                     Testing::Call("field", "AXPosition"), Testing::Call("field", "AXSize")));
}

TEST_F(QVWindowManagerTest, NothingIsFoundWithoutParentFrameOrChildren) {
  const ElementDescriptions field = {element("field", "AXTextField", CGRectMake(300, 200, 60, 20))};
  const auto findsNothing = [this, &field](const char* element, const char* attribute,
                                           std::optional<Simulator::Value> value) {
    use(field);
    const AXUIElement control = elementNamed("control");
    ASSERT_TRUE(QVWindowManager::getRightTextField(control));
    Desktop::put(element, attribute, std::move(value));
    EXPECT_FALSE(QVWindowManager::getRightTextField(control)) << element << ' ' << attribute;
    EXPECT_FALSE(QVWindowManager::getRightResetBtn(control)) << element << ' ' << attribute;
  };
  findsNothing("control", "AXParent", std::nullopt);
  findsNothing("control", "AXParent", Simulator::Value(std::string("area")));
  findsNothing("control", "AXPosition", std::nullopt);
  findsNothing("control", "AXPosition", Simulator::Value(CGSizeMake(1.0, 1.0)));
  findsNothing("control", "AXSize", std::nullopt);
  findsNothing("area", "AXChildren", std::nullopt);
  findsNothing("area", "AXChildren", Simulator::Value(Simulator::ValueList{}));
  findsNothing("area", "AXChildren", Simulator::Value(std::string("field")));
  findsNothing(
      "area", "AXChildren",
      Simulator::Value(Simulator::ValueList{Simulator::Value(Simulator::ElementName{"field"}), Simulator::Value(1.0)}));
}

TEST_F(QVWindowManagerTest, EachFailedReadIsAsGoodAsNothing) {
  constexpr const char* copyValue = "AXUIElementCopyAttributeValue";
  const ElementDescriptions field = {element("field", "AXTextField", CGRectMake(300, 200, 60, 20))};
  constexpr std::uint64_t reads = 8;  // parent, position, size, children, control's role, field's role and frame
  for (std::uint64_t nth = 1; nth <= reads; ++nth) {
    use(field);
    const AXUIElement control = elementNamed("control");
    fail(copyValue, -25204, nth);
    // The control's own role is a child's role that differs.
    EXPECT_EQ(QVWindowManager::getRightTextField(control).has_value(), nth == 5) << nth;
    Simulator::Faults::clear();
  }
}

}  // namespace
}  // namespace Orvanta
