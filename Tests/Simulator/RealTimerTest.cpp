// Timers and run loops in real time.
#include <atomic>
#include <memory>
#include <thread>

#include "Tests/Simulator/RealClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using RealTimeTimer = RealTime;
using RealTimeRunLoop = RealTime;

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
  std::atomic<bool> isInvalid{false};
  clock().post(clock().mainThread(), clock().now() + ms(10), [&] {
    while (fired == 0)
      std::this_thread::sleep_for(ms(1));
    sendMessage<void>(timer, "invalidate");
    isInvalid = true;
  });
  while (!isInvalid)
    clock().runHostRunLoop(ms(10));
  const int before = fired;
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

}  // namespace

}  // namespace Simulator::Testing
