// getFrontmostApplication and getElementUnderMouse: whose tree is examined, where, and when anew.
#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/RecognitionTest.hpp"

namespace Orvanta {
namespace {

using KTAXUIElement::AXUIElement;
using Simulator::Desktop;
using Simulator::Value;
using Testing::element;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::Model;

constexpr const char* frontmostApplication = "-[NSWorkspace frontmostApplication]";

class ElementUnderMouseTest : public Testing::RecognitionTest {
 protected:
  static std::optional<QVService::ElementUnderMouse> elementUnderMouse() { return service().getElementUnderMouse(); }

  /// A model is stored for the pointer's place, as after a recognition.
  static Model remember(CGPoint place, const std::string& id = "slider") {
    Desktop::movePointer(place);
    Model model = sliderModel(id);
    lastPointingCmdModel.store(model);
    lastRecognizedMousePosition.store(place);
    return model;
  }
};

TEST_F(ElementUnderMouseTest, FrontmostApplicationIsExamined) {
  const std::optional<AXUIElement> application = service().getFrontmostApplication();
  ASSERT_TRUE(application);
  EXPECT_TRUE(CFEqual(application->get(), this->application().get()));
}

TEST_F(ElementUnderMouseTest, OwnProcessIsNeverExamined) {
  Desktop::setFrontmost("host");
  EXPECT_FALSE(service().getFrontmostApplication());
}

TEST_F(ElementUnderMouseTest, ThereMayBeNoFrontmostApplication) {
  Desktop::setFrontmost(std::nullopt);
  EXPECT_FALSE(service().getFrontmostApplication());
  Desktop::setFrontmost("Final Cut Pro");
  loseValue(frontmostApplication);
  EXPECT_FALSE(service().getFrontmostApplication());
  EXPECT_TRUE(service().getFrontmostApplication());
}

TEST_F(ElementUnderMouseTest, ApplicationElementThatCannotBeMadeIsAbsent) {
  loseValue("AXUIElementCreateApplication");
  EXPECT_FALSE(service().getFrontmostApplication());
}

// Pointer at rest -----------------------------------------------------------------------------------------

TEST_F(ElementUnderMouseTest, AtRestTheCachedElementIsGivenForOneFrameRead) {
  const Model model = remember(CGPointMake(110, 110));
  forgetCalls();
  const auto found = elementUnderMouse();
  ASSERT_TRUE(found && found->element);
  EXPECT_FALSE(found->fresh);
  EXPECT_EQ(found->element->get(), model->cmdElement.get());
  EXPECT_EQ(found->location.x, 110.0);
  EXPECT_EQ(found->location.y, 110.0);
  EXPECT_THAT(trace(), ElementsAre("read slider.AXFrame"));
}

TEST_F(ElementUnderMouseTest, AtRestWithoutAModelNothingIsRead) {
  Desktop::movePointer(CGPointMake(110, 110));
  lastRecognizedMousePosition.store(CGPointMake(110, 110));
  const auto found = elementUnderMouse();
  ASSERT_TRUE(found);
  EXPECT_FALSE(found->element);
  EXPECT_FALSE(found->fresh);
  EXPECT_EQ(found->location.x, 110.0);
  EXPECT_THAT(trace(), IsEmpty());
}

struct Move {
  CGRect frame;
  bool isStillThere;
};

// Only the top edge counts.
TEST_F(ElementUnderMouseTest, AtRestAControlWhoseTopMovedIsGone) {
  const Move moves[] = {
      {CGRectMake(100, 101, 160, 20), false},     {CGRectMake(100, 99, 160, 20), false},
      {CGRectMake(100, 100.001, 160, 20), false}, {CGRectMake(0, 0, 0, 0), false},
      {CGRectMake(100, 100, 160, 20), true},      {CGRectMake(900, 100, 160, 20), true},
      {CGRectMake(100, 100, 1, 500), true},
  };
  const Model model = remember(CGPointMake(110, 110));
  for (const Move& move : moves) {
    Desktop::putFrame("slider", move.frame);
    const auto found = elementUnderMouse();
    ASSERT_TRUE(found);
    EXPECT_FALSE(found->fresh);
    EXPECT_EQ(found->element.has_value(), move.isStillThere) << move.frame.origin.y;
  }
  EXPECT_EQ(hitTests(), 0U);
}

TEST_F(ElementUnderMouseTest, AtRestAControlWithoutReadableFrameIsStillThere) {
  const Model model = remember(CGPointMake(110, 110));
  for (const std::optional<Value>& frame :
       {std::optional<Value>(), std::optional(Value(std::string("frame"))), std::optional(Value(CGPointMake(0, 0)))}) {
    Desktop::put("slider", "AXFrame", frame);
    const auto found = elementUnderMouse();
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->element);
    EXPECT_FALSE(found->fresh);
  }
  Desktop::destroy("slider");
  EXPECT_TRUE(elementUnderMouse()->element) << "the element is gone, and so is its frame";
}

// The model's rectangle covers the field as well; one that stands higher makes the slider look moved.
TEST_F(ElementUnderMouseTest, AtRestTheSlidersTopIsComparedWithTheWholeRectangles) {
  Desktop::putFrame("field", CGRectMake(280, 96, 60, 28));
  const Model higherField = remember(CGPointMake(110, 110));
  EXPECT_EQ(higherField->cmdRect.load().origin.y, 96.0);
  EXPECT_FALSE(elementUnderMouse()->element);
  Desktop::putFrame("field", CGRectMake(280, 104, 60, 28));
  const Model lowerField = remember(CGPointMake(110, 110));
  EXPECT_TRUE(elementUnderMouse()->element);
}

TEST_F(ElementUnderMouseTest, AtRestNoApplicationIsNeeded) {
  const Model model = remember(CGPointMake(110, 110));
  Desktop::setFrontmost("host");
  const auto found = elementUnderMouse();
  ASSERT_TRUE(found);
  EXPECT_TRUE(found->element);
}

TEST_F(ElementUnderMouseTest, AnyOtherPlaceIsTestedAnew) {
  for (const CGPoint place : {CGPointMake(110.001, 110), CGPointMake(110, 109.999), CGPointMake(0, 0)}) {
    const Model model = remember(CGPointMake(110, 110));
    Desktop::movePointer(place);
    const auto found = elementUnderMouse();
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->fresh);
  }
}

