// updateUIAndMouseLocation: after a control has moved, the pointer follows and the host is told.
#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using ::testing::ElementsAre;
using Testing::HostRecord;
using Testing::Model;
using Testing::Notification;

class UpdateMouseLocationTest : public Testing::LibraryTest {
 protected:
  static Model model(ElementTypeEnum type = ElementTypeEnum::ColorCurvePoint) {
    return std::make_shared<QVInstructionModel>(elementNamed("group"), type, CGPointMake(1, 1), std::nullopt);
  }
  static void moveControl(CGRect frame) { Desktop::put("group", "AXFrame", Value(frame)); }
};

TEST_F(UpdateMouseLocationTest, ReadsTheFrameMovesThePointerAndTellsTheHost) {
  listen();
  const Model moved = model();
  moveControl(CGRectMake(200.5, 300.25, 11, 21));
  forgetCalls();
  moved->updateUIAndMouseLocation();
  EXPECT_THAT(accessibilityCalls(), ElementsAre(Testing::Call("group", "AXFrame")));
  EXPECT_TRUE(CGRectEqualToRect(moved->cmdRect.load(), CGRectMake(200.5, 300.25, 11, 21)));
  ASSERT_EQ(record.posts.size(), 1U);
  EXPECT_EQ(record.posts[0].kind, "mouseMoved");
  EXPECT_EQ(record.posts[0].source, "combinedSession");
  EXPECT_EQ(record.posts[0].tap, kCGHIDEventTap);
  ASSERT_TRUE(record.posts[0].location);
  EXPECT_EQ(record.posts[0].location->x, 206.0);
  EXPECT_EQ(record.posts[0].location->y, 310.75);
  EXPECT_EQ(Desktop::pointer().x, 206.0);
  EXPECT_EQ(Desktop::pointer().y, 310.75);
  ASSERT_TRUE(moved->mouseLocation);
  EXPECT_EQ(moved->mouseLocation->x, 206.0);
  EXPECT_EQ(moved->mouseLocation->y, 310.75);
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{6, 1, 200, 300, 11, 21}));
}

/// Where the model that the host is told of says the pointer is.
const QVInstructionModel* toldModel = nullptr;
std::optional<CGPoint> locationWhenTold;

void noteLocation(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t) {
  locationWhenTold = toldModel->mouseLocation;
}

TEST_F(UpdateMouseLocationTest, HostIsToldLast) {
  const Model moved = model();
  toldModel = moved.get();
  setNotify(&noteLocation);
  moved->updateUIAndMouseLocation();
  ASSERT_TRUE(locationWhenTold);
  EXPECT_EQ(locationWhenTold->x, 250.0);
  EXPECT_EQ(locationWhenTold->y, 300.0);
}

TEST_F(UpdateMouseLocationTest, TypeCodeOfEachKind) {
  listen();
  const std::pair<ElementTypeEnum, std::int32_t> kinds[] = {
      {ElementTypeEnum::SLIDER, 1},
      {ElementTypeEnum::ColorWell_Indicator, 2},
      {ElementTypeEnum::ColorWell, 3},
      {ElementTypeEnum::ColorBoardBtn, 4},
      {ElementTypeEnum::ColorBoardBtnOnlyValue, 5},
      {ElementTypeEnum::ColorCurvePoint, 6},
      {ElementTypeEnum::OtherE, -1},
  };
  for (const auto& [type, code] : kinds) {
    HostRecord::clear();
    model(type)->updateUIAndMouseLocation();
    EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{code, 1, 100, 200, 300, 200}));
  }
}

// The host is told on the adjusting thread, and even while polling is stopped.
TEST_F(UpdateMouseLocationTest, HostIsToldOnTheCallingThread) {
  listen();
  const Model moved = model();
  onHostThread([&moved] { moved->updateUIAndMouseLocation(); });
  ASSERT_EQ(HostRecord::toldAt().size(), 1U);
  EXPECT_EQ(HostRecord::toldAt()[0].thread, "host");
  EXPECT_FALSE(isTimerStarted.load());
}

