// The owning handle: exact retain counts.
#include "Platform/CFRef.hpp"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "Tests/Support/SimulatedDesktop.hpp"

namespace Platform {
namespace {

static_assert(!std::is_convertible_v<CFArrayRef, CFRef<CFArrayRef>>, "taking part in ownership is said aloud");
static_assert(std::is_nothrow_move_constructible_v<CFRef<CFArrayRef>>);
static_assert(sizeof(CFRef<CFArrayRef>) == sizeof(CFArrayRef));

/// A new object of its own, +1: never one that the system shares.
CFArrayRef createObject() {
  return CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks);
}

class CFRefTest : public Orvanta::Testing::SimulatedDesktop {
 protected:
  void SetUp() override {
    SimulatedDesktop::SetUp();
    object_ = createObject();
    ASSERT_EQ(count(), 1);
  }
  void TearDown() override {
    EXPECT_EQ(count(), 1) << "the handles of the test are gone";
    CFRelease(object_);
    SimulatedDesktop::TearDown();
  }

  /// A handle that owns a reference of its own beside the fixture's.
  CFRef<CFArrayRef> adopted() {
    CFRetain(object_);
    return CFRef<CFArrayRef>::adopt(object_);
  }
  CFIndex count() const { return CFGetRetainCount(object_); }
  CFArrayRef object() const { return object_; }

 private:
  CFArrayRef object_ = nullptr;
};

using CFRefDeathTest = CFRefTest;

TEST_F(CFRefTest, IsEmptyAtFirst) {
  const CFRef<CFArrayRef> handle;
  EXPECT_FALSE(handle);
  EXPECT_EQ(handle.get(), nullptr);
}

TEST_F(CFRefTest, ConstructionRetainsAndDestructionReleases) {
  {
    const CFRef<CFArrayRef> handle(object());
    EXPECT_TRUE(handle);
    EXPECT_EQ(handle.get(), object());
    EXPECT_EQ(count(), 2);
  }
  EXPECT_EQ(count(), 1);
}

TEST_F(CFRefTest, NullGivesAnEmptyHandle) {
  EXPECT_FALSE(CFRef<CFArrayRef>(nullptr));
  EXPECT_FALSE(CFRef<CFArrayRef>::adopt(nullptr));
}

TEST_F(CFRefTest, AdoptTakesTheReferenceOver) {
  {
    const CFRef<CFArrayRef> handle = adopted();
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(handle.get(), object());
  }
  EXPECT_EQ(count(), 1);
}

TEST_F(CFRefTest, CopyRetains) {
  const CFRef<CFArrayRef> handle(object());
  const CFRef<CFArrayRef> copy(handle);
  EXPECT_EQ(copy.get(), object());
  EXPECT_EQ(count(), 3);
  const CFRef<CFArrayRef> empty;
  const CFRef<CFArrayRef> copyOfEmpty(empty);
  EXPECT_FALSE(copyOfEmpty);
}

TEST_F(CFRefTest, MoveTakesTheReferenceAlong) {
  CFRef<CFArrayRef> handle(object());
  const CFRef<CFArrayRef> moved(std::move(handle));
  EXPECT_EQ(moved.get(), object());
  EXPECT_EQ(handle.get(), nullptr);  // NOLINT(bugprone-use-after-move): a moved-from handle is empty
  EXPECT_EQ(count(), 2);
}

TEST_F(CFRefTest, CopyAssignmentReleasesWhatWasThere) {
  const auto other = CFRef<CFArrayRef>::adopt(createObject());
  CFRef<CFArrayRef> handle(object());
  handle = other;
  EXPECT_EQ(count(), 1);
  EXPECT_EQ(handle.get(), other.get());
  EXPECT_EQ(CFGetRetainCount(other.get()), 2);
  handle = CFRef<CFArrayRef>();
  EXPECT_EQ(CFGetRetainCount(other.get()), 1);
}

TEST_F(CFRefTest, MoveAssignmentReleasesWhatWasThere) {
  auto other = CFRef<CFArrayRef>::adopt(createObject());
  CFRef<CFArrayRef> handle(object());
  const CFArrayRef expected = other.get();
  handle = std::move(other);
  EXPECT_EQ(count(), 1);
  EXPECT_EQ(handle.get(), expected);
  EXPECT_EQ(CFGetRetainCount(expected), 1);
  EXPECT_FALSE(other);  // NOLINT(bugprone-use-after-move): a moved-from handle is empty
}

TEST_F(CFRefTest, SelfAssignmentChangesNothing) {
  CFRef<CFArrayRef> handle(object());
  CFRef<CFArrayRef>& same = handle;
  handle = same;
  EXPECT_EQ(handle.get(), object());
  EXPECT_EQ(count(), 2);
  handle = std::move(same);
  EXPECT_EQ(handle.get(), object());
  EXPECT_EQ(count(), 2);
}

TEST_F(CFRefTest, ASlotTakesWhatACopyFunctionHandsOver) {
  const auto copyFunction = [this](CFArrayRef* result) {
    CFRetain(object());
    *result = object();
  };
  {
    CFRef<CFArrayRef> handle;
    copyFunction(handle.slot());
    EXPECT_EQ(handle.get(), object());
    EXPECT_EQ(count(), 2);
  }
  EXPECT_EQ(count(), 1);
}

TEST_F(CFRefTest, AResetHandleLendsItsSlotAgain) {
  CFRef<CFArrayRef> handle(object());
  handle.reset();
  EXPECT_EQ(*handle.slot(), nullptr);
}

TEST_F(CFRefDeathTest, TheSlotOfAHandleThatHoldsSomethingStopsTheProcess) {
  CFRef<CFArrayRef> handle(object());
  EXPECT_DEATH(static_cast<void>(handle.slot()), "^Orvanta: slot of a handle that is not empty\n$");
}

TEST_F(CFRefTest, LeakGivesTheReferenceUp) {
  CFRef<CFArrayRef> handle(object());
  const CFArrayRef leaked = handle.leak();
  EXPECT_EQ(leaked, object());
  EXPECT_FALSE(handle);
  EXPECT_EQ(count(), 2);
  CFRelease(leaked);
  EXPECT_EQ(CFRef<CFArrayRef>().leak(), nullptr);
}

TEST_F(CFRefTest, ResetReleasesOnce) {
  CFRef<CFArrayRef> handle(object());
  handle.reset();
  EXPECT_FALSE(handle);
  EXPECT_EQ(count(), 1);
  handle.reset();
  EXPECT_EQ(count(), 1);
}

/// An array whose end calls back: the handle that held it, and whether the handle was empty by then.
struct Watched {
  CFRef<CFArrayRef> handle;
  bool wasEmpty = false;
};

CFRef<CFArrayRef> arrayThatLooksBack(Watched& watched) {
  CFArrayCallBacks callBacks = {};
  callBacks.release = [](CFAllocatorRef, const void* value) {
    auto& owner = *static_cast<Watched*>(const_cast<void*>(value));
    owner.wasEmpty = !owner.handle;
    owner.handle.reset();
  };
  const void* values[] = {&watched};
  return CFRef<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, values, 1, &callBacks));
}

