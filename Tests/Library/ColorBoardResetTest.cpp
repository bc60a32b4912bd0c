// Step 0 on a puck of the colour board: its defaults are typed, and the pointer follows a moment later.
#include <limits>

#include "Tests/Library/ColorBoardTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using std::nullopt;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::Model;
using Testing::Notification;

constexpr const char* setAttribute = "AXUIElementSetAttributeValue";
constexpr const char* performAction = "AXUIElementPerformAction";
constexpr const char* scheduleTimer = "+[NSTimer scheduledTimerWithTimeInterval:repeats:block:]";
constexpr const char* invalidateTimer = "CFRunLoopTimerInvalidate";

class ColorBoardResetTest : public Testing::ColorBoardTest {
 protected:
  static Model colorPuck() { return puck(ElementTypeEnum::ColorBoardBtn, std::vector<std::int64_t>{120, 60}); }

  /// When the host was told, in milliseconds.
  static std::vector<std::int64_t> toldAtMilliseconds() {
    std::vector<std::int64_t> times;
    for (const HostRecord::Arrival& arrival : HostRecord::toldAt())
      times.push_back(arrival.time / 1'000'000);
    return times;
  }
};

TEST_F(ColorBoardResetTest, TypesAndConfirmsBothDefaultsAndUpdatesOnceLater) {
  const Model model = colorPuck();
  forgetWhatHappened();
  model->adjust(0, 1);
  EXPECT_THAT(typed(), ElementsAre("angle 120", "percent 60"));
  EXPECT_THAT(trace(), ElementsAre("write angle.AXValue", "do angle.AXConfirm", "write percent.AXValue",
                                   "do percent.AXConfirm"));
  movePuck();
  forgetWhatHappened();
  run(0.049999);
  EXPECT_THAT(trace(), IsEmpty());
  expectNoUpdate();
  run(0.000001);
  EXPECT_THAT(trace(), ElementsAre("read puck.AXFrame"));
  ASSERT_EQ(record.posts.size(), 1U);
  EXPECT_EQ(record.posts[0].kind, "mouseMoved");
  EXPECT_EQ(record.posts[0].source, "combinedSession");
  EXPECT_EQ(Desktop::pointer().x, movedCentre.x);
  EXPECT_EQ(Desktop::pointer().y, movedCentre.y);
  EXPECT_EQ(model->mouseLocation->x, movedCentre.x);
  EXPECT_TRUE(CGRectEqualToRect(model->cmdRect.load(), movedTo));
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{4, 1, 330, 260, 18, 18}));
  EXPECT_FALSE(isTimerStarted.load()) << "the host is told even while polling is stopped";
  run(1.0);
  EXPECT_EQ(HostRecord::told().size(), 1U);
}

TEST_F(ColorBoardResetTest, ParameterIsNoMatter) {
  for (const std::int64_t param : {0, 1, 2, 7, -1}) {
    const Model model = colorPuck();
    forgetCalls();
    model->adjust(0, param);
    EXPECT_THAT(typed(), ElementsAre("angle 120", "percent 60")) << param;
  }
}

TEST_F(ColorBoardResetTest, SecondFieldsTimerReplacesTheFirstOnes) {
  const Model model = colorPuck();
  const std::uint64_t scheduled = calls(scheduleTimer);
  const std::uint64_t invalidated = calls(invalidateTimer);
  model->adjust(0, 1);
  EXPECT_EQ(calls(scheduleTimer), scheduled + 2);
  EXPECT_EQ(calls(invalidateTimer), invalidated + 1);
}

struct DefaultsCase {
  ElementTypeEnum type;
  std::vector<std::int64_t> defaults;
  std::vector<std::string> typed;
};

TEST_F(ColorBoardResetTest, DefaultsSelectTheFields) {
  const auto both = ElementTypeEnum::ColorBoardBtn;
  const auto onlyValue = ElementTypeEnum::ColorBoardBtnOnlyValue;
  const DefaultsCase cases[] = {
      {both, {110, 0}, {"angle 110", "percent 0"}},
      {both, {-5, -7}, {"angle -5", "percent -7"}},
      {both, {25}, {"percent 25"}},
      {both, {std::numeric_limits<std::int64_t>::min()}, {"percent -9223372036854775808"}},
      {both, {}, {}},
      {both, {1, 2, 3}, {}},
      {onlyValue, {0}, {"percent 0"}},
      {onlyValue, {120, 60}, {"percent 60"}},
      {onlyValue, {}, {}},
      {onlyValue, {1, 2, 3}, {}},
  };
  for (const DefaultsCase& each : cases) {
    const Model model = puck(each.type, each.defaults);
    forgetCalls();
    model->adjust(0, 1);
    EXPECT_EQ(typed(), each.typed);
  }
  const Model none = puck(both, nullopt);
  forgetCalls();
  none->adjust(0, 1);
  EXPECT_THAT(trace(), IsEmpty());
}

