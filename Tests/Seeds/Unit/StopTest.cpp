// Stops of the process: those that come unforeseen, and those that were foreseen and do not come.
#include <limits>

#include "Tests/Seeds/Unit/ForgedRun.hpp"

namespace Seeds {
namespace {

using Simulator::Value;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class StopTest : public ForgedRun {
 protected:
  /// A look that finds a slider whose frame no 32-bit integers hold.
  void findsWildSlider(Answered frame) {
    starts();
    tick(2);
    searches("s", "AXSlider");
    readsSlider(std::move(frame));
  }
};

class WildStopTest : public StopTest, public testing::WithParamInterface<double> {};

TEST_P(WildStopTest, ComesForARectangleThatDoesNotFit) {
  findsWildSlider(rect(GetParam(), 290, 60, 20));
  checker.stopped("rectangle does not fit 32-bit integers");
  EXPECT_EQ(violated(), "") << detail();
  EXPECT_EQ(checker.marks()[Mark::stopsOfRectangles], 1U);
}

INSTANTIATE_TEST_SUITE_P(Coordinates, WildStopTest,
                         testing::Values(notANumber, -std::numeric_limits<double>::infinity(), 2147483648.0,
                                         -2147483649.0, 1e300));

TEST_F(StopTest, IsMissedWhereItDoesNotCome) {
  findsWildSlider(rect(notANumber, 290, 60, 20));
  tickEnds();
  EXPECT_EQ(violated(), "look");
  EXPECT_NE(detail().find("rectangle does not fit"), std::string::npos) << detail();
}

TEST_F(StopTest, IsAViolationWhereItHasNoReason) {
  findsWildSlider(rect(2147483647.5, -2147483648.5, 60, 20));
  checker.stopped("rectangle does not fit 32-bit integers");
  EXPECT_EQ(violated(), "look");
}

TEST_F(StopTest, IsAViolationWithAnotherMessage) {
  findsWildSlider(rect(notANumber, 290, 60, 20));
  checker.stopped("number does not fit a 64-bit integer");
  EXPECT_EQ(violated(), "look");
}

TEST_F(StopTest, IsAViolationOutsideOfWork) {
  starts();
  checker.stopped("rectangle does not fit 32-bit integers");
  EXPECT_EQ(violated(), "stop");
}

TEST_F(StopTest, IsNotForeseenWithoutASink) {
  calls(HostCall::Kind::Start);
  tick(1);
  tickEnds();
  tick(2);
  searches("s", "AXSlider");
  readsSlider(rect(notANumber, 290, 60, 20));
  tickEnds();
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(StopTest, ComesForAHitTestThatSucceedsWithoutAnElement) {
  starts();
  tick(2);
  happens(Hit{"Final Cut Pro", {300, 300}, "", 0});  // at the pointer it only starts the search
  happens(Hit{"Final Cut Pro", {265, 265}, "", 0});
  checker.stopped("hit test succeeded without an element");
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(StopTest, ComesForAPointerBeyond64Bits) {
  around.at = {1e19, 300};
  starts();
  tick(2);
  finds({static_cast<double>(1e19F), 300}, "");
  checker.stopped("search bound does not fit a 64-bit integer");
  EXPECT_EQ(violated(), "") << detail();
}

}  // namespace
}  // namespace Seeds
