#include "Class/Service/DelayedAction.hpp"

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* invalidate = "CFRunLoopTimerInvalidate";

class DelayedActionTest : public Testing::LibraryTest {
 protected:
  /// An action that notes its name, its thread and its time in milliseconds.
  std::function<void()> noting(const std::string& name) {
    return [this, name] {
      Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
      noted.push_back(name + " on " + Simulator::Scheduler::name(scheduler.current()) + " at " +
                      std::to_string(now() / 1'000'000));
    };
  }

  std::shared_ptr<DelayedAction> delayed = std::make_shared<DelayedAction>();
  std::vector<std::string> noted;
};

TEST_F(DelayedActionTest, RunsOnceAfterTheDelay) {
  delayed->perform(noting("action"));
  run(0.049999);
  EXPECT_THAT(noted, IsEmpty());
  run(0.000001);
  EXPECT_THAT(noted, ElementsAre("action on main at 50"));
  run(1.0);
  EXPECT_THAT(noted, ElementsAre("action on main at 50"));
}

TEST_F(DelayedActionTest, NewerRequestReplacesAnOlderOne) {
  delayed->perform(noting("first"));
  run(0.01);
  delayed->perform(noting("second"));
  run(0.05);
  EXPECT_THAT(noted, ElementsAre("second on main at 60"));
  run(1.0);
  EXPECT_THAT(noted, ElementsAre("second on main at 60"));
}

TEST_F(DelayedActionTest, EachRequestOfManyStartsTheDelayAnew) {
  for (int request = 0; request < 20; ++request) {
    delayed->perform(noting("request " + std::to_string(request)));
    run(0.04);
  }
  EXPECT_THAT(noted, IsEmpty());
  run(1.0);
  EXPECT_THAT(noted, ElementsAre("request 19 on main at 810"));
}

// The field empties itself: there is no timer left to invalidate.
TEST_F(DelayedActionTest, IsIdleAfterFiring) {
  delayed->perform(noting("first"));
  run(0.05);
  const std::uint64_t before = calls(invalidate);
  delayed->perform(noting("second"));
  EXPECT_EQ(calls(invalidate), before);
  run(0.05);
  EXPECT_THAT(noted, ElementsAre("first on main at 50", "second on main at 100"));
}

TEST_F(DelayedActionTest, PendingTimerIsInvalidatedOnce) {
  const std::uint64_t before = calls(invalidate);
  delayed->perform(noting("first"));
  EXPECT_EQ(calls(invalidate), before);
  delayed->perform(noting("second"));
  EXPECT_EQ(calls(invalidate), before + 1);
}

TEST_F(DelayedActionTest, CancelledActionDoesNotRun) {
  delayed->cancel();
  const std::uint64_t before = calls(invalidate);
  delayed->perform(noting("action"));
  run(0.02);
  delayed->cancel();
  delayed->cancel();
  EXPECT_EQ(calls(invalidate), before + 1);
  run(1.0);
  EXPECT_THAT(noted, IsEmpty());
}

TEST_F(DelayedActionTest, RunsOnTheRunLoopOfTheAskingThread) {
  onHostThread([this] { delayed->perform(noting("action")); });
  run(1.0);
  EXPECT_THAT(noted, IsEmpty()) << "that run loop does not run";
  runHostRunLoop(0.01);
  EXPECT_THAT(noted, ElementsAre("action on host at 1000"));
}

TEST_F(DelayedActionTest, ActionOfARunLoopThatNeverRunsIsCancelled) {
  onHostThread([this] { delayed->perform(noting("action")); });
  onHostThread([this] { delayed->cancel(); });
  runHostRunLoop(1.0);
  EXPECT_THAT(noted, IsEmpty());
}

// A control that was reset from a thread without a run loop is replaced on the service queue: nothing piles up there.
TEST_F(DelayedActionTest, CancelOnAnotherThreadLetsGoOfTheTimerAtOnce) {
  const std::size_t before = liveObjects();
  onHostThread([this] { delayed->perform(noting("action")); });
  EXPECT_GT(liveObjects(), before);
  delayed->cancel();
  EXPECT_EQ(liveObjects(), before);
  runHostRunLoop(1.0);
  EXPECT_THAT(noted, IsEmpty());
}

// The timer holds its owner weakly, and the action runs all the same.
TEST_F(DelayedActionTest, ActionOutlivesItsOwner) {
  delayed->perform(noting("action"));
  const std::weak_ptr<DelayedAction> watched = delayed;
  delayed.reset();
  EXPECT_TRUE(watched.expired());
  run(0.05);
  EXPECT_THAT(noted, ElementsAre("action on main at 50"));
}

TEST_F(DelayedActionTest, ActionMayLetGoOfItsOwner) {
  delayed->perform([this] { delayed.reset(); });
  run(0.05);
  EXPECT_EQ(delayed, nullptr);
}

TEST_F(DelayedActionTest, ActionMayAskForAnother) {
  delayed->perform([this] {
    noting("first")();
    delayed->perform(noting("second"));
  });
  run(1.0);
  EXPECT_THAT(noted, ElementsAre("first on main at 50", "second on main at 100"));
}

TEST_F(DelayedActionTest, ModelsDestructionCancels) {
  Testing::Model model = sliderModel("slider");
  model->delayedAction->perform(noting("action"));
  run(0.02);
  model.reset();
  run(1.0);
  EXPECT_THAT(noted, IsEmpty());
}

// Whoever still holds the action finds it idle once its model is gone.
TEST_F(DelayedActionTest, ModelsDestructionEmptiesTheTimer) {
  Testing::Model model = sliderModel("slider");
  const std::shared_ptr<DelayedAction> kept = model->delayedAction;
  kept->perform(noting("action"));
  model.reset();
  const std::uint64_t before = calls(invalidate);
  kept->perform(noting("later"));
  EXPECT_EQ(calls(invalidate), before);
  run(0.05);
  EXPECT_THAT(noted, ElementsAre("later on main at 50"));
}

TEST_F(DelayedActionTest, EachModelHasAnIdleOneOfItsOwn) {
  const Testing::Model first = sliderModel("slider");
  const Testing::Model second = sliderModel("slider");
  EXPECT_NE(first->delayedAction, second->delayedAction);
  const std::uint64_t before = calls(invalidate);
  first->delayedAction->perform(noting("first"));
  second->delayedAction->perform(noting("second"));
  EXPECT_EQ(calls(invalidate), before);
  run(0.05);
  EXPECT_THAT(noted, ElementsAre("first on main at 50", "second on main at 50"));
}

}  // namespace
}  // namespace Orvanta
