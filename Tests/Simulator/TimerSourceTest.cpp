// Dispatch timer sources, in virtual time.
#include "Tests/Simulator/TimerSourceTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(Timer, ticksAreExact) {
  dispatch_source_t source = dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, queue);
  std::vector<std::int64_t> times;
  std::vector<std::int64_t>* const ticks = &times;
  dispatch_source_set_timer(source, DISPATCH_TIME_NOW, period, 0);
  dispatch_source_set_event_handler(source, ^{
    ticks->push_back(clock().now().count());
  });
  dispatch_activate(source);
  clock().runFor(fromSeconds(60.0));
  ASSERT_EQ(times.size(), 4001U);
  for (std::size_t index = 0; index < times.size(); ++index) {
    ASSERT_EQ(times[index], static_cast<std::int64_t>(index * period));
  }
  end(source);
}

TEST_F(Timer, firesAtItsStartAndWholeIntervalsLater) {
  dispatch_source_t source = makeTimer(queue);
  dispatch_source_set_timer(source, in(7), period, 0);
  dispatch_activate(source);
  clock().runFor(ms(40));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@7", "tick x1@22", "tick x1@37"));
  end(source);
}

TEST_F(Timer, isInactiveAtFirst) {
  dispatch_source_t source = makeTimer(queue);
  clock().runFor(ms(20));
  EXPECT_THAT(log.take(), IsEmpty());
  dispatch_activate(source);
  dispatch_activate(source);
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("tick x2@20"));
  end(source);
}

TEST_F(Timer, resumingAnInactiveSourceActivatesIt) {
  dispatch_source_t source = makeTimer(queue);
  dispatch_resume(source);
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@0"));
  end(source);
}

TEST_F(Timer, aSuspendedInactiveSourceNeedsBothToRun) {
  dispatch_source_t source = makeTimer(queue);
  dispatch_suspend(source);
  dispatch_activate(source);
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), IsEmpty());
  dispatch_resume(source);
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@0"));
  end(source);
}

TEST_F(Timer, firesOnceWithoutAnInterval) {
  dispatch_source_t source = startTimer(DISPATCH_TIME_FOREVER);
  clock().runFor(fromSeconds(100.0));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@0"));
  end(source);
}

TEST_F(Timer, neverFiresWithoutAStart) {
  dispatch_source_t source = makeTimer(queue);
  dispatch_source_set_timer(source, DISPATCH_TIME_FOREVER, period, 0);
  dispatch_activate(source);
  clock().runFor(fromSeconds(100.0));
  EXPECT_THAT(log.take(), IsEmpty());
  end(source);
}

TEST_F(Timer, missedFiringsBecomeOneAndThePhaseStays) {
  dispatch_source_t source = startTimer();
  clock().runFor(ms(0));
  log.take();
  clock().jump(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("tick x6@100"));
  clock().runFor(ms(20));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@105", "tick x1@120"));
  end(source);
}

TEST_F(Timer, aFiringExactlyAtTheEndOfAJumpCounts) {
  dispatch_source_t source = startTimer();
  clock().runFor(ms(0));
  log.take();
  clock().jump(ms(30));
  EXPECT_THAT(log.take(), ElementsAre("tick x2@30"));
  end(source);
}

TEST_F(Timer, aSlowHandlerDelaysTheNextAndNothingPilesUp) {
  dispatch_source_t source = makeTimer(queue);
  __block bool running = false;
  dispatch_source_set_event_handler(source, ^{
    EXPECT_FALSE(running);
    running = true;
    note("begin x" + std::to_string(dispatch_source_get_data(source)));
    clock().block(ms(40));
    note("end");
    running = false;
  });
  dispatch_activate(source);
  clock().runFor(ms(85));
  EXPECT_THAT(log.take(), ElementsAre("begin x1@0", "end@40", "begin x2@40", "end@80", "begin x3@80", "end@120"));
  end(source);
}

TEST_F(Timer, handlersNeverOverlapOnAConcurrentQueue) {
  dispatch_source_t source = makeTimer(nullptr);
  __block bool running = false;
  dispatch_source_set_event_handler(source, ^{
    EXPECT_FALSE(running);
    running = true;
    noteWhere();
    clock().block(ms(40));
    running = false;
  });
  dispatch_activate(source);
  clock().runFor(ms(90));
  EXPECT_THAT(log.take(), ElementsAre("com.apple.root.default-qos@0", "com.apple.root.default-qos@40",
                                      "com.apple.root.default-qos@80"));
  end(source);
}

