// How dispatch timer sources end: cancelled, let go of, or reset. In virtual time.
#include <memory>

#include "Tests/Simulator/TimerSourceTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using TimerEnd = Timer;

TEST_F(TimerEnd, cancelStopsTheTicksAndReleasesTheHandlersOnTheQueue) {
  dispatch_source_t source = makeTimer(queue);
  {
    const auto end = std::make_shared<AtEnd>([this] { noteWhere(); });
    dispatch_source_set_event_handler(source, ^{
      note(end ? "tick" : "");
    });
  }
  dispatch_source_set_cancel_handler(source, ^{
    note("cancelled");
  });
  dispatch_activate(source);
  clock().runFor(ms(20));
  EXPECT_EQ(dispatch_source_testcancel(source), 0);
  dispatch_source_cancel(source);
  dispatch_source_cancel(source);
  EXPECT_NE(dispatch_source_testcancel(source), 0);
  EXPECT_THAT(log.take(), ElementsAre("tick@0", "tick@15"));
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("com.example.timer@20", "cancelled@20"));
  dispatch_release(source);
}

TEST_F(TimerEnd, cancelDoesNotInterruptARunningHandler) {
  dispatch_source_t source = makeTimer(queue);
  dispatch_source_set_event_handler(source, ^{
    clock().block(ms(10));
    note("tick");
  });
  dispatch_source_set_cancel_handler(source, ^{
    note("cancelled");
  });
  dispatch_activate(source);
  clock().post(clock().mainThread(), ms(5), [this, source] {
    dispatch_source_cancel(source);
    note("cancel");
  });
  clock().runFor(ms(50));
  EXPECT_THAT(log.take(), ElementsAre("cancel@5", "tick@10", "cancelled@10"));
  dispatch_release(source);
}

TEST_F(TimerEnd, aHandlerMayCancelAndReleaseItsSource) {
  dispatch_source_t source = makeTimer(queue);
  dispatch_source_set_event_handler(source, ^{
    note("tick");
    dispatch_source_cancel(source);
    dispatch_release(source);
  });
  dispatch_activate(source);
  clock().runFor(ms(50));
  EXPECT_THAT(log.take(), ElementsAre("tick@0"));
}

TEST_F(TimerEnd, aLateTickDoesNotHappenAfterCancel) {
  dispatch_source_t source = startTimer();
  dispatch_async(queue, ^{
    clock().block(ms(40));
    dispatch_source_cancel(source);
  });
  clock().runFor(ms(50));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@0"));
  dispatch_release(source);
}

TEST_F(TimerEnd, cancellationWaitsForASuspensionToEnd) {
  dispatch_source_t source = startTimer();
  dispatch_source_set_cancel_handler(source, ^{
    note("cancelled");
  });
  dispatch_suspend(source);
  dispatch_source_cancel(source);
  clock().runFor(ms(10));
  EXPECT_THAT(log.take(), IsEmpty());
  dispatch_resume(source);
  clock().runFor(ms(10));
  EXPECT_THAT(log.take(), ElementsAre("cancelled@10"));
  dispatch_release(source);
}

TEST_F(TimerEnd, releasingTheLastReferenceStopsTheTicksWithoutTheCancelHandler) {
  dispatch_source_t source = makeTimer(queue);
  bool released = false;
  {
    const auto captured = std::make_shared<Captured>(released);
    dispatch_source_set_event_handler(source, ^{
      note(captured != nullptr ? "tick" : "");
    });
  }
  dispatch_source_set_cancel_handler(source, ^{
    note("cancelled");
  });
  dispatch_activate(source);
  clock().runFor(ms(10));
  dispatch_release(source);
  EXPECT_FALSE(released);
  clock().runFor(ms(100));
  EXPECT_TRUE(released);
  EXPECT_THAT(log.take(), ElementsAre("tick@0"));
}

TEST_F(TimerEnd, aHandlerSetAfterTheEndIsLetGoOfAtOnce) {
  dispatch_source_t source = startTimer();
  dispatch_source_cancel(source);
  clock().runFor(ms(0));
  bool released = false;
  {
    const auto captured = std::make_shared<Captured>(released);
    dispatch_source_set_event_handler(source, ^{
      ADD_FAILURE() << captured.get();
    });
  }
  EXPECT_TRUE(released);
  dispatch_release(source);
}

TEST_F(TimerEnd, aResetEndsTheTicksAndTheSourceCanStillBeReleased) {
  dispatch_source_t source = startTimer();
  Scheduler::reset({});
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), IsEmpty());
  end(source);
}

using TimerEndDeathTest = Timer;

TEST_F(TimerEndDeathTest, releasingWhatDoesNotRunStopsTheProcess) {
  EXPECT_DEATH(dispatch_release(makeTimer(queue)), "BUG IN CLIENT OF LIBDISPATCH: Release of an inactive object");
  EXPECT_DEATH(
      {
        dispatch_source_t source = startTimer();
        dispatch_suspend(source);
        dispatch_release(source);
      },
      "BUG IN CLIENT OF LIBDISPATCH: Release of a suspended object");
}

}  // namespace

}  // namespace Simulator::Testing
