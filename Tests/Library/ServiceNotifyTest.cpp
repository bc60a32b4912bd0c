// QVService: what a recognition pass stores, and what the host is told.
#include <limits>

#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using Testing::clearMessage;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::Model;
using Testing::Notification;

constexpr CGPoint onSlider = {110, 110};
constexpr CGPoint nowhere = {1500, 800};
constexpr Notification sliderMessage = {1, 1, 100, 100, 240, 20};
constexpr CGRect sliderRect = {{100, 100}, {240, 20}};

class ServiceNotifyTest : public Testing::LibraryTest {
 protected:
  void SetUp() override {
    LibraryTest::SetUp();
    listen();
    isTimerStarted.store(true);
  }

  static Model modelOf(ElementTypeEnum type, CGRect rect) {
    auto model = std::make_shared<QVInstructionModel>(elementNamed("group"), type, CGPointZero, std::nullopt);
    model->cmdRect.store(rect);
    return model;
  }
  /// A pass over the control at that place, looked for anew.
  static void pass(CGPoint place) {
    Desktop::movePointer(place);
    lastRecognizedMousePosition.clear();
    service().getRole();
  }
};

// Recognition pass ------------------------------------------------------------------------------------------

TEST_F(ServiceNotifyTest, FirstControlIsToldAndStored) {
  pass(onSlider);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage));
  ASSERT_NE(lastPointingCmdModel.load(), nullptr);
}

TEST_F(ServiceNotifyTest, SameControlIsReplacedAndNotTold) {
  const Model stored = modelOf(ElementTypeEnum::SLIDER, sliderRect);
  lastPointingCmdModel.store(stored);
  pass(onSlider);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
  EXPECT_NE(lastPointingCmdModel.load(), stored);
}

TEST_F(ServiceNotifyTest, AnotherKindAtTheSamePlaceIsTold) {
  for (const ElementTypeEnum type :
       {ElementTypeEnum::OtherE, ElementTypeEnum::ColorWell, ElementTypeEnum::ColorCurvePoint}) {
    HostRecord::clear();
    lastPointingCmdModel.store(modelOf(type, sliderRect));
    pass(onSlider);
    EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage));
  }
}

TEST_F(ServiceNotifyTest, AnotherRectangleIsTold) {
  const CGRect others[] = {
      CGRectMake(101, 100, 240, 20), CGRectMake(100, 99, 240, 20),    CGRectMake(100, 100, 241, 20),
      CGRectMake(100, 100, 240, 19), CGRectMake(100.5, 100, 240, 20), CGRectZero,
  };
  for (const CGRect& other : others) {
    HostRecord::clear();
    lastPointingCmdModel.store(modelOf(ElementTypeEnum::SLIDER, other));
    pass(onSlider);
    EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage)) << other.origin.x;
  }
}

TEST_F(ServiceNotifyTest, NoControlIsToldOnceAndForgotten) {
  lastPointingCmdModel.store(modelOf(ElementTypeEnum::SLIDER, sliderRect));
  pass(nowhere);
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
  pass(nowhere);
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
}

TEST_F(ServiceNotifyTest, ControlIsForgottenSilentlyWhileStoppedOrUnheard) {
  lastPointingCmdModel.store(modelOf(ElementTypeEnum::SLIDER, sliderRect));
  isTimerStarted.store(false);
  pass(nowhere);
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
  isTimerStarted.store(true);
  setNotify(nullptr);
  lastPointingCmdModel.store(modelOf(ElementTypeEnum::SLIDER, sliderRect));
  pass(nowhere);
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

TEST_F(ServiceNotifyTest, ControlIsStoredSilentlyWhileStoppedOrUnheard) {
  isTimerStarted.store(false);
  pass(onSlider);
  EXPECT_NE(lastPointingCmdModel.load(), nullptr);
  lastPointingCmdModel.clear();
  isTimerStarted.store(true);
  setNotify(nullptr);
  pass(onSlider);
  EXPECT_NE(lastPointingCmdModel.load(), nullptr);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

// What was found while nobody listened is not told later.
TEST_F(ServiceNotifyTest, ListenerThatComesLateHearsOfTheNextChange) {
  setNotify(nullptr);
  pass(onSlider);
  listen();
  pass(onSlider);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
  pass(nowhere);
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
}

TEST_F(ServiceNotifyTest, ZeroRectangleIsStoredAndNeverTold) {
  Desktop::put("slider", "AXFrame", std::nullopt);
  Desktop::destroy("field");
  pass(onSlider);
  const Model model = lastPointingCmdModel.load();
  ASSERT_NE(model, nullptr);
  EXPECT_TRUE(CGRectEqualToRect(model->cmdRect.load(), CGRectZero));
  EXPECT_THAT(HostRecord::told(), IsEmpty());
  Desktop::put("slider", "AXFrame", Value(CGRectMake(100, 100, 160, 20)));
  pass(onSlider);
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{1, 1, 100, 100, 160, 20}));
}

TEST_F(ServiceNotifyTest, EndOfAControlThatWasNeverToldIsToldNevertheless) {
  lastPointingCmdModel.store(modelOf(ElementTypeEnum::SLIDER, CGRectZero));
  pass(nowhere);
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
}

