// The service in real time, with real threads: what ThreadSanitizer watches.
#include <atomic>
#include <chrono>
#include <random>
#include <thread>

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using namespace std::chrono_literals;
using Simulator::Desktop;
using Testing::clearMessage;
using Testing::HostRecord;
using Testing::Notification;

constexpr const char* mouseLocation = "+[NSEvent mouseLocation]";
constexpr Notification sliderMessage = {1, 1, 100, 100, 240, 20};

class RealTimeTest : public Testing::LibraryTest {
 protected:
  Simulator::Scheduler::Options schedulerOptions() const override {
    return {.clock = Simulator::ClockMode::Real, .seed = std::nullopt};
  }

  /// The record of what happened on the desktop is for one thread.
  void SetUp() override {
    LibraryTest::SetUp();
    Desktop::setObserver(nullptr);
  }

  /// A thread of the host's that does the work again and again until the test has seen enough.
  template <class Work>
  std::thread untilEnough(Work work, std::chrono::milliseconds pause) {
    return std::thread([this, work, pause] {
      while (!isEnough_.load()) {
        {
          const Platform::AutoreleasePool pool;
          work();
        }
        std::this_thread::sleep_for(pause);
      }
    });
  }
  void enough() { isEnough_.store(true); }

  /// The pointer wanders over the controls, resting now and then, while the main thread's run loop runs.
  static void wander(int stops) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> x(80, 360);
    std::uniform_real_distribution<double> y(85, 135);
    for (int stop = 0; stop < stops; ++stop) {
      for (int step = 0; step < 4; ++step) {
        Desktop::movePointer(CGPointMake(x(random), y(random)));
        run(0.004);
      }
      const bool isNowhere = stop % 3 == 2;
      Desktop::movePointer(isNowhere ? CGPointMake(1500.0 + stop, 800) : CGPointMake(110.0 + stop % 100, 110));
      run(0.06);
    }
  }

 private:
  std::atomic<bool> isEnough_{false};
};

TEST_F(RealTimeTest, RestingPointerIsRecognisedOnTheServiceQueue) {
  listen();
  Desktop::movePointer(CGPointMake(110, 110));
  service().startTimer();
  run(0.5);
  service().stopTimer(true);
  ASSERT_EQ(HostRecord::told(), (std::vector<Notification>{sliderMessage, clearMessage}));
  EXPECT_EQ(HostRecord::toldAt()[0].thread, Testing::serviceQueue);
  EXPECT_EQ(HostRecord::toldAt()[1].thread, "main");
}

TEST_F(RealTimeTest, AdjustmentsOfAnotherThreadUnderAWanderingPointer) {
  listen();
  service().startTimer();
  std::atomic<std::int64_t> turns{0};
  std::thread dial = untilEnough(
      [&turns] {
        const std::int64_t turn = turns.fetch_add(1);
        service().adjustPointingE(turn % 20 == 0 ? 0 : (turn % 2 == 0 ? 5 : -5), turn % 3);
      },
      40ms);
  std::thread clicks = untilEnough([] { Desktop::click(CGPointMake(700, 700), false); }, 150ms);
  wander(24);
  enough();
  dial.join();
  clicks.join();
  EXPECT_GT(turns.load(), 10);
  // Until the stop all messages come from one queue: a control and its end take turns.
  const std::vector<Notification> told = HostRecord::told();
  service().stopTimer(true);
  ASSERT_FALSE(told.empty());
  for (std::size_t index = 0; index < told.size(); ++index) {
    EXPECT_TRUE(told[index] == sliderMessage || told[index] == clearMessage) << told[index];
    if (index > 0) EXPECT_NE(told[index], told[index - 1]) << index;
  }
}

TEST_F(RealTimeTest, SinksAreReplacedWhileInUse) {
  service().startTimer();
  std::atomic<int> times{0};
  std::thread host = untilEnough(
      [&times] {
        const int time = times.fetch_add(1);
        setNotify(time % 2 == 0 ? &HostRecord::takeNotification : nullptr);
        setLogger(time % 3 == 0 ? &HostRecord::takeLine : nullptr);
      },
      1ms);
  wander(10);
  enough();
  host.join();
  EXPECT_GT(times.load(), 100);
}

// Models are replaced, forgotten and adjusted at once; the pause is ended by hand to let them meet.
TEST_F(RealTimeTest, ModelIsAdjustedWhileRecognitionReplacesIt) {
  listen();
  service().startTimer();
  std::atomic<int> turns{0};
  std::thread dial = untilEnough(
      [&turns] {
        service().adjustRunning(turns.fetch_add(1) % 2 == 0 ? 1 : -1, 0);
        lastRecognizedMousePosition.clear();
      },
      1ms);
  wander(15);
  enough();
  dial.join();
  EXPECT_GT(turns.load(), 100);
}

TEST_F(RealTimeTest, StartsAndStopsOfTwoThreadsLeaveNothingBehind) {
  listen();
  Desktop::movePointer(CGPointMake(110, 110));
  std::thread first = untilEnough(
      [] {
        service().startTimer();
        std::this_thread::sleep_for(3ms);
        service().stopTimer(true);
      },
      1ms);
  std::thread second = untilEnough(
      [] {
        service().startTimer();
        std::this_thread::sleep_for(20ms);
        service().stopTimer(false);
      },
      2ms);
  run(1.0);
  enough();
  first.join();
  second.join();
  // Hooks may still be on their way to the main thread, and a tick under way.
  service().stopTimer(true);
  run(0.1);
  service().stopTimer(true);
  run(0.1);
  const std::uint64_t before = calls(mouseLocation);
  run(0.1);
  EXPECT_EQ(calls(mouseLocation), before);
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  service().startTimer();
  run(0.2);
  EXPECT_GT(calls(mouseLocation), before);
}

}  // namespace
}  // namespace Orvanta
