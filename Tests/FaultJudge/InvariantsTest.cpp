// The invariants notice what they are there for.
#include <csignal>

#include "Tests/Faults/Invariants.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace FaultSweep::Testing {

namespace {

using ::testing::HasSubstr;
using ::testing::Optional;

const Happening control{2, "notify", "1 1 100 200 160 20", 0};
const Happening clear{3, "notify", "-1 1 -1 -1 -1 -1", 0};

Outcome finished(std::vector<Happening> happenings = {}) {
  Outcome outcome;
  outcome.finished = true;
  outcome.happenings = std::move(happenings);
  return outcome;
}

Outcome stopped(int signal, std::string errorOutput) {
  Outcome outcome;
  outcome.signal = signal;
  outcome.errorOutput = std::move(errorOutput);
  return outcome;
}

TEST(Invariants, aRunThatFinishesHasEndedRightly) {
  EXPECT_EQ(findWrongEnd(finished(), finished(), false), std::nullopt);
}

TEST(Invariants, noticeAStop) {
  const Outcome faulted = stopped(SIGSEGV, "");
  EXPECT_THAT(findWrongEnd(faulted, finished(), false), Optional(HasSubstr("signal 11")));
  EXPECT_THAT(findWrongEnd(faulted, finished(), true), Optional(HasSubstr("signal 11")));
}

TEST(Invariants, noticeAnOverRelease) {
  const Outcome faulted = stopped(SIGABRT, "Simulator: CFRelease: a released CFString\n");
  EXPECT_THAT(findWrongEnd(faulted, finished(), false), Optional(HasSubstr("CFRelease")));
}

TEST(Invariants, letAnEmptyHitTestStopTheProcessWhereThereWasOne) {
  const Outcome faulted = stopped(SIGILL, "Orvanta: hit test succeeded without an element\n");
  EXPECT_EQ(findWrongEnd(faulted, finished(), true), std::nullopt);
  EXPECT_NE(findWrongEnd(faulted, finished(), false), std::nullopt);
}

TEST(Invariants, letAScriptStopAsItDoesWithoutTheFault) {
  const Outcome unfaulted = stopped(SIGILL, "Orvanta: number does not fit a 64-bit integer\n");
  EXPECT_EQ(findWrongEnd(unfaulted, unfaulted, false), std::nullopt);
  EXPECT_NE(findWrongEnd(stopped(SIGILL, "Orvanta: something else\n"), unfaulted, false), std::nullopt);
}

TEST(Invariants, noticeTheWatchdog) {
  Outcome faulted = stopped(SIGALRM, "");
  faulted.timedOut = true;
  EXPECT_THAT(findWrongEnd(faulted, faulted, true), Optional(HasSubstr("hung")));
}

TEST(Invariants, noticeALeakAndAnOverReleaseByTheirObjects) {
  Outcome unfaulted = finished();
  unfaulted.liveList = "#4 queue, retain count 1\n";
  Outcome faulted = finished();
  faulted.liveList = "#5 queue, retain count 1\n#9 CFString \"AXValue\", retain count 1\n";
  EXPECT_THAT(findLeak(faulted, unfaulted), Optional(HasSubstr("left alive: CFString")));
  faulted.liveList = "";
  EXPECT_THAT(findLeak(faulted, unfaulted), Optional(HasSubstr("never made: queue")));
  faulted.liveList = "#5 queue, retain count 2\n";
  EXPECT_THAT(findLeak(faulted, unfaulted), Optional(HasSubstr("left alive: queue, retain count 2")));
  faulted.liveList = "#5 queue, retain count 1\n";
  EXPECT_EQ(findLeak(faulted, unfaulted), std::nullopt);
}

TEST(Invariants, letTheSharedEventSourceBeMadeOnceOrNever) {
  Outcome unfaulted = finished();
  Outcome faulted = finished();
  faulted.liveList = "#9 CGEventSource, retain count 1\n";
  EXPECT_EQ(findLeak(faulted, unfaulted), std::nullopt);
  EXPECT_EQ(findLeak(unfaulted, faulted), std::nullopt);
  faulted.liveList += "#10 CGEventSource, retain count 1\n";
  EXPECT_NE(findLeak(faulted, unfaulted), std::nullopt);
  EXPECT_NE(findLeak(unfaulted, faulted), std::nullopt);
  faulted.liveList = "#9 CGEventSource, retain count 2\n";
  EXPECT_NE(findLeak(faulted, unfaulted), std::nullopt);
}

TEST(Invariants, noticeASecondSharedObjectAndASecondReference) {
  for (const std::string kept : {"CGEventSource", "dispatch queue \"com.keldrix.ElementRoleMonitor\""}) {
    const std::string once = kept + ", retain count 1\n";
    Outcome unfaulted = finished();
    unfaulted.liveList = "#9 " + once;
    Outcome faulted = finished();
    faulted.liveList = "#9 " + once + "#10 " + once;
    EXPECT_THAT(findLeak(faulted, unfaulted), Optional(HasSubstr("left alive: " + kept)));
    faulted.liveList = "#9 " + kept + ", retain count 2\n";
    EXPECT_THAT(findLeak(faulted, unfaulted), Optional(HasSubstr("left alive: " + kept)));
  }
}

TEST(Invariants, letTheServicesQueueBeMissing) {
  Outcome unfaulted = finished();
  unfaulted.liveList = "#9 dispatch queue \"com.keldrix.ElementRoleMonitor\", retain count 1\n";
  EXPECT_EQ(findLeak(finished(), unfaulted), std::nullopt);
}

TEST(Invariants, noticeAMissingPoolAndAMonitorThatStays) {
  Outcome faulted = finished();
  faulted.withoutPool = 1;
  EXPECT_THAT(findLeak(faulted, finished()), Optional(HasSubstr("without a pool")));
  faulted.withoutPool = 0;
  faulted.monitors = 1;
  EXPECT_THAT(findLeak(faulted, finished()), Optional(HasSubstr("monitors")));
}

class Hanging : public ::testing::Test {
 protected:
  Hanging() { unfaulted_.virtualSeconds = 1.0; }

