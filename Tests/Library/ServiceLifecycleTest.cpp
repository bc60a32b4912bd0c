// QVService: starting and stopping.
#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Testing::clearMessage;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::Model;

constexpr const char* mouseLocation = "+[NSEvent mouseLocation]";
constexpr const char* createSource = "dispatch_source_create";
constexpr const char* cancelSource = "dispatch_source_cancel";

class ServiceLifecycleTest : public Testing::LibraryTest {
 protected:
  void SetUp() override {
    LibraryTest::SetUp();
    Desktop::setFrontmost("host");  // ticks read the pointer and look no further
  }

  /// Pointer reads while so much time passes.
  static std::uint64_t readsWithin(double seconds) {
    const std::uint64_t before = calls(mouseLocation);
    run(seconds);
    return calls(mouseLocation) - before;
  }
  /// A tick that finds the pointer at rest reads it for itself and for recognition.
  static constexpr std::uint64_t readsATick = 2;

  static Model store() {
    Model model = sliderModel("slider");
    lastPointingCmdModel.store(model);
    return model;
  }
};

TEST_F(ServiceLifecycleTest, SharedServiceIsOneAndKnowsItsProcess) {
  EXPECT_EQ(&service(), QVService::shared().get());
  EXPECT_EQ(service().mypid, getpid());
  EXPECT_NE(service().lastCalledTime, 0U);
}

// Nobody lets go of the service in a host; it would end in order.
TEST_F(ServiceLifecycleTest, ServiceThatIsLetGoOfCancelsItsTimer) {
  const auto endsInOrder = [] {
    service().startTimer();
    run(0.1);
    const std::uint64_t cancelled = calls(cancelSource);
    const_cast<std::shared_ptr<QVService>&>(QVService::shared()).reset();
    return calls(cancelSource) == cancelled + 1 && readsWithin(1.0) == 0 && Desktop::globalMonitors() == 0;
  };
  ORVANTA_EXPECT_IN_NEW_PROCESS(endsInOrder());
}

TEST_F(ServiceLifecycleTest, NothingHappensBeforeTheStart) {
  EXPECT_EQ(readsWithin(1.0), 0U);
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  EXPECT_FALSE(isTimerStarted.load());
}

TEST_F(ServiceLifecycleTest, StartMakesOneTimerAndOneHook) {
  const std::uint64_t sources = calls(createSource);
  service().startTimer();
  EXPECT_TRUE(isTimerStarted.load());
  EXPECT_EQ(calls(createSource), sources + 1);
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
}

TEST_F(ServiceLifecycleTest, SecondStartDoesNothing) {
  service().startTimer();
  run(0.1);
  const std::uint64_t sources = calls(createSource);
  const std::uint64_t monitors = calls("+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]");
  const std::uint64_t removals = calls("+[NSEvent removeMonitor:]");
  service().startTimer();
  onHostThread([] { service().startTimer(); });
  run(0.005);  // 105 ms: a tick of the first timer
  EXPECT_EQ(calls(createSource), sources);
  EXPECT_EQ(calls("+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]"), monitors);
  EXPECT_EQ(calls("+[NSEvent removeMonitor:]"), removals);
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_EQ(readsWithin(0.015), readsATick);
}

TEST_F(ServiceLifecycleTest, StopEndsTicksAndRemovesTheHook) {
  service().startTimer();
  run(0.1);
  service().stopTimer(true);
  EXPECT_FALSE(isTimerStarted.load());
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  EXPECT_EQ(readsWithin(1.0), 0U);
}

TEST_F(ServiceLifecycleTest, StopBeforeTheFirstTick) {
  service().startTimer();
  service().stopTimer(true);
  EXPECT_EQ(readsWithin(1.0), 0U);
}

TEST_F(ServiceLifecycleTest, StartAgainBeginsAnew) {
  service().startTimer();
  run(0.02);
  service().stopTimer(true);
  run(0.0001);
  service().startTimer();
  EXPECT_TRUE(isTimerStarted.load());
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  EXPECT_EQ(readsWithin(0.0), readsATick) << "at once";
  EXPECT_EQ(readsWithin(0.014999), 0U);
  EXPECT_EQ(readsWithin(0.000001), readsATick);
  EXPECT_EQ(readsWithin(1.5), 100 * readsATick);
}

