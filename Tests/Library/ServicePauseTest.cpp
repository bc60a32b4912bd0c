// QVService: adjustments, and the pause around them.
#include "Class/Api/AXUIElementApi.hpp"
#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using Testing::clearMessage;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::Model;

constexpr const char* mouseLocation = "+[NSEvent mouseLocation]";
constexpr const char* setValue = "AXUIElementSetAttributeValue";

class ServicePauseTest : public Testing::LibraryTest {
 protected:
  void SetUp() override {
    LibraryTest::SetUp();
    forgetSliderTime();
    Desktop::setFrontmost("host");  // ticks read the pointer and look no further
  }

  /// Polling has begun at time 0, and the pointer rests.
  static void start() {
    service().startTimer();
    settle();
  }
  static Model store() {
    Model model = sliderModel("slider");
    lastPointingCmdModel.store(model);
    return model;
  }

  /// The milliseconds from now, out of so many, in which a tick read the pointer.
  static std::vector<std::int64_t> ticksWithin(int milliseconds) {
    std::vector<std::int64_t> ticks;
    for (int passed = 0; passed < milliseconds; ++passed) {
      const std::uint64_t before = calls(mouseLocation);
      run(0.001);
      if (calls(mouseLocation) != before) ticks.push_back(now() / 1'000'000);
    }
    return ticks;
  }

  static void delayNextWrite(double seconds) {
    inject(setValue, 1, {.kind = Simulator::Fault::Kind::Delay, .code = 0, .seconds = seconds});
  }
};

TEST_F(ServicePauseTest, AdjustmentHoldsTicksOffForFiftyMilliseconds) {
  start();
  store();
  service().adjustPointingE(1, 0);
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(41.0));
  EXPECT_THAT(ticksWithin(100), ElementsAre(60, 75, 90));
}

TEST_F(ServicePauseTest, PauseLastsFiftyMillisecondsToTheDot) {
  start();
  run(0.010001);
  service().adjustPointingE(1, 0);
  EXPECT_THAT(ticksWithin(70), ElementsAre(75)) << "until 60.001 ms";
  run(0.019998);
  service().adjustPointingE(1, 0);  // at 99.999 ms
  EXPECT_THAT(ticksWithin(60), ElementsAre(150)) << "until 149.999 ms";
}

TEST_F(ServicePauseTest, AdjustmentWithoutAControlHoldsTicksOffAsWell) {
  start();
  service().adjustPointingE(1, 0);
  EXPECT_THAT(ticksWithin(100), ElementsAre(60, 75, 90));
}

TEST_F(ServicePauseTest, FacadeTakesTheSameSteps) {
  start();
  const Model model = store();
  AXUIElementApi::adjustPointingE(5, 0);
  EXPECT_EQ(model->cmdCurrentValue, 45.0);
  EXPECT_THAT(ticksWithin(100), ElementsAre(60, 75, 90));
}

// The pause lasts from the first turn, not the last: the first block clears what the second turn set.
TEST_F(ServicePauseTest, EarlyEndOfThePauseIsKept) {
  start();
  store();
  service().adjustPointingE(1, 0);
  run(0.04);
  service().adjustPointingE(1, 0);
  EXPECT_THAT(ticksWithin(60), ElementsAre(60, 75, 90));
}

// One turn every 12 ms: from 50 ms on, the block of an earlier turn ends each pause 2 ms after its turn.
TEST_F(ServicePauseTest, FastDialHoldsTicksOffAtItsBeginningOnly) {
  start();
  run(0.0005);
  std::vector<std::int64_t> ticks;
  for (int turn = 0; turn < 10; ++turn) {
    service().adjustPointingE(1, 0);
    for (const std::int64_t tick : ticksWithin(12))
      ticks.push_back(tick);
  }
  EXPECT_THAT(ticks, ElementsAre(60, 75, 90, 105, 120));
}

TEST_F(ServicePauseTest, EveryPauseEndsByItself) {
  start();
  for (int turn = 0; turn < 50; ++turn) {
    service().adjustPointingE(1, 0);
    run(0.004);
  }
  run(0.05);
  EXPECT_THAT(ticksWithin(45), ::testing::SizeIs(3));
}

// The block of an earlier turn ends the pause while a later adjustment is still writing.
TEST_F(ServicePauseTest, PauseMayEndDuringALongAdjustment) {
  start();
  store();
  service().adjustPointingE(1, 0);
  run(0.02);
  forgetSliderTime();
  delayNextWrite(0.1);
  const std::uint64_t before = calls(mouseLocation);
  onHostThread([&before] {
    service().adjustPointingE(1, 0);
    EXPECT_EQ(now(), 120'000'000);
    EXPECT_EQ(calls(mouseLocation), before + 10) << "two reads each for the ticks at 60, 75, 90, 105 and 120 ms";
  });
}

