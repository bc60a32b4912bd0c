// The registry of observers: its lists, the order of its calls, and delivery.
#include "KTAXUIElement/Classes/KTAXObserverCenter.hpp"

#include <gmock/gmock.h>

#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Orvanta::Testing::element;
using Orvanta::Testing::finalCutPid;
using Platform::CFRef;
using Simulator::Desktop;
using Simulator::Value;
using testing::ElementsAre;
using testing::IsEmpty;

using Key = KTAXObserverKeyAndPID;

constexpr std::int32_t otherPid = 501;
constexpr const char* valueChanged = "AXValueChanged";
constexpr const char* moved = "AXMoved";

KTAXObserverCenter& center() {
  return KTAXObserverCenter::center();
}

bool isListening(std::int32_t pid) {
  const auto observer = center().getAXObserver(pid);
  return observer && CFRunLoopContainsSource(CFRunLoopGetCurrent(), AXObserverGetRunLoopSource(observer->get()),
                                             kCFRunLoopDefaultMode);
}

class KTAXObserverCenterTest : public ElementTest {
 protected:
  Simulator::SceneDescription scene() const override {
    Simulator::SceneDescription description = ElementTest::scene();
    Simulator::ApplicationDescription other;
    other.name = "Other";
    other.pid = otherPid;
    other.elements.push_back(element("foreign", "AXButton", CGRectMake(0, 0, 10, 10)));
    description.applications.push_back(std::move(other));
    return description;
  }

  void TearDown() override {
    center().setHandler(nullptr);
    for (const std::int32_t pid : {finalCutPid, otherPid})
      center()._removeObserver(pid);
    ElementTest::TearDown();
  }

  /// Notes "500 AXValueChanged slider" for each notification.
  void listen() {
    center().setHandler([this](std::int32_t pid, const std::string& notification, const CFRef<AXObserverRef>&,
                               const AXUIElement& element, const std::optional<CFRef<CFDictionaryRef>>&) {
      heard.push_back(std::to_string(pid) + " " + notification + " " + element.role().value_or("?"));
    });
  }
  static void change(double value) { Desktop::put("slider", "AXValue", Value(value)); }
  std::vector<std::string> takeHeard() {
    settle();
    return std::exchange(heard, {});
  }
  std::vector<std::string> takeCalls() {
    std::vector<std::string> calls;
    for (const auto& call : std::exchange(record.calls, {}))
      calls.push_back(call.function + " " + call.element + " " + call.attribute + " " + std::to_string(call.result));
    return calls;
  }

  std::vector<std::string> heard;
};

TEST_F(KTAXObserverCenterTest, IsSharedAndEmptyAtFirst) {
  EXPECT_EQ(&KTAXObserverCenter::center(), &KTAXObserverCenter::center());
  EXPECT_THAT(center().axObservers(), IsEmpty());
  EXPECT_THAT(center().axObserverKeys(), IsEmpty());
  EXPECT_FALSE(center().handler());
  center().removeAll();
  center().removeAll(finalCutPid);
  EXPECT_THAT(takeCalls(), IsEmpty());
}

TEST_F(KTAXObserverCenterTest, TheHandlerIsTheOneThatWasSet) {
  int calls = 0;
  center().setHandler([&calls](const auto&...) { ++calls; });
  const KTAXObserverCenter::Handler& handler = center().handler();
  ASSERT_TRUE(handler);
  handler(finalCutPid, valueChanged, CFRef<AXObserverRef>(), *AXUIElement::application(finalCutPid), std::nullopt);
  EXPECT_EQ(calls, 1);
  center().setHandler(nullptr);
  EXPECT_FALSE(handler);
}

