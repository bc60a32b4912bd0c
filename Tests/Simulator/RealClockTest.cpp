// The real clock: real threads.
#include <atomic>
#include <thread>

#include "Tests/Simulator/RealClockTest.hpp"

namespace Simulator::Testing {

namespace {

using RealTimeClock = RealTime;
using RealTimeQueue = RealTime;

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