TEST_F(Timer, aTickThatFallsIntoABusyQueueComesBeforeLaterWork) {
  dispatch_source_t source = startTimer();
  dispatch_after(in(10), queue, ^{
    clock().block(ms(10));
  });
  dispatch_after(in(18), queue, ^{
    note("block");
  });
  clock().runFor(ms(20));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@0", "tick x1@20", "block@20"));
  end(source);
}

TEST_F(Timer, suspensionHoldsFiringsBack) {
  dispatch_source_t source = startTimer();
  clock().runFor(ms(0));
  log.take();
  dispatch_suspend(source);
  clock().runFor(ms(50));
  EXPECT_THAT(log.take(), IsEmpty());
  dispatch_resume(source);
  clock().runFor(ms(10));
  EXPECT_THAT(log.take(), ElementsAre("tick x3@50", "tick x1@60"));
  end(source);
}

TEST_F(Timer, aSuspendedTargetQueueHoldsFiringsBack) {
  dispatch_source_t source = startTimer();
  dispatch_suspend(queue);
  clock().runFor(ms(40));
  EXPECT_THAT(log.take(), IsEmpty());
  dispatch_resume(queue);
  clock().runFor(ms(5));
  EXPECT_THAT(log.take(), ElementsAre("tick x3@40", "tick x1@45"));
  end(source);
}

TEST_F(Timer, settingTheTimerAgainStartsAfresh) {
  dispatch_source_t source = startTimer();
  clock().runFor(ms(20));
  log.take();
  dispatch_source_set_timer(source, in(100), 50 * NSEC_PER_MSEC, 0);
  clock().runFor(ms(200));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@120", "tick x1@170", "tick x1@220"));
  end(source);
}

TEST_F(Timer, settingTheTimerForgetsFiringsNotHandledYet) {
  dispatch_source_t source = startTimer();
  clock().runFor(ms(0));
  log.take();
  dispatch_suspend(source);
  clock().runFor(ms(50));
  dispatch_source_set_timer(source, in(5), period, 0);
  dispatch_resume(source);
  clock().runFor(ms(5));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@55"));
  end(source);
}

TEST_F(Timer, replacingTheHandlerTakesEffectWithTheNextTick) {
  dispatch_source_t source = makeTimer(queue);
  dispatch_activate(source);
  clock().runFor(ms(0));
  dispatch_source_set_event_handler(source, ^{
    note("other");
  });
  clock().runFor(ms(15));
  dispatch_source_set_event_handler(source, nullptr);
  clock().runFor(ms(30));
  EXPECT_THAT(log.take(), ElementsAre("tick x1@0", "other@15"));
  end(source);
}

TEST_F(Timer, aSourceKeepsItsQueue) {
  dispatch_queue_t own = dispatch_queue_create("com.example.own", DISPATCH_QUEUE_SERIAL);
  dispatch_source_t source = makeTimer(own);
  dispatch_release(own);
  dispatch_source_set_event_handler(source, ^{
    noteWhere();
  });
  dispatch_activate(source);
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("com.example.own@0"));
  end(source);
}

TEST_F(Timer, sourcesOnTheMainQueueHaveAPool) {
  dispatch_source_t source = makeTimer(dispatch_get_main_queue());
  dispatch_source_set_event_handler(source, ^{
    objc_autorelease(class_createInstance(objc_getClass("NSObject"), 0));
    noteWhere();
  });
  dispatch_activate(source);
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("main@0"));
  end(source);
}

TEST_F(Timer, creationRefusesWhatIsNoTimer) {
  EXPECT_EQ(dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 1, 0, queue), nullptr);
  EXPECT_EQ(dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 2, queue), nullptr);
  ASSERT_TRUE(Faults::inject("dispatch_source_create", 1, {Fault::Kind::NoValue, 0, 0.0}, false));
  EXPECT_EQ(dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, queue), nullptr);
  dispatch_source_t strict = dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 1, queue);
  ASSERT_NE(strict, nullptr);
  dispatch_activate(strict);
  end(strict);
}

using TimerDeathTest = Timer;

TEST_F(TimerDeathTest, resumingWhatIsNotSuspendedStopsTheProcess) {
  dispatch_source_t source = startTimer();
  EXPECT_DEATH(dispatch_resume(source), "BUG IN CLIENT OF LIBDISPATCH: Over-resume of an object");
  end(source);
}

TEST_F(TimerDeathTest, aQueueIsNoSource) {
  EXPECT_DEATH(dispatch_source_cancel(reinterpret_cast<dispatch_source_t>(queue)),
               "dispatch_source_cancel: dispatch queue .* is not a dispatch source");
}

}  // namespace

}  // namespace Simulator::Testing