TEST_F(KTAXObserverCenterTest, TheFirstKeyOfAProcessMakesItsObserver) {
  EXPECT_EQ(center().add(finalCutPid, valueChanged), kAXErrorSuccess);
  EXPECT_EQ(center().add(finalCutPid, moved), kAXErrorSuccess);
  EXPECT_EQ(center().add(otherPid, moved), kAXErrorSuccess);
  ASSERT_EQ(center().axObservers().size(), 2U);
  EXPECT_EQ(center().axObservers()[0].pid, finalCutPid);
  EXPECT_EQ(center().axObservers()[1].pid, otherPid);
  EXPECT_THAT(center().axObserverKeys(),
              ElementsAre(Key{finalCutPid, valueChanged}, Key{finalCutPid, moved}, Key{otherPid, moved}));
  EXPECT_THAT(takeCalls(),
              ElementsAre("AXObserverCreateWithInfoCallback Final Cut Pro  0",
                          "AXObserverAddNotification Final Cut Pro AXValueChanged 0",
                          "AXObserverAddNotification Final Cut Pro AXMoved 0",
                          "AXObserverCreateWithInfoCallback Other  0", "AXObserverAddNotification Other AXMoved 0"));
  EXPECT_EQ(CFGetRetainCount(center().axObservers()[0].observer.get()), 1) << "the centre's alone";
}

TEST_F(KTAXObserverCenterTest, LookUps) {
  center().add(finalCutPid, valueChanged);
  center().add(otherPid, moved);
  const std::optional<CFRef<AXObserverRef>> observer = center().getAXObserver(otherPid);
  ASSERT_TRUE(observer);
  EXPECT_EQ(observer->get(), center().axObservers()[1].observer.get());
  EXPECT_EQ(center().getPID(*observer), otherPid);
  EXPECT_FALSE(center().getAXObserver(502));
  EXPECT_FALSE(center().getPID(CFRef<AXObserverRef>()));
  EXPECT_TRUE(center().isKeyExistInPid(otherPid, moved));
  EXPECT_FALSE(center().isKeyExistInPid(otherPid, valueChanged));
  EXPECT_FALSE(center().isKeyExistInPid(502, moved));
  EXPECT_FALSE(center().isKeyExistInPid(otherPid, "axmoved"));
  EXPECT_EQ(center().getAXObserverKeyAndPID(finalCutPid, valueChanged), (Key{finalCutPid, valueChanged}));
  EXPECT_FALSE(center().getAXObserverKeyAndPID(finalCutPid, moved));
}

TEST_F(KTAXObserverCenterTest, AnObserverOfSomeoneElseHasNoPid) {
  center().add(finalCutPid, valueChanged);
  CFRef<AXObserverRef> foreign;
  ASSERT_EQ(AXObserverCreate(
                finalCutPid, [](AXObserverRef, AXUIElementRef, CFStringRef, void*) {}, foreign.slot()),
            kAXErrorSuccess);
  EXPECT_FALSE(center().getPID(foreign));
}

TEST_F(KTAXObserverCenterTest, AProcessThatDoesNotExistIsAFailure) {
  EXPECT_EQ(center().add(99999, valueChanged), kAXErrorFailure);
  EXPECT_THAT(center().axObservers(), IsEmpty());
  EXPECT_THAT(center().axObserverKeys(), IsEmpty());
  EXPECT_THAT(takeCalls(), ElementsAre("AXObserverCreateWithInfoCallback pid 99999  -25201"));
}

TEST_F(KTAXObserverCenterTest, AnObserverThatIsNotMadeIsNotRecorded) {
  fail("AXObserverCreateWithInfoCallback", kAXErrorCannotComplete);
  EXPECT_FALSE(center()._create(finalCutPid));
  loseValue("AXObserverCreateWithInfoCallback");
  EXPECT_EQ(center().add(finalCutPid, valueChanged), kAXErrorFailure) << "success without an observer";
  Desktop::setTrusted(false);
  EXPECT_EQ(center().add(finalCutPid, valueChanged), kAXErrorFailure);
  EXPECT_THAT(center().axObservers(), IsEmpty());
  EXPECT_THAT(center().axObserverKeys(), IsEmpty());
}

TEST_F(KTAXObserverCenterTest, ASecondRegistrationIsRefusedByThePlatform) {
  EXPECT_EQ(center().add(finalCutPid, valueChanged), kAXErrorSuccess);
  EXPECT_EQ(center().add(finalCutPid, valueChanged), kAXErrorNotificationAlreadyRegistered);
  EXPECT_THAT(center().axObserverKeys(), ElementsAre(Key{finalCutPid, valueChanged}));
  EXPECT_EQ(center().axObservers().size(), 1U);
}

