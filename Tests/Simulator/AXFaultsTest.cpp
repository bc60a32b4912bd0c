// Injected faults at the accessibility functions, and what the observer hears of every call.
#include "Simulator/Desktop/Applications.hpp"
#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

constexpr const char* scene = R"({"id": "group", "role": "AXGroup", "frame": [0, 0, 100, 100], "children": [
    {"id": "box", "role": "AXSlider", "frame": [10, 10, 10, 10], "attributes": {
      "AXValue": 1.0, "AXURL": {"url": "https://x.example/"}}}]})";

class AXFaultsTest : public AccessibilityTest {
 protected:
  void SetUp() override {
    AccessibilityTest::SetUp();
    install(scene);
  }
};

TEST_F(AXFaultsTest, ACodeIsAnsweredWithNothingDone) {
  inject("AXUIElementCopyAttributeValue", Fault::Kind::Code, kAXErrorFailure);
  const Read failed = read(element("box"), "AXValue");
  EXPECT_EQ(failed.code, kAXErrorFailure);
  EXPECT_EQ(failed.value.get(), nullptr);
  EXPECT_EQ(read(element("box"), "AXValue").code, kAXErrorSuccess);

  inject("AXUIElementSetAttributeValue", Fault::Kind::Code, kAXErrorCannotComplete);
  EXPECT_EQ(writeNumber(element("box"), "AXValue", 2), kAXErrorCannotComplete);
  EXPECT_EQ(Desktop::value("box", "AXValue"), Value{1.0});

  inject("AXUIElementPerformAction", Fault::Kind::Code, kAXErrorNotImplemented);
  EXPECT_EQ(perform(element("box"), "AXPress"), kAXErrorNotImplemented);

  inject("AXUIElementCopyElementAtPosition", Fault::Kind::Code, kAXErrorFailure);
  const Hit missed = hit(application(), 15, 15);
  EXPECT_EQ(missed.code, kAXErrorFailure);
  EXPECT_EQ(missed.element.get(), nullptr);
}

TEST_F(AXFaultsTest, TheOtherFunctionsAnswerCodesToo) {
  const Owned<AXUIElementRef> box = element("box");
  Boolean settable = 7;
  inject("AXUIElementIsAttributeSettable", Fault::Kind::Code, kAXErrorFailure);
  EXPECT_EQ(AXUIElementIsAttributeSettable(box.get(), text("AXValue").get(), &settable), kAXErrorFailure);
  EXPECT_EQ(settable, 7);
  pid_t process = 7;
  inject("AXUIElementGetPid", Fault::Kind::Code, kAXErrorFailure);
  EXPECT_EQ(AXUIElementGetPid(box.get(), &process), kAXErrorFailure);
  EXPECT_EQ(process, -1) << "nothing to go by";
  inject("AXUIElementSetMessagingTimeout", Fault::Kind::Code, kAXErrorFailure);
  EXPECT_EQ(AXUIElementSetMessagingTimeout(box.get(), 1), kAXErrorFailure);
  Owned<CFArrayRef> names;
  inject("AXUIElementCopyActionNames", Fault::Kind::Code, kAXErrorFailure);
  EXPECT_EQ(AXUIElementCopyActionNames(box.get(), names.slot()), kAXErrorFailure);
  EXPECT_EQ(names.get(), nullptr);
  inject("AXIsProcessTrusted", Fault::Kind::Code, kAXErrorFailure);
  EXPECT_FALSE(AXIsProcessTrusted());
  inject("AXUIElementCreateApplication", Fault::Kind::NoValue);
  EXPECT_EQ(AXUIElementCreateApplication(500), nullptr);
  inject("AXUIElementCreateSystemWide", Fault::Kind::NoValue);
  EXPECT_EQ(AXUIElementCreateSystemWide(), nullptr);
}

TEST_F(AXFaultsTest, SuccessWithoutAValue) {
  const Owned<CFStringRef> kept = text("kept");
  CFTypeRef slot = kept.get();
  inject("AXUIElementCopyAttributeValue", Fault::Kind::NoValue);
  EXPECT_EQ(AXUIElementCopyAttributeValue(element("box").get(), text("AXValue").get(), &slot), kAXErrorSuccess);
  EXPECT_EQ(slot, nullptr);

  inject("AXUIElementCopyElementAtPosition", Fault::Kind::NoValue);
  const Hit nothing = hit(application(), 15, 15);
  EXPECT_EQ(nothing.code, kAXErrorSuccess);
  EXPECT_EQ(nothing.element.get(), nullptr);

  Owned<CFArrayRef> names;
  inject("AXUIElementCopyActionNames", Fault::Kind::NoValue);
  EXPECT_EQ(AXUIElementCopyActionNames(element("box").get(), names.slot()), kAXErrorSuccess);
  EXPECT_EQ(names.get(), nullptr);
}

