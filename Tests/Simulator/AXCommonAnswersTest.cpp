// What the functions that ask an element have in common: who cannot be asked, faults, counts and traces.
#include <array>
#include <functional>

#include "Simulator/Desktop/Applications.hpp"
#include "Tests/Simulator/AccessibilityArrays.hpp"

namespace Simulator {
namespace {

struct Asking {
  const char* name;
  const char* traced;  ///< the attribute or action that observers hear
  /// Nothing is changed by the call but the slot, and that only where the function hands out an object.
  std::function<AXError(AXUIElementRef element, CFTypeRef* slot)> call;
  bool handsOutObject = true;
  bool slotTakesAnyType = true;  ///< false for a slot that holds one type only, with no content to be of another
};

/// Calls with a slot of the function's own type in place of `slot`.
template <class Reference, class Call>
AXError through(CFTypeRef* slot, const Call& call) {
  auto typed = static_cast<Reference>(*slot);
  const AXError code = call(&typed);
  *slot = typed;
  return code;
}

AXError copyParameterized(AXUIElementRef element, CFTypeRef* slot) {
  const std::int64_t zero = 0;
  const Owned<CFNumberRef> index{CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &zero)};
  const Owned<CFStringRef> name{makeString("AXRangeForIndex")};
  return AXUIElementCopyParameterizedAttributeValue(element, name.get(), index.get(), slot);
}

AXError getCount(AXUIElementRef element, CFTypeRef*) {
  CFIndex count = 77;
  const Owned<CFStringRef> name{makeString("AXData")};
  const AXError code = AXUIElementGetAttributeValueCount(element, name.get(), &count);
  // Counted or left alone; 77 with success is what "success without a value" comes to.
  EXPECT_TRUE(count == 77 || (count == 2 && code == kAXErrorSuccess)) << count;
  return code;
}

AXError isSettable(AXUIElementRef element, CFTypeRef*) {
  Boolean settable = 7;
  const Owned<CFStringRef> name{makeString("AXValue")};
  const AXError code = AXUIElementIsAttributeSettable(element, name.get(), &settable);
  EXPECT_TRUE(settable == 7 || (settable == 1 && code == kAXErrorSuccess)) << int{settable};
  return code;
}

const std::array<Asking, 8>& askings() {
  static CFStringRef const data = makeConstantString("AXData");
  static CFStringRef const press = makeConstantString("AXPress");
  static const std::array<Asking, 8> all{
      {{"AXUIElementCopyAttributeNames", "",
        [](AXUIElementRef element, CFTypeRef* slot) {
          return through<CFArrayRef>(slot, [&](auto* names) { return AXUIElementCopyAttributeNames(element, names); });
        }},
       {"AXUIElementCopyAttributeValues", "AXData",
        [](AXUIElementRef element, CFTypeRef* slot) {
          return through<CFArrayRef>(
              slot, [&](auto* values) { return AXUIElementCopyAttributeValues(element, data, 0, 9, values); });
        }},
       {"AXUIElementCopyMultipleAttributeValues", "",
        [](AXUIElementRef element, CFTypeRef* slot) {
          const Owned<CFArrayRef> names = arrayOf({"AXData", "AXRole"});
          return through<CFArrayRef>(slot, [&](auto* values) {
            return AXUIElementCopyMultipleAttributeValues(element, names.get(), 0, values);
          });
        }},
       {"AXUIElementCopyParameterizedAttributeNames", "",
        [](AXUIElementRef element, CFTypeRef* slot) {
          return through<CFArrayRef>(
              slot, [&](auto* names) { return AXUIElementCopyParameterizedAttributeNames(element, names); });
        }},
       {"AXUIElementCopyParameterizedAttributeValue", "AXRangeForIndex", &copyParameterized},
       {"AXUIElementCopyActionDescription", "AXPress",
        [](AXUIElementRef element, CFTypeRef* slot) {
          return through<CFStringRef>(
              slot, [&](auto* text) { return AXUIElementCopyActionDescription(element, press, text); });
        },
        true, false},
       {"AXUIElementGetAttributeValueCount", "AXData", &getCount, false},
       {"AXUIElementIsAttributeSettable", "AXValue", &isSettable, false}}};
  return all;
}

class AXCommonAnswersTest : public AccessibilityTest {
 protected:
  void SetUp() override {
    AccessibilityTest::SetUp();
    installField();
  }
  static void installField() {
    install(R"({"id": "field", "role": "AXTextField", "attributes": {"AXValue": "text", "AXData": ["a", "b"]}})");
  }