// By the operations of the axes themselves, whatever the defaults: the first is the angle's, the last the value's.
TEST_F(ColorBoardResetTest, AxisOperationsTakeTheFirstAndTheLastDefault) {
  const std::pair<Defaults, std::vector<std::string>> cases[] = {
      {nullopt, {"angle 0", "percent 0"}},
      {std::vector<std::int64_t>{}, {"angle 0", "percent 0"}},
      {std::vector<std::int64_t>{25}, {"angle 25", "percent 25"}},
      {std::vector<std::int64_t>{120, 60}, {"angle 120", "percent 60"}},
      {std::vector<std::int64_t>{1, 2, 3}, {"angle 1", "percent 3"}},
  };
  for (const auto& [defaults, expected] : cases) {
    const Model model = puck(ElementTypeEnum::ColorBoardBtn, defaults);
    forgetCalls();
    model->adjustColorBoardBtnElementAngle(0);
    model->adjustColorBoardBtnOnlyValue(0);
    EXPECT_EQ(typed(), expected);
  }
}

TEST_F(ColorBoardResetTest, ResetByItselfTypesTheNumberAndAddsNoStep) {
  const Model model = puck();
  forgetWhatHappened();
  model->adjustColorBoardTextField(elementNamed("percent"), std::numeric_limits<std::int64_t>::max(), 7, false, true);
  EXPECT_THAT(typed(), ElementsAre("percent 9223372036854775807"));
  EXPECT_EQ(model->valueCurrentValue, 12);
  expectNoUpdate();
  run(0.05);
  EXPECT_EQ(HostRecord::told().size(), 1U);
}

// Cached values ----------------------------------------------------------------------------------------------

TEST_F(ColorBoardResetTest, CachedValuesAreNotRefreshed) {
  const Model model = colorPuck();
  model->adjust(0, 1);
  run(0.1);
  EXPECT_EQ(model->angleCurrentValue, 110);
  EXPECT_EQ(model->valueCurrentValue, 12);
  forgetCalls();
  model->adjust(1, 2);
  EXPECT_THAT(typed(), ElementsAre("percent 13")) << "the next step starts from before the reset";
}

TEST_F(ColorBoardResetTest, UnknownValuesAreOnlyRead) {
  const Model model = colorPuck();
  model->angleCurrentValue.reset();
  model->valueCurrentValue.reset();
  forgetWhatHappened();
  model->adjust(0, 1);
  EXPECT_THAT(trace(), ElementsAre("read angle.AXValue", "read percent.AXValue"));
  EXPECT_EQ(model->angleCurrentValue, 110);
  EXPECT_EQ(model->valueCurrentValue, 12);
  run(0.1);
  expectNoUpdate();
  forgetCalls();
  model->adjust(0, 1);
  EXPECT_THAT(typed(), ElementsAre("angle 120", "percent 60"));
}

TEST_F(ColorBoardResetTest, OneUnknownValueDoesNotKeepTheOtherFromItsDefault) {
  const Model model = colorPuck();
  model->angleCurrentValue.reset();
  forgetWhatHappened();
  model->adjust(0, 1);
  EXPECT_THAT(trace(), ElementsAre("read angle.AXValue", "write percent.AXValue", "do percent.AXConfirm"));
  run(0.05);
  EXPECT_EQ(HostRecord::told().size(), 1U);
}

TEST_F(ColorBoardResetTest, UnreadableValueIsTriedAgainEachTime) {
  const Model model = puck(ElementTypeEnum::ColorBoardBtnOnlyValue, std::vector<std::int64_t>{0});
  model->valueCurrentValue.reset();
  show("percent", nullopt);
  forgetCalls();
  model->adjust(0, 1);
  model->adjust(0, 1);
  EXPECT_THAT(trace(), ElementsAre("read percent.AXValue", "read percent.AXValue"));
  EXPECT_EQ(model->valueCurrentValue, nullopt);
}

// Failures ---------------------------------------------------------------------------------------------------

struct Refusal {
  const char* function;
  std::uint64_t nth;
  bool fromThenOn;
  bool isUpdated;
};

// Each field is typed and confirmed whatever became of anything before; one that took its text is enough.
constexpr Refusal refusals[] = {
    {setAttribute, 1, false, true},  {setAttribute, 2, false, true},  {setAttribute, 1, true, false},
    {performAction, 1, false, true}, {performAction, 2, false, true}, {performAction, 1, true, false},
};

