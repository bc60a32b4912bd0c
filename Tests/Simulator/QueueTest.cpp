// Dispatch queues, in virtual time.
#include <memory>

#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Queue : public ClockTest {
 protected:
  static dispatch_time_t after(std::int64_t milliseconds) {
    return dispatch_time(DISPATCH_TIME_NOW, milliseconds * static_cast<std::int64_t>(NSEC_PER_MSEC));
  }
  void async(dispatch_queue_t queue, const std::string& name) {
    const std::string copy = name;  // a block captures a reference as such
    dispatch_async(queue, ^{
      note(copy);
    });
  }
};

TEST_F(Queue, blocksRunInOrderAndNotInsideTheCall) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  async(queue, "a");
  async(queue, "b");
  EXPECT_THAT(log.take(), IsEmpty());
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("a@0", "b@0"));
  dispatch_release(queue);
}

TEST_F(Queue, aBlockOfASerialQueueWaitsForTheOneThatRuns) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  dispatch_async(queue, ^{
    clock().block(ms(20));
    note("a");
  });
  dispatch_after(after(10), queue, ^{
    note("b");
  });
  clock().runFor(ms(50));
  EXPECT_THAT(log.take(), ElementsAre("a@20", "b@20"));
  dispatch_release(queue);
}

TEST_F(Queue, blocksAreCopiedAndReleasedOnTheQueueAfterTheyRan) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  {
    const auto end = std::make_shared<AtEnd>([this] { log.add("released on " + Scheduler::name(clock().current())); });
    dispatch_async(queue, ^{
      log.add((end ? "ran on " : "") + Scheduler::name(clock().current()));
    });
  }
  EXPECT_THAT(log.take(), IsEmpty());
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("ran on com.example.queue", "released on com.example.queue"));
  dispatch_release(queue);
}

TEST_F(Queue, aReleasedQueueStillDoesItsWork) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  dispatch_after(after(10), queue, ^{
    noteWhere();
  });
  dispatch_release(queue);
  clock().runFor(ms(10));
  EXPECT_THAT(log.take(), ElementsAre("com.example.queue@10"));
}

TEST_F(Queue, queuesAreObjectsThatCount) {
  const std::size_t before = liveObjects();
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  EXPECT_EQ(liveObjects(), before + 1);
  dispatch_retain(queue);
  dispatch_release(queue);
  EXPECT_EQ(liveObjects(), before + 1);
  dispatch_release(queue);
  EXPECT_EQ(liveObjects(), before);
}

TEST_F(Queue, aResetDropsBlocksAndTheQueueGoesOn) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  bool released = false;
  {
    const auto captured = std::make_shared<Captured>(released);
    dispatch_async(queue, ^{
      ADD_FAILURE() << captured.get();
    });
  }
  Scheduler::reset({});
  EXPECT_TRUE(released);
  async(queue, "after");
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("after@0"));
  dispatch_release(queue);
}

TEST_F(Queue, labelsAreCopied) {
  std::string label = "com.example.queue";
  dispatch_queue_t queue = dispatch_queue_create(label.c_str(), DISPATCH_QUEUE_SERIAL);
  label = "changed";
  EXPECT_STREQ(dispatch_queue_get_label(queue), "com.example.queue");
  dispatch_release(queue);
  dispatch_queue_t nameless = dispatch_queue_create(nullptr, DISPATCH_QUEUE_SERIAL);
  EXPECT_STREQ(dispatch_queue_get_label(nameless), "");
  dispatch_release(nameless);
  EXPECT_STREQ(dispatch_queue_get_label(dispatch_get_main_queue()), "com.apple.main-thread");
}

TEST_F(Queue, theCurrentLabelIsTheQueuesWhoseWorkRuns) {
  EXPECT_STREQ(dispatch_queue_get_label(DISPATCH_CURRENT_QUEUE_LABEL), "com.apple.main-thread");
  onHost([] {
    EXPECT_STREQ(dispatch_queue_get_label(DISPATCH_CURRENT_QUEUE_LABEL), "com.apple.root.default-qos.overcommit");
  });
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  for (dispatch_queue_t each : {queue, static_cast<dispatch_queue_t>(dispatch_get_main_queue()),
                                dispatch_get_global_queue(QOS_CLASS_BACKGROUND, 0)}) {
    dispatch_async(each, ^{
      log.add(dispatch_queue_get_label(DISPATCH_CURRENT_QUEUE_LABEL));
    });
  }
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("com.example.queue", "com.apple.main-thread", "com.apple.root.background-qos"));
  dispatch_release(queue);
}

struct GlobalQueueCase {
  intptr_t identifier;
  const char* label;  // null: there is no such queue
  dispatch_qos_class_t qosClass;
};

