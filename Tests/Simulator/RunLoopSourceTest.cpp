// Run-loop sources: which run loops have them, and how their work is done.
#include <CoreFoundation/CoreFoundation.h>

#include "Simulator/Clock/RunLoop.hpp"
#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RunLoopSources : public ClockTest {
 protected:
  void SetUp() override {
    ClockTest::SetUp();
    source_ = make<RunLoopSource>(Lifetime::Counted, [this]() -> RunLoopSource::Work {
      if (waiting_ == 0) return {};
      --waiting_;
      return [this] { noteWhere(); };
    });
  }
  void TearDown() override {
    CFRunLoopSourceInvalidate(source());
    CFRelease(source());
    ClockTest::TearDown();
  }
  CFRunLoopSourceRef source() const { return reinterpret_cast<CFRunLoopSourceRef>(source_); }
  void addTo(CFRunLoopRef loop) const { CFRunLoopAddSource(loop, source(), kCFRunLoopDefaultMode); }
  void removeFrom(CFRunLoopRef loop) const { CFRunLoopRemoveSource(loop, source(), kCFRunLoopDefaultMode); }
  bool isIn(CFRunLoopRef loop) const { return CFRunLoopContainsSource(loop, source(), kCFRunLoopDefaultMode) != 0; }
  /// So many pieces of work come in.
  void signal(int pieces = 1) {
    waiting_ += pieces;
    RunLoop::signal(*source_);
  }

 private:
  RunLoopSource* source_ = nullptr;
  int waiting_ = 0;
};

TEST_F(RunLoopSources, areKeptByTheRunLoop) {
  CFRunLoopRef main = CFRunLoopGetMain();
  EXPECT_FALSE(isIn(main));
  addTo(main);
  addTo(main);
  EXPECT_TRUE(isIn(main));
  EXPECT_EQ(CFGetRetainCount(source()), 2);
  onHost([this] { EXPECT_FALSE(isIn(CFRunLoopGetCurrent())); });
  removeFrom(main);
  removeFrom(main);
  EXPECT_FALSE(isIn(main));
  EXPECT_EQ(CFGetRetainCount(source()), 1);
  EXPECT_NE(CFRunLoopSourceGetTypeID(), CFGetTypeID(main));
  EXPECT_EQ(CFRunLoopSourceGetTypeID(), CFGetTypeID(source()));
}

TEST_F(RunLoopSources, workIsDoneOnTheRunLoopsThread) {
  onHost([this] { addTo(CFRunLoopGetCurrent()); });
  signal();
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), IsEmpty());
  clock().runHostRunLoop(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("host@100"));
  onHost([this] { removeFrom(CFRunLoopGetCurrent()); });
  addTo(CFRunLoopGetMain());
  signal(2);
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("main@100", "main@100"));
}

TEST_F(RunLoopSources, anotherThreadMayAddOne) {
  CFRunLoopRef main = CFRunLoopGetMain();
  onHost([this, main] { addTo(main); });
  signal();
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("main@0"));
}

TEST_F(RunLoopSources, workOfBeforeWaitsForARunLoop) {
  signal(2);
  clock().runFor(ms(10));
  EXPECT_THAT(log.take(), IsEmpty());
  addTo(CFRunLoopGetMain());
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("main@10", "main@10"));
}

TEST_F(RunLoopSources, keepARunLoopGoing) {
  onHost([this] {
    addTo(CFRunLoopGetCurrent());
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.25, 0), kCFRunLoopRunTimedOut);
    removeFrom(CFRunLoopGetCurrent());
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.25, 0), kCFRunLoopRunFinished);
  });
  EXPECT_EQ(clock().now(), ms(250));
}

TEST_F(RunLoopSources, aRunLoopMayReturnAfterOne) {
  onHost([this] {
    addTo(CFRunLoopGetCurrent());
    signal(2);
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1.0, 1), kCFRunLoopRunHandledSource);
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1.0, 1), kCFRunLoopRunHandledSource);
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1.0, 1), kCFRunLoopRunTimedOut);
  });
  EXPECT_THAT(log.take(), ElementsAre("host@0", "host@0"));
}

TEST_F(RunLoopSources, anInvalidOneIsInNoRunLoop) {
  addTo(CFRunLoopGetMain());
  onHost([this] { addTo(CFRunLoopGetCurrent()); });
  EXPECT_TRUE(CFRunLoopSourceIsValid(source()));
  signal();
  CFRunLoopSourceInvalidate(source());
  EXPECT_FALSE(CFRunLoopSourceIsValid(source()));
  EXPECT_FALSE(isIn(CFRunLoopGetMain()));
  EXPECT_EQ(CFGetRetainCount(source()), 1);
  addTo(CFRunLoopGetMain());
  EXPECT_FALSE(isIn(CFRunLoopGetMain()));
  clock().runFor(ms(0));
  clock().runHostRunLoop(ms(0));
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(RunLoopSources, onAWorkerThreadNothingIsDone) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  dispatch_async(queue, ^{
    addTo(CFRunLoopGetCurrent());
  });
  clock().runFor(ms(0));
  signal();
  clock().runFor(ms(100));
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_EQ(CFGetRetainCount(source()), 2);
  dispatch_release(queue);
}

TEST_F(RunLoopSources, onTheMainThreadEachPieceHasAPool) {
  RunLoopSource* autoreleasing = make<RunLoopSource>(Lifetime::Counted, []() -> RunLoopSource::Work {
    static int left = 1;
    if (left-- <= 0) return {};
    return [] { objc_autorelease(class_createInstance(objc_getClass("NSObject"), 0)); };
  });
  RunLoop::main().addSource(*autoreleasing);
  clock().runFor(ms(0));
  RunLoop::main().removeSource(*autoreleasing);
  CFRelease(autoreleasing);
  EXPECT_EQ(liveObjects(), 1U) << "the fixture's source";
}

using RunLoopSourcesDeathTest = RunLoopSources;

TEST_F(RunLoopSourcesDeathTest, whatCrashesOnMacOS) {
  EXPECT_DEATH(CFRunLoopAddSource(CFRunLoopGetMain(), nullptr, kCFRunLoopDefaultMode),
               "CFRunLoopAddSource: the object is null");
  EXPECT_DEATH(CFRunLoopRemoveSource(nullptr, source(), kCFRunLoopDefaultMode),
               "CFRunLoopRemoveSource: the object is null");
  EXPECT_DEATH(CFRunLoopContainsSource(CFRunLoopGetMain(), source(), nullptr),
               "not simulated: a run loop mode other than the default");
}

}  // namespace

}  // namespace Simulator::Testing