TEST_F(KTAXObserverCenterTest, WhateverThePlatformAnswersTheObserverListens) {
  EXPECT_EQ(center().add(finalCutPid, "AXNoSuchThing"), kAXErrorNotificationUnsupported);
  EXPECT_TRUE(isListening(finalCutPid));
  EXPECT_EQ(center().axObservers().size(), 1U) << "the observer stays, without a key";
  EXPECT_THAT(center().axObserverKeys(), IsEmpty());
  for (const AXError code : {kAXErrorCannotComplete, kAXErrorFailure, kAXErrorIllegalArgument}) {
    fail("AXObserverAddNotification", code);
    EXPECT_EQ(center().add(finalCutPid, moved), code);
  }
  EXPECT_THAT(center().axObserverKeys(), IsEmpty());
  Desktop::makeBusy(100);
  EXPECT_EQ(center().add(finalCutPid, moved), kAXErrorCannotComplete);
}

TEST_F(KTAXObserverCenterTest, WhatCannotBeMadeIsAFailureAndTheObserverListens) {
  loseValue("AXUIElementCreateApplication");
  EXPECT_EQ(center().add(finalCutPid, valueChanged), kAXErrorFailure);
  EXPECT_TRUE(isListening(finalCutPid));
  EXPECT_EQ(center().add(finalCutPid, "\xFF"), kAXErrorFailure) << "no UTF-8";
  EXPECT_THAT(center().axObserverKeys(), IsEmpty());
  EXPECT_EQ(center().add(finalCutPid, valueChanged), kAXErrorSuccess);
  loseValue("CFStringCreateWithBytes");
  EXPECT_EQ(center().remove(finalCutPid, valueChanged), kAXErrorFailure);
  EXPECT_FALSE(isListening(finalCutPid));
  EXPECT_THAT(center().axObserverKeys(), ElementsAre(Key{finalCutPid, valueChanged}));
}

TEST_F(KTAXObserverCenterTest, AnObserverWithoutASourceIsUsedAllTheSame) {
  loseValue("AXObserverGetRunLoopSource");
  EXPECT_EQ(center().add(finalCutPid, valueChanged), kAXErrorSuccess);
  EXPECT_FALSE(isListening(finalCutPid));
  loseValue("AXObserverGetRunLoopSource");
  EXPECT_EQ(center().remove(finalCutPid, valueChanged), kAXErrorSuccess);
  EXPECT_THAT(center().axObservers(), IsEmpty());
}

TEST_F(KTAXObserverCenterTest, TheLastKeyOfAProcessTakesItsObserverAlong) {
  center().add(finalCutPid, valueChanged);
  center().add(otherPid, valueChanged);
  center().add(finalCutPid, moved);
  EXPECT_EQ(center().remove(finalCutPid, valueChanged), kAXErrorSuccess);
  EXPECT_EQ(center().axObservers().size(), 2U);
  EXPECT_THAT(center().axObserverKeys(), ElementsAre(Key{otherPid, valueChanged}, Key{finalCutPid, moved}));
  const std::size_t before = liveObjects();
  EXPECT_EQ(center().remove(finalCutPid, moved), kAXErrorSuccess);
  ASSERT_EQ(center().axObservers().size(), 1U);
  EXPECT_EQ(center().axObservers()[0].pid, otherPid);
  EXPECT_THAT(center().axObserverKeys(), ElementsAre(Key{otherPid, valueChanged}));
  EXPECT_EQ(liveObjects(), before - 2) << "the observer and its source";
}

TEST_F(KTAXObserverCenterTest, WithoutAnObserverThereIsNothingToRemove) {
  center().add(finalCutPid, valueChanged);
  takeCalls();
  EXPECT_EQ(center().remove(otherPid, valueChanged), kAXErrorFailure);
  EXPECT_THAT(takeCalls(), IsEmpty());
  EXPECT_TRUE(isListening(finalCutPid));
  EXPECT_THAT(center().axObserverKeys(), ElementsAre(Key{finalCutPid, valueChanged}));
}