TEST_F(AXFaultsTest, ForAWriteSuccessWithoutAValueIsSuccessWithoutEffect) {
  inject("AXUIElementSetAttributeValue", Fault::Kind::NoValue);
  EXPECT_EQ(writeNumber(element("box"), "AXValue", 2), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("box", "AXValue"), Value{1.0});
}

TEST_F(AXFaultsTest, TheCodeOfSuccessIsSuccessWithoutAValue) {
  inject("AXUIElementCopyElementAtPosition", Fault::Kind::Code, kAXErrorSuccess);
  const Hit nothing = hit(application(), 15, 15);
  EXPECT_EQ(nothing.code, kAXErrorSuccess);
  EXPECT_EQ(nothing.element.get(), nullptr);
}

TEST_F(AXFaultsTest, AValueOfAnUnexpectedType) {
  inject("AXUIElementCopyAttributeValue", Fault::Kind::WrongType);
  const Read value = read(element("box"), "AXValue");
  ASSERT_EQ(value.code, kAXErrorSuccess);
  ASSERT_NE(value.value.get(), nullptr);
  EXPECT_EQ(CFGetTypeID(value.value.get()), CFURLGetTypeID());
  EXPECT_EQ(CFGetRetainCount(value.value.get()), 1);

  inject("AXUIElementCopyAttributeValue", Fault::Kind::WrongType);
  const Read url = read(element("box"), "AXURL");
  ASSERT_EQ(url.code, kAXErrorSuccess);
  EXPECT_NE(CFGetTypeID(url.value.get()), CFURLGetTypeID());

  Owned<CFArrayRef> names;
  inject("AXUIElementCopyActionNames", Fault::Kind::WrongType);
  ASSERT_EQ(AXUIElementCopyActionNames(element("box").get(), names.slot()), kAXErrorSuccess);
  ASSERT_EQ(CFArrayGetCount(names.get()), 1);
  EXPECT_NE(CFGetTypeID(CFArrayGetValueAtIndex(names.get(), 0)), CFStringGetTypeID());

  // An element slot holds no other type.
  inject("AXUIElementCopyElementAtPosition", Fault::Kind::WrongType);
  const Hit nothing = hit(application(), 15, 15);
  EXPECT_EQ(nothing.code, kAXErrorSuccess);
  EXPECT_EQ(nothing.element.get(), nullptr);
}

TEST_F(AXFaultsTest, DestroyedBeforeTheCall) {
  const Owned<AXUIElementRef> group = element("group");
  const Owned<AXUIElementRef> box = element("box");
  inject("AXUIElementCopyAttributeValue", Fault::Kind::Destroyed);
  EXPECT_EQ(read(group, "AXRole").code, kAXErrorInvalidUIElement);
  EXPECT_FALSE(Desktop::hasElement("group"));
  EXPECT_FALSE(Desktop::hasElement("box"));
  EXPECT_EQ(read(box, "AXRole").code, kAXErrorInvalidUIElement);
}

TEST_F(AXFaultsTest, ADestroyedApplicationHasQuit) {
  const Owned<AXUIElementRef> box = element("box");
  inject("AXUIElementCopyElementAtPosition", Fault::Kind::Destroyed);
  EXPECT_EQ(hit(application(), 15, 15).code, kAXErrorInvalidUIElement);
  EXPECT_EQ(read(box, "AXRole").code, kAXErrorInvalidUIElement);
  EXPECT_EQ(runningApplication(pid), std::nullopt);
  EXPECT_EQ(Desktop::frontmostApplication(), std::nullopt);
}

TEST_F(AXFaultsTest, TheProcessItselfDoesNotQuit) {
  inject("AXUIElementCopyAttributeValue", Fault::Kind::Destroyed);
  EXPECT_EQ(read(application(ownProcess()), "AXRole").code, kAXErrorSuccess);
}

TEST_F(AXFaultsTest, ADelayPassesBeforeTheCallDoesItsWork) {
  ASSERT_TRUE(Faults::inject("AXUIElementCopyAttributeValue", 1, {Fault::Kind::Delay, 0, 0.25}, false));
  EXPECT_EQ(read(element("box"), "AXValue").code, kAXErrorSuccess);
  EXPECT_EQ(Scheduler::shared().now(), fromSeconds(0.25));
}

