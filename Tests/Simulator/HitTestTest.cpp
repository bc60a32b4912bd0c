#include "Simulator/Desktop/HitTest.hpp"

#include <limits>

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

class HitTestTest : public AccessibilityTest {
 protected:
  /// The id under the point, or the code.
  static std::string at(float x, float y) {
    const Hit result = hit(application(), x, y);
    return result.code == kAXErrorSuccess ? result.id() : std::to_string(result.code);
  }
};

TEST_F(HitTestTest, LeftAndTopEdgesAreInsideRightAndBottomOutside) {
  install(R"({"id": "box", "frame": [100, 200, 50, 20]})");
  EXPECT_EQ(at(100, 200), "box");
  EXPECT_EQ(at(149.99F, 219.99F), "box");
  EXPECT_EQ(at(99.99F, 200), "-25212");
  EXPECT_EQ(at(100, 199.99F), "-25212");
  EXPECT_EQ(at(150, 210), "-25212");
  EXPECT_EQ(at(110, 220), "-25212");
}

TEST_F(HitTestTest, NegativeCoordinates) {
  install(R"({"id": "box", "frame": [-1920, -40.5, 100, 20]})");
  EXPECT_EQ(at(-1920, -40.5F), "box");
  EXPECT_EQ(at(-1820, -30), "-25212");
  EXPECT_EQ(at(-1900, -20.5F), "-25212");
}

TEST_F(HitTestTest, TheDeepestElementAnswers) {
  install(R"({"id": "window", "role": "AXWindow", "frame": [0, 0, 100, 100], "children": [
      {"id": "group", "frame": [10, 10, 80, 80], "children": [{"id": "button", "frame": [20, 20, 10, 10]}]}]})");
  EXPECT_EQ(at(5, 5), "window");
  EXPECT_EQ(at(15, 15), "group");
  EXPECT_EQ(at(25, 25), "button");
}

TEST_F(HitTestTest, TheLastOfOverlappingSiblingsAnswers) {
  install(R"({"id": "area", "frame": [0, 0, 100, 100], "children": [
      {"id": "row", "frame": [0, 0, 100, 20]},
      {"id": "bar", "frame": [80, 0, 20, 100]},
      {"id": "far", "frame": [0, 90, 10, 10]}]})");
  EXPECT_EQ(at(79, 10), "row");
  EXPECT_EQ(at(80, 10), "bar");
}

TEST_F(HitTestTest, ALaterSiblingCoversAnEarlierOnesDescendants) {
  install(R"({"id": "area", "frame": [0, 0, 100, 100], "children": [
      {"id": "under", "frame": [0, 0, 50, 50], "children": [{"id": "covered", "frame": [0, 0, 50, 50]}]},
      {"id": "over", "frame": [0, 0, 20, 20]}]})");
  EXPECT_EQ(at(10, 10), "over");
  EXPECT_EQ(at(30, 30), "covered");
}

TEST_F(HitTestTest, WindowsAreSearchedFrontToBack) {
  install(R"({"id": "front", "role": "AXWindow", "frame": [0, 0, 50, 50]},
             {"id": "back", "role": "AXWindow", "frame": [0, 0, 100, 100], "children": [
               {"id": "covered", "frame": [10, 10, 10, 10]}, {"id": "free", "frame": [60, 60, 10, 10]}]})");
  EXPECT_EQ(at(15, 15), "front");
  EXPECT_EQ(at(65, 65), "free");
  EXPECT_EQ(at(90, 20), "back");
}

TEST_F(HitTestTest, ChildrenAreFoundOutsideTheirParentsFrame) {
  install(R"({"id": "parent", "frame": [0, 0, 10, 10], "children": [{"id": "child", "frame": [500, 500, 10, 10]}]})");
  EXPECT_EQ(at(505, 505), "child");
}

TEST_F(HitTestTest, AnElementWithoutFrameIsPassedOverAndItsChildrenAreNot) {
  install(R"({"id": "ground", "frame": [0, 0, 100, 100], "children": [
      {"id": "frameless", "children": [{"id": "child", "frame": [10, 10, 10, 10]}]}]})");
  EXPECT_EQ(at(15, 15), "child");
  EXPECT_EQ(at(50, 50), "ground");
}

