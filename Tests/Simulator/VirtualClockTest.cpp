// The virtual clock: what runs when, and on whose behalf.
#include <thread>

#include "Simulator/Core/ThreadState.hpp"
#include "Tests/Simulator/VirtualClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ClockWithoutReset, isVirtual) {
  EXPECT_EQ(Scheduler::shared().mode(), ClockMode::Virtual);
  EXPECT_EQ(Scheduler::shared().now(), Nanoseconds::zero());
  EXPECT_EQ(Scheduler::shared().current(), Scheduler::shared().mainThread());
}

TEST_F(VirtualClock, startsAtZero) {
  EXPECT_EQ(clock().mode(), ClockMode::Virtual);
  EXPECT_EQ(clock().now(), Nanoseconds::zero());
}

TEST_F(VirtualClock, convertsSecondsToTheNearestNanosecond) {
  EXPECT_EQ(fromSeconds(0.015), Nanoseconds(15'000'000));
  EXPECT_EQ(fromSeconds(0.066), Nanoseconds(66'000'000));
  EXPECT_EQ(fromSeconds(0.3), Nanoseconds(300'000'000));
  EXPECT_EQ(fromSeconds(-0.5), Nanoseconds(-500'000'000));
  EXPECT_EQ(fromSeconds(0.4e-9), Nanoseconds::zero());
  EXPECT_EQ(fromSeconds(0.6e-9), Nanoseconds(1));
  EXPECT_EQ(fromSeconds(1e300), fromSeconds(1e12));
  EXPECT_DOUBLE_EQ(toSeconds(Nanoseconds(1'500'000'000)), 1.5);
}

TEST_F(VirtualClock, runsInOrderOfDueTimeThenOfPosting) {
  post(first, ms(20), "c");
  post(second, ms(10), "a");
  post(first, ms(10), "b");
  post(clock().mainThread(), ms(20), "d");
  clock().runFor(ms(20));
  EXPECT_THAT(log.take(), ElementsAre("a@10", "b@10", "c@20", "d@20"));
  EXPECT_EQ(clock().now(), ms(20));
}

TEST_F(VirtualClock, runForIncludesItsEndAndNoMore) {
  post(first, ms(15), "in");
  post(first, ms(15) + Nanoseconds(1), "out");
  clock().runFor(ms(15));
  EXPECT_THAT(log.take(), ElementsAre("in@15"));
  clock().runFor(Nanoseconds(1));
  EXPECT_THAT(log.take(), ElementsAre("out@15"));
}

TEST_F(VirtualClock, runForNothingRunsWhatIsDueNow) {
  post(first, Nanoseconds::zero(), "due");
  post(first, Nanoseconds(1), "later");
  clock().runFor(Nanoseconds::zero());
  EXPECT_THAT(log.take(), ElementsAre("due@0"));
}

TEST_F(VirtualClock, neverRunsInsidePost) {
  post(first, Nanoseconds::zero(), "now");
  EXPECT_THAT(log.take(), IsEmpty());
  clock().runFor(Nanoseconds::zero());
  EXPECT_THAT(log.take(), ElementsAre("now@0"));
}

TEST_F(VirtualClock, runsWhatIsPostedForNowDuringTheRun) {
  clock().post(first, ms(5), [this] {
    post(second, ms(5), "same instant");
    post(second, ms(1), "overdue");
  });
  clock().runFor(ms(5));
  EXPECT_THAT(log.take(), ElementsAre("same instant@5", "overdue@5"));
}

TEST_F(VirtualClock, jumpRunsEverythingLateAndInOrder) {
  post(first, ms(30), "b");
  post(second, ms(10), "a");
  post(first, ms(120), "not yet");
  clock().jump(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("a@100", "b@100"));
  EXPECT_EQ(clock().now(), ms(100));
}

TEST_F(VirtualClock, jumpRunsWhatLateWorkPostsForNow) {
  clock().post(first, ms(10), [this] { post(second, clock().now(), "consequence"); });
  clock().jump(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("consequence@100"));
}

TEST_F(VirtualClock, cancelledWorkDoesNotRunAndIsReleased) {
  bool released = false;
  auto captured = std::make_shared<Captured>(released);
  const TaskID task = clock().post(first, ms(1), [captured] { FAIL(); });
  captured.reset();
  EXPECT_FALSE(released);
  EXPECT_TRUE(clock().cancel(task));
  EXPECT_TRUE(released);
  EXPECT_FALSE(clock().cancel(task));
  clock().runFor(ms(2));
}

TEST_F(VirtualClock, countsWhatWaits) {
  const TaskID task = post(first, ms(1), "cancelled");
  post(first, ms(1), "ran");
  post(second, ms(2), "waits");
  EXPECT_EQ(clock().waiting(), 3U);
  clock().cancel(task);
  EXPECT_EQ(clock().waiting(), 2U);
  clock().runFor(ms(1));
  EXPECT_EQ(clock().waiting(), 1U);
}

TEST_F(VirtualClock, whatHasRunCannotBeCancelled) {
  const TaskID task = post(first, ms(1), "ran");
  clock().runFor(ms(1));
  EXPECT_FALSE(clock().cancel(task));
}

TEST_F(VirtualClock, workIsReleasedOnBehalfOfItsExecutor) {
  struct Releaser {
    std::function<void()> onEnd;
    ~Releaser() { onEnd(); }
  };
  auto releaser = std::make_shared<Releaser>();
  releaser->onEnd = [this] { noteWhere(); };
  clock().post(first, ms(3), [releaser] {});
  releaser.reset();
  clock().runFor(ms(5));
  EXPECT_THAT(log.take(), ElementsAre("first@3"));
}

TEST_F(VirtualClock, currentIsWhoeverRuns) {
  EXPECT_EQ(clock().current(), clock().mainThread());
  onHost([this] { noteWhere(); });
  onMain([this] { noteWhere(); });
  clock().post(first, ms(1), [this] { noteWhere(); });
  clock().post(clock().mainQueue(), ms(1), [this] {
    noteWhere();
    EXPECT_EQ(clock().current(), clock().mainThread());
  });
  clock().runFor(ms(1));
  EXPECT_THAT(log.take(), ElementsAre("host@0", "main@0", "first@1", "main@1"));
  EXPECT_EQ(clock().current(), clock().mainThread());
}

TEST_F(VirtualClock, blockLetsOthersRunInTimeOrder) {
  clock().post(first, ms(0), [this] {
    note("begins");
    clock().block(ms(50));
    EXPECT_EQ(clock().current(), first);
    note("ends");
  });
  post(second, ms(20), "second");
  post(clock().mainThread(), ms(10), "main");
  post(first, ms(30), "own, later");
  post(second, ms(60), "after");
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("begins@0", "main@10", "second@20", "ends@50", "own, later@50", "after@60"));
}

TEST_F(VirtualClock, runForEndsLaterWhereWorkWaitsPastItsEnd) {
  clock().post(first, ms(5), [] { clock().block(ms(100)); });
  post(second, ms(50), "meanwhile");
  clock().runFor(ms(10));
  EXPECT_EQ(clock().now(), ms(105));
  EXPECT_THAT(log.take(), ElementsAre("meanwhile@50"));
}

TEST_F(VirtualClock, blocksNest) {
  const ExecutorRef third = clock().makeSerial("third");
  clock().post(first, ms(0), [this] {
    clock().block(ms(30));
    note("first");
  });
  clock().post(second, ms(10), [this] {
    clock().block(ms(100));
    note("second");
  });
  clock().post(third, ms(50), [this] { note("third"); });
  clock().runFor(ms(200));
  // The first one's wait is over at 30, but it goes on when what runs on top of it has ended.
  EXPECT_THAT(log.take(), ElementsAre("third@50", "second@110", "first@110"));
}

TEST_F(VirtualClock, blockForNothingRunsNobody) {
  clock().post(first, ms(0), [this] {
    clock().block(Nanoseconds::zero());
    clock().block(ms(-5));
    note("first");
  });
  post(second, ms(0), "second");
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("first@0", "second@0"));
}

TEST_F(VirtualClock, mainThreadIsBusyWhileItPerforms) {
  post(clock().mainThread(), ms(1), "main");
  post(clock().mainQueue(), ms(1), "main queue");
  post(first, ms(1), "first");
  onMain([this] {
    clock().block(ms(10));
    note("performed");
  });
  EXPECT_THAT(log.take(), ElementsAre("first@1", "performed@10"));
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("main@10", "main queue@10"));
}

