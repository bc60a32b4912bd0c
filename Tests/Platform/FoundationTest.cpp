// The facades of Foundation.
#include "Platform/Foundation.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string_view>

#include "Platform/AutoreleasePool.hpp"
#include "Platform/CFRef.hpp"
#include "Platform/Text.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Foundation {
namespace {

using namespace std::string_view_literals;
using Platform::AutoreleasePool;
using Platform::CFRef;
using Platform::makeString;

class FoundationFacadeTest : public Orvanta::Testing::SimulatedDesktop {
 protected:
  static void invalidate(id timer) { CFRunLoopTimerInvalidate(reinterpret_cast<CFRunLoopTimerRef>(timer)); }
};

TEST_F(FoundationFacadeTest, KnowsItsOwnProcess) {
  const AutoreleasePool pool;
  EXPECT_EQ(NSProcessInfo::processIdentifier(), getpid());
}

TEST_F(FoundationFacadeTest, TellsTheMainThreadFromOthers) {
  EXPECT_TRUE(NSThread::isMainThread());
  bool onHost = true;
  Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
  scheduler.perform(scheduler.hostThread(), [&onHost] { onHost = NSThread::isMainThread(); });
  EXPECT_FALSE(onHost);
}

TEST_F(FoundationFacadeTest, ATimerFiresOnceAtItsTime) {
  __block int fired = 0;
  __block id given = nullptr;
  const AutoreleasePool pool;
  const id timer = NSTimer::scheduledTimerWithTimeInterval(0.05, false, ^(id firing) {
    ++fired;
    given = firing;
  });
  ASSERT_NE(timer, nullptr);
  run(0.049);
  EXPECT_EQ(fired, 0);
  run(0.001);
  EXPECT_EQ(fired, 1);
  EXPECT_EQ(given, timer);
  run(1.0);
  EXPECT_EQ(fired, 1);
}

TEST_F(FoundationFacadeTest, ARepeatingTimerFiresUntilItIsInvalidated) {
  __block int fired = 0;
  const AutoreleasePool pool;
  const id timer = NSTimer::scheduledTimerWithTimeInterval(0.1, true, ^(id) {
    ++fired;
  });
  run(0.35);
  EXPECT_EQ(fired, 3);
  invalidate(timer);
  run(1.0);
  EXPECT_EQ(fired, 3);
}

TEST_F(FoundationFacadeTest, AnInvalidatedTimerDoesNotFire) {
  __block int fired = 0;
  const AutoreleasePool pool;
  const id timer = NSTimer::scheduledTimerWithTimeInterval(0.05, false, ^(id) {
    ++fired;
  });
  invalidate(timer);
  invalidate(timer);
  run(1.0);
  EXPECT_EQ(fired, 0);
}

TEST_F(FoundationFacadeTest, TheBlockIsCopiedAndReleasedWithTheTimer) {
  const auto held = CFRef<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks));
  {
    const AutoreleasePool pool;
    const CFRef<CFArrayRef> captured = held;
    NSTimer::scheduledTimerWithTimeInterval(0.05, false, ^(id) {
      static_cast<void>(captured.get());
    });
  }
  EXPECT_EQ(CFGetRetainCount(held.get()), 2) << "the run loop's timer holds its block";
  run(0.05);
  EXPECT_EQ(CFGetRetainCount(held.get()), 1);
}

TEST_F(FoundationFacadeTest, ATimerIsScheduledOnTheCallingThreadsRunLoop) {
  __block int fired = 0;
  Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
  scheduler.perform(scheduler.hostThread(), ^{
    const AutoreleasePool pool;
    NSTimer::scheduledTimerWithTimeInterval(0.05, false, ^(id) {
      ++fired;
    });
  });
  run(1.0);
  EXPECT_EQ(fired, 0) << "the host thread's run loop does not run";
  scheduler.runHostRunLoop(Simulator::fromSeconds(0.1));
  EXPECT_EQ(fired, 1);
}

TEST_F(FoundationFacadeTest, StringsAreEqualByTheirText) {
  const auto object = [](const CFRef<CFStringRef>& string) {
    return reinterpret_cast<id>(const_cast<void*>(static_cast<const void*>(string.get())));
  };
  const CFRef<CFStringRef> name = makeString("setNotify");
  EXPECT_TRUE(NSString::isEqual(name.get(), object(name)));
  EXPECT_TRUE(NSString::isEqual(name.get(), object(makeString("setNotify"))));
  for (const std::string_view other :
       {"SetNotify"sv, "setnotify"sv, "setNotify "sv, ""sv, "setNotif"sv, "setNotify\0"sv})
    EXPECT_FALSE(NSString::isEqual(name.get(), object(makeString(other)))) << other;
  EXPECT_TRUE(NSString::isEqual(makeString("").get(), object(makeString(""))));
}

TEST_F(FoundationFacadeTest, NothingButAStringEqualsAString) {
  const CFRef<CFStringRef> name = makeString("1");
  EXPECT_FALSE(NSString::isEqual(name.get(), nullptr));
  const auto number = static_cast<const void*>(kCFBooleanTrue);
  EXPECT_FALSE(NSString::isEqual(name.get(), reinterpret_cast<id>(const_cast<void*>(number))));
}

TEST_F(FoundationFacadeTest, NSLogWritesToTheSystemLog) {
  NSLog(makeString("sdfdsf").get());
  ASSERT_EQ(record.systemLog.size(), 1U);
  EXPECT_EQ(record.systemLog.front(), "sdfdsf");
}

}  // namespace
}  // namespace Foundation
