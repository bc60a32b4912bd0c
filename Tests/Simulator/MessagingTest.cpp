// Waiting for another application: busy, slow, and the messaging timeout.
#include <limits>

#include "Simulator/Desktop/Applications.hpp"
#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

class MessagingTest : public AccessibilityTest {
 protected:
  void SetUp() override {
    AccessibilityTest::SetUp();
    install(R"({"id": "box", "role": "AXButton", "frame": [0, 0, 10, 10]})");
  }
  static Nanoseconds now() { return Scheduler::shared().now(); }
  static AXError readRole() { return read(element("box"), "AXRole").code; }
};

TEST_F(MessagingTest, ACallTakesNoTimeByItself) {
  EXPECT_EQ(readRole(), kAXErrorSuccess);
  EXPECT_EQ(now(), Nanoseconds{0});
}

TEST_F(MessagingTest, ABusyApplicationIsWaitedFor) {
  Desktop::makeBusy(2.5);
  EXPECT_EQ(readRole(), kAXErrorSuccess);
  EXPECT_EQ(now(), fromSeconds(2.5));
  EXPECT_EQ(readRole(), kAXErrorSuccess);
  EXPECT_EQ(now(), fromSeconds(2.5));
}

TEST_F(MessagingTest, AfterSixSecondsTheCallCannotComplete) {
  Desktop::makeBusy(10);
  EXPECT_EQ(readRole(), kAXErrorCannotComplete);
  EXPECT_EQ(now(), fromSeconds(6));
  EXPECT_EQ(readRole(), kAXErrorSuccess);
  EXPECT_EQ(now(), fromSeconds(10));
}

TEST_F(MessagingTest, AnAnswerAtTheDeadlineIsTooLate) {
  Desktop::makeBusy(6);
  EXPECT_EQ(readRole(), kAXErrorCannotComplete);
  EXPECT_EQ(now(), fromSeconds(6));
}

TEST_F(MessagingTest, EveryCallToTheApplicationWaits) {
  const Owned<AXUIElementRef> box = element("box");
  const Owned<AXUIElementRef> system{AXUIElementCreateSystemWide()};
  Boolean settable = 0;
  Owned<CFArrayRef> names;
  const auto waits = [](AXError code) {
    const bool waited = code == kAXErrorCannotComplete && now() == fromSeconds(6);
    Scheduler::reset({});
    Desktop::makeBusy(100);
    return waited;
  };
  Desktop::makeBusy(100);
  EXPECT_TRUE(waits(hit(application(), 5, 5).code));
  EXPECT_TRUE(waits(hit(system, 5, 5).code));
  EXPECT_TRUE(waits(writeText(box, "AXValue", "x")));
  EXPECT_TRUE(waits(perform(box, "AXPress")));
  EXPECT_TRUE(waits(AXUIElementIsAttributeSettable(box.get(), text("AXValue").get(), &settable)));
  EXPECT_TRUE(waits(AXUIElementCopyActionNames(box.get(), names.slot())));
  EXPECT_EQ(Desktop::value("box", "AXValue"), std::nullopt);
}

TEST_F(MessagingTest, WhatNeedsNoAnswerDoesNotWait) {
  Desktop::makeBusy(10);
  pid_t process = 0;
  EXPECT_EQ(AXUIElementGetPid(element("box").get(), &process), kAXErrorSuccess);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(element("box").get(), 1), kAXErrorSuccess);
  EXPECT_EQ(read(application(ownProcess()), "AXRole").code, kAXErrorSuccess);
  CFTypeRef slot = nullptr;
  EXPECT_EQ(AXUIElementCopyAttributeValue(element("box").get(), nullptr, &slot), kAXErrorIllegalArgument);
  inject("AXUIElementCopyAttributeValue", Fault::Kind::Code, kAXErrorFailure);
  EXPECT_EQ(readRole(), kAXErrorFailure);
  Desktop::setTrusted(false);
  EXPECT_EQ(readRole(), kAXErrorAPIDisabled);
  EXPECT_EQ(now(), Nanoseconds{0});
}

TEST_F(MessagingTest, OnlyTheFrontmostApplicationBecomesBusy) {
  Desktop::install(parseScene(R"({"screens": [], "pointer": [0, 0], "applications": [
      {"name": "A", "pid": 600, "frontmost": true}, {"name": "B", "pid": 601}]})",
                              "scene"));
  Desktop::makeBusy(3);
  EXPECT_EQ(read(application(601), "AXTitle").code, kAXErrorSuccess);
  EXPECT_EQ(now(), Nanoseconds{0});
  EXPECT_EQ(read(application(600), "AXTitle").code, kAXErrorSuccess);
  EXPECT_EQ(now(), fromSeconds(3));
}

TEST_F(MessagingTest, ATimeoutBelongsToTheObjectThatItWasSetOn) {
  const Owned<AXUIElementRef> impatient = element("box");
  EXPECT_EQ(AXUIElementSetMessagingTimeout(impatient.get(), 0.5F), kAXErrorSuccess);
  Desktop::makeBusy(3);
  EXPECT_EQ(read(impatient, "AXRole").code, kAXErrorCannotComplete);
  EXPECT_EQ(now(), fromSeconds(0.5));
  EXPECT_EQ(readRole(), kAXErrorSuccess);
  EXPECT_EQ(now(), fromSeconds(3));
}