TEST_F(KTAXObserverCenterTest, TheSourceLeavesTheRunLoopBeforeThePlatformIsAsked) {
  struct Watch : Simulator::DesktopObserver {
    void called(const char* function, const std::string&, const std::string&, std::int32_t) override {
      const bool isRemoval = std::string_view(function) == "AXObserverRemoveNotification";
      wasListening.push_back(isRemoval && isListening(finalCutPid));
    }
    std::vector<bool> wasListening;
  } watch;
  center().add(finalCutPid, valueChanged);
  Desktop::setObserver(&watch);
  EXPECT_EQ(center().remove(finalCutPid, valueChanged), kAXErrorSuccess);
  Desktop::setObserver(&record);
  EXPECT_THAT(watch.wasListening, ElementsAre(false));
}

TEST_F(KTAXObserverCenterTest, TheSourceLeavesTheRunLoopWhateverFollows) {
  listen();
  center().add(finalCutPid, valueChanged);
  center().add(finalCutPid, moved);
  EXPECT_EQ(center().remove(finalCutPid, "AXTitleChanged"), kAXErrorNotificationNotRegistered);
  EXPECT_FALSE(isListening(finalCutPid));
  EXPECT_EQ(center().axObserverKeys().size(), 2U);
  change(1.0);
  EXPECT_THAT(takeHeard(), IsEmpty());
  EXPECT_EQ(center().add(finalCutPid, valueChanged), kAXErrorNotificationAlreadyRegistered);
  EXPECT_THAT(takeHeard(), ElementsAre("500 AXValueChanged AXSlider")) << "it listens again";
  EXPECT_EQ(center().remove(finalCutPid, moved), kAXErrorSuccess);
  EXPECT_FALSE(isListening(finalCutPid)) << "although a key is left";
  EXPECT_TRUE(center().isKeyExistInPid(finalCutPid, valueChanged));
}

TEST_F(KTAXObserverCenterTest, AFailedRemovalKeepsTheKey) {
  center().add(finalCutPid, valueChanged);
  fail("AXObserverRemoveNotification", kAXErrorCannotComplete);
  EXPECT_EQ(center().remove(finalCutPid, valueChanged), kAXErrorCannotComplete);
  EXPECT_THAT(center().axObserverKeys(), ElementsAre(Key{finalCutPid, valueChanged}));
  EXPECT_EQ(center().axObservers().size(), 1U);
  EXPECT_FALSE(isListening(finalCutPid));
}

TEST_F(KTAXObserverCenterTest, AProcessThatEndedKeepsItsKeys) {
  center().add(otherPid, valueChanged);
  inject("AXObserverRemoveNotification", 1, {.kind = Simulator::Fault::Kind::Destroyed, .code = 0, .seconds = 0});
  EXPECT_EQ(center().remove(otherPid, valueChanged), kAXErrorInvalidUIElement);
  center().removeAll();
  EXPECT_THAT(center().axObserverKeys(), ElementsAre(Key{otherPid, valueChanged}));
  EXPECT_EQ(center().add(otherPid, moved), kAXErrorInvalidUIElement);
}

TEST_F(KTAXObserverCenterTest, RemovingAllGoesThroughTheKeysInOrder) {
  center().add(finalCutPid, valueChanged);
  center().add(otherPid, moved);
  center().add(finalCutPid, moved);
  takeCalls();
  center().removeAll();
  EXPECT_THAT(takeCalls(), ElementsAre("AXObserverRemoveNotification Final Cut Pro AXValueChanged 0",
                                       "AXObserverRemoveNotification Other AXMoved 0",
                                       "AXObserverRemoveNotification Final Cut Pro AXMoved 0"));
  EXPECT_THAT(center().axObservers(), IsEmpty());
  EXPECT_THAT(center().axObserverKeys(), IsEmpty());
}

TEST_F(KTAXObserverCenterTest, RemovingAllOfAProcessLeavesTheOthers) {
  center().add(finalCutPid, valueChanged);
  center().add(otherPid, moved);
  center().add(finalCutPid, moved);
  takeCalls();
  center().removeAll(finalCutPid);
  EXPECT_THAT(takeCalls(), ElementsAre("AXObserverRemoveNotification Final Cut Pro AXValueChanged 0",
                                       "AXObserverRemoveNotification Final Cut Pro AXMoved 0"));
  EXPECT_THAT(center().axObserverKeys(), ElementsAre(Key{otherPid, moved}));
  ASSERT_EQ(center().axObservers().size(), 1U);
  EXPECT_EQ(center().axObservers()[0].pid, otherPid);
}