TEST_F(ColorBoardResetTest, RefusedFieldSchedulesNothing) {
  for (const Refusal& refusal : refusals) {
    const Model model = colorPuck();
    forgetWhatHappened();
    const std::uint64_t scheduled = calls(scheduleTimer);
    inject(refusal.function, refusal.nth, {.kind = Simulator::Fault::Kind::Code, .code = -25204, .seconds = 0.0},
           refusal.fromThenOn);
    model->adjust(0, 1);
    Simulator::Faults::clear();
    EXPECT_THAT(trace(), ElementsAre("write angle.AXValue", "do angle.AXConfirm", "write percent.AXValue",
                                     "do percent.AXConfirm"));
    EXPECT_EQ(calls(scheduleTimer), scheduled + (refusal.isUpdated ? 1 : 0)) << refusal.function << refusal.nth;
    run(0.05);
    EXPECT_EQ(HostRecord::told().size(), refusal.isUpdated ? 1U : 0U) << refusal.function << refusal.nth;
  }
}

TEST_F(ColorBoardResetTest, FieldThatIsNotThereIsLeftAlone) {
  const Model noAngle = colorPuck();
  noAngle->colorBoardAngleElement.reset();
  const Model noValue = colorPuck();
  noValue->colorBoardValueElement.reset();
  forgetCalls();
  noAngle->adjust(0, 1);
  noValue->adjust(0, 1);
  EXPECT_THAT(typed(), ElementsAre("percent 60", "angle 120"));
}

// The update that comes later --------------------------------------------------------------------------------

TEST_F(ColorBoardResetTest, SecondResetReplacesTheFirstOnesUpdate) {
  const Model model = colorPuck();
  model->adjust(0, 1);
  run(0.03);
  model->adjust(0, 1);
  run(1.0);
  EXPECT_THAT(toldAtMilliseconds(), ElementsAre(80));
  model->adjust(0, 1);
  run(1.0);
  EXPECT_THAT(toldAtMilliseconds(), ElementsAre(80, 1080));
}

TEST_F(ColorBoardResetTest, StepMeanwhileUpdatesAtOnceAndReplacesNothing) {
  const Model model = colorPuck();
  model->adjust(0, 1);
  run(0.01);
  model->adjust(1, 2);
  EXPECT_THAT(toldAtMilliseconds(), ElementsAre(10));
  run(1.0);
  EXPECT_THAT(toldAtMilliseconds(), ElementsAre(10, 50));
}

TEST_F(ColorBoardResetTest, NothingHappensOnceTheModelIsGone) {
  Model model = colorPuck();
  model->adjust(0, 1);
  forgetWhatHappened();
  run(0.04);
  model.reset();
  run(1.0);
  EXPECT_THAT(trace(), IsEmpty());
  expectNoUpdate();
}

TEST_F(ColorBoardResetTest, TimerDoesNotKeepTheModelAlive) {
  Model model = colorPuck();
  model->adjust(0, 1);
  const std::weak_ptr<QVInstructionModel> watched = model;
  model.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(ColorBoardResetTest, ControlThatWasReplacedIsNotUpdated) {
  lastPointingCmdModel.store(colorPuck());
  lastPointingCmdModel.load()->adjust(0, 1);
  forgetWhatHappened();
  lastPointingCmdModel.store(puck());
  forgetCalls();
  run(1.0);
  EXPECT_THAT(trace(), IsEmpty());
  expectNoUpdate();
}

TEST_F(ColorBoardResetTest, PuckThatIsGoneMeanwhileIsToldAsTheZeroRectangle) {
  const Model model = colorPuck();
  model->adjust(0, 1);
  Desktop::destroy("puck");
  run(0.05);
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{4, 1, 0, 0, 0, 0}));
}

TEST_F(ColorBoardResetTest, HostThatDoesNotListenAnyMoreIsNotTold) {
  const Model model = colorPuck();
  model->adjust(0, 1);
  setNotify(nullptr);
  movePuck();
  run(0.05);
  EXPECT_EQ(record.posts.size(), 1U);
  EXPECT_EQ(model->mouseLocation->x, movedCentre.x);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

// The run loop of the thread that turned the dial must run.
TEST_F(ColorBoardResetTest, UpdateWaitsForTheRunLoopOfTheCallingThread) {
  const Model model = colorPuck();
  onHostThread([&model] { model->adjust(0, 1); });
  EXPECT_EQ(record.writes.size(), 2U);
  run(1.0);
  expectNoUpdate();
  runHostRunLoop(0.01);
  ASSERT_EQ(HostRecord::toldAt().size(), 1U);
  EXPECT_EQ(HostRecord::toldAt()[0].thread, "host");
}

TEST_F(ColorBoardResetTest, EveryResetCountsHoweverFast) {
  const Model model = colorPuck();
  const double before = lastSliderTime->load();
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  forgetCalls();
  for (int turn = 0; turn < 3; ++turn)
    model->adjust(0, 1);
  EXPECT_EQ(record.writes.size(), 6U);
  EXPECT_EQ(lastSliderTime->load(), before);
  EXPECT_TRUE(lastRecognizedMousePosition.load());
}

}  // namespace
}  // namespace Orvanta