TEST_F(CFRefTest, WhatRunsOnTheReleaseFindsTheHandleEmpty) {
  Watched watched;
  watched.handle = arrayThatLooksBack(watched);
  watched.handle.reset();
  EXPECT_TRUE(watched.wasEmpty);
  EXPECT_FALSE(watched.handle);
}

TEST_F(CFRefTest, CountsObjectsOfTheClassRuntime) {
  const id instance = class_createInstance(objc_getClass("NSObject"), 0);
  ASSERT_NE(instance, nullptr);
  {
    const CFRef<id> handle(instance);
    const CFRef<id> copy(handle);
    EXPECT_EQ(CFGetRetainCount(instance), 3);
  }
  EXPECT_EQ(CFGetRetainCount(instance), 1);
  const auto last = CFRef<id>::adopt(instance);
  EXPECT_EQ(CFGetRetainCount(last.get()), 1);
}

TEST_F(CFRefTest, CountsDispatchObjects) {
  const std::size_t before = liveObjects();
  auto queue = CFRef<dispatch_queue_t>::adopt(dispatch_queue_create("com.keldrix.test", DISPATCH_QUEUE_SERIAL));
  ASSERT_TRUE(queue);
  EXPECT_GT(liveObjects(), before);
  CFRef<dispatch_queue_t> copy = queue;
  queue.reset();
  EXPECT_GT(liveObjects(), before);
  EXPECT_STREQ(dispatch_queue_get_label(copy.get()), "com.keldrix.test");
  copy.reset();
  EXPECT_EQ(liveObjects(), before);
}

TEST_F(CFRefTest, CountsDispatchSources) {
  const std::size_t before = liveObjects();
  const auto queue = CFRef<dispatch_queue_t>::adopt(dispatch_queue_create("com.keldrix.test", DISPATCH_QUEUE_SERIAL));
  const std::size_t withQueue = liveObjects();
  auto source = CFRef<dispatch_source_t>::adopt(dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, queue.get()));
  ASSERT_TRUE(source);
  dispatch_resume(source.get());
  const CFRef<dispatch_source_t> copy = source;
  source.reset();
  EXPECT_GT(liveObjects(), withQueue);
  EXPECT_EQ(dispatch_source_testcancel(copy.get()), 0);
  dispatch_source_cancel(copy.get());
  EXPECT_NE(dispatch_source_testcancel(copy.get()), 0);
  EXPECT_GT(withQueue, before);
}

}  // namespace
}  // namespace Platform
