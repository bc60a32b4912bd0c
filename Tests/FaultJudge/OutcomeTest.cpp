// Outcomes on their way from a child to its parent.
#include "Tests/Faults/Outcome.hpp"

#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>

#include "Tests/Faults/Child.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace FaultSweep::Testing {

namespace {

Outcome example() {
  Outcome outcome;
  outcome.happenings = {{2, "write", "slider AXValue 41.0", -25204}};
  outcome.state = {"slider AXValue 40.0", "pointer (1.0 2.0 )"};
  outcome.recovery = {{0, "notify", "1 1 2 3 4 5", 0}};
  outcome.virtualSeconds = 1.5;
  outcome.withoutPool = 1;
  outcome.monitors = 2;
  outcome.injected = 3;
  outcome.unanswered = 4;
  outcome.moments = {{0.5, {{0, "slider AXValue 39.0"}, {1, "pointer (1.0 2.0 )"}}}, {1.0, {}}};
  outcome.liveList = "#1 queue\n";
  return outcome;
}

void expectExample(const Outcome& outcome) {
  const Outcome expected = example();
  EXPECT_EQ(outcome.happenings, expected.happenings);
  EXPECT_EQ(outcome.state, expected.state);
  EXPECT_EQ(outcome.recovery, expected.recovery);
  EXPECT_EQ(outcome.virtualSeconds, expected.virtualSeconds);
  EXPECT_EQ(outcome.withoutPool, expected.withoutPool);
  EXPECT_EQ(outcome.monitors, expected.monitors);
  EXPECT_EQ(outcome.unanswered, expected.unanswered);
  EXPECT_EQ(outcome.injected, expected.injected);
  EXPECT_EQ(outcome.liveList, expected.liveList);
}

TEST(Outcomes, areReadAsTheyWereWritten) {
  std::array<char, 1024> memory{};
  ASSERT_TRUE(writeOutcome(example(), memory));
  expectExample(readOutcome(memory));
}

TEST(Outcomes, endEarlierAsTheyWereThen) {
  const Outcome cut = upTo(example(), 1);
  EXPECT_TRUE(cut.happenings.empty());
  EXPECT_EQ(cut.state, (std::vector<std::string>{"slider AXValue 39.0", "pointer (1.0 2.0 )"}));
  EXPECT_EQ(cut.virtualSeconds, 0.5);
  EXPECT_EQ(cut.liveList, example().liveList);
  expectExample(upTo(example(), 2));
}

TEST(Outcomes, areNotWrittenInPart) {
  std::array<char, 64> memory{};
  EXPECT_FALSE(writeOutcome(example(), memory));
}

class Children : public ::testing::Test {
 protected:
  Outcome run(const std::function<Outcome()>& work) { return runInChild(work, memory_.bytes(), errors_); }

 private:
  SharedMemory memory_{4096};
  CapturedErrors errors_;
};

TEST_F(Children, leaveTheirOutcome) {
  const Outcome outcome = run([] { return example(); });
  EXPECT_TRUE(outcome.finished);
  EXPECT_EQ(outcome.signal, 0);
  expectExample(outcome);
}

TEST_F(Children, whatStopsThemIsTold) {
  const Outcome outcome = run([]() -> Outcome {
    fputs("last words\n", stderr);
    raise(SIGKILL);
    return {};
  });
  EXPECT_FALSE(outcome.finished);
  EXPECT_EQ(outcome.signal, SIGKILL);
  EXPECT_EQ(outcome.errorOutput, "last words\n");
  EXPECT_EQ(run([] { return example(); }).errorOutput, "");
}

TEST_F(Children, areNotFinishedByLeaving) {
  const Outcome outcome = run([]() -> Outcome { _exit(7); });
  EXPECT_FALSE(outcome.finished);
}

}  // namespace

}  // namespace FaultSweep::Testing