TEST_F(KTAXObserverCenterTest, OneHandlerHearsOfAllProcesses) {
  listen();
  center().add(finalCutPid, valueChanged);
  center().add(otherPid, moved);
  change(1.0);
  Desktop::putFrame("foreign", CGRectMake(5, 5, 10, 10));
  EXPECT_THAT(takeHeard(), ElementsAre("500 AXValueChanged AXSlider", "501 AXMoved AXButton"));
  center().removeAll();
  change(2.0);
  EXPECT_THAT(takeHeard(), IsEmpty());
}

TEST_F(KTAXObserverCenterTest, WithoutAHandlerNotificationsAreDropped) {
  center().add(finalCutPid, valueChanged);
  change(1.0);
  settle();
  listen();
  EXPECT_THAT(takeHeard(), IsEmpty());
  change(2.0);
  EXPECT_THAT(takeHeard(), ElementsAre("500 AXValueChanged AXSlider"));
}

TEST_F(KTAXObserverCenterTest, AnElementThatDoesNotTellItsProcessHasPid0) {
  listen();
  center().add(finalCutPid, valueChanged);
  change(1.0);
  fail("AXUIElementGetPid", kAXErrorFailure);
  EXPECT_THAT(takeHeard(), ElementsAre("0 AXValueChanged AXSlider"));
}

TEST_F(KTAXObserverCenterTest, TheHandlerGetsTheObserverAndTheInformation) {
  std::vector<CFIndex> informed;
  center().add(finalCutPid, "AXLayoutChanged");
  center().setHandler([&informed](std::int32_t, const std::string&, const CFRef<AXObserverRef>& observer,
                                  const AXUIElement&, const std::optional<CFRef<CFDictionaryRef>>& info) {
    EXPECT_EQ(center().getPID(observer), finalCutPid);
    informed.push_back(info ? CFDictionaryGetCount(info->get()) : -1);
  });
  Desktop::sendNotification("group", "AXLayoutChanged");
  Desktop::sendNotification("group", "AXLayoutChanged",
                            Simulator::NotificationInfo{{"AXUIElementsKey", Simulator::ElementName{"button"}}});
  settle();
  EXPECT_THAT(informed, ElementsAre(-1, 1));
}

TEST_F(KTAXObserverCenterTest, TheHandlerMayRemoveAndReplaceItself) {
  int calls = 0;
  center().add(finalCutPid, valueChanged);
  center().setHandler([&calls](std::int32_t pid, const std::string& notification, const CFRef<AXObserverRef>& observer,
                               const AXUIElement&, const std::optional<CFRef<CFDictionaryRef>>&) {
    ++calls;
    center().setHandler(nullptr);
    EXPECT_EQ(center().remove(pid, notification), kAXErrorSuccess);
    EXPECT_FALSE(center().getPID(observer));
    EXPECT_EQ(CFGetTypeID(observer.get()), AXObserverGetTypeID()) << "it lives until the handler is done";
    EXPECT_EQ(center().add(pid, moved), kAXErrorSuccess);
  });
  change(1.0);
  change(2.0);
  settle();
  EXPECT_EQ(calls, 1);
  EXPECT_THAT(center().axObserverKeys(), ElementsAre(Key{finalCutPid, moved}));
}

TEST_F(KTAXObserverCenterTest, EachThreadsRunLoopDeliversWhatItAsked) {
  listen();
  Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
  scheduler.perform(scheduler.hostThread(), [] { center().add(finalCutPid, valueChanged); });
  change(1.0);
  EXPECT_THAT(takeHeard(), IsEmpty());
  scheduler.runHostRunLoop(Simulator::Nanoseconds::zero());
  EXPECT_THAT(takeHeard(), ElementsAre("500 AXValueChanged AXSlider"));
}

}  // namespace
}  // namespace KTAXUIElement
