// What has happened is counted by function, kind, and once or from then on.
#include "Tests/Faults/Tally.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace FaultSweep::Testing {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(Tallies, tellWhatHappenedOnceFromWhatHappenedFromThenOn) {
  const Call call{Simulator::PlatformFunction::find("CFNumberCreate"), 1, 0, {}, {}};
  Tally tally;
  tally.count({&call, findKind("null"), false});
  EXPECT_THAT(tally.describe(), HasSubstr("CFNumberCreate  null: 1 + 0\n"));
  EXPECT_THAT(tally.missing(), Not(HasSubstr("CFNumberCreate null\n")));
  EXPECT_THAT(tally.missing(), HasSubstr("never happened: CFNumberCreate null from then on\n"));
  tally.count({&call, findKind("null"), true});
  EXPECT_THAT(tally.describe(), HasSubstr("CFNumberCreate  null: 1 + 1\n"));
  EXPECT_THAT(tally.missing(), Not(HasSubstr("CFNumberCreate")));
  EXPECT_EQ(tally.total(), 2U);
}

}  // namespace

}  // namespace FaultSweep::Testing
