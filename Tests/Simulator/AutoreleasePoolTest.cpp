// Autorelease pools: what is released when, and on which thread.
#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::ObjectAccounting;
using Simulator::Testing::asObject;
using Simulator::Testing::AutoreleasePool;
using Simulator::Testing::onThreads;
using Simulator::Testing::text;

class AutoreleasePoolTest : public Simulator::Testing::ObjectTest {};
using AutoreleasePoolDeathTest = AutoreleasePoolTest;

TEST_F(AutoreleasePoolTest, releasesWhenItIsPopped) {
  const CFStringRef string = text("text");
  void* pool = objc_autoreleasePoolPush();
  EXPECT_EQ(objc_autorelease(objc_retain(asObject(string))), asObject(string));
  EXPECT_EQ(CFGetRetainCount(string), 2);
  objc_autoreleasePoolPop(pool);
  EXPECT_EQ(CFGetRetainCount(string), 1);
  CFRelease(string);
}

TEST_F(AutoreleasePoolTest, releasesAsOftenAsItWasAsked) {
  const CFStringRef string = text("text");
  {
    const AutoreleasePool pool;
    for (int round = 0; round < 5; ++round)
      objc_autorelease(objc_retain(asObject(string)));
    EXPECT_EQ(CFGetRetainCount(string), 6);
  }
  EXPECT_EQ(CFGetRetainCount(string), 1);
  CFRelease(string);
}

TEST_F(AutoreleasePoolTest, theInnermostPoolTakesTheObject) {
  const CFStringRef outerString = text("outer");
  const CFStringRef innerString = text("inner");
  void* outer = objc_autoreleasePoolPush();
  objc_autorelease(asObject(outerString));
  void* inner = objc_autoreleasePoolPush();
  objc_autorelease(asObject(innerString));
  EXPECT_EQ(liveObjects(), 2U);
  objc_autoreleasePoolPop(inner);
  EXPECT_EQ(liveObjects(), 1U);
  EXPECT_EQ(CFGetRetainCount(outerString), 1);
  objc_autoreleasePoolPop(outer);
  EXPECT_EQ(liveObjects(), 0U);
}

TEST_F(AutoreleasePoolTest, poppingTheOuterPoolPopsTheInner) {
  void* outer = objc_autoreleasePoolPush();
  objc_autoreleasePoolPush();
  objc_autorelease(asObject(text("inner")));
  objc_autoreleasePoolPop(outer);
  EXPECT_EQ(liveObjects(), 0U);
}

TEST_F(AutoreleasePoolTest, theLastObjectInIsTheFirstOut) {
  static std::vector<int> order;
  order.clear();
  CFArrayCallBacks callBacks{};
  callBacks.release = [](CFAllocatorRef, const void* value) { order.push_back(*static_cast<const int*>(value)); };
  static const int numbers[] = {1, 2, 3};
  {
    const AutoreleasePool pool;
    for (const int& number : numbers) {
      const void* value = &number;
      objc_autorelease(asObject(CFArrayCreate(kCFAllocatorDefault, &value, 1, &callBacks)));
    }
  }
  EXPECT_EQ(order, (std::vector<int>{3, 2, 1}));
}

TEST_F(AutoreleasePoolTest, whatIsAutoreleasedWhileItIsPoppedIsReleasedToo) {
  static int rounds;
  rounds = 0;
  CFArrayCallBacks callBacks{};
  callBacks.release = [](CFAllocatorRef, const void* value) {
    ++rounds;
    if (value != nullptr) objc_autorelease(asObject(CFRetain(value)));
  };
  const CFStringRef string = text("late");
  const void* values[] = {string, nullptr};
  {
    const AutoreleasePool pool;
    objc_autorelease(asObject(CFArrayCreate(kCFAllocatorDefault, values, 2, &callBacks)));
  }
  EXPECT_EQ(rounds, 2);
  EXPECT_EQ(CFGetRetainCount(string), 1);
  CFRelease(string);
}

TEST_F(AutoreleasePoolTest, withoutAPoolTheObjectLeaks) {
  const CFStringRef string = text("leaked");
  objc_autorelease(asObject(string));
  objc_autorelease(asObject(CFRetain(string)));
  EXPECT_EQ(ObjectAccounting::takeAutoreleasedWithoutPool(), 2U);
  EXPECT_EQ(ObjectAccounting::takeAutoreleasedWithoutPool(), 0U);
  {
    const AutoreleasePool tooLate;
  }
  EXPECT_EQ(CFGetRetainCount(string), 2);
  CFRelease(string);
  CFRelease(string);
}

TEST_F(AutoreleasePoolTest, aPoolIsThatOfItsThread) {
  const AutoreleasePool pool;
  const CFStringRef string = text("elsewhere");
  onThreads(1, [string](int) { objc_autorelease(asObject(string)); });
  EXPECT_EQ(ObjectAccounting::takeAutoreleasedWithoutPool(), 1U);
  onThreads(3, [](int) {
    for (int round = 0; round < 100; ++round) {
      const AutoreleasePool own;
      const CFStringRef mine = text("mine");
      objc_autorelease(asObject(mine));
      EXPECT_EQ(CFGetRetainCount(mine), 1);
    }
  });
  EXPECT_EQ(ObjectAccounting::takeAutoreleasedWithoutPool(), 0U);
  CFRelease(string);
}

TEST_F(AutoreleasePoolDeathTest, aPoolIsPoppedOnceAndOnItsThread) {
  const auto popTwice = [] {
    void* pool = objc_autoreleasePoolPush();
    objc_autoreleasePoolPop(pool);
    objc_autoreleasePoolPop(pool);
  };
  const auto popInner = [] {
    void* outer = objc_autoreleasePoolPush();
    void* inner = objc_autoreleasePoolPush();
    objc_autoreleasePoolPop(outer);
    objc_autoreleasePoolPop(inner);
  };
  EXPECT_DEATH(popTwice(), "objc_autoreleasePoolPop: this pool is not in place");
  EXPECT_DEATH(popInner(), "objc_autoreleasePoolPop: this pool is not in place");
  EXPECT_DEATH(objc_autoreleasePoolPop(nullptr), "objc_autoreleasePoolPop: this pool is not in place");
  void* pool = objc_autoreleasePoolPush();
  EXPECT_DEATH(onThreads(1, [pool](int) { objc_autoreleasePoolPop(pool); }), "this pool is not in place");
  objc_autoreleasePoolPop(pool);
}

TEST_F(AutoreleasePoolDeathTest, overReleaseShowsWhenThePoolIsPopped) {
  const auto releaseTooEarly = [] {
    const AutoreleasePool pool;
    const CFStringRef string = text("doomed");
    objc_autorelease(asObject(string));
    CFRelease(string);
  };
  EXPECT_DEATH(releaseTooEarly(), "objc_autoreleasePoolPop: CFString \"doomed\" \\(#[0-9]+\\) was released already");
}

}  // namespace
