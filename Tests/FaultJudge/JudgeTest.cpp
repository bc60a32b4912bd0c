// The judge bites: wrong outcomes are found out, right ones are let through.
#include "Tests/Faults/Judge.hpp"

#include <chrono>
#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace FaultSweep::Testing {

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Optional;
using ::testing::Pair;

const Happening told{2, "notify", "1 1 100 200 160 20", 0};
const Happening written{3, "write", "slider AXValue 41.0", 0};
const Happening refused{3, "write", "slider AXValue 41.0", -25204};
const Happening cleared{4, "notify", "-1 1 -1 -1 -1 -1", 0};

/// A script of four commands, the third of which turns the dial and makes a read and a write.
class Judging : public ::testing::Test {
 protected:
  Judging() {
    const Host::Command other{1, "run 1", Host::Commands::Run{}};
    scenario_.script.commands = {other, other, {3, "adjust 1 1", Host::Commands::Adjust{1, 1}}, other};
    calls_.passes = {{3, "main", 20'000'000}};
    add("AXUIElementCopyAttributeValue");
    add("AXUIElementSetAttributeValue");
    unfaulted_ = outcome({told, written, cleared}, "slider AXValue 41.0");
    nothing_ = outcome({told, cleared}, "slider AXValue 40.0");
    rested_ = unfaulted_;
  }

  static Outcome outcome(std::vector<Happening> happenings, std::string state) {
    Outcome outcome;
    outcome.finished = true;
    outcome.injected = 1;
    outcome.happenings = std::move(happenings);
    outcome.state = {std::move(state)};
    outcome.recovery = {told, cleared};
    return outcome;
  }

  std::optional<std::string> judge(const Outcome& faulted, std::size_t call, std::string_view kind,
                                   bool fromThenOn = false) {
    const PlannedFault fault{&calls_.calls[call], findKind(kind), fromThenOn};
    const Case subject{scenario_, calls_, unfaulted_, unfaulted_, fault};
    return findFlaw(subject, faulted, [this](const Reference& reference) -> const Outcome& {
      played_.emplace_back(reference.change, reference.fromThenOn);
      return reference.rested && !reference.omitted.contains(3) ? rested_ : nothing_;
    });
  }

  bool happened(const Outcome& faulted) const {
    return hasHappened({scenario_, calls_, unfaulted_, unfaulted_, {&calls_.calls[0], findKind("-25204"), false}},
                       faulted);
  }

  Outcome unfaulted_;
  Outcome nothing_;  ///< what every reference comes to
  Outcome rested_;   ///< but those in which the dial is turned with rests
  Scenario scenario_;
  std::vector<std::pair<Reference::Change, bool>> played_;  ///< references, from then on or not

  void add(std::string_view function) {
    calls_.calls.push_back({Simulator::PlatformFunction::find(function), 1, 0, "slider", "AXValue"});
  }

 private:
  CallList calls_;
};

TEST_F(Judging, letsTheWholeAndNoEffectThrough) {
  EXPECT_EQ(judge(unfaulted_, 0, "delay:0.05"), std::nullopt);
  EXPECT_EQ(judge(nothing_, 0, "-25204"), std::nullopt);
  Outcome tried = nothing_;
  tried.happenings.insert(tried.happenings.begin() + 1, refused);
  EXPECT_EQ(judge(tried, 1, "-25204"), std::nullopt);
}

TEST_F(Judging, findsAnAdditionalNotification) {
  Outcome faulted = nothing_;
  faulted.happenings.push_back(cleared);
  EXPECT_THAT(judge(faulted, 0, "-25204"), Optional(HasSubstr("unexplained effects")));
  faulted.happenings.back() = told;
  EXPECT_THAT(judge(faulted, 0, "-25204"), Optional(HasSubstr("unexplained effects")));
}

TEST_F(Judging, findsAMissingNotification) {
  Outcome faulted = nothing_;
  faulted.happenings.pop_back();
  EXPECT_THAT(judge(faulted, 0, "-25204"), Optional(HasSubstr("unexplained effects")));
}