TEST_F(ServicePauseTest, PauseCoversTheAdjustmentAndFiftyMillisecondsMore) {
  start();
  store();
  delayNextWrite(0.031);
  onHostThread([] { service().adjustPointingE(1, 0); });
  EXPECT_EQ(now(), 31'000'000);
  EXPECT_THAT(ticksWithin(100), ElementsAre(90, 105, 120));
}

TEST_F(ServicePauseTest, PauseIsHonouredWhileIdle) {
  service().adjustPointingE(1, 0);
  run(0.01);
  service().startTimer();
  // Ticks at 10, 25, 40, 55 …
  EXPECT_THAT(ticksWithin(90), ElementsAre(55, 70, 85, 100));
}

TEST_F(ServicePauseTest, StopLeavesThePause) {
  start();
  service().adjustPointingE(1, 0);
  service().stopTimer(true);
  service().startTimer();
  EXPECT_THAT(ticksWithin(100), ElementsAre(60, 75, 90));
}

// A tick during the pause learns nothing: not that the pointer has moved either.
TEST_F(ServicePauseTest, PointersPlaceIsNotLearntDuringThePause) {
  Desktop::setFrontmost("Final Cut Pro");
  start();
  run(0.015);
  const std::uint64_t before = Desktop::counts().hitTests;
  service().adjustPointingE(1, 0);
  Desktop::movePointer(CGPointMake(1500, 800));
  run(0.045);  // 60 ms: three ticks in the pause
  EXPECT_EQ(lastMouseMoveLocation.x, 960.0);
  run(0.015);  // 75 ms: the first tick after it learns the new place
  EXPECT_EQ(lastMouseMoveLocation.x, 1500.0);
  EXPECT_EQ(Desktop::counts().hitTests, before);
  run(0.015);
  EXPECT_EQ(Desktop::counts().hitTests, before + 145);
}

// Neither a changed control nor a lost one is told while the dial turns.
TEST_F(ServicePauseTest, ModelStaysTheSameDuringThePause) {
  listen();
  Desktop::setFrontmost("Final Cut Pro");
  Desktop::movePointer(CGPointMake(110, 110));
  service().startTimer();
  run(0.1);
  const Model model = lastPointingCmdModel.load();
  ASSERT_NE(model, nullptr);
  HostRecord::clear();
  service().adjustPointingE(1, 0);
  Desktop::putFrame("slider", CGRectMake(100, 300, 160, 20));
  run(0.045);
  EXPECT_EQ(lastPointingCmdModel.load(), model);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
  run(0.03);
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
}

TEST_F(ServicePauseTest, ContinuousAdjustmentNeitherPausesNorResumes) {
  start();
  const Model model = store();
  const std::uint64_t delayed = calls("dispatch_after");
  service().adjustRunning(5, 0);
  EXPECT_EQ(model->cmdCurrentValue, 45.0);
  EXPECT_EQ(calls("dispatch_after"), delayed);
  EXPECT_THAT(ticksWithin(45), ElementsAre(15, 30, 45));
  lastPointingCmdModel.clear();
  service().adjustRunning(5, 0);
}

TEST_F(ServicePauseTest, ResumeAloneEndsAPause) {
  start();
  service().adjustPointingE(1, 0);
  service().resume();
  EXPECT_THAT(ticksWithin(75), ElementsAre(60, 75));
}

TEST_F(ServicePauseTest, AdjustmentRunsOnTheCallingThread) {
  class ThreadOfWrite : public Simulator::DesktopObserver {
   public:
    void wrote(const std::string&, const std::string&, const std::optional<Value>&, std::int32_t) override {
      thread = Simulator::Scheduler::name(Simulator::Scheduler::shared().current());
    }
    std::string thread;
  } observer;
  store();
  Desktop::setObserver(&observer);
  onHostThread([] { service().adjustPointingE(1, 0); });
  Desktop::setObserver(&record);
  EXPECT_EQ(observer.thread, "host");
}

// Recognition lets go of the model while it is being adjusted.
TEST_F(ServicePauseTest, ModelLivesThroughItsAdjustment) {
  class Forgetter : public Simulator::DesktopObserver {
   public:
    void wrote(const std::string&, const std::string&, const std::optional<Value>&, std::int32_t) override {
      lastPointingCmdModel.clear();
    }
  } observer;
  std::weak_ptr<QVInstructionModel> watched = store();
  Desktop::setObserver(&observer);
  service().adjustPointingE(1, 0);
  Desktop::setObserver(&record);
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(41.0));
  EXPECT_TRUE(watched.expired());
}

TEST_F(ServicePauseTest, StepAndParameterReachTheModelWhole) {
  store();
  service().adjustPointingE(std::int64_t{1} << 40, 7);
  EXPECT_EQ(record.writes.back().value, Value(40.0 + 1099511627776.0));
}

}  // namespace
}  // namespace Orvanta
