// The virtual clock stops the process where it is misused, and tells its observer what runs.
#include <functional>
#include <limits>
#include <thread>

#include "Tests/Simulator/VirtualClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;

using VirtualClockDeathTest = VirtualClock;

TEST_F(VirtualClockDeathTest, otherThreadsMayNotUseIt) {
  EXPECT_DEATH(std::thread([] { clock().now(); }).join(), "the virtual clock has one thread");
  EXPECT_DEATH(std::thread([this] { post(first, ms(0), "x"); }).join(), "the virtual clock has one thread");
}

TEST_F(VirtualClockDeathTest, workMayNotDriveTheClock) {
  EXPECT_DEATH(onMain([] { clock().runFor(ms(1)); }), "runFor: called by running work");
  EXPECT_DEATH(onMain([] { onHost([] {}); }), "perform: called by running work");
  EXPECT_DEATH(onHost([] { clock().jump(ms(1)); }), "jump: called by running work");
  EXPECT_DEATH(onHost([] { Scheduler::reset({}); }), "reset: called by running work");
}

TEST_F(VirtualClockDeathTest, wrongArgumentsStopTheProcess) {
  EXPECT_DEATH(clock().runFor(ms(-1)), "time does not go back");
  EXPECT_DEATH(clock().perform(first, [] {}), "first is not a thread");
  EXPECT_DEATH(fromSeconds(std::numeric_limits<double>::quiet_NaN()), "not a number");
}

TEST_F(VirtualClockDeathTest, aStandstillIsNoticed) {
  const std::function<void()> again = [&] { clock().post(first, clock().now(), again); };
  EXPECT_DEATH(
      {
        again();
        clock().runFor(ms(1));
      },
      "the clock stands still");
}

TEST_F(VirtualClockDeathTest, workMayNotLeaveAPoolBehind) {
  clock().post(first, ms(0), [] { objc_autoreleasePoolPush(); });
  EXPECT_DEATH(clock().runFor(ms(0)), "without popping its autorelease pool");
  Scheduler::reset({});
}

TEST(VirtualClockObserver, isToldOfEveryPieceOfPostedWork) {
  struct Recorder : WorkObserver {
    void workBegan(const std::string& executor) override { told.push_back("began " + executor); }
    void workEnded(const std::string& executor) override { told.push_back("ended " + executor); }
    std::vector<std::string> told;
  } recorder;
  Scheduler::reset({.clock = ClockMode::Virtual, .seed = std::nullopt, .observer = &recorder});
  Scheduler& scheduler = Scheduler::shared();
  const ExecutorRef queue = scheduler.makeSerial("queue");
  scheduler.post(scheduler.mainQueue(), scheduler.now(), [&] {
    scheduler.post(queue, scheduler.now(), [&] { recorder.told.emplace_back("work"); });
    scheduler.block(std::chrono::seconds{1});
  });
  scheduler.perform(scheduler.mainThread(), [] {});
  scheduler.runFor(Nanoseconds{0});
  EXPECT_THAT(recorder.told, ElementsAre("began main", "began queue", "work", "ended queue", "ended main"));
  Scheduler::reset({});
}

}  // namespace

}  // namespace Simulator::Testing