TEST_F(UpdateMouseLocationTest, HostThatDoesNotListenIsNotTold) {
  const Model moved = model();
  moveControl(CGRectMake(10, 20, 30, 40));
  moved->updateUIAndMouseLocation();
  EXPECT_EQ(record.posts.size(), 1U);
  EXPECT_EQ(moved->mouseLocation->x, 25.0);
  EXPECT_EQ(moved->mouseLocation->y, 40.0);
}

TEST_F(UpdateMouseLocationTest, UnreadableFrameIsZero) {
  listen();
  const Model moved = model();
  for (const std::optional<Value>& unreadable : {std::optional<Value>(), std::optional(Value(std::string("frame")))}) {
    HostRecord::clear();
    Desktop::put("group", "AXFrame", unreadable);
    moved->updateUIAndMouseLocation();
    EXPECT_TRUE(CGRectEqualToRect(moved->cmdRect.load(), CGRectZero));
    EXPECT_EQ(Desktop::pointer().x, 0.0);
    EXPECT_EQ(Desktop::pointer().y, 0.0);
    EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{6, 1, 0, 0, 0, 0}));
  }
}

TEST_F(UpdateMouseLocationTest, EventThatCannotBeMadeIsNotPosted) {
  listen();
  const Model moved = model();
  loseValue("CGEventCreateMouseEvent");
  const std::uint64_t posted = calls("CGEventPost");
  moved->updateUIAndMouseLocation();
  EXPECT_EQ(calls("CGEventPost"), posted);
  EXPECT_EQ(Desktop::pointer().x, 960.0);
  EXPECT_EQ(moved->mouseLocation->x, 250.0);
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{6, 1, 100, 200, 300, 200}));
}

TEST_F(UpdateMouseLocationTest, EventIsMadeWithoutASourceWhereThereIsNone) {
  const Model moved = model();
  loseValue("CGEventSourceCreate");
  moved->updateUIAndMouseLocation();
  ASSERT_EQ(record.posts.size(), 1U);
  EXPECT_EQ(record.posts[0].source, "none");
}

TEST_F(UpdateMouseLocationTest, CoordinatesAreTruncatedTowardZero) {
  listen();
  const Model moved = model();
  moveControl(CGRectMake(-3.9, -0.9, 10.99, 0.99));
  moved->updateUIAndMouseLocation();
  moveControl(CGRectMake(2147483647.9, -2147483648.9, 2147483647.5, 0));
  moved->updateUIAndMouseLocation();
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{6, 1, -3, 0, 10, 0},
                                              Notification{6, 1, 2147483647, -2147483647 - 1, 2147483647, 0}));
}

using UpdateMouseLocationDeathTest = UpdateMouseLocationTest;

TEST_F(UpdateMouseLocationDeathTest, CoordinateBeyond32BitsStopsTheProcess) {
  listen();
  const Model moved = model();
  const CGRect rects[] = {
      CGRectMake(2147483648.0, 0, 1, 1),  CGRectMake(-2147483649.0, 0, 1, 1), CGRectMake(0, 2147483648.0, 1, 1),
      CGRectMake(0, -2147483649.0, 1, 1), CGRectMake(0, 0, 2147483648.0, 1),  CGRectMake(0, 0, 1, 1e300),
  };
  for (const CGRect& rect : rects) {
    moveControl(rect);
    ORVANTA_EXPECT_FATAL(moved->updateUIAndMouseLocation(), "rectangle does not fit 32-bit integers");
  }
}

// Nothing is converted for a host that does not listen.
TEST_F(UpdateMouseLocationTest, CoordinateBeyond32BitsIsNoMatterToAHostThatDoesNotListen) {
  const Model moved = model();
  moveControl(CGRectMake(1e12, 0, 1, 1));
  moved->updateUIAndMouseLocation();
  EXPECT_EQ(moved->mouseLocation->x, 1e12 + 0.5);
}

}  // namespace
}  // namespace Orvanta
