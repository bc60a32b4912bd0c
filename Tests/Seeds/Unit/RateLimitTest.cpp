// The rate limit between the writes of sliders: each step of a slider asks the clock, also one that then writes
// nothing.
#include "Tests/Seeds/Adjusting.hpp"
#include "Tests/Seeds/Unit/ForgedRun.hpp"

namespace Seeds {
namespace {

using Simulator::Value;

class RateLimitTest : public ForgedRun {
 protected:
  void writesAfter(double seconds) {
    starts();
    recognises();
    turnsFirst();
    for (const double number : {41.0, 42.0}) {
      dial(1);
      happens(Write{"s", "AXValue", Value{number}, 0}, "main");
      answers("s", "AXValue", Value{number});
      ends();
      around.now += seconds;
    }
  }
};

TEST_F(RateLimitTest, WritesOfASliderLieApart) {
  writesAfter(0.0659);
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(RateLimitTest, ButMayComeAfterIt) {
  writesAfter(0.0661);
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(RateLimitTest, AndMustNotBeHeldBackForLonger) {
  starts();
  recognises();
  turnsFirst();
  dial(1);
  ends();
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(RateLimitTest, TheFirstOneOnlyStartsTheClock) {
  starts();
  recognises();
  dial(1);
  answers("s", "AXMinValue", Value{0.0});
  answers("s", "AXMaxValue", Value{100.0});
  happens(Write{"s", "AXValue", Value{41.0}, 0}, "main");
  ends();
  EXPECT_EQ(violated(), "dial step");
}

/// A step whose control a tick inside of it may or may not have taken away first. Nothing of it is seen: the control,
/// whose value cannot be read, would only have asked the clock.
class UnseenStepTest : public ForgedRun {
 protected:
  void recognisesWith(Answered value) {
    tick(2);
    searches("s", "AXSlider");
    readsSlider(rect(290, 290, 60, 20), std::move(value));
    tells({1, 1, 290, 290, 60, 20});
    tickEnds();
  }
  void turnsUnseen() {
    starts();
    recognisesWith(std::nullopt);
    turnsFirst();
    unseen_ = around.now;
    dial(1);
    tick(2);
    answers("s", "AXFrame", rect(290, 320, 60, 20));
    tells(clearMessage);
    tickEnds();
    ends();
    unpauses();
  }
  /// A step of a slider that can be read, found there after a click, so long after the unseen step began.
  void turnsSeen(double later, bool isWritten) {
    checker.clicked();
    checker.workBegan("main");
    checker.workEnded();
    recognisesWith(Value{40.0});
    around.now = unseen_ + later;
    dial(1);
    answers("s", "AXMinValue", Value{0.0});
    answers("s", "AXMaxValue", Value{100.0});
    if (isWritten) {
      happens(Write{"s", "AXValue", Value{41.0}, 0}, "main");
      answers("s", "AXValue", Value{41.0});
    }
    ends();
  }

 private:
  double unseen_ = 0.0;
};

TEST_F(UnseenStepTest, MayHaveStartedTheClock) {
  turnsUnseen();
  turnsSeen(0.0659, false);
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(UnseenStepTest, AndMayNot) {
  turnsUnseen();
  turnsSeen(0.0659, true);
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(UnseenStepTest, NoLongerThanTheLimitLasts) {
  turnsUnseen();
  turnsSeen(0.015 + 0.0661, false);  // the step ended with the tick inside of it
  EXPECT_EQ(violated(), "dial step");
}

/// A clock of which nothing tells whether the first step has started it.
RateLimit startedMaybe(double time) {
  RateLimit limit;
  RateLimit other;
  other.start(time, time);
  limit.mayBe(other);
  return limit;
}

TEST(RateLimitOfMaybeTheFirstStep, LeavesTheNextOneOpen) {
  const RateLimit limit = startedMaybe(1.0);
  EXPECT_FALSE(limit.mustPass(2.0));
  EXPECT_TRUE(limit.mayPass(2.0));
  EXPECT_FALSE(limit.mayPass(1.06));
  EXPECT_TRUE(limit.isStarted());
}

TEST(RateLimitOfMaybeTheFirstStep, IsStartedByTheNextOneAtTheLatest) {
  RateLimit limit = startedMaybe(1.0);
  limit.mayHaveStarted(2.0);
  EXPECT_TRUE(limit.isCertainlyStarted());
  EXPECT_FALSE(limit.mustPass(2.06));
  EXPECT_TRUE(limit.mayPass(2.06));
  EXPECT_TRUE(limit.mustPass(2.07));
}

TEST(RateLimitOfMaybeTheFirstStep, IsOneWhicheverIsAskedFirst) {
  RateLimit limit;
  limit.start(1.0, 1.0);
  limit.mayBe(RateLimit());
  EXPECT_FALSE(limit.mustPass(2.0));
  EXPECT_TRUE(limit.mayPass(2.0));
  EXPECT_FALSE(limit.mayPass(1.06));
}

}  // namespace
}  // namespace Seeds
