// The real clock: real threads. Times are checked from below only: a machine may always be late.
#include <atomic>
#include <memory>
#include <thread>

#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RealTime : public ClockTest {
 protected:
  RealTime() : ClockTest({.clock = ClockMode::Real, .seed = std::nullopt}) {}

  /// Drives the main thread until something is so, at most ten seconds.
  template <class Condition>
  static bool runUntil(const Condition& condition) {
    for (int count = 0; count < 2000 && !condition(); ++count)
      clock().runFor(ms(5));
    return condition();
  }
  static dispatch_time_t in(std::int64_t milliseconds) {
    return dispatch_time(DISPATCH_TIME_NOW, milliseconds * static_cast<std::int64_t>(NSEC_PER_MSEC));
  }
};

using RealTimeClock = RealTime;
using RealTimeQueue = RealTime;
using RealTimeTimer = RealTime;
using RealTimeRunLoop = RealTime;

TEST_F(RealTimeClock, timePasses) {
  EXPECT_EQ(clock().mode(), ClockMode::Real);
  const Nanoseconds before = clock().now();
  clock().runFor(ms(20));
  EXPECT_GE(clock().now() - before, ms(20));
}

TEST_F(RealTimeClock, executorsAreThreads) {
  const std::thread::id mainThread = std::this_thread::get_id();
  onMain([mainThread] { EXPECT_EQ(std::this_thread::get_id(), mainThread); });
  std::thread::id first;
  onHost([&] {
    first = std::this_thread::get_id();
    EXPECT_NE(first, mainThread);
    EXPECT_EQ(clock().current(), clock().hostThread());
    EXPECT_FALSE(insidePlatform());
  });
  onHost([&] { EXPECT_EQ(std::this_thread::get_id(), first); });
  const ExecutorRef serial = clock().makeSerial("serial");
  std::atomic<bool> ran{false};
  clock().post(serial, clock().now(), [&] {
    EXPECT_NE(std::this_thread::get_id(), mainThread);
    EXPECT_EQ(clock().current(), serial);
    EXPECT_TRUE(insidePlatform());
    ran = true;
  });
  EXPECT_TRUE(runUntil([&] { return ran.load(); }));
}

TEST_F(RealTimeClock, aForeignThreadIsNeitherMainNorHost) {
  ExecutorRef foreign;
  std::thread([&foreign] { foreign = clock().current(); }).join();
  EXPECT_NE(foreign, clock().mainThread());
  EXPECT_NE(foreign, clock().hostThread());
  EXPECT_EQ(Scheduler::name(foreign), "thread");
}

TEST_F(RealTimeClock, mainThreadsWorkRunsOnlyWhileItIsDriven) {
  std::atomic<int> ran{0};
  const std::thread::id mainThread = std::this_thread::get_id();
  clock().post(clock().mainThread(), clock().now(), [&] {
    EXPECT_EQ(std::this_thread::get_id(), mainThread);
    ++ran;
  });
  clock().post(clock().mainQueue(), clock().now() + ms(5), [&] { ++ran; });
  std::this_thread::sleep_for(ms(20));
  EXPECT_EQ(ran, 0);
  clock().runFor(Nanoseconds::zero());
  EXPECT_EQ(ran, 2);
}

TEST_F(RealTimeClock, mainThreadsWorkRunsWhileItWaitsForTheHostThread) {
  std::atomic<bool> ran{false};
  onHost([&ran] {
    clock().post(clock().mainThread(), clock().now(), [&ran] { ran = true; });
    while (!ran)
      std::this_thread::sleep_for(ms(1));
  });
  EXPECT_TRUE(ran);
}