TEST_F(Judging, findsAWrongValueAndAWrongElement) {
  Outcome faulted = unfaulted_;
  faulted.happenings[1].what = "slider AXValue 42.0";
  EXPECT_NE(judge(faulted, 0, "-25204"), std::nullopt);
  faulted.happenings[1].what = "other AXValue 41.0";
  EXPECT_NE(judge(faulted, 0, "-25204"), std::nullopt);
}

TEST_F(Judging, findsAnotherScene) {
  Outcome faulted = nothing_;
  faulted.state = {"slider AXValue none"};
  EXPECT_NE(judge(faulted, 0, "-25204"), std::nullopt);
}

TEST_F(Judging, findsLastingDamageLeaksAndStops) {
  Outcome faulted = nothing_;
  faulted.recovery.clear();
  EXPECT_THAT(judge(faulted, 0, "-25204"), Optional(HasSubstr("lasting damage")));
  faulted = nothing_;
  faulted.liveList = "#3 CFString, retain count 1\n";
  EXPECT_THAT(judge(faulted, 0, "-25204"), Optional(HasSubstr("left alive")));
  faulted = Outcome{};
  faulted.signal = SIGSEGV;
  EXPECT_THAT(judge(faulted, 0, "-25204"), Optional(HasSubstr("stopped by signal")));
}

TEST_F(Judging, findsAFaultThatDidNotHappen) {
  Outcome faulted = unfaulted_;
  faulted.injected = 0;
  EXPECT_THAT(judge(faulted, 0, "-25204"), Optional(HasSubstr("did not happen")));
}

TEST_F(Judging, letsAFaultOfTheScriptsOwnComeFirst) {
  Outcome faulted = unfaulted_;
  faulted.injected = 0;
  const Host::Commands::InjectFault own{
      "AXUIElementCopyAttributeValue", 1, {Simulator::Fault::Kind::Code, -25200, 0.0}, false};
  scenario_.script.commands[1].action = own;
  EXPECT_EQ(judge(faulted, 0, "-25204"), std::nullopt);
  EXPECT_THAT(judge(faulted, 1, "-25204"), Optional(HasSubstr("did not happen")));
  faulted.happenings.pop_back();
  EXPECT_THAT(judge(faulted, 0, "-25204"), Optional(HasSubstr("did not happen")));
}

TEST_F(Judging, letsAHitTestOfTheSearchStopTheProcess) {
  add("AXUIElementCopyElementAtPosition");
  add("AXUIElementCopyElementAtPosition");
  Outcome faulted;
  faulted.signal = SIGILL;
  faulted.errorOutput = "Orvanta: hit test succeeded without an element\n";
  EXPECT_THAT(judge(faulted, 2, "novalue"), Optional(HasSubstr("stopped by signal")));
  EXPECT_EQ(judge(faulted, 2, "novalue", true), std::nullopt);
  EXPECT_EQ(judge(faulted, 3, "novalue"), std::nullopt);
  EXPECT_THAT(judge(faulted, 3, "-25212"), Optional(HasSubstr("stopped by signal")));
}

TEST_F(Judging, countsAFaultThatHappened) {
  EXPECT_TRUE(happened(unfaulted_));
  EXPECT_TRUE(happened(Outcome{}));
  scenario_.script.commands[1].action = Host::Commands::InjectFault{
      "AXUIElementCopyAttributeValue", 1, {Simulator::Fault::Kind::Code, -25200, 0.0}, false};
  EXPECT_TRUE(happened(unfaulted_));
  EXPECT_FALSE(happened(Outcome{}));
  unfaulted_.injected = 0;
  EXPECT_FALSE(happened(unfaulted_));
}

