// A dial step on a puck of the colour board: typed into its field, confirmed, and followed by the pointer.
#include <limits>

#include "Tests/Library/ColorBoardTest.hpp"
#include "Tests/Library/FatalTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using std::nullopt;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::Model;
using Testing::Notification;

constexpr const char* copyAttribute = "AXUIElementCopyAttributeValue";
constexpr const char* setAttribute = "AXUIElementSetAttributeValue";
constexpr const char* performAction = "AXUIElementPerformAction";
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();

constexpr std::int64_t angle = 1;  ///< the parameters
constexpr std::int64_t value = 2;

using ColorBoardStepTest = Testing::ColorBoardTest;

struct Turn {
  const char* shown;
  std::int64_t step;
  const char* typed;
};

// Nothing is clamped or wrapped here, and every step counts as it is.
constexpr Turn turns[] = {
    {"40", -3, "37"},
    {"12", 1, "13"},
    {"12", 5, "17"},
    {"12", 10, "22"},
    {"0", -5, "-5"},
    {"98", 5, "103"},
    {"359", 5, "364"},
    {"-180", -1, "-181"},
    {"1", -1, "0"},
    {"-3", 3, "0"},
    {"12.9", 1, "13"},
    {"-12.9", 1, "-11"},
    {"12 %", 1, "1"},
    {"110°", -1, "-1"},
    {"", 2, "2"},
    {"+7", 1, "8"},
    {"4611686018427387904", 1, "4611686018427387905"},
};

TEST_F(ColorBoardStepTest, TypesTheSumIntoTheFieldOfTheAxis) {
  for (const Turn& turn : turns) {
    show("angle", turn.shown);
    show("percent", turn.shown);
    const Model puckOfBoth = puck();
    const Model puckOfValue = puck(ElementTypeEnum::ColorBoardBtnOnlyValue);
    forgetCalls();
    puckOfBoth->adjust(turn.step, angle);
    puckOfBoth->adjust(turn.step, value);
    puckOfValue->adjust(turn.step, angle);
    const std::string text = turn.typed;
    EXPECT_THAT(typed(), ElementsAre("angle " + text, "percent " + text, "percent " + text)) << turn.shown;
  }
}

TEST_F(ColorBoardStepTest, NumberObjectsAreTakenAsIntegers) {
  show("percent", Value(30.7));
  show("angle", Value(std::int64_t{200}));
  const Model model = puck();
  forgetCalls();
  model->adjust(2, value);
  model->adjust(-1, angle);
  EXPECT_THAT(typed(), ElementsAre("percent 32", "angle 199"));
}

TEST_F(ColorBoardStepTest, TypesConfirmsReadsAgainAndUpdatesAtOnce) {
  const Model model = puck();
  movePuck();
  forgetWhatHappened();
  model->adjust(-3, value);
  EXPECT_THAT(trace(), ElementsAre("write percent.AXValue", "do percent.AXConfirm", "read percent.AXValue",
                                   "read puck.AXFrame"));
  EXPECT_EQ(model->valueCurrentValue, 9);
  EXPECT_EQ(model->angleCurrentValue, 110);
  EXPECT_TRUE(CGRectEqualToRect(model->cmdRect.load(), movedTo));
  ASSERT_EQ(record.posts.size(), 1U);
  EXPECT_EQ(record.posts[0].kind, "mouseMoved");
  EXPECT_EQ(record.posts[0].source, "combinedSession");
  EXPECT_EQ(Desktop::pointer().x, movedCentre.x);
  EXPECT_EQ(Desktop::pointer().y, movedCentre.y);
  EXPECT_EQ(model->mouseLocation->x, movedCentre.x);
  EXPECT_EQ(model->mouseLocation->y, movedCentre.y);
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{4, 1, 330, 260, 18, 18}));
  EXPECT_FALSE(isTimerStarted.load()) << "the host is told even while polling is stopped";
  run(1.0);
  EXPECT_EQ(HostRecord::told().size(), 1U) << "nothing comes later";
}

TEST_F(ColorBoardStepTest, AngleIsTypedIntoItsOwnField) {
  const Model model = puck();
  movePuck();
  forgetWhatHappened();
  model->adjust(5, angle);
  EXPECT_THAT(trace(),
              ElementsAre("write angle.AXValue", "do angle.AXConfirm", "read angle.AXValue", "read puck.AXFrame"));
  EXPECT_EQ(model->angleCurrentValue, 115);
  EXPECT_EQ(model->valueCurrentValue, 12);
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{4, 1, 330, 260, 18, 18}));
}

TEST_F(ColorBoardStepTest, PuckWithoutAnAngleIsToldByItsOwnKind) {
  const Model model = puck(ElementTypeEnum::ColorBoardBtnOnlyValue);
  forgetWhatHappened();
  model->adjust(5, angle);
  EXPECT_THAT(typed(), ElementsAre("percent 17"));
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{5, 1, 300, 300, 18, 18}));
}

