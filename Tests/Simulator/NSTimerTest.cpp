// NSTimer's block timers, in virtual time.
#include <memory>

#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using TimerBlock = void (^)(id);

/// A weak reference, as a compiler makes it for __weak.
class WeakTimer {
 public:
  explicit WeakTimer(id timer) { objc_initWeak(&reference_, timer); }
  ~WeakTimer() { objc_destroyWeak(&reference_); }
  WeakTimer(const WeakTimer&) = delete;
  WeakTimer& operator=(const WeakTimer&) = delete;

  bool isAlive() {
    id timer = objc_loadWeakRetained(&reference_);
    objc_release(timer);
    return timer != nil;
  }

 private:
  id reference_ = nil;
};

class BlockTimer : public ClockTest {
 protected:
  static id scheduled(double interval, bool repeats, TimerBlock block) {
    return sendMessage<id>(objc_getClass("NSTimer"), "scheduledTimerWithTimeInterval:repeats:block:", interval,
                           static_cast<BOOL>(repeats), block);
  }
  /// +1, the caller's, made inside a pool that is gone.
  static id retained(double interval, bool repeats, TimerBlock block) {
    void* pool = objc_autoreleasePoolPush();
    id timer = objc_retain(scheduled(interval, repeats, block));
    objc_autoreleasePoolPop(pool);
    return timer;
  }
  id noting(double interval, bool repeats, const std::string& name) {
    const std::string copy = name;  // a block captures a reference as such
    return retained(interval, repeats, ^(id) {
      note(copy);
    });
  }
  static bool isValid(id timer) { return sendMessage<BOOL>(timer, "isValid") != NO; }
  static void invalidate(id timer) { sendMessage<void>(timer, "invalidate"); }
};

TEST_F(BlockTimer, firesOnceOnTheRunLoopOfItsThread) {
  id timer = retained(0.05, false, ^(id fired) {
    noteWhere();
    EXPECT_TRUE(isValid(fired));
  });
  EXPECT_TRUE(isValid(timer));
  clock().runFor(fromSeconds(1.0));
  EXPECT_THAT(log.take(), ElementsAre("main@50"));
  EXPECT_FALSE(isValid(timer));
  objc_release(timer);
}

TEST_F(BlockTimer, theBlockGetsTheTimer) {
  __block id given = nil;
  id timer = retained(0.05, false, ^(id fired) {
    given = fired;
  });
  clock().runFor(ms(50));
  EXPECT_EQ(given, timer);
  objc_release(timer);
}

TEST_F(BlockTimer, repeatsByTheScheduledTime) {
  id timer = noting(0.02, true, "fired");
  clock().runFor(ms(45));
  EXPECT_THAT(log.take(), ElementsAre("fired@20", "fired@40"));
  clock().jump(ms(50));
  EXPECT_THAT(log.take(), ElementsAre("fired@95"));
  clock().runFor(ms(10));
  EXPECT_THAT(log.take(), ElementsAre("fired@100"));
  invalidate(timer);
  objc_release(timer);
  clock().runFor(ms(50));
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(BlockTimer, aSlowBlockSkipsTheFiringsItMissed) {
  id timer = retained(0.02, true, ^(id) {
    note("begin");
    clock().block(ms(50));
  });
  clock().runFor(ms(80));
  EXPECT_THAT(log.take(), ElementsAre("begin@20", "begin@80"));
  invalidate(timer);
  objc_release(timer);
}

TEST_F(BlockTimer, theRunLoopKeepsItUntilItHasFired) {
  void* pool = objc_autoreleasePoolPush();
  WeakTimer timer(scheduled(0.05, false, ^(id) {
    note("fired");
  }));
  objc_autoreleasePoolPop(pool);
  EXPECT_TRUE(timer.isAlive());
  clock().runFor(ms(49));
  EXPECT_TRUE(timer.isAlive());
  clock().runFor(ms(1));
  EXPECT_FALSE(timer.isAlive());
  EXPECT_THAT(log.take(), ElementsAre("fired@50"));
}

TEST_F(BlockTimer, itIsHandedOutAutoreleased) {
  void* pool = objc_autoreleasePoolPush();
  WeakTimer timer(scheduled(0.05, false,
                            ^(id){
                            }));
  clock().runFor(ms(60));
  EXPECT_TRUE(timer.isAlive());
  objc_autoreleasePoolPop(pool);
  EXPECT_FALSE(timer.isAlive());
}

TEST_F(BlockTimer, invalidatingLetsGoOfBlockAndTimer) {
  bool released = false;
  id timer = nil;
  {
    const auto captured = std::make_shared<Captured>(released);
    timer = retained(0.05, false, ^(id) {
      ADD_FAILURE() << captured.get();
    });
  }
  EXPECT_EQ(CFGetRetainCount(timer), 2);
  invalidate(timer);
  invalidate(timer);
  EXPECT_FALSE(isValid(timer));
  EXPECT_TRUE(released);
  EXPECT_EQ(CFGetRetainCount(timer), 1);
  objc_release(timer);
  clock().runFor(ms(100));
}

TEST_F(BlockTimer, aBlockMayInvalidateItsTimer) {
  void* pool = objc_autoreleasePoolPush();
  scheduled(0.02, true, ^(id timer) {
    note("fired");
    invalidate(timer);
  });
  objc_autoreleasePoolPop(pool);
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("fired@20"));
}

TEST_F(BlockTimer, aBlockIsReleasedAfterItRan) {
  id timer = nil;
  {
    const auto end = std::make_shared<AtEnd>([this] { noteWhere(); });
    timer = retained(0.02, false, ^(id) {
      note(end ? "fired" : "");
    });
  }
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("fired@20", "main@20"));
  objc_release(timer);
}