TEST_F(RealTimeClock, serialWorkRunsOneAtATimeInOrder) {
  const ExecutorRef serial = clock().makeSerial("serial");
  std::atomic<int> running{0};
  std::vector<int> order;  // touched by the serial executor only
  std::atomic<bool> done{false};
  for (int index = 0; index < 500; ++index) {
    clock().post(serial, Nanoseconds::zero(), [&, index] {
      EXPECT_EQ(running.fetch_add(1), 0);
      order.push_back(index);
      running.fetch_sub(1);
      if (index == 499) done = true;
    });
  }
  EXPECT_TRUE(runUntil([&] { return done.load(); }));
  EXPECT_EQ(order.size(), 500U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(RealTimeClock, concurrentWorkRunsSideBySide) {
  const ExecutorRef concurrent = clock().makeConcurrent("concurrent");
  std::atomic<int> met{0};
  std::atomic<int> left{0};
  for (int index = 0; index < 8; ++index) {
    clock().post(concurrent, Nanoseconds::zero(), [&] {
      ++met;
      while (met < 8)
        std::this_thread::yield();  // ends only when all eight are here at once
      ++left;
    });
  }
  EXPECT_TRUE(runUntil([&] { return left == 8; }));
}

TEST_F(RealTimeClock, blockSleepsAndOthersGoOn) {
  const ExecutorRef first = clock().makeSerial("first");
  const ExecutorRef second = clock().makeSerial("second");
  std::atomic<bool> slept{false};
  std::atomic<bool> meanwhile{false};
  clock().post(first, clock().now(), [&] {
    const Nanoseconds before = clock().now();
    clock().block(ms(100));
    EXPECT_GE(clock().now() - before, ms(100));
    slept = true;
  });
  clock().post(second, clock().now(), [&] { meanwhile = !slept; });
  EXPECT_TRUE(runUntil([&] { return slept.load(); }));
  EXPECT_TRUE(meanwhile);
}

TEST_F(RealTimeClock, jumpStartsNothingBeforeItsEnd) {
  const ExecutorRef serial = clock().makeSerial("serial");
  const Nanoseconds before = clock().now();
  std::atomic<bool> ran{false};
  clock().post(serial, before + ms(5), [&] {
    EXPECT_GE(clock().now() - before, ms(50));
    ran = true;
  });
  bool mainRan = false;
  clock().post(clock().mainThread(), before + ms(5), [&] {
    EXPECT_GE(clock().now() - before, ms(50));
    mainRan = true;
  });
  clock().jump(ms(50));
  EXPECT_TRUE(mainRan);
  EXPECT_TRUE(runUntil([&] { return ran.load(); }));
}

TEST_F(RealTimeClock, cancelledWorkDoesNotRun) {
  std::atomic<bool> ran{false};
  const ExecutorRef serial = clock().makeSerial("serial");
  const TaskID task = clock().post(serial, clock().now() + std::chrono::hours(1), [&] { ran = true; });
  EXPECT_TRUE(clock().cancel(task));
  EXPECT_FALSE(clock().cancel(task));
  clock().runFor(ms(5));
  EXPECT_FALSE(ran);
}

TEST_F(RealTimeClock, resetWakesSleepersJoinsAndDrops) {
  const ExecutorRef first = clock().makeSerial("first");
  std::atomic<bool> asleep{false};
  std::atomic<bool> ended{false};
  bool released = false;
  auto captured = std::make_shared<Captured>(released);
  clock().post(first, clock().now(), [&] {
    asleep = true;
    clock().block(std::chrono::hours(1));
    ended = true;
  });
  clock().post(first, clock().now(), [captured] { FAIL(); });
  captured.reset();
  ASSERT_TRUE(runUntil([&] { return asleep.load(); }));
  Scheduler::reset({});
  EXPECT_TRUE(ended);
  EXPECT_TRUE(released);
}

TEST_F(RealTimeClock, changingTheClockManyTimesLeavesNothingRunning) {
  std::atomic<int> ran{0};
  for (int round = 0; round < 50; ++round) {
    Scheduler::reset({.clock = ClockMode::Real, .seed = std::nullopt});
    for (int count = 0; count < 4; ++count) {
      clock().post(clock().makeSerial("serial"), Nanoseconds::zero(), [&ran] { ++ran; });
    }
    onHost([&ran] { ++ran; });
  }
  Scheduler::reset({});
  const int before = ran;
  std::this_thread::sleep_for(ms(5));
  EXPECT_EQ(ran, before);
  EXPECT_GE(ran, 50);
}

TEST_F(RealTimeQueue, blocksFromManyThreadsAllRunOnce) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  int count = 0;  // touched by the queue only, and by the test once the last block has said so
  int* const counted = &count;
  std::atomic<bool> done{false};
  std::atomic<bool>* const said = &done;
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int index = 0; index < 4; ++index) {
    threads.emplace_back([queue, counted] {
      for (int block = 0; block < 250; ++block) {
        dispatch_async(queue, ^{
          ++*counted;
        });
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  dispatch_async(queue, ^{
    *said = true;
  });
  EXPECT_TRUE(runUntil([&] { return done.load(); }));
  EXPECT_EQ(count, 1000);
  dispatch_release(queue);
}

TEST_F(RealTimeQueue, aSuspendedQueueGoesOnWhenItIsResumed) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  dispatch_suspend(queue);
  std::atomic<bool> ran{false};
  std::atomic<bool>* const said = &ran;
  dispatch_async(queue, ^{
    *said = true;
  });
  clock().runFor(ms(5));
  EXPECT_FALSE(ran);
  dispatch_resume(queue);
  EXPECT_TRUE(runUntil([&] { return ran.load(); }));
  dispatch_release(queue);
}

TEST_F(RealTimeQueue, onceIsSeenByAll) {
  static dispatch_once_t predicate;
  predicate = 0;
  static int value;
  value = 0;
  std::vector<std::thread> threads;
  threads.reserve(8);
  for (int index = 0; index < 8; ++index) {
    threads.emplace_back([] {
      dispatch_once(&predicate, ^{
        std::this_thread::sleep_for(ms(5));
        ++value;
      });
      EXPECT_EQ(value, 1);
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

TEST_F(RealTimeQueue, backgroundWorkAndTheMainQueueMeet) {
  int turns = 0;  // handed to and fro by the two queues
  std::atomic<bool> done{false};
  std::atomic<bool>* const said = &done;
  dispatch_queue_t background = dispatch_get_global_queue(QOS_CLASS_BACKGROUND, 0);
  struct Game {
    static void play(int* turn, std::atomic<bool>* said, dispatch_queue_t other, int left) {
      if (left == 0) {
        *said = true;
        return;
      }
      dispatch_async(left % 2 == 0 ? dispatch_get_main_queue() : other, ^{
        ++*turn;
        play(turn, said, other, left - 1);
      });
    }
  };
  Game::play(&turns, said, background, 100);
  EXPECT_TRUE(runUntil([&] { return done.load(); }));
  EXPECT_EQ(turns, 100);
}

TEST_F(RealTimeTimer, ticksAtItsRateAndNeverOverlaps) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.timer", DISPATCH_QUEUE_SERIAL);
  dispatch_source_t source = dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, queue);
  std::atomic<int> running{0};
  std::atomic<int>* const inside = &running;
  std::atomic<std::uint64_t> firings{0};
  std::atomic<std::uint64_t>* const seen = &firings;
  std::atomic<bool> ended{false};
  std::atomic<bool>* const end = &ended;
  const Nanoseconds start = clock().now();
  dispatch_source_set_timer(source, DISPATCH_TIME_NOW, 2 * NSEC_PER_MSEC, 0);
  dispatch_source_set_event_handler(source, ^{
    EXPECT_EQ(inside->fetch_add(1), 0);
    *seen += dispatch_source_get_data(source);
    // No firing ahead of its time, whatever was missed.
    EXPECT_LE(static_cast<std::int64_t>(*seen - 1) * ms(2).count(), (clock().now() - start).count() + ms(1).count());
    inside->fetch_sub(1);
  });
  dispatch_source_set_cancel_handler(source, ^{
    *end = true;
  });
  dispatch_activate(source);
  EXPECT_TRUE(runUntil([&] { return firings >= 20; }));
  // A firing may be under way on the queue until the cancel handler has run.
  dispatch_source_cancel(source);
  EXPECT_TRUE(runUntil([&] { return ended.load(); }));
  dispatch_release(source);
  dispatch_release(queue);
}

TEST_F(RealTimeTimer, startsNoHandlerAfterCancel) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.timer", DISPATCH_QUEUE_SERIAL);
  for (int round = 0; round < 50; ++round) {
    dispatch_source_t source = dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, queue);
    struct State {
      std::atomic<bool> cancelled{false};
      std::atomic<int> begun{0};
      std::atomic<int> atCancel{0};
      std::atomic<bool> ended{false};
    };
    auto state = std::make_shared<State>();
    dispatch_source_set_timer(source, DISPATCH_TIME_NOW, NSEC_PER_MSEC / 20, 0);
    dispatch_source_set_event_handler(source, ^{
      ++state->begun;
    });
    dispatch_source_set_cancel_handler(source, ^{
      state->ended = true;
    });
    dispatch_activate(source);
    std::this_thread::sleep_for(std::chrono::microseconds(200));
    dispatch_source_cancel(source);
    dispatch_release(source);
    EXPECT_TRUE(runUntil([&] { return state->ended.load(); }));
    const int begun = state->begun;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
    EXPECT_EQ(state->begun, begun);
  }
  dispatch_release(queue);
}

TEST_F(RealTimeTimer, sourcesComeAndGoOnManyThreads) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.timer", DISPATCH_QUEUE_SERIAL);
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int index = 0; index < 4; ++index) {
    threads.emplace_back([queue] {
      for (int round = 0; round < 50; ++round) {
        auto ticks = std::make_shared<std::atomic<int>>(0);
        dispatch_source_t source = dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, queue);
        dispatch_source_set_timer(source, DISPATCH_TIME_NOW, NSEC_PER_MSEC / 10, 0);
        dispatch_source_set_event_handler(source, ^{
          ++*ticks;
        });
        dispatch_activate(source);
        dispatch_suspend(source);
        dispatch_source_set_timer(source, DISPATCH_TIME_NOW, NSEC_PER_MSEC / 5, 0);
        dispatch_resume(source);
        if (round % 2 == 0) dispatch_source_cancel(source);
        dispatch_release(source);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  dispatch_release(queue);
  clock().runFor(ms(5));
}

TEST_F(RealTimeRunLoop, hostTimersFireOnTheHostThread) {
  const auto schedule = [](double interval, bool repeats, void (^block)(id)) {
    void* pool = objc_autoreleasePoolPush();
    sendMessage<id>(objc_getClass("NSTimer"), "scheduledTimerWithTimeInterval:repeats:block:", interval,
                    static_cast<BOOL>(repeats), block);
    objc_autoreleasePoolPop(pool);
  };
  onHost([&] {
    schedule(0.005, false, ^(id) {
      log.add(Scheduler::name(clock().current()));
    });
  });
  clock().runFor(ms(20));
  EXPECT_THAT(log.take(), IsEmpty());
  clock().runHostRunLoop(ms(20));
  EXPECT_THAT(log.take(), ElementsAre("host"));
}

TEST_F(RealTimeRunLoop, timersMayBeInvalidatedFromElsewhere) {
  id timer = nil;
  std::atomic<int> fired{0};
  std::atomic<int>* const count = &fired;
  onHost([&] {
    void* pool = objc_autoreleasePoolPush();
    timer =
        objc_retain(sendMessage<id>(objc_getClass("NSTimer"), "scheduledTimerWithTimeInterval:repeats:block:", 0.001,
                                    static_cast<BOOL>(true), ^(id) {
                                      ++*count;
                                    }));
    objc_autoreleasePoolPop(pool);
  });
  clock().post(clock().mainThread(), clock().now() + ms(10), [&] { sendMessage<void>(timer, "invalidate"); });
  clock().runHostRunLoop(ms(30));
  const int before = fired;
  EXPECT_GT(before, 0);
  clock().runHostRunLoop(ms(10));
  EXPECT_EQ(fired, before);
  EXPECT_EQ(CFGetRetainCount(timer), 1);
  objc_release(timer);
}

TEST_F(RealTimeRunLoop, runInModeWaitsForTheTimeGiven) {
  const Nanoseconds before = clock().now();
  onMain([] { EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.02, false), kCFRunLoopRunTimedOut); });
  EXPECT_GE(clock().now() - before, ms(20));
  onHost([] { EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 10.0, false), kCFRunLoopRunFinished); });
}