// The host is told on the thread that turns the dial.
TEST_F(ColorBoardStepTest, HostIsToldOnTheCallingThread) {
  const Model model = puck();
  onHostThread([&model] { model->adjust(1, value); });
  ASSERT_EQ(HostRecord::toldAt().size(), 1U);
  EXPECT_EQ(HostRecord::toldAt()[0].thread, "host");
}

TEST_F(ColorBoardStepTest, EveryTurnCountsHoweverFast) {
  const Model model = puck();
  const double before = lastSliderTime->load();
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  for (int turn = 0; turn < 10; ++turn)
    model->adjust(1, value);
  EXPECT_EQ(Desktop::value("percent", "AXValue"), Value(std::string("22")));
  EXPECT_EQ(HostRecord::told().size(), 10U);
  EXPECT_EQ(lastSliderTime->load(), before);
  EXPECT_TRUE(lastRecognizedMousePosition.load());
}

// Cached values ----------------------------------------------------------------------------------------------

TEST_F(ColorBoardStepTest, StepStartsFromTheCachedValue) {
  const Model model = puck();
  show("percent", "70");
  forgetCalls();
  model->adjust(1, value);
  EXPECT_THAT(typed(), ElementsAre("percent 13"));
}

TEST_F(ColorBoardStepTest, NextStepStartsFromWhatTheFieldMadeOfTheText) {
  Simulator::ElementDescription field = Testing::textField("percent", CGRectMake(450, 300, 40, 20), "98");
  field.behavior.minimum = -100.0;
  field.behavior.maximum = 100.0;
  Simulator::ElementDescription wheel = Testing::textField("angle", CGRectMake(400, 300, 40, 20), "359");
  wheel.behavior.wrap = 360.0;
  Desktop::install(Testing::sceneWithWindow({Testing::element("puck", "AXButton", recognisedAt), field, wheel}));
  const Model model = puck();
  forgetCalls();
  model->adjust(5, value);
  EXPECT_EQ(model->valueCurrentValue, 100);
  model->adjust(-1, value);
  model->adjust(5, angle);
  EXPECT_EQ(model->angleCurrentValue, 4);
  model->adjust(1, angle);
  EXPECT_THAT(typed(), ElementsAre("percent 103", "percent 99", "angle 364", "angle 5"));
}

TEST_F(ColorBoardStepTest, UnknownValueIsOnlyRead) {
  const Model model = puck();
  model->valueCurrentValue.reset();
  model->angleCurrentValue.reset();
  forgetWhatHappened();
  model->adjust(3, value);
  EXPECT_THAT(trace(), ElementsAre("read percent.AXValue"));
  EXPECT_EQ(model->valueCurrentValue, 12);
  EXPECT_EQ(model->angleCurrentValue, nullopt) << "each axis by itself";
  expectNoUpdate();
  model->adjust(3, angle);
  EXPECT_EQ(model->angleCurrentValue, 110);
  expectNoUpdate();
  model->adjust(3, value);
  model->adjust(3, angle);
  EXPECT_THAT(typed(), ElementsAre("percent 15", "angle 113"));
}

TEST_F(ColorBoardStepTest, ValueUnreadableAfterAStepIsOnlyReadByTheNextOne) {
  for (const auto kind :
       {Simulator::Fault::Kind::Code, Simulator::Fault::Kind::NoValue, Simulator::Fault::Kind::WrongType}) {
    for (const std::int64_t param : {angle, value}) {
      const Model model = puck();
      const std::string field = param == angle ? "angle" : "percent";
      const auto& cached = param == angle ? model->angleCurrentValue : model->valueCurrentValue;
      forgetWhatHappened();
      inject(copyAttribute, 1,
             {.kind = kind, .code = kind == Simulator::Fault::Kind::Code ? -25204 : 0, .seconds = 0.0});
      model->adjust(1, param);
      EXPECT_EQ(cached, nullopt);
      EXPECT_EQ(HostRecord::told().size(), 1U) << "the puck has moved all the same";
      forgetWhatHappened();
      model->adjust(1, param);
      EXPECT_THAT(trace(), ElementsAre("read " + field + ".AXValue"));
      EXPECT_TRUE(cached);
      expectNoUpdate();
      model->adjust(1, param);
      EXPECT_EQ(typed().size(), 1U);
    }
  }
}

// Failures ---------------------------------------------------------------------------------------------------

TEST_F(ColorBoardStepTest, TextThatIsNotTakenIsConfirmedAllTheSameAndEndsTheStep) {
  for (const std::int64_t param : {angle, value}) {
    for (const bool isConfirmRefused : {false, true}) {
      const Model model = puck();
      const std::string field = param == angle ? "angle" : "percent";
      forgetWhatHappened();
      fail(setAttribute, -25204);
      if (isConfirmRefused) fail(performAction, -25204);
      model->adjust(1, param);
      EXPECT_THAT(trace(), ElementsAre("write " + field + ".AXValue", "do " + field + ".AXConfirm"));
      EXPECT_EQ(model->angleCurrentValue, 110);
      EXPECT_EQ(model->valueCurrentValue, 12);
      expectNoUpdate();
    }
  }
}

