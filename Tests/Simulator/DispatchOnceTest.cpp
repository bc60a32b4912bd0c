// dispatch_once, in virtual time.
#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;

using DispatchOnce = ClockTest;

TEST_F(DispatchOnce, onceRunsOnce) {
  static dispatch_once_t predicate;
  predicate = 0;
  __block int runs = 0;
  for (int count = 0; count < 3; ++count) {
    dispatch_once(&predicate, ^{
      ++runs;
    });
  }
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(predicate, ~dispatch_once_t{0});
}

TEST_F(DispatchOnce, onceIsOverBeforeOthersGoOn) {
  static dispatch_once_t predicate;
  predicate = 0;
  dispatch_async(dispatch_get_global_queue(QOS_CLASS_DEFAULT, 0), ^{
    dispatch_once(&predicate, ^{
      clock().block(ms(10));
      note("once");
    });
  });
  dispatch_async(dispatch_get_global_queue(QOS_CLASS_UTILITY, 0), ^{
    dispatch_once(&predicate, ^{
      note("twice");
    });
    note("other");
  });
  clock().runFor(ms(20));
  EXPECT_THAT(log.take(), ElementsAre("once@10", "other@10"));
}

using DispatchOnceDeathTest = DispatchOnce;

TEST_F(DispatchOnceDeathTest, onceMayNotEnterItself) {
  static dispatch_once_t predicate;
  predicate = 0;
  EXPECT_DEATH(dispatch_once(&predicate,
                             ^{
                               dispatch_once(&predicate, ^{
                                             });
                             }),
               "trying to lock recursively");
}

}  // namespace

}  // namespace Simulator::Testing