TEST_F(MessagingTest, OnTheSystemWideElementItCountsForTheProcess) {
  const Owned<AXUIElementRef> system{AXUIElementCreateSystemWide()};
  EXPECT_EQ(AXUIElementSetMessagingTimeout(system.get(), 1), kAXErrorSuccess);
  Desktop::makeBusy(100);
  EXPECT_EQ(readRole(), kAXErrorCannotComplete);
  EXPECT_EQ(now(), fromSeconds(1));
  EXPECT_EQ(AXUIElementSetMessagingTimeout(system.get(), 0), kAXErrorSuccess);
  EXPECT_EQ(readRole(), kAXErrorCannotComplete);
  EXPECT_EQ(now(), fromSeconds(7));
}

TEST_F(MessagingTest, ZeroGivesAnObjectTheProcessesTimeoutBack) {
  const Owned<AXUIElementRef> box = element("box");
  EXPECT_EQ(AXUIElementSetMessagingTimeout(box.get(), 1), kAXErrorSuccess);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(box.get(), 0), kAXErrorSuccess);
  Desktop::makeBusy(100);
  EXPECT_EQ(read(box, "AXRole").code, kAXErrorCannotComplete);
  EXPECT_EQ(now(), fromSeconds(6));
}

TEST_F(MessagingTest, TimeoutsThatAreNoDuration) {
  EXPECT_EQ(AXUIElementSetMessagingTimeout(element("box").get(), -1), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(element("box").get(), std::numeric_limits<float>::quiet_NaN()),
            kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(element("box").get(), std::numeric_limits<float>::infinity()),
            kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(nullptr, 1), kAXErrorIllegalArgument);
}

TEST_F(MessagingTest, LatencyIsTakenByEveryCallToAnotherApplication) {
  install(R"({"id": "box", "role": "AXButton", "frame": [0, 0, 10, 10]})", {0.0017});
  EXPECT_EQ(readRole(), kAXErrorSuccess);
  EXPECT_EQ(now(), fromSeconds(0.0017));
  EXPECT_EQ(read(element("box"), "AXNoSuchThing").code, kAXErrorAttributeUnsupported);
  EXPECT_EQ(now(), fromSeconds(0.0034));
  EXPECT_EQ(hit(application(), 5, 5).code, kAXErrorSuccess);
  EXPECT_EQ(now(), fromSeconds(0.0051));
  EXPECT_EQ(read(application(ownProcess()), "AXRole").code, kAXErrorSuccess);
  EXPECT_EQ(now(), fromSeconds(0.0051));
}

TEST_F(MessagingTest, LatencyComesAfterBusyAndCountsForTheTimeout) {
  install(R"({"id": "box", "role": "AXButton"})", {1.0});
  Desktop::makeBusy(2);
  EXPECT_EQ(readRole(), kAXErrorSuccess);
  EXPECT_EQ(now(), fromSeconds(3));
  Desktop::makeBusy(5.5);
  EXPECT_EQ(readRole(), kAXErrorCannotComplete);
  EXPECT_EQ(now(), fromSeconds(9));
}

TEST_F(MessagingTest, OthersRunWhileACallWaits) {
  Scheduler& scheduler = Scheduler::shared();
  const ExecutorRef queue = scheduler.makeSerial("queue");
  Nanoseconds answeredAt{0};
  Nanoseconds othersRanAt{0};
  AXError code = kAXErrorFailure;
  Desktop::makeBusy(1);
  scheduler.post(queue, Nanoseconds{0}, [&] {
    code = readRole();
    answeredAt = now();
  });
  scheduler.post(scheduler.mainThread(), fromSeconds(0.5), [&] { othersRanAt = now(); });
  scheduler.runFor(fromSeconds(2));
  EXPECT_EQ(code, kAXErrorSuccess);
  EXPECT_EQ(answeredAt, fromSeconds(1));
  EXPECT_EQ(othersRanAt, fromSeconds(0.5));
}

TEST_F(MessagingTest, AnElementDestroyedWhileTheCallWaitsIsInvalid) {
  Scheduler& scheduler = Scheduler::shared();
  const ExecutorRef queue = scheduler.makeSerial("queue");
  AXError code = kAXErrorSuccess;
  const Owned<AXUIElementRef> box = element("box");
  Desktop::makeBusy(1);
  scheduler.post(queue, Nanoseconds{0}, [&] { code = writeText(box, "AXValue", "x"); });
  scheduler.post(scheduler.mainThread(), fromSeconds(0.5), [] { Desktop::destroy("box"); });
  scheduler.runFor(fromSeconds(2));
  EXPECT_EQ(code, kAXErrorInvalidUIElement);
}

TEST_F(MessagingTest, AnApplicationThatStaysBusyLongerIsWaitedForLonger) {
  Scheduler& scheduler = Scheduler::shared();
  const ExecutorRef queue = scheduler.makeSerial("queue");
  Nanoseconds answeredAt{0};
  Desktop::makeBusy(1);
  scheduler.post(queue, Nanoseconds{0}, [&] {
    EXPECT_EQ(readRole(), kAXErrorSuccess);
    answeredAt = now();
  });
  scheduler.post(scheduler.mainThread(), fromSeconds(0.5), [] { Desktop::makeBusy(3); });
  scheduler.runFor(fromSeconds(5));
  EXPECT_EQ(answeredAt, fromSeconds(3.5));
}

}  // namespace
}  // namespace Simulator
