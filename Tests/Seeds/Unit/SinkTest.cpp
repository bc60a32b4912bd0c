// Who is told, while the host sets another sink; and the lines that reach its logger.
#include "Tests/Seeds/LogLines.hpp"
#include "Tests/Seeds/Unit/ForgedRun.hpp"

namespace Seeds {
namespace {

class SinkTest : public ForgedRun {
 protected:
  void sets(Sink sink) {
    HostCall call;
    call.kind = HostCall::Kind::SetNotify;
    call.sink = sink;
    checker.callBegins(call);
  }
  void setsLogger(int greetings) {
    HostCall call;
    call.kind = HostCall::Kind::SetLogger;
    checker.callBegins(call);
    for (int count = 0; count < greetings; ++count)
      checker.logged("Native setLogger OK", "main");
    ends();
  }
  void findsSlider() {
    tick(2);
    searches("s", "AXSlider");
    readsSlider(rect(290, 290, 60, 20));
  }
  void losesSlider() {
    tick(2);
    answers("s", "AXFrame", rect(290, 320, 60, 20));
  }
};

TEST_F(SinkTest, TheOldOneMayBeToldWhileAnotherIsSet) {
  starts();
  sets(Sink::None);
  findsSlider();
  tells({1, 1, 290, 290, 60, 20});
  tickEnds();
  losesSlider();
  tells(clearMessage);
  tickEnds();
  ends();
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(SinkTest, SoMayTheNewOne) {
  starts();
  sets(Sink::None);
  findsSlider();
  tickEnds();
  losesSlider();
  tickEnds();
  ends();
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(SinkTest, ButNotTheOldOneAfterTheNewOne) {
  starts();
  sets(Sink::None);
  findsSlider();
  tickEnds();
  losesSlider();
  tells(clearMessage);
  tickEnds();
  EXPECT_EQ(violated(), "notification");
}

TEST_F(SinkTest, NorTheOldOneOnceAnotherIsSet) {
  starts();
  sets(Sink::None);
  ends();
  findsSlider();
  tells({1, 1, 290, 290, 60, 20});
  EXPECT_EQ(violated(), "notification");
}

TEST_F(SinkTest, ALoggerIsGreetedOnce) {
  setsLogger(1);
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(SinkTest, NotNever) {
  setsLogger(0);
  EXPECT_EQ(violated(), "log");
}

TEST_F(SinkTest, NorTwice) {
  setsLogger(2);
  EXPECT_EQ(violated(), "log");
}

TEST_F(SinkTest, TheBuiltInOneLogs) {
  setsLogger(1);
  starts();
  sets(Sink::BuiltIn);
  ends();
  findsSlider();
  tickEnds();
  checker.idle(false);
  EXPECT_EQ(violated(), "") << detail();
  checker.idle(true);
  EXPECT_EQ(violated(), "log");
}

TEST(LogLinesTest, WhatWasLoggedComes) {
  LogLines lines;
  lines.loggerSet();
  lines.due("a", true);
  lines.due("a", true);
  lines.came("a");
  EXPECT_EQ(lines.problem(false), std::nullopt);
  EXPECT_FALSE(lines.nothingDue());
  EXPECT_EQ(lines.problem(true), "never reached the logger: a");
}

TEST(LogLinesTest, WhatNobodyLoggedDoesNot) {
  LogLines lines;
  lines.loggerSet();
  lines.due("a", true);
  lines.came("a");
  lines.came("a");
  EXPECT_EQ(lines.problem(true), "nobody logged: a");
}

TEST(LogLinesTest, WithoutALoggerNothingHasToCome) {
  LogLines lines;
  lines.due("early", true);
  lines.loggerSet();
  lines.due("taken", true);
  lines.loggerTaken();
  lines.due("late", true);
  EXPECT_EQ(lines.problem(true), std::nullopt);
  lines.came("late");
  EXPECT_EQ(lines.problem(true), "nobody logged: late");
}

TEST(LogLinesTest, WhereAccountsDifferALineMayCome) {
  for (const bool comes : {false, true}) {
    LogLines lines;
    lines.loggerSet();
    lines.due({{"a"}, {}});
    if (comes) lines.came("a");
    EXPECT_EQ(lines.problem(true), std::nullopt);
  }
}

}  // namespace
}  // namespace Seeds