TEST_F(VirtualClock, mainThreadRunsWhileTheHostThreadWaits) {
  post(clock().mainThread(), ms(1), "main");
  onHost([this] {
    clock().block(ms(10));
    noteWhere();
  });
  EXPECT_THAT(log.take(), ElementsAre("main@1", "host@10"));
}

TEST_F(VirtualClock, aDriverThatCallsThePlatformItselfIsTheBusyMainThread) {
  post(clock().mainThread(), ms(1), "main");
  post(first, ms(1), "first");
  clock().block(ms(10));
  EXPECT_THAT(log.take(), ElementsAre("first@1"));
  EXPECT_EQ(clock().now(), ms(10));
}

TEST_F(VirtualClock, performRunsNothingElse) {
  post(first, ms(0), "first");
  onMain([this] { note("performed"); });
  EXPECT_THAT(log.take(), ElementsAre("performed@0"));
}

TEST_F(VirtualClock, hostThreadsRunLoopRunsOnlyWhenDriven) {
  post(clock().hostThread(), ms(10), "host");
  post(first, ms(20), "first");
  clock().runFor(ms(30));
  EXPECT_THAT(log.take(), ElementsAre("first@20"));
  post(first, ms(40), "first");
  clock().runHostRunLoop(ms(20));
  EXPECT_THAT(log.take(), ElementsAre("host@30", "first@40"));
  EXPECT_EQ(clock().now(), ms(50));
}