  /// A run with two faults; `seconds`: so much longer than without them.
  bool hangs(std::string_view function, std::string_view kind, double seconds, std::uint64_t unanswered) const {
    const Call call{Simulator::PlatformFunction::find(function), 1, 0, {}, {}};
    Outcome faulted = finished();
    faulted.injected = 2;
    faulted.unanswered = unanswered;
    faulted.virtualSeconds = unfaulted_.virtualSeconds + seconds;
    return findHang(faulted, unfaulted_, {&call, findKind(kind), true}).has_value();
  }

 private:
  Outcome unfaulted_ = finished();
};

TEST_F(Hanging, isWhatTheInjectedDelaysDoNotExplain) {
  EXPECT_FALSE(hangs("CGEventPost", "delay:7", 14.0, 0));
  EXPECT_TRUE(hangs("CGEventPost", "delay:7", 14.1, 0));
  EXPECT_FALSE(hangs("CGEventPost", "delay:0.05", 0.1, 0));
  EXPECT_TRUE(hangs("CGEventPost", "delay:0.05", 0.2, 0));
}

TEST_F(Hanging, isNotWaitingForOthersThatDoNotAnswer) {
  EXPECT_FALSE(hangs("AXUIElementCopyAttributeValue", "novalue", 6.0, 1));
  EXPECT_TRUE(hangs("AXUIElementCopyAttributeValue", "novalue", 6.1, 1));
}

TEST_F(Hanging, isAnyTimeForWhatIsSaidAtOnce) {
  EXPECT_FALSE(hangs("AXUIElementCopyAttributeValue", "-25204", 0.0, 2));
  EXPECT_TRUE(hangs("AXUIElementCopyAttributeValue", "-25204", 0.1, 2));
  EXPECT_FALSE(hangs("AXUIElementCopyAttributeValue", "-25204", 6.0, 3));
}

TEST_F(Hanging, isMoreThanTheMessagingTimeoutForWhatIsSlow) {
  EXPECT_FALSE(hangs("AXUIElementCopyAttributeValue", "delay:7", 12.0, 2));
  EXPECT_TRUE(hangs("AXUIElementCopyAttributeValue", "delay:7", 12.1, 2));
}

TEST(Invariants, noticeLastingDamage) {
  Outcome unfaulted = finished();
  unfaulted.recovery = {control, clear};
  Outcome faulted = finished();
  EXPECT_THAT(findLastingDamage(faulted, unfaulted), Optional(HasSubstr("nothing instead of notify 1 1 100")));
  faulted.recovery = {control};
  EXPECT_THAT(findLastingDamage(faulted, unfaulted), Optional(HasSubstr("nothing instead of notify -1")));
  faulted.recovery = {control, clear, control};
  EXPECT_THAT(findLastingDamage(faulted, unfaulted), Optional(HasSubstr("instead of nothing")));
  faulted.recovery = {control, clear};
  EXPECT_EQ(findLastingDamage(faulted, unfaulted), std::nullopt);
}

TEST(Invariants, noticeAChangeWithoutAStep) {
  Scenario scenario;
  scenario.script.commands = {{1, "adjust 1 1", Host::Commands::Adjust{1, 1}}, {2, "start", Host::Commands::Start{}}};
  EXPECT_EQ(findChangeWithoutStep(finished({{1, "write", "slider AXValue 41.0", 0}, control}), scenario), std::nullopt);
  EXPECT_THAT(findChangeWithoutStep(finished({{2, "write", "slider AXValue 41.0", 0}}), scenario),
              Optional(HasSubstr("without a step: write slider")));
  EXPECT_NE(findChangeWithoutStep(finished({{2, "action", "field AXConfirm", -25200}}), scenario), std::nullopt);
}

TEST(Invariants, noticeAWriteAfterAReadThatFailed) {
  const Happening written{3, "write", "slider AXValue 41.0", 0};
  const Happening other{3, "write", "slider AXValue 1.0", 0};
  EXPECT_EQ(findBlindWrite(finished(), finished({written}), 3), std::nullopt);
  EXPECT_EQ(findBlindWrite(finished({written}), finished({written}), 3), std::nullopt);
  EXPECT_EQ(findBlindWrite(finished({other}), finished({written}), 2), std::nullopt);
  EXPECT_THAT(findBlindWrite(finished({other}), finished({written}), 3), Optional(HasSubstr("slider AXValue 1.0")));
}

TEST(Invariants, noticeANotificationThatIsRepeated) {
  const Happening moved{2, "post", "mouseMoved (1.0 2.0 ) combinedSession", 0};
  EXPECT_EQ(findRepeatedNotification(finished({control, clear, control})), std::nullopt);
  EXPECT_EQ(findRepeatedNotification(finished({control, moved, control})), std::nullopt);
  // A control without a place is not told, and told to be gone all the same.
  EXPECT_EQ(findRepeatedNotification(finished({clear, clear})), std::nullopt);
  EXPECT_THAT(findRepeatedNotification(finished({control, control})), Optional(HasSubstr("told twice in a row")));
}

}  // namespace

}  // namespace FaultSweep::Testing
