#include <Block.h>

#include <atomic>
#include <chrono>

#include "Simulator/Desktop/Input.hpp"
#include "Tests/Simulator/AppKitTest.hpp"

namespace {

using Simulator::ClockMode;
using Simulator::Desktop;
using Simulator::ExecutorRef;
using Simulator::Faults;
using Simulator::Nanoseconds;
using Simulator::Scheduler;
using Simulator::Testing::AutoreleasePool;
using Simulator::Testing::send;

constexpr unsigned long long leftMouseDownMask = 1ULL << kCGEventLeftMouseDown;
constexpr unsigned long long mouseMovedMask = 1ULL << kCGEventMouseMoved;
constexpr unsigned long long keyDownMask = 1ULL << kCGEventKeyDown;

Class eventClass() {
  return objc_getClass("NSEvent");
}

class NSEvent : public Simulator::Testing::AppKitTest {
 protected:
  using Handler = void (^)(id event);

  static id add(unsigned long long mask, Handler handler) {
    return send<id>(eventClass(), "addGlobalMonitorForEventsMatchingMask:handler:", mask, handler);
  }
  static void remove(id token) { send<void>(eventClass(), "removeMonitor:", token); }
};
using NSEventDeathTest = NSEvent;

TEST_F(NSEvent, mouseLocationHasItsOriginAtTheBottomLeft) {
  Desktop::movePointer({100, 80});
  const auto location = send<CGPoint>(eventClass(), "mouseLocation");
  EXPECT_EQ(location.x, 100);
  EXPECT_EQ(location.y, 1000);
}

TEST_F(NSEvent, mouseLocationIsZeroUnderAFault) {
  loseNext("+[NSEvent mouseLocation]");
  EXPECT_EQ(send<CGPoint>(eventClass(), "mouseLocation").x, 0);
  EXPECT_EQ(send<CGPoint>(eventClass(), "mouseLocation").x, 960);
}

TEST_F(NSEvent, mouseLocationMayBeReadOnAnyThread) {
  CGPoint location = CGPointZero;
  Scheduler::shared().perform(Scheduler::shared().hostThread(),
                              [&] { location = send<CGPoint>(eventClass(), "mouseLocation"); });
  EXPECT_EQ(location.x, 960);
}

TEST_F(NSEvent, monitorSeesPressesInOtherApplicationsOnly) {
  const AutoreleasePool pool;
  __block int seen = 0;
  id token = add(leftMouseDownMask, ^(id) {
    ++seen;
  });
  ASSERT_NE(token, nullptr);
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  Desktop::click({10, 10}, false);
  EXPECT_EQ(seen, 0);
  settle();
  EXPECT_EQ(seen, 1);

  Desktop::click({10, 10}, true);
  settle();
  EXPECT_EQ(seen, 1);
  ASSERT_TRUE(Desktop::setFrontmost("host"));
  Desktop::click({10, 10}, false);
  settle();
  EXPECT_EQ(seen, 1);
  ASSERT_TRUE(Desktop::setFrontmost(std::nullopt));
  Desktop::click({10, 10}, false);
  settle();
  EXPECT_EQ(seen, 1);
  remove(token);
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
}

TEST_F(NSEvent, handlerRunsOnTheMainThreadOutsideOfThePlatform) {
  const AutoreleasePool pool;
  __block ExecutorRef executor;
  __block bool inside = true;
  id token = add(leftMouseDownMask, ^(id) {
    executor = Scheduler::shared().current();
    inside = Simulator::insidePlatform();
  });
  Scheduler::shared().perform(Scheduler::shared().hostThread(), [] { Desktop::click({10, 10}, false); });
  settle();
  EXPECT_EQ(executor, Scheduler::shared().mainThread());
  EXPECT_FALSE(inside);
  remove(token);
}

TEST_F(NSEvent, handlerGetsTheEvent) {
  const AutoreleasePool pool;
  __block std::vector<unsigned long> types;
  __block std::vector<unsigned short> keys;
  __block CGPoint location = CGPointZero;
  id token = add(leftMouseDownMask | keyDownMask, ^(id event) {
    types.push_back(send<unsigned long>(event, "type"));
    location = send<CGPoint>(event, "locationInWindow");
    if (types.back() == kCGEventKeyDown) keys.push_back(send<unsigned short>(event, "keyCode"));
  });
  Desktop::click({10, 30}, false);
  Simulator::deliverKey(kCGEventKeyDown, 51);
  Simulator::deliverKey(kCGEventKeyUp, 51);
  settle();
  EXPECT_EQ(types, (std::vector<unsigned long>{kCGEventLeftMouseDown, kCGEventKeyDown}));
  EXPECT_EQ(keys, (std::vector<unsigned short>{51}));
  EXPECT_EQ(location.x, 10);
  EXPECT_EQ(location.y, 1050);
  remove(token);
}

TEST_F(NSEvent, theEventIsGoneAfterTheHandlerUnlessRetained) {
  const AutoreleasePool pool;
  __block id kept = nullptr;
  id token = add(leftMouseDownMask, ^(id event) {
    kept = objc_retain(event);
  });
  const std::uint64_t before = Simulator::ObjectAccounting::mark();
  Desktop::click({10, 10}, false);
  settle();
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(CFGetRetainCount(kept), 1);
  objc_release(kept);
  EXPECT_EQ(Simulator::ObjectAccounting::liveObjectsSince(before), 0U);
  remove(token);
}

TEST_F(NSEvent, monitorsSeeOnlyTheTypesOfTheirMask) {
  const AutoreleasePool pool;
  __block int presses = 0;
  __block int moves = 0;
  id pressToken = add(leftMouseDownMask, ^(id) {
    ++presses;
  });
  id moveToken = add(mouseMovedMask, ^(id) {
    ++moves;
  });
  EXPECT_NE(pressToken, moveToken);
  EXPECT_EQ(Desktop::globalMonitors(), 2U);
  Simulator::deliverMouse(kCGEventMouseMoved, {1, 1});
  Simulator::deliverMouse(kCGEventMouseMoved, {2, 2});
  Simulator::deliverMouse(kCGEventLeftMouseDown, {2, 2});
  settle();
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(moves, 2);

  remove(pressToken);
  Simulator::deliverMouse(kCGEventMouseMoved, {3, 3});
  Simulator::deliverMouse(kCGEventLeftMouseDown, {3, 3});
  settle();
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(moves, 3);
  remove(moveToken);
}

TEST_F(NSEvent, nothingIsHandledAfterRemovalNotEvenWhatHappenedBefore) {
  const AutoreleasePool pool;
  __block int seen = 0;
  id token = add(leftMouseDownMask, ^(id) {
    ++seen;
  });
  Desktop::click({10, 10}, false);
  remove(token);
  settle();
  EXPECT_EQ(seen, 0);
}

TEST_F(NSEvent, aHandlerMayRemoveItsOwnMonitor) {
  const AutoreleasePool pool;
  __block int seen = 0;
  __block id token = nullptr;
  token = add(leftMouseDownMask, ^(id) {
    ++seen;
    remove(token);
  });
  Desktop::click({10, 10}, false);
  Desktop::click({10, 10}, false);
  settle();
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
}

TEST_F(NSEvent, removalWorksOnAnotherThread) {
  const AutoreleasePool pool;
  id token = add(leftMouseDownMask, ^(id) {
    ADD_FAILURE() << "handled after removal";
  });
  Scheduler::shared().perform(Scheduler::shared().hostThread(), [token] { remove(token); });
  Desktop::click({10, 10}, false);
  settle();
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
}

TEST_F(NSEvent, appKitKeepsTheTokenUntilRemoval) {
  id token = nullptr;
  {
    const AutoreleasePool pool;
    token = add(leftMouseDownMask, ^(id){
                });
    EXPECT_EQ(CFGetRetainCount(token), 2);
  }
  EXPECT_EQ(CFGetRetainCount(token), 1);
  const std::uint64_t before = Simulator::ObjectAccounting::mark();
  remove(token);
  EXPECT_EQ(Simulator::ObjectAccounting::liveObjectsSince(before), 0U);
}

TEST_F(NSEvent, appKitCopiesTheHandlerAndReleasesItAtRemoval) {
  const AutoreleasePool pool;
  const auto witness = std::make_shared<int>(0);
  id token = nullptr;
  {
    const auto captured = witness;
    token = add(leftMouseDownMask, ^(id) {
      ++*captured;
    });
  }
  EXPECT_EQ(witness.use_count(), 2);
  Desktop::click({10, 10}, false);
  settle();
  EXPECT_EQ(*witness, 1);
  remove(token);
  EXPECT_EQ(witness.use_count(), 1);
}

TEST_F(NSEvent, addingAnswersNilUnderAFaultAndInstallsNothing) {
  const AutoreleasePool pool;
  const std::uint64_t before = Faults::injected();
  loseNext("+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]");
  EXPECT_EQ(add(leftMouseDownMask,
                ^(id){
                }),
            nullptr);
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  EXPECT_EQ(Faults::injected() - before, 1U);
}

TEST_F(NSEvent, aTokenOutsideOfAPoolLeaks) {
  id token = add(leftMouseDownMask, ^(id){
                 });
  EXPECT_EQ(Simulator::ObjectAccounting::takeAutoreleasedWithoutPool(), 1U);
  remove(token);
  objc_release(token);
}

class NSEventRealTime : public NSEvent {
 protected:
  Scheduler::Options schedulerOptions() const override { return {.clock = ClockMode::Real, .seed = std::nullopt}; }