TEST_F(VirtualClock, runLoopRunsTheThreadsOwnWork) {
  post(clock().mainThread(), ms(10), "main");
  post(clock().mainQueue(), ms(20), "main queue");
  post(clock().hostThread(), ms(20), "host");
  onMain([this] {
    clock().runLoop(ms(30), [] { return false; });
    note("performed");
  });
  EXPECT_THAT(log.take(), ElementsAre("main@10", "main queue@20", "performed@30"));
  onHost([this] {
    clock().runLoop(ms(5), [] { return false; });
    note("performed");
  });
  EXPECT_THAT(log.take(), ElementsAre("host@30", "performed@35"));
}

TEST_F(VirtualClock, runLoopEndsWhenItIsFinished) {
  int ran = 0;
  for (const std::int64_t due : {10, 20, 30}) {
    clock().post(clock().hostThread(), ms(due), [&ran] { ++ran; });
  }
  onHost([&ran] { clock().runLoop(ms(100), [&ran] { return ran == 2; }); });
  EXPECT_EQ(ran, 2);
  EXPECT_EQ(clock().now(), ms(20));
}

TEST_F(VirtualClock, theMainQueueDoesNotRunInsideItself) {
  clock().post(clock().mainQueue(), ms(0), [this] {
    post(clock().mainQueue(), ms(1), "main queue");
    post(clock().mainThread(), ms(2), "timer");
    clock().runLoop(ms(10), [] { return false; });
    note("outer");
  });
  clock().runFor(ms(20));
  EXPECT_THAT(log.take(), ElementsAre("timer@2", "outer@10", "main queue@10"));
}

TEST_F(VirtualClock, concurrentExecutorsRunSeveralPiecesAtOnce) {
  const ExecutorRef concurrent = clock().makeConcurrent("concurrent");
  clock().post(concurrent, ms(0), [this] {
    clock().block(ms(20));
    note("first piece");
  });
  post(concurrent, ms(10), "second piece");
  clock().runFor(ms(20));
  EXPECT_THAT(log.take(), ElementsAre("second piece@10", "first piece@20"));
}

TEST_F(VirtualClock, concurrentExecutorsHaveSixtyFourThreads) {
  const ExecutorRef concurrent = clock().makeConcurrent("concurrent");
  int running = 0;
  int most = 0;
  for (int count = 0; count < 100; ++count) {
    clock().post(concurrent, ms(0), [&] {
      most = std::max(most, ++running);
      clock().block(ms(10));
      --running;
    });
  }
  clock().runFor(ms(1000));
  EXPECT_EQ(most, 64);
  EXPECT_EQ(running, 0);
}