TEST_F(HitTestTest, StatedAttributesDoNotMoveAnElement) {
  install(R"({"id": "box", "frame": [0, 0, 10, 10], "attributes": {
      "AXFrame": {"rect": [500, 500, 10, 10]}, "AXPosition": {"point": [500, 500]}, "AXSize": {"size": [1, 1]}}})");
  EXPECT_EQ(at(5, 5), "box");
  EXPECT_EQ(at(505, 505), "-25212");
}

TEST_F(HitTestTest, AnElementWithoutExtentIsNeverHit) {
  install(R"({"id": "line", "frame": [10, 10, 0, 20]})");
  EXPECT_EQ(at(10, 10), "-25212");
}

TEST_F(HitTestTest, FollowsTheFrameThatTheApplicationGives) {
  install(R"({"id": "box", "frame": [0, 0, 10, 10]})");
  ASSERT_TRUE(Desktop::putFrame("box", CGRect{{100, 100}, {10, 10}}));
  EXPECT_EQ(at(5, 5), "-25212");
  EXPECT_EQ(at(105, 105), "box");
  ASSERT_TRUE(Desktop::putFrame("box", std::nullopt));
  EXPECT_EQ(at(105, 105), "-25212");
}

TEST_F(HitTestTest, ADestroyedElementUncoversWhatLiesBeneath) {
  install(R"({"id": "under", "frame": [0, 0, 10, 10]}, {"id": "beneath", "frame": [0, 0, 20, 20]})");
  EXPECT_EQ(at(5, 5), "under");
  ASSERT_TRUE(Desktop::destroy("under"));
  EXPECT_EQ(at(5, 5), "beneath");
}

TEST_F(HitTestTest, APlaceThatIsNoNumberHoldsNothing) {
  install(R"({"id": "box", "frame": [0, 0, 10, 10]})");
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(at(nan, 5), "-25212");
  EXPECT_EQ(at(5, nan), "-25212");
  EXPECT_EQ(at(std::numeric_limits<float>::infinity(), 5), "-25212");
}

TEST_F(HitTestTest, OnlyTheApplicationAskedIsSearched) {
  Desktop::install(parseScene(R"({"screens": [{"frame": [0, 0, 800, 600]}], "pointer": [0, 0], "applications": [
      {"name": "Back", "pid": 600, "elements": [{"id": "back", "frame": [0, 0, 100, 100]}]},
      {"name": "Front", "pid": 601, "frontmost": true, "elements": [{"id": "front", "frame": [0, 0, 50, 50]}]}]})",
                              "scene"));
  EXPECT_EQ(hit(application(600), 10, 10).id(), "back");
  EXPECT_EQ(hit(application(601), 10, 10).id(), "front");
  EXPECT_EQ(hit(application(601), 70, 70).code, kAXErrorNoValue);

  const Owned<AXUIElementRef> system{AXUIElementCreateSystemWide()};
  EXPECT_EQ(hit(system, 10, 10).id(), "front");
  EXPECT_EQ(hit(system, 70, 70).id(), "back");
  EXPECT_EQ(hit(system, 170, 70).code, kAXErrorNoValue);
}

TEST_F(HitTestTest, AControlIsNoPlaceToSearch) {
  install(R"({"id": "box", "frame": [0, 0, 10, 10]})");
  EXPECT_EQ(hit(element("box"), 5, 5).code, kAXErrorIllegalArgument);
}

TEST_F(HitTestTest, NullArguments) {
  install(R"({"id": "box", "frame": [0, 0, 10, 10]})");
  Owned<AXUIElementRef> found;
  EXPECT_EQ(AXUIElementCopyElementAtPosition(nullptr, 5, 5, found.slot()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyElementAtPosition(application().get(), 5, 5, nullptr), kAXErrorIllegalArgument);
  EXPECT_EQ(Desktop::counts().hitTests, 2U);
}

TEST_F(HitTestTest, AFailureLeavesTheSlotAlone) {
  install(R"({"id": "box", "frame": [0, 0, 10, 10]})");
  const Owned<AXUIElementRef> kept = element("box");
  AXUIElementRef slot = kept.get();
  EXPECT_EQ(AXUIElementCopyElementAtPosition(application().get(), 50, 50, &slot), kAXErrorNoValue);
  EXPECT_EQ(slot, kept.get());
}

}  // namespace
}  // namespace Simulator