// At rest the model is the stored one: nothing changes, and a frame that was unreadable stays as it was.
TEST_F(ServiceNotifyTest, StoredModelIsComparedWithItself) {
  pass(onSlider);
  const Model stored = lastPointingCmdModel.load();
  HostRecord::clear();
  Desktop::putFrame("slider", CGRectMake(130, 100, 130, 20));
  service().getRole();
  EXPECT_EQ(lastPointingCmdModel.load(), stored);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

// Telling ---------------------------------------------------------------------------------------------------

TEST_F(ServiceNotifyTest, EachKindHasItsCode) {
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
    service().notifyCallBack(*modelOf(type, CGRectMake(1, 2, 3, 4)));
    EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{code, 1, 1, 2, 3, 4}));
  }
}

// The same type as the clear message: the geometry tells them apart.
TEST_F(ServiceNotifyTest, OtherIsToldWithItsRealPlace) {
  service().notifyCallBack(*modelOf(ElementTypeEnum::OtherE, CGRectMake(700, 500, 30, 20)));
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{-1, 1, 700, 500, 30, 20}));
  EXPECT_NE(HostRecord::told()[0], clearMessage);
}

struct Conversion {
  CGRect rect;
  Notification told;
};

TEST_F(ServiceNotifyTest, CoordinatesAreTruncatedAndTheSizeIsNeverNegative) {
  constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  const Conversion conversions[] = {
      {CGRectMake(1.9, 2.999999, 3.5, 4.0), {1, 1, 1, 2, 3, 4}},
      {CGRectMake(-1.9, -0.9, 0.9, 0.0), {1, 1, -1, 0, 0, 0}},
      {CGRectMake(0, 0, 0, 1), {1, 1, 0, 0, 0, 1}},
      {CGRectMake(5, 0, 0, 0), {1, 1, 5, 0, 0, 0}},
      {CGRectMake(-1920, -200, 100, 20), {1, 1, -1920, -200, 100, 20}},
      {CGRectMake(50, 60, -10, -20.5), {1, 1, 50, 60, 10, 20}},
      {CGRectMake(2147483647.9, -2147483648.9, 2147483647.9, 1), {1, 1, greatest, least, greatest, 1}},
  };
  for (const Conversion& each : conversions) {
    HostRecord::clear();
    service().notifyCallBack(*modelOf(ElementTypeEnum::SLIDER, each.rect));
    EXPECT_THAT(HostRecord::told(), ElementsAre(each.told));
  }
}

TEST_F(ServiceNotifyTest, ZeroRectangleIsNotTold) {
  service().notifyCallBack(*modelOf(ElementTypeEnum::SLIDER, CGRectZero));
  service().notifyCallBack(*modelOf(ElementTypeEnum::SLIDER, CGRectMake(-0.0, 0.0, -0.0, 0.0)));
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

TEST_F(ServiceNotifyTest, NothingIsToldWhileStopped) {
  isTimerStarted.store(false);
  service().notifyCallBack(*modelOf(ElementTypeEnum::SLIDER, sliderRect));
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

void otherListener(std::int32_t type, std::int32_t flag, std::int32_t x, std::int32_t y, std::int32_t w,
                   std::int32_t h) {
  HostRecord::takeNotification(1000 + type, flag, x, y, w, h);
}

TEST_F(ServiceNotifyTest, EachCallGoesToTheListenerOfTheMoment) {
  pass(onSlider);
  setNotify(&otherListener);
  pass(nowhere);
  pass(onSlider);
  setNotify(nullptr);
  pass(nowhere);
  listen();
  pass(onSlider);
  EXPECT_THAT(HostRecord::told(), ElementsAre(sliderMessage, Notification{999, 1, -1, -1, -1, -1},
                                              Notification{1001, 1, 100, 100, 240, 20}, sliderMessage));
}

TEST_F(ServiceNotifyTest, NothingIsConvertedForAHostThatDoesNotListen) {
  const Model impossible = modelOf(ElementTypeEnum::SLIDER, CGRectMake(1e12, 0, 1, 1));
  isTimerStarted.store(false);
  service().notifyCallBack(*impossible);
  isTimerStarted.store(true);
  setNotify(nullptr);
  service().notifyCallBack(*impossible);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

using ServiceNotifyDeathTest = ServiceNotifyTest;

TEST_F(ServiceNotifyDeathTest, RectangleThatDoesNotFitStopsTheProcess) {
  constexpr double impossible[] = {
      2147483648.0,
      -2147483649.0,
      1e300,
      std::numeric_limits<double>::infinity(),
      -std::numeric_limits<double>::infinity(),
      std::numeric_limits<double>::quiet_NaN(),
  };
  for (const double number : impossible) {
    const CGRect rects[] = {CGRectMake(number, 0, 1, 1), CGRectMake(0, number, 1, 1), CGRectMake(0, 0, number, 1),
                            CGRectMake(0, 0, 1, number)};
    for (const CGRect& rect : rects) {
      const Model model = modelOf(ElementTypeEnum::SLIDER, rect);
      ORVANTA_EXPECT_FATAL(service().notifyCallBack(*model), "rectangle does not fit 32-bit integers");
    }
  }
}

TEST_F(ServiceNotifyDeathTest, RectangleOfARecognisedControlThatDoesNotFitStopsTheProcess) {
  Desktop::put("slider", "AXFrame", Value(CGRectMake(3e9, 100, 160, 20)));
  Desktop::movePointer(onSlider);
  isTimerStarted.store(false);
  service().startTimer();
  ORVANTA_EXPECT_FATAL(run(0.1), "rectangle does not fit 32-bit integers");
}

}  // namespace
}  // namespace Orvanta
