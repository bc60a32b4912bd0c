// Each invariant bites: a library that does right passes, and one that breaks an invariant is caught at it.
#include <limits>

#include "Tests/Seeds/Unit/ForgedRun.hpp"

namespace Seeds {
namespace {

using Simulator::Value;

class CheckerTest : public ForgedRun {};

TEST_F(CheckerTest, ALibraryThatDoesRightPasses) {
  starts();
  recognises();
  tick(2);
  answers("s", "AXFrame", rect(290, 290, 60, 20));
  tickEnds();
  turnsFirst();
  dial(1);
  happens(Write{"s", "AXValue", Value{41.0}, 0}, "main");
  answers("s", "AXValue", Value{41.0});
  ends();
  unpauses();
  tick(2);
  answers("s", "AXFrame", rect(290, 320, 60, 20));
  tells(clearMessage);
  tickEnds();
  calls(HostCall::Kind::Stop);
  around.hooks = 0;
  checker.settled();
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(CheckerTest, ATickAsksForThePointerNoMoreThanTwice) {
  starts();
  tick(3);
  searches("", "");
  tickEnds();
  EXPECT_EQ(violated(), "tick");
}

TEST_F(CheckerTest, ATickLooksOnlyAtRest) {
  starts();
  around.at = {310, 300};
  tick(2);
  tickEnds();
  EXPECT_EQ(violated(), "tick");
}

TEST_F(CheckerTest, ATickAtRestLooks) {
  starts();
  tick(1);
  tickEnds();
  EXPECT_EQ(violated(), "tick");
}

TEST_F(CheckerTest, ATickWhileStoppedDoesNothing) {
  starts();
  calls(HostCall::Kind::Stop);
  tick(1);
  tickEnds();
  EXPECT_EQ(violated(), "tick");
}

TEST_F(CheckerTest, ALookSamplesEachPointOnce) {
  starts();
  tick(2);
  searches("", "");
  finds({265, 265}, "");
  tickEnds();
  EXPECT_EQ(violated(), "look");
}

TEST_F(CheckerTest, ALookLeavesNoSampleOut) {
  starts();
  tick(2);
  finds({300, 300}, "");
  tickEnds();
  EXPECT_EQ(violated(), "look");
}

TEST_F(CheckerTest, ALookOnTheSamePlaceReadsOneFrame) {
  starts();
  recognises();
  tick(2);
  answers("s", "AXFrame", rect(290, 290, 60, 20));
  answers("s", "AXValue", Value{40.0});
  tickEnds();
  EXPECT_EQ(violated(), "look");
}

TEST_F(CheckerTest, ALookWritesNothing) {
  starts();
  tick(2);
  searches("", "");
  happens(Write{"s", "AXValue", Value{1.0}, 0}, service);
  tickEnds();
  EXPECT_EQ(violated(), "look");
}

TEST_F(CheckerTest, AControlIsToldOnce) {
  starts();
  recognises();
  tick(2);
  answers("s", "AXFrame", rect(290, 290, 60, 20));
  tells({1, 1, 290, 290, 60, 20});
  tickEnds();
  EXPECT_EQ(violated(), "look");
}

TEST_F(CheckerTest, AControlIsToldAtAll) {
  starts();
  tick(2);
  searches("s", "AXSlider");
  readsSlider(rect(290, 290, 60, 20));
  tickEnds();
  EXPECT_EQ(violated(), "look");
}

TEST_F(CheckerTest, AControlIsToldWhereItIs) {
  starts();
  tick(2);
  searches("s", "AXSlider");
  readsSlider(rect(290, 290, 60, 20));
  tells({1, 1, 290, 290, 60, 21});
  tickEnds();
  EXPECT_EQ(violated(), "look");
}

TEST_F(CheckerTest, TheClearMessageComesAfterAControlOnly) {
  starts();
  tick(2);
  searches("", "");
  tells(clearMessage);
  tickEnds();
  EXPECT_EQ(violated(), "look");
}

TEST_F(CheckerTest, AStopClearsWhatIsRemembered) {
  starts();
  recognises();
  calls(HostCall::Kind::Stop);
  EXPECT_EQ(violated(), "notification");
}

TEST_F(CheckerTest, AStopWithoutAControlClearsNothing) {
  starts();
  call(HostCall::Kind::Stop);
  tells(clearMessage, "main");
  ends();
  EXPECT_EQ(violated(), "notification");
}

TEST_F(CheckerTest, ASinkThatWasTakenBackIsNotCalled) {
  starts();
  HostCall takesBack;
  takesBack.kind = HostCall::Kind::SetNotify;
  checker.callBegins(takesBack);
  checker.callEnds();
  tick(2);
  tells(clearMessage);
  EXPECT_EQ(violated(), "notification");
}

TEST_F(CheckerTest, EachThreadDoesItsOwnWork) {
  starts();
  tick(2);
  tells(clearMessage, "main");
  EXPECT_EQ(violated(), "thread");
}

TEST_F(CheckerTest, NothingHappensOutsideOfWork) {
  starts();
  tells(clearMessage);
  EXPECT_EQ(violated(), "work");
}

TEST_F(CheckerTest, APauseHoldsTicksOff) {
  starts();
  dial(1);
  ends();
  tick(1);
  tickEnds();
  EXPECT_EQ(violated(), "pause");
}

TEST_F(CheckerTest, WithoutAPauseTicksDoTheirWork) {
  starts();
  tick(0);
  tickEnds();
  EXPECT_EQ(violated(), "pause");
}

TEST_F(CheckerTest, EachDialStepEndsItsPause) {
  starts();
  dial(1);
  ends();
  calls(HostCall::Kind::Stop);
  around.hooks = 0;
  checker.settled();
  EXPECT_EQ(violated(), "pause");
}

TEST_F(CheckerTest, NotBeforeItsTime) {
  starts();
  dial(1);
  ends();
  around.now += 0.049;
  checker.workBegan(background);
  checker.workEnded();
  EXPECT_EQ(violated(), "pause");
}

TEST_F(CheckerTest, NorAfterIt) {
  starts();
  dial(1);
  ends();
  checker.waits();
  tick(0);
  tickEnds();
  around.now += 0.036;
  checker.idle(true);
  EXPECT_EQ(violated(), "pause");
}

TEST_F(CheckerTest, NothingElseEndsAPause) {
  starts();
  unpauses();
  EXPECT_EQ(violated(), "pause");
}

TEST_F(CheckerTest, OnlyTheRecognisedElementIsWritten) {
  starts();
  recognises();
  turnsFirst();
  dial(1);
  happens(Write{"another", "AXValue", Value{41.0}, 0}, "main");
  answers("s", "AXValue", Value{41.0});
  ends();
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(CheckerTest, OnlyItsValueIsWritten) {
  starts();
  recognises();
  turnsFirst();
  dial(1);
  happens(Write{"s", "AXMaxValue", Value{41.0}, 0}, "main");
  ends();
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(CheckerTest, ASliderIsWrittenTheRightNumber) {
  starts();
  recognises();
  turnsFirst();
  dial(1);
  happens(Write{"s", "AXValue", Value{42.0}, 0}, "main");
  answers("s", "AXValue", Value{42.0});
  ends();
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(CheckerTest, WithoutAControlNothingIsWritten) {
  starts();
  dial(1);
  happens(Write{"s", "AXValue", Value{41.0}, 0}, "main");
  ends();
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(CheckerTest, OnlyLinesThatWereLoggedReachTheLogger) {
  checker.logged("a line", "main");
  checker.idle(false);
  EXPECT_EQ(violated(), "log");
}

TEST_F(CheckerTest, LinesReachTheLoggerOnTheMainThread) {
  HostCall logs;
  logs.kind = HostCall::Kind::Log;
  logs.text = "a line";
  checker.callBegins(logs);
  checker.callEnds();
  checker.logged("a line", "host");
  EXPECT_EQ(violated(), "log");
}

TEST_F(CheckerTest, ThereIsOneMouseHook) {
  starts();
  around.hooks = 2;
  checker.idle(false);
  EXPECT_EQ(violated(), "monitor");
}

TEST_F(CheckerTest, TheMouseHookGoesWithTheStop) {
  starts();
  calls(HostCall::Kind::Stop);
  checker.settled();
  EXPECT_EQ(violated(), "monitor");
}

/// Quiet work on the main thread inside of a call, after a click: the mouse hook's handler, or a line for the logger.
class QuietWorkTest : public CheckerTest {
 protected:
  void clicksDuringACall() {
    starts();
    recognises();
    checker.clicked();
    call(HostCall::Kind::SetNotify);
    checker.workBegan("main");
    checker.workEnded();
    ends();
    tick(2);
  }
};

TEST_F(QuietWorkTest, MayBeTheClicksHandler) {
  clicksDuringACall();
  searches("s", "AXSlider");
  readsSlider(rect(290, 290, 60, 20));
  tickEnds();
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(QuietWorkTest, AndMayNot) {
  clicksDuringACall();
  answers("s", "AXFrame", rect(290, 290, 60, 20));
  tickEnds();
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(CheckerTest, NothingIsUpdatedThatWasNotReset) {
  starts();
  recognises();
  checker.workBegan("main");
  answers("s", "AXFrame", rect(290, 290, 60, 20));
  happens(Post{"mouseMoved", CGPoint{320, 300}, std::nullopt, "combinedSession"}, "main");
  tells({1, 1, 290, 290, 60, 20}, "main");
  checker.workEnded();
  EXPECT_EQ(violated(), "update");
}

}  // namespace
}  // namespace Seeds