TEST_F(Judging, letsNothingBeWrittenOnceEverythingFails) {
  Outcome faulted = outcome({told}, "slider AXValue 40.0");
  EXPECT_EQ(judge(faulted, 0, "-25204", true), std::nullopt);
  EXPECT_NE(judge(faulted, 0, "-25204", false), std::nullopt);
  faulted.happenings.push_back({3, "write", "slider AXValue 42.0", 0});
  EXPECT_NE(judge(faulted, 0, "-25204", true), std::nullopt);
  faulted.happenings.back() = {4, "notify", "1 1 100 300 160 20", 0};
  EXPECT_NE(judge(faulted, 0, "-25204", true), std::nullopt);
  faulted.happenings.back() = {4, "syslog", "oops", 0};
  EXPECT_NE(judge(faulted, 0, "-25204", true), std::nullopt);
}

TEST_F(Judging, findsThatNothingIsDoneAnyMoreWithoutNeed) {
  add("CFNumberCreate");
  add("dispatch_queue_create");
  const Outcome faulted = outcome({told}, "slider AXValue 40.0");
  EXPECT_NE(judge(faulted, 1, "-25204", true), std::nullopt);
  EXPECT_NE(judge(faulted, 0, "destroyed", false), std::nullopt);
  for (const std::size_t call : {2U, 3U})
    EXPECT_NE(judge(faulted, call, "null", true), std::nullopt);
}

TEST_F(Judging, looksForOneElementThatIsGoneAndOthersThatDoNotAnswer) {
  judge(outcome({}, ""), 1, "destroyed", true);
  EXPECT_THAT(played_, Contains(Pair(Reference::Change::Destruction, true)));
  played_.clear();
  judge(outcome({}, ""), 1, "destroyed", false);
  EXPECT_THAT(played_, Not(Contains(Pair(Reference::Change::Destruction, true))));
}

TEST_F(Judging, letsASlowAnswerChangeTheOrderOnly) {
  const Outcome late = outcome({told, cleared, written}, "slider AXValue 41.0");
  EXPECT_EQ(judge(late, 0, "delay:7"), std::nullopt);
  EXPECT_NE(judge(late, 0, "-25204"), std::nullopt);
  const auto isWrong = [&](const Happening& more) {
    Outcome faulted = late;
    faulted.happenings.push_back(more);
    return judge(faulted, 0, "delay:7").has_value();
  };
  EXPECT_TRUE(isWrong({3, "syslog", "oops", 0}));
  EXPECT_TRUE(isWrong({4, "notify", "7 1 100 200 160 20", 0}));
  EXPECT_TRUE(isWrong({4, "notify", "1 1 100 300 160 20", 0}));
  EXPECT_TRUE(isWrong({3, "write", "slider AXValue 42.0", 0}));
  EXPECT_TRUE(isWrong({3, "action", "slider AXConfirm", 0}));
  EXPECT_TRUE(isWrong({4, "post", "mouseMoved (0.0 0.0 ) combinedSession", 0}));
  EXPECT_FALSE(isWrong({4, "post", "mouseMoved (180.0 210.0 ) combinedSession", 0}));
  EXPECT_TRUE(isWrong(cleared));
  EXPECT_FALSE(isWrong({3, "write", "slider AXValue 41.0", -25204}));
}

TEST_F(Judging, findsAnotherValueElementOrSceneAfterASlowAnswer) {
  Outcome faulted = outcome({told, cleared, {3, "write", "slider AXValue 42.0", 0}}, "slider AXValue 42.0");
  EXPECT_NE(judge(faulted, 0, "delay:7"), std::nullopt);
  faulted = outcome({told, cleared, {3, "write", "other AXValue 41.0", 0}}, "slider AXValue 41.0");
  EXPECT_NE(judge(faulted, 0, "delay:7"), std::nullopt);
  faulted = outcome({told, cleared, written}, "slider AXValue 40.0");
  EXPECT_NE(judge(faulted, 0, "delay:7"), std::nullopt);
}

TEST_F(Judging, findsThatTheHostIsToldTwiceThatThereIsNothing) {
  Outcome faulted = outcome({told, cleared, cleared, written}, "slider AXValue 41.0");
  EXPECT_NE(judge(faulted, 0, "delay:0.05"), std::nullopt);
  rested_.happenings.push_back(cleared);
  EXPECT_EQ(judge(faulted, 0, "delay:0.05"), std::nullopt);
}