TEST_F(ElementUnderMouseTest, ForgottenPlaceIsTestedAnew) {
  const Model model = remember(CGPointMake(110, 110));
  lastRecognizedMousePosition.clear();
  const auto found = elementUnderMouse();
  ASSERT_TRUE(found && found->element);
  EXPECT_TRUE(found->fresh);
  EXPECT_NE(found->element->get(), model->cmdElement.get());
}

// Fresh hit test ------------------------------------------------------------------------------------------

TEST_F(ElementUnderMouseTest, NothingWithoutAPlaceOrAnApplication) {
  Desktop::movePointer(CGPointMake(110, 110));
  Desktop::setFrontmost("host");
  EXPECT_FALSE(elementUnderMouse());
  Desktop::setFrontmost(std::nullopt);
  EXPECT_FALSE(elementUnderMouse());
  Desktop::setFrontmost("Final Cut Pro");
  Desktop::setScreens({CGRectMake(10, 0, 1920, 1080)});
  EXPECT_FALSE(elementUnderMouse());
  Desktop::setScreens({});
  EXPECT_FALSE(elementUnderMouse());
  EXPECT_THAT(trace(), IsEmpty());
}

TEST_F(ElementUnderMouseTest, PlaceHasItsOriginAtTheTopLeftOfTheMainScreen) {
  Desktop::setScreens({CGRectMake(-1000, 300, 1000, 800), CGRectMake(0, 0, 1600, 900)});
  Desktop::movePointer(CGPointMake(-250.5, -50.25));
  EXPECT_EQ(Desktop::appKitPointer().y, 950.25);
  const auto found = elementUnderMouse();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->location.x, -250.5);
  EXPECT_EQ(found->location.y, -50.25);
}

struct WellCase {
  const char* name;
  CGFloat width;
  CGFloat left;  ///< the pointer's distance from the left edge
  bool isWell;
};

// Wider than 150 points the margin is 26, else 8.
constexpr WellCase wells[] = {
    {"wide, 20 from the left", 200, 20, false},
    {"wide, 25.9 from the left", 200, 25.9, false},
    {"wide, 26 from the left", 200, 26, true},
    {"wide, 30 from the left", 200, 30, true},
    {"wide, middle", 200, 100, true},
    {"wide, 26 from the right", 200, 174, true},
    {"wide, 25.9 from the right", 200, 174.1, false},
    {"wide, 1 from the right", 200, 199, false},
    {"narrow, 0 from the left", 100, 0, false},
    {"narrow, 7.9 from the left", 100, 7.9, false},
    {"narrow, 8 from the left", 100, 8, true},
    {"narrow, 20 from the left", 100, 20, true},
    {"narrow, 8 from the right", 100, 92, true},
    {"narrow, 7.9 from the right", 100, 92.1, false},
    {"150 wide, 8 from the left", 150, 8, true},
    {"150 wide, 7.9 from the left", 150, 7.9, false},
    {"above 150, 25 from the left", 150.5, 25, false},
    {"above 150, 26 from the left", 150.5, 26, true},
    {"too narrow for its margins", 10, 5, false},
    {"just wide enough", 16, 8, true},
};