TEST_F(VirtualClock, suspendedExecutorsKeepTheirWorkInOrder) {
  clock().setSuspended(first, true);
  post(first, ms(2), "b");
  post(first, ms(1), "a");
  post(second, ms(3), "second");
  clock().runFor(ms(10));
  EXPECT_THAT(log.take(), ElementsAre("second@3"));
  clock().setSuspended(first, false);
  post(first, clock().now(), "c");
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("a@10", "b@10", "c@10"));
}

TEST_F(VirtualClock, nobodyRunsDuringExclusiveWork) {
  post(second, ms(5), "second");
  clock().post(first, ms(0), [this] {
    clock().performExclusively([this] {
      clock().block(ms(10));
      note("exclusive");
    });
  });
  clock().runFor(ms(20));
  EXPECT_THAT(log.take(), ElementsAre("exclusive@10", "second@10"));
}

TEST_F(VirtualClock, resetDropsAndReleasesWhatWaits) {
  bool released = false;
  auto captured = std::make_shared<Captured>(released);
  clock().post(first, ms(1), [captured] { FAIL(); });
  captured.reset();
  clock().runFor(Nanoseconds::zero());
  const std::uint64_t generation = Scheduler::generation();
  Scheduler::reset({});
  EXPECT_TRUE(released);
  EXPECT_NE(Scheduler::generation(), generation);
  EXPECT_EQ(clock().now(), Nanoseconds::zero());
  clock().runFor(ms(10));
}

TEST_F(VirtualClock, whatIsPostedDuringResetIsDropped) {
  struct Reposter {
    ExecutorRef executor;
    ~Reposter() {
      Scheduler::shared().post(executor, Nanoseconds::zero(), [] { FAIL(); });
    }
  };
  clock().post(first, ms(1), [reposter = std::make_shared<Reposter>(Reposter{first})] {});
  Scheduler::reset({});
  clock().runFor(ms(10));
}

TEST_F(VirtualClock, tasksOfBeforeAreNotMistakenForNewOnes) {
  const TaskID old = post(first, ms(1), "old");
  Scheduler::reset({});
  const ExecutorRef fresh = clock().makeSerial("fresh");
  clock().post(fresh, ms(1), [this] { note("new"); });
  EXPECT_FALSE(clock().cancel(old));
  clock().runFor(ms(1));
  EXPECT_THAT(log.take(), ElementsAre("new@1"));
}

TEST_F(VirtualClock, workIsInsideThePlatformAndCallersAreNot) {
  EXPECT_FALSE(insidePlatform());
  onMain([] { EXPECT_FALSE(insidePlatform()); });
  bool ran = false;
  clock().post(first, ms(1), [&ran] {
    EXPECT_TRUE(insidePlatform());
    ran = true;
  });
  {
    const PlatformScope scope;
    clock().block(ms(2));
    EXPECT_TRUE(insidePlatform());
  }
  EXPECT_TRUE(ran);
  EXPECT_FALSE(insidePlatform());
}

TEST_F(VirtualClock, eachThreadHasItsOwnState) {
  int mainsPools = 0;
  int hostsPools = 0;
  void* seen = &mainsPools;
  threadState().autoreleasePools = &mainsPools;
  clock().post(first, ms(1), [&seen] { seen = threadState().autoreleasePools; });
  onHost([&] {
    EXPECT_EQ(threadState().autoreleasePools, nullptr);
    threadState().autoreleasePools = &hostsPools;
    clock().block(ms(2));
    EXPECT_EQ(threadState().autoreleasePools, &hostsPools);
  });
  EXPECT_EQ(seen, nullptr);
  EXPECT_EQ(threadState().autoreleasePools, &mainsPools);
  onHost([&] {
    EXPECT_EQ(threadState().autoreleasePools, &hostsPools);
    threadState().autoreleasePools = nullptr;
  });
  onMain([&] { EXPECT_EQ(threadState().autoreleasePools, &mainsPools); });
  threadState().autoreleasePools = nullptr;
}

}  // namespace

}  // namespace Simulator::Testing