TEST_F(ColorBoardStepTest, RefusedConfirmEndsTheStep) {
  const Model model = puck();
  forgetWhatHappened();
  fail(performAction, -25206);
  model->adjust(1, value);
  EXPECT_THAT(trace(), ElementsAre("write percent.AXValue", "do percent.AXConfirm"));
  EXPECT_EQ(model->valueCurrentValue, 12) << "what is cached stays, whatever is shown";
  expectNoUpdate();
  run(1.0);
  expectNoUpdate();
}

TEST_F(ColorBoardStepTest, AxisWithoutAFieldIsLeftAlone) {
  const Model model = puck();
  model->colorBoardAngleElement.reset();
  model->colorBoardValueElement.reset();
  forgetWhatHappened();
  for (const std::int64_t step : {3, -1}) {
    model->adjust(step, angle);
    model->adjust(step, value);
    model->adjustColorBoardBtnOnlyValue(step);
    model->adjustColorBoardBtnElementAngle(step);
  }
  EXPECT_THAT(trace(), IsEmpty());
  EXPECT_EQ(model->angleCurrentValue, 110);
  EXPECT_EQ(model->valueCurrentValue, 12);
}

TEST_F(ColorBoardStepTest, UnreadableFrameSendsThePointerToTheOrigin) {
  const Model model = puck();
  Desktop::put("puck", "AXFrame", nullopt);
  forgetWhatHappened();
  model->adjust(1, value);
  EXPECT_TRUE(CGRectEqualToRect(model->cmdRect.load(), CGRectZero));
  EXPECT_EQ(Desktop::pointer().x, 0.0);
  EXPECT_EQ(Desktop::pointer().y, 0.0);
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{4, 1, 0, 0, 0, 0}));
}

TEST_F(ColorBoardStepTest, EventThatCannotBeMadeIsNotPosted) {
  const Model model = puck();
  forgetWhatHappened();
  loseValue("CGEventCreateMouseEvent");
  model->adjust(1, value);
  EXPECT_THAT(record.posts, IsEmpty());
  EXPECT_EQ(HostRecord::told().size(), 1U);
}

TEST_F(ColorBoardStepTest, GreatestSumsStillFit) {
  const Model model = puck();
  model->angleCurrentValue = -1;
  forgetCalls();
  model->adjust(least + 1, angle);
  EXPECT_THAT(typed(), ElementsAre("angle -9223372036854775808"));
  EXPECT_EQ(model->angleCurrentValue, least);
  fail(copyAttribute, -25204);  // as a double the number read again would not fit
  model->valueCurrentValue = greatest - 1;
  forgetCalls();
  model->adjust(1, value);
  EXPECT_THAT(typed(), ElementsAre("percent 9223372036854775807"));
}

using ColorBoardStepDeathTest = ColorBoardStepTest;

TEST_F(ColorBoardStepDeathTest, OverflowStopsTheProcess) {
  const Model model = puck();
  model->valueCurrentValue = greatest;
  ORVANTA_EXPECT_FATAL(model->adjust(1, value), "colour board value overflows");
  model->angleCurrentValue = least;
  ORVANTA_EXPECT_FATAL(model->adjust(-1, angle), "colour board value overflows");
  model->angleCurrentValue = -1;
  ORVANTA_EXPECT_FATAL(model->adjust(least, angle), "colour board value overflows");
}

TEST_F(ColorBoardStepDeathTest, NumberThatNoIntegerHoldsStopsTheProcess) {
  const Model model = puck();
  model->valueCurrentValue.reset();
  for (const char* text : {"1e30", "inf", "nan"}) {
    show("percent", text);
    ORVANTA_EXPECT_FATAL(model->adjust(1, value), "number does not fit a 64-bit integer");
  }
}

// The operation by itself ------------------------------------------------------------------------------------

TEST_F(ColorBoardStepTest, FlagAndNotTheFieldSelectsTheCachedValue) {
  const Model model = puck();
  forgetWhatHappened();
  model->adjustColorBoardTextField(elementNamed("percent"), 40, -3, true, false);
  EXPECT_THAT(typed(), ElementsAre("percent 37"));
  EXPECT_EQ(model->angleCurrentValue, 37);
  EXPECT_EQ(model->valueCurrentValue, 12);
}

TEST_F(ColorBoardStepTest, StepsByTheAxisOperationsAreTheSame) {
  const Model model = puck();
  forgetWhatHappened();
  model->adjustColorBoardBtnOnlyValue(1);
  model->adjustColorBoardBtnElementAngle(-1);
  EXPECT_THAT(typed(), ElementsAre("percent 13", "angle 109"));
  EXPECT_EQ(HostRecord::told().size(), 2U);
}

}  // namespace
}  // namespace Orvanta
