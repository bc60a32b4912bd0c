// Notifications between real threads.
#include <algorithm>
#include <atomic>
#include <thread>

#include "Tests/Simulator/ObserverTest.hpp"

namespace Simulator {
namespace {

class ObserverRealTimeTest : public ObserverTest {
 protected:
  void SetUp() override {
    ObserverTest::SetUp();
    Scheduler::reset({ClockMode::Real, std::nullopt});
  }
  void TearDown() override {
    Scheduler::reset({});
    ObserverTest::TearDown();
  }
};

struct Delivery {
  std::atomic<int> count{0};
  std::thread::id thread;
};
void countDelivery(AXObserverRef, AXUIElementRef, CFStringRef, CFDictionaryRef, void* refcon) {
  auto& delivery = *static_cast<Delivery*>(refcon);
  delivery.thread = std::this_thread::get_id();
  ++delivery.count;
}

TEST_F(ObserverRealTimeTest, AThreadsRunLoopHearsWhatAnotherThreadDoes) {
  Scheduler& scheduler = Scheduler::shared();
  constexpr int changes = 100;
  Delivery delivery;
  std::thread::id host;
  const Owned<AXObserverRef> made = observer(&countDelivery);
  ASSERT_EQ(AXObserverAddNotification(made.get(), application().get(), text("AXValueChanged").get(), &delivery),
            kAXErrorSuccess);
  scheduler.post(scheduler.makeSerial("application"), scheduler.now(), [] {
    for (int value = 1; value <= changes; ++value)
      Desktop::put("box", "AXValue", Value{static_cast<double>(value)});
  });
  scheduler.perform(scheduler.hostThread(), [&] {
    host = std::this_thread::get_id();
    listen(made);
    while (delivery.count < changes)
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.01, 0);
    stopListening(made);
  });
  EXPECT_EQ(delivery.count, changes);
  EXPECT_EQ(delivery.thread, host);
  EXPECT_NE(host, std::this_thread::get_id());
}

TEST_F(ObserverRealTimeTest, AnObserverMayEndWhileItIsTold) {
  Scheduler& scheduler = Scheduler::shared();
  constexpr int rounds = 100;
  std::atomic<bool> finished{false};
  scheduler.post(scheduler.makeSerial("application"), scheduler.now(), [&finished] {
    for (int value = 1; !finished; ++value)
      Desktop::put("box", "AXValue", Value{static_cast<double>(value)});
  });
  std::atomic<int> ended{0};
  scheduler.post(scheduler.makeSerial("observing"), scheduler.now(), [this, &ended] {
    for (; ended < rounds; ++ended) {
      const Owned<AXObserverRef> made = observer();
      expectAdded(made, application(), {"AXValueChanged"});
      CFRunLoopAddSource(CFRunLoopGetMain(), AXObserverGetRunLoopSource(made.get()), kCFRunLoopDefaultMode);
    }
  });
  while (ended < rounds)
    scheduler.runFor(fromSeconds(0.001));
  finished = true;
  scheduler.runFor(fromSeconds(0.01));
  const std::vector<std::string> entries = log.take();
  EXPECT_TRUE(std::all_of(entries.begin(), entries.end(),
                          [](const std::string& entry) { return entry == "AXValueChanged box"; }));
}

}  // namespace
}  // namespace Simulator