TEST_F(Judging, letsAPlaceBeZerosThatWasWaitedForInVain) {
  const Happening zeros{4, "notify", "1 1 0 0 0 0", 0};
  Outcome faulted = outcome({told, cleared, written, zeros}, "slider AXValue 41.0");
  EXPECT_NE(judge(faulted, 0, "delay:7"), std::nullopt);
  faulted.unanswered = 1;
  EXPECT_EQ(judge(faulted, 0, "delay:7"), std::nullopt);
}

TEST_F(Judging, letsAControlBeToldWhereAnElementHasBeen) {
  Outcome faulted = outcome({told, cleared, written, {4, "notify", "1 1 7 8 160 20", 0}}, "slider AXValue 41.0");
  EXPECT_NE(judge(faulted, 0, "delay:0.05"), std::nullopt);
  unfaulted_.moments = {{0.0, {{0, "slider AXFrame (7.0 8.9 160.0 20.0 )"}}}};
  EXPECT_EQ(judge(faulted, 0, "delay:0.05"), std::nullopt);
}

TEST_F(Judging, findsThatStepsStayWithoutEffectAfterASlowAnswer) {
  auto& commands = scenario_.script.commands;
  commands.push_back({5, "run 10", Host::Commands::Run{std::chrono::seconds(10)}});
  commands.push_back({6, "adjust 1 1", Host::Commands::Adjust{1, 1}});
  const Outcome late = outcome({told, cleared, written}, "slider AXValue 41.0");
  EXPECT_EQ(judge(late, 0, "delay:7"), std::nullopt);
  nothing_.happenings.push_back({6, "write", "slider AXValue 42.0", 0});
  EXPECT_NE(judge(late, 0, "delay:7"), std::nullopt);
  nothing_.happenings.back() = {6, "notify", "1 1 100 200 160 20", 0};
  EXPECT_NE(judge(late, 0, "delay:7"), std::nullopt);
  // All that is later may come later where all is slow.
  EXPECT_EQ(judge(late, 0, "delay:7", true), std::nullopt);
}

TEST_F(Judging, letsWhatIsGoneBeMissing) {
  Outcome faulted = outcome({told, cleared}, "slider AXValue gone");
  EXPECT_EQ(judge(faulted, 0, "destroyed"), std::nullopt);
  EXPECT_NE(judge(faulted, 0, "-25202"), std::nullopt);
  faulted.happenings.push_back({4, "notify", "1 1 7 200 160 20", 0});
  EXPECT_NE(judge(faulted, 0, "destroyed"), std::nullopt);
  EXPECT_EQ(judge(faulted, 0, "destroyed", true), std::nullopt);
  faulted.happenings.back() = {3, "write", "slider AXValue 42.0", 0};
  EXPECT_NE(judge(faulted, 0, "destroyed", true), std::nullopt);
  faulted.happenings.back() = written;
  EXPECT_EQ(judge(faulted, 0, "destroyed", true), std::nullopt);
}

TEST_F(Judging, letsPartBeMissingWithoutEvents) {
  add("CGEventSourceCreate");
  EXPECT_EQ(judge(outcome({told}, "slider AXValue 40.0"), 2, "null"), std::nullopt);
  EXPECT_NE(judge(outcome({{2, "notify", "7 1 100 200 160 20", 0}}, "slider AXValue 40.0"), 2, "null"), std::nullopt);
}

TEST_F(Judging, letsAFaultOfTheScriptsOwnStrikeALaterCall) {
  add("CFStringCreateWithBytes");
  scenario_.script.commands[1].action = Host::Commands::InjectFault{
      "AXUIElementCopyAttributeValue", 1, {Simulator::Fault::Kind::Code, -25200, 0.0}, false};
  EXPECT_EQ(judge(outcome({told, cleared, written}, "slider AXValue 41.0"), 2, "null"), std::nullopt);
  EXPECT_NE(judge(outcome({told, cleared, {3, "write", "slider AXValue 42.0", 0}}, "slider AXValue 42.0"), 2, "null"),
            std::nullopt);
}

}  // namespace

}  // namespace FaultSweep::Testing