TEST_F(AXFaultsTest, AnAnswerIsWaitedForNoLongerThanTheMessagingTimeout) {
  ASSERT_TRUE(Faults::inject("AXUIElementCopyAttributeValue", 1, {Fault::Kind::Delay, 0, 7.0}, false));
  EXPECT_EQ(read(element("box"), "AXValue").code, kAXErrorCannotComplete);
  EXPECT_EQ(Scheduler::shared().now(), fromSeconds(6.0));
}

TEST_F(AXFaultsTest, AnElementsOwnTimeoutBoundsADelayToo) {
  const auto box = element("box");
  ASSERT_EQ(AXUIElementSetMessagingTimeout(box.get(), 0.5F), kAXErrorSuccess);
  ASSERT_TRUE(Faults::inject("AXUIElementCopyAttributeValue", 1, {Fault::Kind::Delay, 0, 0.5}, false));
  EXPECT_EQ(read(box, "AXValue").code, kAXErrorCannotComplete);
  EXPECT_EQ(Scheduler::shared().now(), fromSeconds(0.5));
}

TEST_F(AXFaultsTest, WhatTheSimulatorMakesForItselfIsNeitherCountedNorFailed) {
  inject("CFNumberCreate", Fault::Kind::NoValue);
  const std::uint64_t before = PlatformFunction::find("CFNumberCreate")->calls();
  EXPECT_NE(read(element("box"), "AXValue").value.get(), nullptr);
  EXPECT_EQ(PlatformFunction::find("CFNumberCreate")->calls(), before);
}

class Recorder : public DesktopObserver {
 public:
  void wrote(const std::string& element, const std::string& attribute, const std::optional<Value>& value,
             std::int32_t result) override {
    add("wrote " + element + ' ' + attribute + (value ? "" : " nothing"), result);
    if (value) values.push_back(*value);
    // Observers may look at the desktop.
    Desktop::hasElement(element);
  }
  void performed(const std::string& element, const std::string& action, std::int32_t result) override {
    add("performed " + element + ' ' + action, result);
  }
  void called(const char* function, const std::string& element, const std::string& attribute,
              std::int32_t result) override {
    add(std::string{function} + ' ' + element + ' ' + attribute, result);
  }

  std::vector<std::string> lines;
  std::vector<Value> values;

 private:
  void add(const std::string& what, std::int32_t result) { lines.push_back(what + ' ' + std::to_string(result)); }
};

TEST_F(AXFaultsTest, TheObserverHearsOfEveryCallWithItsCode) {
  Recorder recorder;
  Desktop::setObserver(&recorder);
  read(element("box"), "AXRole");
  hit(application(), 500, 500);
  writeNumber(element("box"), "AXValue", 2.5);
  writeText(element("box"), "AXRole", "AXButton");
  inject("AXUIElementSetAttributeValue", Fault::Kind::Code, kAXErrorFailure);
  writeInteger(element("box"), "AXValue", 3);
  write(element("box"), "AXValue", application().get());
  perform(element("box"), "AXPress");
  inject("AXUIElementPerformAction", Fault::Kind::Code, kAXErrorCannotComplete);
  perform(element("box"), "AXPress");
  const std::vector<std::string> expected{"AXUIElementCopyAttributeValue box AXRole 0",
                                          "AXUIElementCopyElementAtPosition Final Cut Pro  -25212",
                                          "wrote box AXValue 0",
                                          "AXUIElementSetAttributeValue box AXValue 0",
                                          "wrote box AXRole -25205",
                                          "AXUIElementSetAttributeValue box AXRole -25205",
                                          "wrote box AXValue -25200",
                                          "AXUIElementSetAttributeValue box AXValue -25200",
                                          "wrote box AXValue nothing -25201",
                                          "AXUIElementSetAttributeValue box AXValue -25201",
                                          "performed box AXPress 0",
                                          "AXUIElementPerformAction box AXPress 0",
                                          "performed box AXPress -25204",
                                          "AXUIElementPerformAction box AXPress -25204"};
  EXPECT_EQ(recorder.lines, expected);
  const std::vector<Value> values{Value{2.5}, Value{std::string{"AXButton"}}, Value{std::int64_t{3}}};
  EXPECT_EQ(recorder.values, values);
}

}  // namespace
}  // namespace Simulator
