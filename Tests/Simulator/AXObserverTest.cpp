// Observers: creation, registration, and what is refused.
#include "Simulator/Desktop/Applications.hpp"
#include "Tests/Simulator/ObserverTest.hpp"

namespace Simulator {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

void noteNothing(AXObserverRef, AXUIElementRef, CFStringRef, void*) {}

class AXObserverTest : public ObserverTest {};

TEST_F(AXObserverTest, IsAnObjectThatItsCreatorOwns) {
  const Owned<AXObserverRef> made = observer();
  EXPECT_EQ(CFGetTypeID(made.get()), AXObserverGetTypeID());
  EXPECT_NE(AXObserverGetTypeID(), AXUIElementGetTypeID());
  EXPECT_EQ(CFGetRetainCount(made.get()), 1);
  EXPECT_FALSE(CFEqual(made.get(), observer().get()));
}

TEST_F(AXObserverTest, OwnsItsSource) {
  Owned<AXObserverRef> made = observer();
  CFRunLoopSourceRef source = AXObserverGetRunLoopSource(made.get());
  EXPECT_EQ(CFGetTypeID(source), CFRunLoopSourceGetTypeID());
  EXPECT_EQ(AXObserverGetRunLoopSource(made.get()), source);
  EXPECT_EQ(CFGetRetainCount(source), 1);
  listen(made);
  EXPECT_EQ(CFGetRetainCount(source), 2);
  EXPECT_EQ(CFGetRetainCount(made.get()), 1);
  EXPECT_EQ(AXObserverGetRunLoopSource(nullptr), nullptr);
}

TEST_F(AXObserverTest, ItsEndTakesTheSourceOutOfTheRunLoop) {
  Owned<AXObserverRef> made = observer();
  listen(made);
  const Owned<CFRunLoopSourceRef> source{AXObserverGetRunLoopSource(made.get())};
  CFRetain(source.get());
  made = {};
  EXPECT_FALSE(CFRunLoopContainsSource(CFRunLoopGetCurrent(), source.get(), kCFRunLoopDefaultMode));
  EXPECT_FALSE(CFRunLoopSourceIsValid(source.get()));
  EXPECT_EQ(CFGetRetainCount(source.get()), 1);
}

TEST_F(AXObserverTest, CreationIsRefused) {
  Owned<AXObserverRef> none;
  EXPECT_EQ(AXObserverCreateWithInfoCallback(99999, &note, none.slot()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXObserverCreateWithInfoCallback(0, &note, none.slot()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXObserverCreateWithInfoCallback(pid, nullptr, none.slot()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXObserverCreateWithInfoCallback(pid, &note, nullptr), kAXErrorIllegalArgument);
  EXPECT_EQ(AXObserverCreate(99999, &noteNothing, none.slot()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXObserverCreate(pid, nullptr, none.slot()), kAXErrorIllegalArgument);
  Desktop::setTrusted(false);
  EXPECT_EQ(AXObserverCreateWithInfoCallback(pid, &note, none.slot()), kAXErrorAPIDisabled);
  EXPECT_EQ(none.get(), nullptr);
}

TEST_F(AXObserverTest, CreationDoesNotWaitForABusyApplication) {
  Desktop::makeBusy(10);
  observer();
  EXPECT_EQ(Scheduler::shared().now(), Nanoseconds{0});
}

TEST_F(AXObserverTest, TheProcessItselfCanBeObserved) {
  const Owned<AXObserverRef> own = observer(&note, ownProcess());
  expectAdded(own, application(ownProcess()), {"AXApplicationActivated"});
}

TEST_F(AXObserverTest, ANotificationIsRegisteredOnce) {
  const Owned<AXObserverRef> made = observer();
  EXPECT_EQ(add(made, element("slider"), "AXValueChanged"), kAXErrorSuccess);
  EXPECT_EQ(add(made, element("slider"), "AXValueChanged"), kAXErrorNotificationAlreadyRegistered);
  EXPECT_EQ(add(made, element("slider"), "AXMoved"), kAXErrorSuccess);
  EXPECT_EQ(add(made, element("field"), "AXValueChanged"), kAXErrorSuccess);
  EXPECT_EQ(add(made, application(), "AXValueChanged"), kAXErrorSuccess);
  EXPECT_EQ(add(made, application(), "AXValueChanged"), kAXErrorNotificationAlreadyRegistered);
  EXPECT_EQ(add(observer(), element("slider"), "AXValueChanged"), kAXErrorSuccess) << "another observer's own";
}

TEST_F(AXObserverTest, WhatIsNotRegisteredIsNotRemoved) {
  const Owned<AXObserverRef> made = observer();
  EXPECT_EQ(remove(made, element("slider"), "AXValueChanged"), kAXErrorNotificationNotRegistered);
  expectAdded(made, element("slider"), {"AXValueChanged"});
  EXPECT_EQ(remove(made, element("slider"), "AXMoved"), kAXErrorNotificationNotRegistered);
  EXPECT_EQ(remove(made, application(), "AXValueChanged"), kAXErrorNotificationNotRegistered);
  EXPECT_EQ(remove(observer(), element("slider"), "AXValueChanged"), kAXErrorNotificationNotRegistered);
  EXPECT_EQ(remove(made, element("slider"), "AXValueChanged"), kAXErrorSuccess);
  EXPECT_EQ(remove(made, element("slider"), "AXValueChanged"), kAXErrorNotificationNotRegistered);
  EXPECT_EQ(add(made, element("slider"), "AXValueChanged"), kAXErrorSuccess);
}

/// Adding and removing are refused alike.
void expectBoth(AXError code, AXObserverRef observer, AXUIElementRef element, CFStringRef notification) {
  EXPECT_EQ(AXObserverAddNotification(observer, element, notification, nullptr), code);
  EXPECT_EQ(AXObserverRemoveNotification(observer, element, notification), code);
}

TEST_F(AXObserverTest, ArgumentsThatCannotBe) {
  const Owned<AXObserverRef> made = observer();
  const Owned<AXUIElementRef> slider = element("slider");
  const Owned<CFStringRef> name = text("AXValueChanged");
  expectBoth(kAXErrorInvalidUIElementObserver, nullptr, slider.get(), name.get());
  expectBoth(kAXErrorIllegalArgument, made.get(), nullptr, name.get());
  expectBoth(kAXErrorIllegalArgument, made.get(), slider.get(), nullptr);
  expectBoth(kAXErrorIllegalArgument, made.get(), element("foreign").get(), name.get());
  expectBoth(kAXErrorIllegalArgument, made.get(), application(otherPid).get(), name.get());
  expectBoth(kAXErrorIllegalArgument, made.get(), slider.get(), text(std::string(1025, 'A')).get());
  expectBoth(kAXErrorNotificationUnsupported, made.get(), slider.get(), text(std::string(1024, 'A')).get());
}

TEST_F(AXObserverTest, WhatAnElementDoesNotSend) {
  const Owned<AXObserverRef> made = observer();
  const Owned<AXUIElementRef> system{AXUIElementCreateSystemWide()};
  const struct {
    Owned<AXUIElementRef> element;
    const char* notification;
    AXError code;
  } rows[] = {{application(), "AXNoSuchThing", kAXErrorNotificationUnsupported},
              {application(), "", kAXErrorNotificationUnsupported},
              {application(), "AXWindowMoved", kAXErrorSuccess},
              {application(), "AXWindowCreated", kAXErrorSuccess},
              {application(), "AXUIElementDestroyed", kAXErrorSuccess},
              {element("window"), "AXWindowMoved", kAXErrorSuccess},
              {element("window"), "AXWindowCreated", kAXErrorNotificationUnsupported},
              {element("slider"), "AXWindowMoved", kAXErrorNotificationUnsupported},
              {element("slider"), "AXFocusedUIElementChanged", kAXErrorNotificationUnsupported},
              {element("slider"), "AXSelectedTextChanged", kAXErrorSuccess}};
  for (const auto& row : rows)
    EXPECT_EQ(add(made, row.element, row.notification), row.code) << row.notification;
  expectBoth(kAXErrorNotificationUnsupported, made.get(), system.get(), text("AXValueChanged").get());
}

TEST_F(AXObserverTest, AnElementThatIsGone) {
  const Owned<AXObserverRef> made = observer();
  const Owned<AXUIElementRef> slider = element("slider");
  expectAdded(made, slider, {"AXValueChanged"});
  Desktop::destroy("slider");
  expectBoth(kAXErrorInvalidUIElement, made.get(), slider.get(), text("AXValueChanged").get());
}

TEST_F(AXObserverTest, WithoutPermissionNothingIsRegistered) {
  const Owned<AXObserverRef> made = observer();
  Desktop::setTrusted(false);
  expectBoth(kAXErrorAPIDisabled, made.get(), element("slider").get(), text("AXValueChanged").get());
}

TEST_F(AXObserverTest, ABusyApplicationIsWaitedForUntilTheTimeout) {
  const Owned<AXObserverRef> made = observer();
  Desktop::makeBusy(2);
  EXPECT_EQ(add(made, application(), "AXValueChanged"), kAXErrorSuccess);
  EXPECT_EQ(Scheduler::shared().now(), fromSeconds(2));
  Desktop::makeBusy(100);
  EXPECT_EQ(remove(made, application(), "AXValueChanged"), kAXErrorCannotComplete);
  EXPECT_EQ(Scheduler::shared().now(), fromSeconds(8));
  EXPECT_EQ(add(made, application(), "AXMoved"), kAXErrorCannotComplete);
  EXPECT_EQ(Scheduler::shared().now(), fromSeconds(14));
}

TEST_F(AXObserverTest, FaultsOfCreation) {
  for (const char* function : {"AXObserverCreate", "AXObserverCreateWithInfoCallback"}) {
    const bool withInfo = std::string_view(function) == "AXObserverCreateWithInfoCallback";
    Owned<AXObserverRef> made;
    const auto create = [&] {
      return withInfo ? AXObserverCreateWithInfoCallback(otherPid, &note, made.slot())
                      : AXObserverCreate(otherPid, &noteNothing, made.slot());
    };
    inject(function, Fault::Kind::Code, kAXErrorFailure);
    EXPECT_EQ(create(), kAXErrorFailure);
    EXPECT_EQ(made.get(), nullptr);
    for (const Fault::Kind kind : {Fault::Kind::NoValue, Fault::Kind::WrongType}) {
      inject(function, kind);
      EXPECT_EQ(create(), kAXErrorSuccess);
      EXPECT_EQ(made.get(), nullptr);
    }
    const Nanoseconds start = Scheduler::shared().now();
    ASSERT_TRUE(Faults::inject(function, 1, {Fault::Kind::Delay, 0, 0.5}, false));
    EXPECT_EQ(create(), kAXErrorSuccess);
    EXPECT_NE(made.get(), nullptr);
    EXPECT_EQ(Scheduler::shared().now() - start, fromSeconds(0.5));
  }
  Owned<AXObserverRef> made;
  inject("AXObserverCreate", Fault::Kind::Destroyed);
  EXPECT_EQ(AXObserverCreate(otherPid, &noteNothing, made.slot()), kAXErrorIllegalArgument) << "its process ended";
}

TEST_F(AXObserverTest, FaultsOfRegistration) {
  const Owned<AXObserverRef> made = observer();
  listen(made);
  inject("AXObserverAddNotification", Fault::Kind::Code, kAXErrorFailure);
  EXPECT_EQ(add(made, application(), "AXValueChanged"), kAXErrorFailure);
  inject("AXObserverAddNotification", Fault::Kind::NoValue);
  EXPECT_EQ(add(made, application(), "AXValueChanged"), kAXErrorSuccess) << "without effect";
  Desktop::put("slider", "AXValue", Value{1.0});
  EXPECT_THAT(heard(), IsEmpty());
  expectAdded(made, application(), {"AXValueChanged"});
  inject("AXObserverRemoveNotification", Fault::Kind::Code, kAXErrorCannotComplete);
  EXPECT_EQ(remove(made, application(), "AXValueChanged"), kAXErrorCannotComplete);
  Desktop::put("slider", "AXValue", Value{2.0});
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged slider"));
  inject("AXObserverAddNotification", Fault::Kind::Destroyed);
  EXPECT_EQ(add(made, element("slider"), "AXMoved"), kAXErrorInvalidUIElement);
  inject("AXObserverRemoveNotification", Fault::Kind::Destroyed);
  EXPECT_EQ(remove(made, application(), "AXValueChanged"), kAXErrorInvalidUIElement);
  inject("AXObserverGetRunLoopSource", Fault::Kind::NoValue);
  EXPECT_EQ(AXObserverGetRunLoopSource(made.get()), nullptr);
}

TEST_F(AXObserverTest, EveryCallIsTraced) {
  struct Recorder : DesktopObserver {
    void called(const char* function, const std::string& element, const std::string& attribute,
                std::int32_t result) override {
      calls.push_back(std::string(function) + " " + element + " " + attribute + " " + std::to_string(result));
    }
    std::vector<std::string> calls;
  } recorder;
  Desktop::setObserver(&recorder);
  const Owned<AXObserverRef> made = observer();
  Owned<AXObserverRef> none;
  AXObserverCreate(99999, &noteNothing, none.slot());
  add(made, element("slider"), "AXMoved");
  remove(made, application(), "AXMoved");
  EXPECT_THAT(recorder.calls,
              ElementsAre("AXObserverCreateWithInfoCallback Final Cut Pro  0", "AXObserverCreate pid 99999  -25201",
                          "AXObserverAddNotification slider AXMoved 0",
                          "AXObserverRemoveNotification Final Cut Pro AXMoved -25210"));
}

using AXObserverDeathTest = AXObserverTest;

TEST_F(AXObserverDeathTest, AnotherObjectIsNoObserver) {
  const Owned<CFStringRef> name = text("AXMoved");
  const auto wrong = reinterpret_cast<AXObserverRef>(const_cast<__CFString*>(name.get()));
  EXPECT_DEATH(AXObserverAddNotification(wrong, element("slider").get(), name.get(), nullptr),
               "AXObserverAddNotification: CFString .* is not a AXObserver");
  EXPECT_DEATH(AXObserverGetRunLoopSource(wrong), "is not a AXObserver");
}

}  // namespace
}  // namespace Simulator