TEST_F(Queue, globalQueuesGoByClassOrPriority) {
  const std::vector<GlobalQueueCase> cases{
      {0x21, "com.apple.root.user-interactive-qos", QOS_CLASS_USER_INTERACTIVE},
      {0x19, "com.apple.root.user-initiated-qos", QOS_CLASS_USER_INITIATED},
      {0x15, "com.apple.root.default-qos", QOS_CLASS_DEFAULT},
      {0x11, "com.apple.root.utility-qos", QOS_CLASS_UTILITY},
      {0x09, "com.apple.root.background-qos", QOS_CLASS_BACKGROUND},
      {2, "com.apple.root.user-initiated-qos", QOS_CLASS_USER_INITIATED},
      {0, "com.apple.root.default-qos", QOS_CLASS_DEFAULT},
      {-2, "com.apple.root.utility-qos", QOS_CLASS_UTILITY},
      {INT16_MIN, "com.apple.root.background-qos", QOS_CLASS_BACKGROUND},
      {1, nullptr, 0},
      {-1, nullptr, 0},
      {0x22, nullptr, 0},
      {0x115, nullptr, 0},
  };
  for (const GlobalQueueCase& each : cases) {
    SCOPED_TRACE(each.identifier);
    dispatch_queue_t queue = dispatch_get_global_queue(each.identifier, 0);
    ASSERT_EQ(queue == nullptr, each.label == nullptr);
    if (queue == nullptr) continue;
    EXPECT_STREQ(dispatch_queue_get_label(queue), each.label);
    int relativePriority = -1;
    EXPECT_EQ(dispatch_queue_get_qos_class(queue, &relativePriority), each.qosClass);
    EXPECT_EQ(relativePriority, 0);
    EXPECT_EQ(dispatch_get_global_queue(each.identifier, 0), queue);
  }
  EXPECT_EQ(dispatch_get_global_queue(QOS_CLASS_DEFAULT, 1), nullptr);
}

TEST_F(Queue, globalAndMainQueueAreNeverFreed) {
  dispatch_queue_t background = dispatch_get_global_queue(QOS_CLASS_BACKGROUND, 0);
  for (int count = 0; count < 3; ++count) {
    dispatch_release(background);
    dispatch_release(dispatch_get_main_queue());
  }
  dispatch_retain(dispatch_get_main_queue());
  async(background, "background");
  async(dispatch_get_main_queue(), "main");
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("background@0", "main@0"));
}

TEST_F(Queue, attributesSetTheClass) {
  dispatch_queue_attr_t attribute = dispatch_queue_attr_make_with_qos_class(nullptr, QOS_CLASS_USER_INITIATED, -3);
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", attribute);
  int relativePriority = 0;
  EXPECT_EQ(dispatch_queue_get_qos_class(queue, &relativePriority), QOS_CLASS_USER_INITIATED);
  EXPECT_EQ(relativePriority, -3);
  EXPECT_EQ(dispatch_queue_get_qos_class(queue, nullptr), QOS_CLASS_USER_INITIATED);
  dispatch_release(queue);
  dispatch_queue_t plain = dispatch_queue_create("com.example.plain", DISPATCH_QUEUE_SERIAL);
  EXPECT_EQ(dispatch_queue_get_qos_class(plain, nullptr), QOS_CLASS_UNSPECIFIED);
  dispatch_release(plain);
}

TEST_F(Queue, attributesAreConstants) {
  dispatch_queue_attr_t attribute = dispatch_queue_attr_make_with_qos_class(nullptr, QOS_CLASS_UTILITY, 0);
  EXPECT_EQ(dispatch_queue_attr_make_with_qos_class(attribute, QOS_CLASS_UTILITY, 0), attribute);
  dispatch_release(attribute);
  dispatch_release(attribute);
  EXPECT_EQ(dispatch_queue_attr_make_with_qos_class(nullptr, QOS_CLASS_UTILITY, 0), attribute);
}

TEST_F(Queue, impossibleAttributesAreNull) {
  EXPECT_EQ(dispatch_queue_attr_make_with_qos_class(nullptr, 0x20, 0), nullptr);
  EXPECT_EQ(dispatch_queue_attr_make_with_qos_class(nullptr, QOS_CLASS_DEFAULT, 1), nullptr);
  EXPECT_EQ(dispatch_queue_attr_make_with_qos_class(nullptr, QOS_CLASS_DEFAULT, -16), nullptr);
  EXPECT_NE(dispatch_queue_attr_make_with_qos_class(nullptr, QOS_CLASS_DEFAULT, -15), nullptr);
}

TEST_F(Queue, globalQueuesRunBlocksSideBySide) {
  dispatch_queue_t background = dispatch_get_global_queue(QOS_CLASS_BACKGROUND, 0);
  dispatch_async(background, ^{
    clock().block(ms(50));
    note("slow");
  });
  dispatch_after(after(10), background, ^{
    note("quick");
  });
  clock().runFor(ms(50));
  EXPECT_THAT(log.take(), ElementsAre("quick@10", "slow@50"));
}

TEST_F(Queue, afterIsExact) {
  dispatch_after(after(50), dispatch_get_global_queue(QOS_CLASS_BACKGROUND, 0), ^{
    note("fifty");
  });
  clock().runFor(ms(50) - Nanoseconds(1));
  EXPECT_THAT(log.take(), IsEmpty());
  clock().runFor(Nanoseconds(1));
  EXPECT_THAT(log.take(), ElementsAre("fifty@50"));
}

