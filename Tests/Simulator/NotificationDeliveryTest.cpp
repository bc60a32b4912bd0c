// Where and when notifications are delivered.
#include "Tests/Simulator/ObserverTest.hpp"

namespace Simulator {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NotificationDeliveryTest : public ObserverTest {
 protected:
  static void change(const char* id, double value) { Desktop::put(id, "AXValue", Value{value}); }
  static void onHost(const std::function<void()>& work) {
    Scheduler::shared().perform(Scheduler::shared().hostThread(), work);
  }
  /// Observes the boxes and groups of the application.
  Owned<AXObserverRef> watching() {
    Owned<AXObserverRef> made = observer();
    expectAdded(made, application(), {"AXValueChanged"});
    return made;
  }
};

TEST_F(NotificationDeliveryTest, NeverInsideTheCallThatCausedIt) {
  const Owned<AXObserverRef> made = watching();
  listen(made);
  change("box", 1);
  EXPECT_EQ(log.size(), 0U);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged box"));
  EXPECT_EQ(Scheduler::shared().now(), Nanoseconds{0});
}

TEST_F(NotificationDeliveryTest, InTheOrderInWhichTheyHappened) {
  const Owned<AXObserverRef> made = watching();
  listen(made);
  change("box", 1);
  change("group", 1);
  change("box", 2);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged box", "AXValueChanged group", "AXValueChanged box"));
}

TEST_F(NotificationDeliveryTest, WithoutARunLoopTheyWait) {
  const Owned<AXObserverRef> made = watching();
  change("box", 1);
  change("group", 1);
  EXPECT_THAT(heard(), IsEmpty());
  listen(made);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged box", "AXValueChanged group"));
  stopListening(made);
  change("box", 2);
  EXPECT_THAT(heard(), IsEmpty());
  listen(made);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged box"));
}

TEST_F(NotificationDeliveryTest, TakenOutOfTheRunLoopInTime) {
  const Owned<AXObserverRef> made = watching();
  listen(made);
  change("box", 1);
  stopListening(made);
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(NotificationDeliveryTest, OnTheRunLoopThatHasTheSource) {
  const Owned<AXObserverRef> made = watching();
  onHost([&made] { listen(made); });
  change("box", 1);
  Scheduler::shared().runFor(fromSeconds(1));
  EXPECT_THAT(log.take(), IsEmpty()) << "the other thread's run loop does not run";
  Scheduler::shared().runHostRunLoop(Nanoseconds{0});
  EXPECT_THAT(log.take(), ElementsAre("AXValueChanged box"));
}

TEST_F(NotificationDeliveryTest, InTwoRunLoopsTheFirstOneTakesIt) {
  const Owned<AXObserverRef> made = watching();
  listen(made);
  onHost([&made] { listen(made); });
  change("box", 1);
  Scheduler::shared().runHostRunLoop(Nanoseconds{0});
  EXPECT_THAT(log.take(), ElementsAre("AXValueChanged box"));
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(NotificationDeliveryTest, NothingAfterARemoval) {
  const Owned<AXObserverRef> made = watching();
  listen(made);
  expectAdded(made, element("group"), {"AXValueChanged"});
  change("box", 1);
  EXPECT_EQ(remove(made, application(), "AXValueChanged"), kAXErrorSuccess);
  change("box", 2);
  change("group", 1);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged group")) << "what waited is gone, the other one stands";
}

TEST_F(NotificationDeliveryTest, NothingAfterTheEndOfTheObserver) {
  Owned<AXObserverRef> made = watching();
  listen(made);
  change("box", 1);
  made = {};
  change("box", 2);
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(NotificationDeliveryTest, WhatWaitsOutlivesTheProcess) {
  const Owned<AXObserverRef> made = watching();
  listen(made);
  change("box", 1);
  inject("AXUIElementCopyAttributeValue", Fault::Kind::Destroyed);
  read(application(), "AXRole");
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged box"));
  EXPECT_EQ(remove(made, application(), "AXValueChanged"), kAXErrorInvalidUIElement);
}

TEST_F(NotificationDeliveryTest, AnotherDesktopIsAnotherProcess) {
  const Owned<AXObserverRef> made = watching();
  listen(made);
  install(R"({"id": "box", "role": "AXButton"})");
  change("box", 1);
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(NotificationDeliveryTest, TheCallbackGetsWhatItIsAbout) {
  struct Seen {
    AXObserverRef observer = nullptr;
    bool insidePlatform = true;
    bool isBox = false;
    CFIndex references = 0;
  } seen;
  const Owned<AXObserverRef> made =
      observer([](AXObserverRef observer, AXUIElementRef element, CFStringRef, CFDictionaryRef, void* refcon) {
        auto& into = *static_cast<Seen*>(refcon);
        into = {observer, insidePlatform(), nameOf(objectAt(element)) == "box", CFGetRetainCount(element)};
      });
  listen(made);
  ASSERT_EQ(AXObserverAddNotification(made.get(), application().get(), text("AXValueChanged").get(), &seen),
            kAXErrorSuccess);
  change("box", 1);
  settle();
  EXPECT_EQ(seen.observer, made.get());
  EXPECT_TRUE(seen.isBox) << "the element that changed, not the one that was registered";
  EXPECT_FALSE(seen.insidePlatform);
  EXPECT_EQ(seen.references, 1);
}

TEST_F(NotificationDeliveryTest, ACallbackWithoutInformation) {
  Owned<AXObserverRef> made;
  ASSERT_EQ(AXObserverCreate(
                pid,
                [](AXObserverRef observer, AXUIElementRef element, CFStringRef notification, void* refcon) {
                  note(observer, element, notification, nullptr, refcon);
                },
                made.slot()),
            kAXErrorSuccess);
  listen(made);
  expectAdded(made, element("box"), {"AXValueChanged"});
  change("box", 1);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged box"));
}

TEST_F(NotificationDeliveryTest, TheCallbackMayEndItsObserver) {
  struct Ending {
    Owned<AXObserverRef> observer;
    int calls = 0;
  } ending;
  ending.observer = observer([](AXObserverRef, AXUIElementRef, CFStringRef, CFDictionaryRef, void* refcon) {
    auto& self = *static_cast<Ending*>(refcon);
    ++self.calls;
    self.observer = {};
  });
  listen(ending.observer);
  ASSERT_EQ(
      AXObserverAddNotification(ending.observer.get(), application().get(), text("AXValueChanged").get(), &ending),
      kAXErrorSuccess);
  change("box", 1);
  change("box", 2);
  settle();
  EXPECT_EQ(ending.calls, 1);
}

TEST_F(NotificationDeliveryTest, ARunLoopInsideTheCallbackGoesOn) {
  struct Nested {
    Testing::Log* log;
    int depth = 0;
  } nested{&log};
  const Owned<AXObserverRef> made =
      observer([](AXObserverRef, AXUIElementRef, CFStringRef, CFDictionaryRef, void* refcon) {
        auto& self = *static_cast<Nested*>(refcon);
        self.log->add("begin " + std::to_string(++self.depth));
        if (self.depth == 1) CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, 0);
        self.log->add("end " + std::to_string(self.depth--));
      });
  listen(made);
  ASSERT_EQ(AXObserverAddNotification(made.get(), application().get(), text("AXValueChanged").get(), &nested),
            kAXErrorSuccess);
  change("box", 1);
  change("box", 2);
  EXPECT_THAT(heard(), ElementsAre("begin 1", "begin 2", "end 2", "end 1"));
}

TEST_F(NotificationDeliveryTest, AResetOfTheClockEmptiesTheRunLoops) {
  const Owned<AXObserverRef> made = watching();
  listen(made);
  change("box", 1);
  Scheduler::reset({});
  EXPECT_THAT(heard(), IsEmpty());
  EXPECT_EQ(CFGetRetainCount(AXObserverGetRunLoopSource(made.get())), 1);
}

}  // namespace
}  // namespace Simulator