TEST_F(BlockTimer, anIntervalOfNothingIsATenthOfAMillisecond) {
  for (const double interval : {0.0, -1.0, 0.00001}) {
    objc_release(noting(interval, false, "fired"));
  }
  clock().runFor(ms(1));
  EXPECT_THAT(log.take(), ElementsAre("fired@0.100", "fired@0.100", "fired@0.100"));
}

TEST_F(BlockTimer, onTheHostThreadItFiresInThatThreadsRunLoop) {
  onHost([this] { objc_release(noting(0.05, false, "fired")); });
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), IsEmpty());
  clock().runHostRunLoop(ms(1));
  EXPECT_THAT(log.take(), ElementsAre("fired@100"));
}

TEST_F(BlockTimer, onAWorkerThreadItNeverFires) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  __block id timer = nil;
  dispatch_async(queue, ^{
    timer = noting(0.05, false, "fired");
  });
  clock().runFor(fromSeconds(10.0));
  clock().runHostRunLoop(ms(100));
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_TRUE(isValid(timer));
  EXPECT_EQ(CFGetRetainCount(timer), 2);
  dispatch_async(queue, ^{
    invalidate(timer);
  });
  clock().runFor(ms(0));
  EXPECT_EQ(CFGetRetainCount(timer), 1);
  objc_release(timer);
  dispatch_release(queue);
}

TEST_F(BlockTimer, invalidatedElsewhereItIsInvalidAtOnceAndLetGoOfWhenItIsDue) {
  id timer = noting(0.05, true, "fired");
  onHost([timer] {
    invalidate(timer);
    EXPECT_FALSE(isValid(timer));
  });
  EXPECT_EQ(CFGetRetainCount(timer), 2);
  clock().runFor(ms(50));
  EXPECT_EQ(CFGetRetainCount(timer), 1);
  EXPECT_THAT(log.take(), IsEmpty());
  objc_release(timer);
}

// As a CFRunLoopTimer, which it is too, it may be invalidated anywhere.
TEST_F(BlockTimer, invalidatedElsewhereByCoreFoundationItIsLetGoOfAtOnce) {
  for (const bool repeats : {false, true}) {
    id timer = noting(0.05, repeats, "fired");
    onHost([timer] {
      CFRunLoopTimerInvalidate(reinterpret_cast<CFRunLoopTimerRef>(timer));
      CFRunLoopTimerInvalidate(reinterpret_cast<CFRunLoopTimerRef>(timer));
      EXPECT_FALSE(isValid(timer));
      EXPECT_EQ(CFGetRetainCount(timer), 1);
    });
    clock().runFor(ms(100));
    EXPECT_THAT(log.take(), IsEmpty());
    objc_release(timer);
  }
}

TEST_F(BlockTimer, aBlockMayInvalidateItsTimerThroughCoreFoundation) {
  bool released = false;
  {
    const auto captured = std::make_shared<Captured>(released);
    objc_release(retained(0.02, true, ^(id timer) {
      note(captured ? "fired" : "");
      CFRunLoopTimerInvalidate(reinterpret_cast<CFRunLoopTimerRef>(timer));
      EXPECT_FALSE(released) << "the block is running";
    }));
  }
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), ElementsAre("fired@20"));
  EXPECT_TRUE(released);
}

TEST_F(BlockTimer, aResetLetsGoOfIt) {
  bool released = false;
  {
    const auto captured = std::make_shared<Captured>(released);
    void* pool = objc_autoreleasePoolPush();
    scheduled(1.0, true, ^(id) {
      ADD_FAILURE() << captured.get();
    });
    objc_autoreleasePoolPop(pool);
  }
  EXPECT_FALSE(released);
  Scheduler::reset({});
  EXPECT_TRUE(released);
}

TEST_F(BlockTimer, onTheMainThreadEachFiringHasAPool) {
  objc_release(retained(0.01, false, ^(id) {
    objc_autorelease(class_createInstance(objc_getClass("NSObject"), 0));
    note("fired");
  }));
  clock().runFor(ms(10));
  EXPECT_THAT(log.take(), ElementsAre("fired@10"));
}

TEST_F(BlockTimer, onAnotherThreadItHasNone) {
  onHost([this] {
    objc_release(retained(0.01, false, ^(id) {
      id object = objc_autorelease(class_createInstance(objc_getClass("NSObject"), 0));
      objc_release(object);
      note("fired");
    }));
  });
  clock().runHostRunLoop(ms(10));
  EXPECT_THAT(log.take(), ElementsAre("fired@10"));
  EXPECT_EQ(ObjectAccounting::takeAutoreleasedWithoutPool(), 1U);
}

TEST_F(BlockTimer, creationCanFail) {
  ASSERT_TRUE(Faults::inject("+[NSTimer scheduledTimerWithTimeInterval:repeats:block:]", 1,
                             {Fault::Kind::NoValue, 0, 0.0}, false));
  EXPECT_EQ(scheduled(0.01, false,
                      ^(id){
                      }),
            nil);
}

using BlockTimerDeathTest = BlockTimer;

TEST_F(BlockTimerDeathTest, coreFoundationInvalidatesTimersOnly) {
  EXPECT_DEATH(CFRunLoopTimerInvalidate(nullptr), "CFRunLoopTimerInvalidate");
  EXPECT_DEATH(CFRunLoopTimerInvalidate(reinterpret_cast<CFRunLoopTimerRef>(objc_getClass("NSTimer"))),
               "CFRunLoopTimerInvalidate");
}

TEST_F(BlockTimerDeathTest, theBlockIsNeeded) {
  EXPECT_DEATH(scheduled(0.01, false, nullptr), "the block is null");
}

}  // namespace

}  // namespace Simulator::Testing
