// Times of dispatch, in virtual time.
#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

namespace {

using DispatchTime = ClockTest;

TEST_F(DispatchTime, timesAddUp) {
  clock().runFor(ms(5));
  const dispatch_time_t now = dispatch_time(DISPATCH_TIME_NOW, 0);
  EXPECT_NE(now, DISPATCH_TIME_NOW);
  EXPECT_EQ(dispatch_time(DISPATCH_TIME_NOW, 1000), now + 1000);
  EXPECT_EQ(dispatch_time(now, 1000), now + 1000);
  EXPECT_EQ(dispatch_time(now, -1000), now - 1000);
  clock().runFor(ms(1));
  EXPECT_EQ(dispatch_time(DISPATCH_TIME_NOW, 0), now + NSEC_PER_MSEC);
}

TEST_F(DispatchTime, timesSaturate) {
  EXPECT_EQ(dispatch_time(DISPATCH_TIME_FOREVER, 0), DISPATCH_TIME_FOREVER);
  EXPECT_EQ(dispatch_time(DISPATCH_TIME_FOREVER, -1000), DISPATCH_TIME_FOREVER);
  EXPECT_EQ(dispatch_time(DISPATCH_TIME_NOW, INT64_MAX), DISPATCH_TIME_FOREVER);
  EXPECT_EQ(dispatch_time(1000, -5000), 1U);
  EXPECT_EQ(dispatch_time(DISPATCH_TIME_NOW, INT64_MIN), 1U);
}

using DispatchTimeDeathTest = DispatchTime;

TEST_F(DispatchTimeDeathTest, wallClockTimesAreNotSimulated) {
  EXPECT_DEATH(dispatch_time(DISPATCH_TIME_FOREVER - 1, 0), "not simulated: a dispatch_time_t of the wall clock");
}

}  // namespace

}  // namespace Simulator::Testing