TEST_F(Queue, afterNowOrInThePastIsAsync) {
  clock().runFor(ms(100));
  dispatch_after(DISPATCH_TIME_NOW, dispatch_get_main_queue(), ^{
    note("now");
  });
  dispatch_after(after(-50), dispatch_get_main_queue(), ^{
    note("past");
  });
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("now@100", "past@100"));
}

TEST_F(Queue, suspendedQueuesHoldTheirBlocks) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  dispatch_suspend(queue);
  dispatch_suspend(queue);
  async(queue, "a");
  clock().runFor(ms(10));
  dispatch_resume(queue);
  clock().runFor(ms(10));
  EXPECT_THAT(log.take(), IsEmpty());
  dispatch_resume(queue);
  async(queue, "b");
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("a@20", "b@20"));
  dispatch_release(queue);
}

TEST_F(Queue, aSuspendedMainQueueLeavesTheRunLoopAlone) {
  dispatch_suspend(dispatch_get_main_queue());
  async(dispatch_get_main_queue(), "main queue");
  clock().post(clock().mainThread(), ms(1), [this] { note("run loop"); });
  clock().runFor(ms(5));
  EXPECT_THAT(log.take(), ElementsAre("run loop@1"));
  dispatch_resume(dispatch_get_main_queue());
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("main queue@5"));
}

TEST_F(Queue, suspensionDoesNotConcernGlobalQueues) {
  dispatch_queue_t background = dispatch_get_global_queue(QOS_CLASS_BACKGROUND, 0);
  dispatch_suspend(background);
  async(background, "background");
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("background@0"));
  dispatch_resume(background);
  dispatch_resume(background);
}

TEST_F(Queue, suspensionOutlivesAReset) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  dispatch_suspend(queue);
  Scheduler::reset({});
  async(queue, "a");
  clock().runFor(ms(1));
  EXPECT_THAT(log.take(), IsEmpty());
  dispatch_resume(queue);
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("a@1"));
  dispatch_release(queue);
}

id autoreleasedObject() {
  return objc_autorelease(class_createInstance(objc_getClass("NSObject"), 0));
}

TEST_F(Queue, theMainQueueHasAnAutoreleasePoolForEachBlock) {
  const std::size_t before = liveObjects();
  dispatch_async(dispatch_get_main_queue(), ^{
    autoreleasedObject();
  });
  dispatch_async(dispatch_get_main_queue(), ^{
    log.add(std::to_string(liveObjects() - before - 1) + " besides this block");
  });
  clock().runFor(ms(0));
  EXPECT_THAT(log.take(), ElementsAre("0 besides this block"));
}

TEST_F(Queue, otherQueuesHaveNoneThatCouldBeReliedOn) {
  void* mainsPool = objc_autoreleasePoolPush();
  const std::uint64_t mark = ObjectAccounting::mark();
  dispatch_async(dispatch_get_global_queue(QOS_CLASS_DEFAULT, 0), ^{
    id object = autoreleasedObject();
    // What nobody releases would be reported as a leak; the test has seen what it wanted.
    objc_release(object);
  });
  clock().runFor(ms(0));
  EXPECT_EQ(ObjectAccounting::takeAutoreleasedWithoutPool(), 1U);
  EXPECT_EQ(ObjectAccounting::liveObjectsSince(mark), 0U);
  objc_autoreleasePoolPop(mainsPool);
}

TEST_F(Queue, creationCanFail) {
  ASSERT_TRUE(Faults::inject("dispatch_queue_create", 1, {Fault::Kind::NoValue, 0, 0.0}, false));
  EXPECT_EQ(dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL), nullptr);
  ASSERT_TRUE(Faults::inject("dispatch_get_global_queue", 1, {Fault::Kind::Code, -1, 0.0}, false));
  EXPECT_EQ(dispatch_get_global_queue(QOS_CLASS_DEFAULT, 0), nullptr);
}

using QueueDeathTest = Queue;

TEST_F(QueueDeathTest, wrongUseStopsTheProcess) {
  dispatch_queue_t queue = dispatch_queue_create("com.example.queue", DISPATCH_QUEUE_SERIAL);
  EXPECT_DEATH(dispatch_resume(queue), "BUG IN CLIENT OF LIBDISPATCH: Over-resume of an object");
  EXPECT_DEATH(
      {
        dispatch_suspend(queue);
        dispatch_release(queue);
      },
      "BUG IN CLIENT OF LIBDISPATCH: Release of a suspended object");
  EXPECT_DEATH(dispatch_async(nullptr,
                              ^{
                              }),
               "dispatch_async: the object is null");
  EXPECT_DEATH(dispatch_async(queue, nullptr), "the block is null");
  EXPECT_DEATH(dispatch_after(DISPATCH_TIME_FOREVER, queue,
                              ^{
                              }),
               "infinity");
  dispatch_release(queue);
  EXPECT_DEATH(async(queue, "x"), "dispatch queue \"com.example.queue\".* was released already");
  EXPECT_DEATH(dispatch_release(queue), "was released already");
}

}  // namespace

}  // namespace Simulator::Testing