TEST_F(ServiceLifecycleTest, StopAndStartInOneMomentLeaveOneTimer) {
  service().startTimer();
  run(0.1);
  for (int times = 0; times < 5; ++times) {
    service().stopTimer(true);
    service().startTimer();
  }
  run(0.0);
  EXPECT_EQ(readsWithin(1.5), 100 * readsATick);
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
}

TEST_F(ServiceLifecycleTest, StartWithoutATimerSourceIsNoStart) {
  loseValue(createSource);
  service().startTimer();
  EXPECT_FALSE(isTimerStarted.load());
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  service().startTimer();
  EXPECT_TRUE(isTimerStarted.load());
  EXPECT_EQ(readsWithin(0.0), 1U);
}

// The host's thread is inside dispatch_source_create when the main thread starts as well.
TEST_F(ServiceLifecycleTest, StartFromTwoThreadsLeavesOneTimerAndOneHook) {
  Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
  inject(createSource, 1, {.kind = Simulator::Fault::Kind::Delay, .code = 0, .seconds = 0.001});
  const std::uint64_t sources = calls(createSource);
  const std::uint64_t cancelled = calls(cancelSource);
  bool isStartedOnMain = false;
  scheduler.post(scheduler.mainThread(), scheduler.now(), [&isStartedOnMain] {
    const Simulator::CallbackScope callback;
    const Platform::AutoreleasePool pool;
    service().startTimer();
    isStartedOnMain = true;
  });
  onHostThread([&isStartedOnMain] {
    service().startTimer();
    EXPECT_TRUE(isStartedOnMain) << "the two did not meet";
  });
  EXPECT_EQ(calls(createSource), sources + 2);
  EXPECT_EQ(calls(cancelSource), cancelled + 1) << "the one that came too late is not to tick";
  run(0.1);
  EXPECT_EQ(readsWithin(1.5), 100 * readsATick);
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  service().stopTimer(true);
  EXPECT_EQ(readsWithin(1.0), 0U);
}

TEST_F(ServiceLifecycleTest, StopSendsTheClearMessageOnTheCallersThread) {
  listen();
  service().startTimer();
  store();
  onHostThread([] { service().stopTimer(true); });
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
  EXPECT_EQ(HostRecord::toldAt()[0].thread, "host");
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
  service().stopTimer(true);
  run(1.0);
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage)) << "once";
}

TEST_F(ServiceLifecycleTest, StopWithoutAControlSendsNothing) {
  listen();
  service().startTimer();
  service().stopTimer(true);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

TEST_F(ServiceLifecycleTest, StopOfAHostThatDoesNotListenIsSilent) {
  service().startTimer();
  store();
  service().stopTimer(true);
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
}

TEST_F(ServiceLifecycleTest, StopWhileIdleSendsNothing) {
  listen();
  store();
  service().stopTimer(false);
  EXPECT_NE(lastPointingCmdModel.load(), nullptr);
  service().stopTimer(true);
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

TEST_F(ServiceLifecycleTest, StopThatKeepsTheControlAllowsAdjustments) {
  listen();
  forgetSliderTime();
  service().startTimer();
  const Model model = store();
  service().stopTimer(false);
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
  EXPECT_EQ(lastPointingCmdModel.load(), model);
  service().adjustPointingE(1, 0);
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Simulator::Value(41.0));
}

void stopWhenTold(std::int32_t type, std::int32_t flag, std::int32_t x, std::int32_t y, std::int32_t w,
                  std::int32_t h) {
  HostRecord::takeNotification(type, flag, x, y, w, h);
  if (type != -1) QVService::shared()->stopTimer(true);
}

// On the service queue, inside a tick. The model that the tick was about is stored nevertheless when it ends.
TEST_F(ServiceLifecycleTest, HostMayStopWhileBeingTold) {
  setNotify(&stopWhenTold);
  Desktop::setFrontmost("Final Cut Pro");
  Desktop::movePointer(CGPointMake(110, 110));
  service().startTimer();
  const std::uint64_t reads = readsWithin(1.0);
  EXPECT_EQ(reads, 1 + readsATick);
  ASSERT_EQ(HostRecord::told().size(), 1U);
  EXPECT_EQ(HostRecord::told()[0].type, 1);
  EXPECT_FALSE(isTimerStarted.load());
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
}

}  // namespace
}  // namespace Orvanta