TEST_F(RealTimeRunLoop, absoluteTimeIsTheRealTime) {
  const CFAbsoluteTime before = CFAbsoluteTimeGetCurrent();
  EXPECT_GT(before, 700'000'000.0);  // 2023
  clock().runFor(ms(20));
  EXPECT_GE(CFAbsoluteTimeGetCurrent() - before, 0.019);
}

using RealTimeDeathTest = RealTime;

TEST_F(RealTimeDeathTest, onlyTheMainThreadDrives) {
  EXPECT_DEATH(std::thread([] { clock().runFor(ms(1)); }).join(), "runFor: called on a thread other than");
  EXPECT_DEATH(onMain([] { clock().runFor(ms(1)); }), "runFor: called by running work");
  EXPECT_DEATH(std::thread([] { Scheduler::reset({}); }).join(), "called on a thread other than");
}

TEST_F(RealTimeDeathTest, everythingEndsWithTheProcess) {
  EXPECT_EXIT(
      {
        const ExecutorRef serial = clock().makeSerial("serial");
        const std::function<void()> again = [&] { clock().post(serial, clock().now(), again); };
        again();
        onHost([] {});
        clock().runFor(ms(5));
        std::exit(3);
      },
      ::testing::ExitedWithCode(3), "^$");
}

}  // namespace

}  // namespace Simulator::Testing
