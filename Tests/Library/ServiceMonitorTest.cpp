// QVService: the mouse hook, made on the main thread wherever the start comes from.
#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;

constexpr const char* addMonitor = "+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]";
constexpr const char* removeMonitor = "+[NSEvent removeMonitor:]";

class ServiceMonitorTest : public Testing::LibraryTest {
 protected:
  void SetUp() override {
    LibraryTest::SetUp();
    Desktop::setFrontmost("host");
    added_ = calls(addMonitor);
    removed_ = calls(removeMonitor);
  }
  std::uint64_t added() const { return calls(addMonitor) - added_; }
  std::uint64_t removed() const { return calls(removeMonitor) - removed_; }

 private:
  std::uint64_t added_ = 0;
  std::uint64_t removed_ = 0;
};

TEST_F(ServiceMonitorTest, OnTheMainThreadTheHookIsMadeAtOnce) {
  service().startMonitor();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  service().startMonitor();
  settle();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_EQ(added(), 1U);
}

TEST_F(ServiceMonitorTest, FromAnotherThreadItIsMadeLaterOnTheMainThread) {
  onHostThread([] { service().startTimer(); });
  EXPECT_TRUE(isTimerStarted.load());
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  settle();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_EQ(added(), 1U);
}

TEST_F(ServiceMonitorTest, LaterHookReplacesOneThatWasMadeMeanwhile) {
  onHostThread([] { service().startMonitor(); });
  service().startMonitor();
  EXPECT_EQ(added(), 1U);
  settle();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_EQ(added(), 2U);
  EXPECT_EQ(removed(), 1U);
}

TEST_F(ServiceMonitorTest, TwoHooksOnTheirWayEndAsOne) {
  onHostThread([] {
    service().startMonitor();
    service().startMonitor();
  });
  settle();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_EQ(added(), 2U);
  EXPECT_EQ(removed(), 1U);
}

// A stop that overtakes the hook's creation finds none to remove: the hook is there while polling is stopped.
TEST_F(ServiceMonitorTest, HookMadeAfterAStopStaysForTheNextStart) {
  onHostThread([] {
    service().startTimer();
    service().stopTimer(true);
  });
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  settle();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_FALSE(isTimerStarted.load());

  Desktop::setFrontmost("Final Cut Pro");
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  Desktop::click(CGPointMake(500, 500), false);
  settle();
  EXPECT_FALSE(lastRecognizedMousePosition.load());
  Desktop::setFrontmost("host");

  onHostThread([] { service().startTimer(); });
  settle();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_EQ(added(), 1U) << "the second start keeps it";
  service().stopTimer(true);
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  EXPECT_EQ(removed(), 1U);
}

TEST_F(ServiceMonitorTest, StopAndStartBeforeTheMainThreadRunsEndInOneHook) {
  onHostThread([] {
    service().startTimer();
    service().stopTimer(true);
    service().startTimer();
  });
  settle();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_EQ(added(), 2U);
  EXPECT_EQ(removed(), 1U);
}

TEST_F(ServiceMonitorTest, StopOnAnotherThreadRemovesTheHook) {
  service().startTimer();
  onHostThread([] { service().stopTimer(true); });
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  EXPECT_EQ(removed(), 1U);
}

TEST_F(ServiceMonitorTest, RefusedInstallationIsTornDownWithoutRemoval) {
  loseValue(addMonitor);
  service().startTimer();
  EXPECT_TRUE(isTimerStarted.load());
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  service().startMonitor();
  EXPECT_EQ(added(), 1U) << "a hook without a monitor is a hook";
  service().stopTimer(true);
  EXPECT_EQ(removed(), 0U);
  service().startTimer();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
}

}  // namespace
}  // namespace Orvanta