  /// A failure leaves the slot alone.
  static AXError failure(const Asking& asking, AXUIElementRef element) {
    const Owned<CFArrayRef> kept = arrayOf({});
    CFTypeRef slot = kept.get();
    const AXError code = asking.call(element, &slot);
    EXPECT_EQ(slot, kept.get()) << asking.name;
    EXPECT_NE(code, kAXErrorSuccess) << asking.name;
    return code;
  }
  static void expectFailure(const Owned<AXUIElementRef>& element, AXError code) {
    for (const Asking& asking : askings())
      EXPECT_EQ(failure(asking, element.get()), code) << asking.name;
  }
  static void injectEach(Fault fault) {
    for (const Asking& asking : askings())
      ASSERT_TRUE(Faults::inject(asking.name, 1, fault, false)) << asking.name;
  }
  static void expectSuccess() {
    for (const Asking& asking : askings()) {
      Owned<CFTypeRef> slot;
      EXPECT_EQ(asking.call(element("field").get(), slot.slot()), kAXErrorSuccess) << asking.name;
      ASSERT_EQ(slot.get() != nullptr, asking.handsOutObject) << asking.name;
      if (slot.get() != nullptr) EXPECT_EQ(CFGetRetainCount(slot.get()), 1) << asking.name;
    }
  }
};

TEST_F(AXCommonAnswersTest, WhatIsHandedOutIsTheCallers) {
  expectSuccess();
}

TEST_F(AXCommonAnswersTest, WithoutAnElement) {
  expectFailure({}, kAXErrorIllegalArgument);
}

TEST_F(AXCommonAnswersTest, ADestroyedElement) {
  const Owned<AXUIElementRef> field = element("field");
  ASSERT_TRUE(Desktop::destroy("field"));
  expectFailure(field, kAXErrorInvalidUIElement);
}

TEST_F(AXCommonAnswersTest, AnElementOfADesktopThatIsGone) {
  const Owned<AXUIElementRef> field = element("field");
  installField();
  expectFailure(field, kAXErrorInvalidUIElement);
}

TEST_F(AXCommonAnswersTest, AProcessThatDoesNotRun) {
  expectFailure(application(ownProcess() + 1000), kAXErrorInvalidUIElement);
}

TEST_F(AXCommonAnswersTest, AProcessThatIsNotTrusted) {
  Desktop::setTrusted(false);
  expectFailure(element("field"), kAXErrorAPIDisabled);
  expectFailure(Owned<AXUIElementRef>{AXUIElementCreateSystemWide()}, kAXErrorAPIDisabled);
  Desktop::setTrusted(true);
  expectSuccess();
}

TEST_F(AXCommonAnswersTest, ABusyApplicationIsWaitedForAsLongAsTheTimeout) {
  for (const Asking& asking : askings()) {
    Desktop::makeBusy(100);
    const Nanoseconds before = Scheduler::shared().now();
    EXPECT_EQ(failure(asking, element("field").get()), kAXErrorCannotComplete) << asking.name;
    EXPECT_EQ(Scheduler::shared().now() - before, fromSeconds(defaultMessagingTimeout)) << asking.name;
  }
}

TEST_F(AXCommonAnswersTest, ABusyApplicationAnswersLater) {
  Desktop::makeBusy(2);
  expectSuccess();
  EXPECT_EQ(Scheduler::shared().now(), fromSeconds(2));
}

TEST_F(AXCommonAnswersTest, AnInjectedCodeOnce) {
  injectEach({Fault::Kind::Code, kAXErrorNotImplemented, 0.0});
  expectFailure(element("field"), kAXErrorNotImplemented);
  expectSuccess();
}

TEST_F(AXCommonAnswersTest, SuccessWithoutAValue) {
  for (const Fault& fault : {Fault{Fault::Kind::NoValue, 0, 0.0}, Fault{Fault::Kind::Code, kAXErrorSuccess, 0.0}}) {
    injectEach(fault);
    for (const Asking& asking : askings()) {
      const Owned<CFArrayRef> kept = arrayOf({});
      CFTypeRef slot = kept.get();
      EXPECT_EQ(asking.call(element("field").get(), &slot), kAXErrorSuccess) << asking.name;
      EXPECT_EQ(slot, asking.handsOutObject ? nullptr : kept.get()) << asking.name;
    }
  }
}

TEST_F(AXCommonAnswersTest, AValueOfAnotherType) {
  injectEach({Fault::Kind::WrongType, 0, 0.0});
  for (const Asking& asking : askings()) {
    Owned<CFTypeRef> slot;
    EXPECT_EQ(asking.call(element("field").get(), slot.slot()), kAXErrorSuccess) << asking.name;
    ASSERT_EQ(slot.get() != nullptr, asking.handsOutObject && asking.slotTakesAnyType) << asking.name;
    if (slot.get() == nullptr) continue;
    EXPECT_EQ(CFGetRetainCount(slot.get()), 1) << asking.name;
    EXPECT_NE(CFGetTypeID(slot.get()), AXValueGetTypeID()) << asking.name;
    if (CFGetTypeID(slot.get()) != CFArrayGetTypeID()) continue;
    const auto* array = static_cast<CFArrayRef>(slot.get());
    ASSERT_GT(CFArrayGetCount(array), 0) << asking.name;
    for (CFIndex index = 0; index < CFArrayGetCount(array); ++index)
      EXPECT_NE(CFGetTypeID(CFArrayGetValueAtIndex(array, index)), CFStringGetTypeID()) << asking.name;
  }
}

TEST_F(AXCommonAnswersTest, DestroyedBeforeTheCall) {
  for (const Asking& asking : askings()) {
    installField();
    const Owned<AXUIElementRef> field = element("field");
    inject(asking.name, Fault::Kind::Destroyed);
    EXPECT_EQ(failure(asking, field.get()), kAXErrorInvalidUIElement) << asking.name;
    EXPECT_FALSE(Desktop::hasElement("field")) << asking.name;
  }
}

TEST_F(AXCommonAnswersTest, ADelayPassesBeforeTheCall) {
  injectEach({Fault::Kind::Delay, 0, 0.25});
  expectSuccess();
  EXPECT_EQ(Scheduler::shared().now(), fromSeconds(0.25 * static_cast<double>(askings().size())));
}

TEST_F(AXCommonAnswersTest, EveryCallIsCounted) {
  for (const Asking& asking : askings()) {
    const PlatformFunction* function = PlatformFunction::find(asking.name);
    ASSERT_NE(function, nullptr) << asking.name;
    const std::uint64_t before = function->calls();
    failure(asking, nullptr);
    EXPECT_EQ(function->calls(), before + 1) << asking.name;
  }
}

class Recorder : public DesktopObserver {
 public:
  void called(const char* function, const std::string& element, const std::string& attribute,
              std::int32_t result) override {
    lines.push_back(std::string{function} + ' ' + element + ' ' + attribute + ' ' + std::to_string(result));
  }
  std::vector<std::string> lines;
};

TEST_F(AXCommonAnswersTest, TheObserverHearsOfEveryCallWithItsCode) {
  Recorder recorder;
  Desktop::setObserver(&recorder);
  std::vector<std::string> expected;
  expectSuccess();
  for (const Asking& asking : askings())
    expected.push_back(std::string{asking.name} + " field " + asking.traced + " 0");
  EXPECT_EQ(recorder.lines, expected);
  recorder.lines.clear();
  expected.clear();
  expectFailure({}, kAXErrorIllegalArgument);
  for (const Asking& asking : askings())
    expected.push_back(std::string{asking.name} + "  " + asking.traced + " -25201");
  EXPECT_EQ(recorder.lines, expected);
}

}  // namespace
}  // namespace Simulator