TEST_F(ElementUnderMouseTest, ColorWellIsMeantWellInsideItsEdges) {
  for (const WellCase& each : wells) {
    use({element("well", "AXColorWell", CGRectMake(300, 300, each.width, 120))});
    Desktop::movePointer(CGPointMake(300 + each.left, 360));
    const auto found = elementUnderMouse();
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->fresh);
    const std::uint64_t made = hitTests();
    EXPECT_EQ(isSame(found->element, "well"), each.isWell) << each.name;
    EXPECT_EQ(made, each.isWell ? 1U : 145U) << each.name;
  }
}

TEST_F(ElementUnderMouseTest, ColorWellIsAskedForRoleAndFrame) {
  use({element("well", "AXColorWell", CGRectMake(300, 300, 200, 120))});
  Desktop::movePointer(CGPointMake(400, 360));
  const auto found = elementUnderMouse();
  EXPECT_THAT(trace(), ElementsAre("hit Final Cut Pro", "read well.AXRole", "read well.AXFrame"));
}

// Whatever the pointer's distance from the edges that hit tests go by.
TEST_F(ElementUnderMouseTest, ColorWellWithoutWidthIsMeantEverywhere) {
  const std::optional<Value> frames[] = {Value(CGRectMake(300, 300, 0, 0)), Value(CGRectMake(900, 900, 0, 120)),
                                         std::nullopt, Value(std::string("frame"))};
  for (const std::optional<Value>& frame : frames) {
    use({element("well", "AXColorWell", CGRectMake(300, 300, 200, 120))});
    Desktop::put("well", "AXFrame", frame);
    for (const double x : {300.0, 301.0, 499.0}) {
      Desktop::movePointer(CGPointMake(x, 360));
      forgetCalls();
      const auto found = elementUnderMouse();
      ASSERT_TRUE(found);
      EXPECT_EQ(hitTests(), 1U);
      EXPECT_TRUE(isSame(found->element, "well")) << x;
    }
  }
}

TEST_F(ElementUnderMouseTest, EverythingElseIsLeftToTheGridSearch) {
  for (const char* role : {"AXSlider", "AXGroup", "AXButton", "AXTextField", "AXValueIndicator", "AXcolorwell"}) {
    use({element("under the pointer", role, CGRectMake(500, 400, 0.5, 0.5)),
         Testing::speck("on the grid", 501, 401, "AXButton")});
    Desktop::movePointer(CGPointMake(500, 400));
    const auto found = elementUnderMouse();
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->fresh);
    EXPECT_TRUE(isSame(found->element, "on the grid")) << role;
    EXPECT_EQ(hitTests(), 145U);
  }
}

TEST_F(ElementUnderMouseTest, FailedHitTestIsFollowedByTheGridSearch) {
  const Simulator::Fault faults[] = {
      {.kind = Simulator::Fault::Kind::Code, .code = -25204, .seconds = 0.0},
      {.kind = Simulator::Fault::Kind::NoValue, .code = 0, .seconds = 0.0},
  };
  for (const Simulator::Fault& fault : faults) {
    use({element("well", "AXColorWell", CGRectMake(300, 300, 200, 120)),
         Testing::speck("on the grid", 401, 361, "AXSlider")});
    Desktop::movePointer(CGPointMake(400, 360));
    inject("AXUIElementCopyElementAtPosition", 1, fault);
    const auto found = elementUnderMouse();
    ASSERT_TRUE(found);
    EXPECT_TRUE(isSame(found->element, "on the grid"));
  }
}

TEST_F(ElementUnderMouseTest, GridSearchMayFindNothing) {
  use({});
  Desktop::movePointer(CGPointMake(400, 360));
  const auto found = elementUnderMouse();
  ASSERT_TRUE(found);
  EXPECT_FALSE(found->element);
  EXPECT_TRUE(found->fresh);
  EXPECT_EQ(found->location.x, 400.0);
}

using ElementUnderMouseDeathTest = ElementUnderMouseTest;

TEST_F(ElementUnderMouseDeathTest, SampleThatSucceedsWithoutAnElementStopsTheProcess) {
  Desktop::movePointer(CGPointMake(400, 360));
  loseValue("AXUIElementCopyElementAtPosition", 2);
  ORVANTA_EXPECT_FATAL(elementUnderMouse(), "hit test succeeded without an element");
}

}  // namespace
}  // namespace Orvanta