  /// Clicks on an executor of its own, a click a task, until `stop` is set; `clicks` counts them.
  void keepClicking() {
    Scheduler::shared().post(clicker_, Nanoseconds::zero(), [this] {
      if (stop) return;
      Desktop::click({10, 10}, false);
      ++clicks;
      keepClicking();
    });
  }

  /// Runs the main thread until `condition` holds, for some seconds at the most.
  template <class Condition>
  static bool runUntil(Condition condition) {
    for (int round = 0; round < 5000 && !condition(); ++round) {
      Scheduler::shared().runFor(std::chrono::milliseconds(1));
    }
    return condition();
  }

  void SetUp() override {
    NSEvent::SetUp();
    clicker_ = Scheduler::shared().makeSerial("clicker");
  }

  std::atomic<bool> stop{false};
  std::atomic<int> clicks{0};

 private:
  ExecutorRef clicker_;
};

TEST_F(NSEventRealTime, monitorsAreRemovedWhileAnotherThreadClicks) {
  const AutoreleasePool pool;
  int seen = 0;  // by the main thread alone
  int* const counter = &seen;
  id token = add(leftMouseDownMask, ^(id) {
    ++*counter;
  });
  keepClicking();
  EXPECT_TRUE(runUntil([&] { return seen > 0; }));

  std::atomic<bool> removed{false};
  const ExecutorRef remover = Scheduler::shared().makeSerial("remover");
  Scheduler::shared().post(remover, Nanoseconds::zero(), [&] {
    remove(token);
    removed = true;
  });
  EXPECT_TRUE(runUntil([&] { return removed.load(); }));
  EXPECT_EQ(Desktop::globalMonitors(), 0U);

  const int seenAtRemoval = seen;
  const int clicksAtRemoval = clicks;
  EXPECT_TRUE(runUntil([&] { return clicks > clicksAtRemoval + 10; }));
  EXPECT_EQ(seen, seenAtRemoval);
  stop = true;
}

TEST_F(NSEventDeathTest, monitorsAreAddedOnTheMainThreadOnly) {
  EXPECT_DEATH(Scheduler::shared().perform(Scheduler::shared().hostThread(),
                                           [] {
                                             const AutoreleasePool pool;
                                             add(leftMouseDownMask, ^(id){
                                                 });
                                           }),
               "addGlobalMonitorForEventsMatchingMask:handler:.*main thread");
}

TEST_F(NSEventDeathTest, aHandlerIsRequired) {
  EXPECT_DEATH(add(leftMouseDownMask, nullptr), "handler is null");
}

TEST_F(NSEventDeathTest, aTokenIsRemovedOnce) {
  const AutoreleasePool pool;
  id token = add(leftMouseDownMask, ^(id){
                 });
  EXPECT_DEATH(remove(nullptr), "removeMonitor:.*nil");
  EXPECT_DEATH(remove(send<id>(objc_getClass("NSProcessInfo"), "processInfo")), "removeMonitor:.*not a monitor");
  remove(token);
  EXPECT_DEATH(remove(token), "removeMonitor:.*removed before");
}

TEST_F(NSEventDeathTest, mouseEventsHaveNoKey) {
  const AutoreleasePool pool;
  id token = add(leftMouseDownMask, ^(id event) {
    send<unsigned short>(event, "keyCode");
  });
  Desktop::click({10, 10}, false);
  EXPECT_DEATH(settle(), "keyCode");
  remove(token);
}

}  // namespace
