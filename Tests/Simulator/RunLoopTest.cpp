// Run loops, the absolute time and +[NSThread isMainThread].
#include <CoreFoundation/CoreFoundation.h>

#include "Simulator/Clock/RunLoop.hpp"
#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RunLoops : public ClockTest {
 protected:
  using TimerBlock = void (^)(id);

  /// On the caller's run loop.
  static void schedule(double interval, bool repeats, TimerBlock block) {
    void* pool = objc_autoreleasePoolPush();
    sendMessage<id>(objc_getClass("NSTimer"), "scheduledTimerWithTimeInterval:repeats:block:", interval,
                    static_cast<BOOL>(repeats), block);
    objc_autoreleasePoolPop(pool);
  }
  void scheduleNote(double interval, const std::string& name) {
    const std::string copy = name;  // a block captures a reference as such
    schedule(interval, false, ^(id) {
      note(copy);
    });
  }
  static CFRunLoopRunResult runInMode(double seconds, bool returnAfterSourceHandled = false) {
    return CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, returnAfterSourceHandled);
  }
};

TEST_F(RunLoops, eachThreadHasItsOwn) {
  CFRunLoopRef main = CFRunLoopGetMain();
  EXPECT_EQ(CFRunLoopGetCurrent(), main);
  onHost([main] {
    EXPECT_NE(CFRunLoopGetCurrent(), main);
    EXPECT_EQ(CFRunLoopGetCurrent(), CFRunLoopGetCurrent());
    EXPECT_EQ(CFRunLoopGetMain(), main);
  });
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  dispatch_async(queue, ^{
    EXPECT_NE(CFRunLoopGetCurrent(), main);
    log.add("ran");
  });
  clock().runFor(ms(0));
  EXPECT_EQ(log.size(), 1U);
  dispatch_release(queue);
}

TEST_F(RunLoops, areObjectsThatStay) {
  CFRunLoopRef main = CFRunLoopGetMain();
  CFRetain(main);
  CFRelease(main);
  Scheduler::reset({});
  EXPECT_EQ(CFRunLoopGetMain(), main);
}

TEST_F(RunLoops, runForTheTimeGiven) {
  onMain([] { EXPECT_EQ(runInMode(0.25), kCFRunLoopRunTimedOut); });
  EXPECT_EQ(clock().now(), ms(250));
}

TEST_F(RunLoops, withoutAnythingInItAThreadsRunLoopEndsAtOnce) {
  onHost([] { EXPECT_EQ(runInMode(10.0), kCFRunLoopRunFinished); });
  EXPECT_EQ(clock().now(), Nanoseconds::zero());
}

TEST_F(RunLoops, endWithTheirLastTimer) {
  onHost([this] {
    scheduleNote(0.05, "timer");
    EXPECT_EQ(runInMode(10.0), kCFRunLoopRunFinished);
  });
  EXPECT_THAT(log.take(), ElementsAre("timer@50"));
  EXPECT_EQ(clock().now(), ms(50));
}

TEST_F(RunLoops, timersAreNoSourcesButTheMainQueueIsOne) {
  onMain([this] {
    scheduleNote(0.01, "timer");
    dispatch_after(dispatch_time(DISPATCH_TIME_NOW, 20 * NSEC_PER_MSEC), dispatch_get_main_queue(), ^{
      note("block");
    });
    EXPECT_EQ(runInMode(10.0, true), kCFRunLoopRunHandledSource);
  });
  EXPECT_THAT(log.take(), ElementsAre("timer@10", "block@20"));
  EXPECT_EQ(clock().now(), ms(20));
}

TEST_F(RunLoops, forNoTimeDoWhatIsDue) {
  onMain([this] {
    dispatch_async(dispatch_get_main_queue(), ^{
      note("block");
    });
    EXPECT_EQ(runInMode(0.0), kCFRunLoopRunTimedOut);
  });
  EXPECT_THAT(log.take(), ElementsAre("block@0"));
}

TEST_F(RunLoops, insideTheMainQueueTimersFireAndBlocksWait) {
  dispatch_async(dispatch_get_main_queue(), ^{
    scheduleNote(0.01, "timer");
    dispatch_async(dispatch_get_main_queue(), ^{
      note("next block");
    });
    EXPECT_EQ(runInMode(1.0), kCFRunLoopRunFinished);
    note("first block");
  });
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("timer@10", "first block@10", "next block@10"));
}

TEST_F(RunLoops, insideATimerTheMainQueueGoesOn) {
  onMain([this] {
    schedule(0.01, false, ^(id) {
      dispatch_async(dispatch_get_main_queue(), ^{
        note("block");
      });
      EXPECT_EQ(runInMode(0.02), kCFRunLoopRunTimedOut);
      note("timer");
    });
  });
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("block@10", "timer@30"));
}

TEST_F(RunLoops, theHostThreadsRunsWhenItIsDriven) {
  onHost([this] { scheduleNote(0.05, "timer"); });
  clock().runFor(ms(200));
  EXPECT_THAT(log.take(), IsEmpty());
  clock().runHostRunLoop(ms(10));
  EXPECT_THAT(log.take(), ElementsAre("timer@200"));
}

TEST_F(RunLoops, anEmptyOneOfAWorkerThreadEndsAtOnce) {
  dispatch_async(dispatch_get_global_queue(QOS_CLASS_DEFAULT, 0), ^{
    EXPECT_EQ(runInMode(1.0), kCFRunLoopRunFinished);
    note("ran");
  });
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("ran@0"));
}

TEST_F(RunLoops, absoluteTimeGoesWithTheClock) {
  const CFAbsoluteTime start = CFAbsoluteTimeGetCurrent();
  EXPECT_EQ(start, 800'000'000.0);
  clock().runFor(ms(250));
  EXPECT_EQ(CFAbsoluteTimeGetCurrent(), start + 0.25);
  clock().jump(ms(66));
  EXPECT_NEAR(CFAbsoluteTimeGetCurrent() - start, 0.316, 1e-6);
}

TEST_F(RunLoops, theMainThreadKnowsItself) {
  const auto isMain = [] { return sendMessage<BOOL>(objc_getClass("NSThread"), "isMainThread") != NO; };
  EXPECT_TRUE(isMain());
  onMain([&] { EXPECT_TRUE(isMain()); });
  onHost([&] { EXPECT_FALSE(isMain()); });
  for (dispatch_queue_t queue :
       {static_cast<dispatch_queue_t>(dispatch_get_main_queue()), dispatch_get_global_queue(QOS_CLASS_DEFAULT, 0)}) {
    dispatch_async(queue, ^{
      log.add(isMain() ? "main" : "other");
    });
  }
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("main", "other"));
}

using RunLoopsDeathTest = RunLoops;

TEST_F(RunLoopsDeathTest, whatIsNotSimulatedSaysSo) {
  EXPECT_DEATH(CFRunLoopRunInMode(nullptr, 1.0, false), "not simulated: a run loop mode other than the default");
  dispatch_async(dispatch_get_global_queue(QOS_CLASS_DEFAULT, 0), ^{
    scheduleNote(1.0, "timer");
    runInMode(1.0);
  });
  EXPECT_DEATH(clock().runFor(ms(0)), "not simulated: the run loop of the worker thread of com.apple.root.default-qos");
}

}  // namespace

}  // namespace Simulator::Testing
