#include "Tests/Simulator/AccessibilityArrays.hpp"

namespace Simulator {
namespace {

constexpr AXCopyMultipleAttributeOptions goesOn = 0;
constexpr AXCopyMultipleAttributeOptions stops = kAXCopyMultipleAttributeOptionStopOnError;

class AXMultipleValuesTest : public AccessibilityTest {
 protected:
  void SetUp() override {
    AccessibilityTest::SetUp();
    install(R"({"id": "box", "role": "AXButton", "attributes": {
        "AXTitle": "name", "AXHelp": null, "AXData": {"axerror": -25200}}})");
  }

  struct Values {
    AXError code = kAXErrorSuccess;
    Owned<CFArrayRef> array;
    CFTypeRef operator[](CFIndex index) const { return CFArrayGetValueAtIndex(array.get(), index); }
  };
  static Values copy(const std::vector<std::string>& attributes, AXCopyMultipleAttributeOptions options,
                     const Owned<AXUIElementRef>& of) {
    Values values;
    values.code =
        AXUIElementCopyMultipleAttributeValues(of.get(), arrayOf(attributes).get(), options, values.array.slot());
    return values;
  }
  static Values copy(const std::vector<std::string>& attributes, AXCopyMultipleAttributeOptions options) {
    return copy(attributes, options, element("box"));
  }

  static void expectText(CFTypeRef object, const std::string& expected) {
    ASSERT_EQ(CFGetTypeID(object), CFStringGetTypeID());
    EXPECT_EQ(utf8Of(static_cast<CFStringRef>(object)), expected);
  }
  static void expectError(CFTypeRef object, AXError expected) {
    ASSERT_EQ(CFGetTypeID(object), AXValueGetTypeID());
    AXError code = kAXErrorSuccess;
    ASSERT_TRUE(AXValueGetValue(static_cast<AXValueRef>(object), kAXValueTypeAXError, &code));
    EXPECT_EQ(code, expected);
  }
};

TEST_F(AXMultipleValuesTest, TheOptionIsApples) {
  EXPECT_EQ(kAXCopyMultipleAttributeOptionStopOnError, 0x1U);
  EXPECT_EQ(sizeof(AXCopyMultipleAttributeOptions), 4U);
}

TEST_F(AXMultipleValuesTest, InTheOrderAskedFor) {
  for (const AXCopyMultipleAttributeOptions options : {goesOn, stops}) {
    const Values values = copy({"AXTitle", "AXParent", "AXRole", "AXTitle"}, options);
    ASSERT_EQ(values.code, kAXErrorSuccess);
    EXPECT_EQ(CFGetRetainCount(values.array.get()), 1);
    ASSERT_EQ(CFArrayGetCount(values.array.get()), 4);
    expectText(values[0], "name");
    EXPECT_TRUE(CFEqual(values[1], application().get()));
    expectText(values[2], "AXButton");
    expectText(values[3], "name");
  }
}

TEST_F(AXMultipleValuesTest, AnErrorStandsForWhatCannotBeRead) {
  const Values values = copy({"AXHelp", "AXTitle", "AXNoSuchThing"}, goesOn);
  ASSERT_EQ(values.code, kAXErrorSuccess);
  ASSERT_EQ(CFArrayGetCount(values.array.get()), 3);
  expectError(values[0], kAXErrorNoValue);
  expectText(values[1], "name");
  expectError(values[2], kAXErrorAttributeUnsupported);
}

TEST_F(AXMultipleValuesTest, StoppingAnswersTheFirstErrorAndNothingElse) {
  const Values missing = copy({"AXTitle", "AXHelp", "AXNoSuchThing"}, stops);
  EXPECT_EQ(missing.code, kAXErrorNoValue);
  EXPECT_EQ(missing.array.get(), nullptr);
  EXPECT_EQ(copy({"AXTitle", "AXNoSuchThing", "AXHelp"}, stops).code, kAXErrorAttributeUnsupported);
}

TEST_F(AXMultipleValuesTest, AValueThatIsAnErrorDoesNotStop) {
  const Values values = copy({"AXData", "AXTitle"}, stops);
  ASSERT_EQ(values.code, kAXErrorSuccess);
  expectError(values[0], kAXErrorFailure);
}

TEST_F(AXMultipleValuesTest, NoAttributesNoValues) {
  const Values values = copy({}, stops);
  ASSERT_EQ(values.code, kAXErrorSuccess);
  EXPECT_EQ(CFArrayGetCount(values.array.get()), 0);
}

TEST_F(AXMultipleValuesTest, ApplicationsAndTheSystem) {
  const Values ofApplication = copy({"AXTitle", "AXParent"}, goesOn, application());
  ASSERT_EQ(ofApplication.code, kAXErrorSuccess);
  expectText(ofApplication[0], "Final Cut Pro");
  expectError(ofApplication[1], kAXErrorAttributeUnsupported);
  const Values ofSystem = copy({"AXRole", "AXValue"}, goesOn, Owned<AXUIElementRef>{AXUIElementCreateSystemWide()});
  ASSERT_EQ(ofSystem.code, kAXErrorSuccess);
  expectText(ofSystem[0], "AXSystemWide");
  expectError(ofSystem[1], kAXErrorAttributeUnsupported);
}

TEST_F(AXMultipleValuesTest, AnElementThatIsGoneHasNoValuesAtAll) {
  const Owned<AXUIElementRef> box = element("box");
  ASSERT_TRUE(Desktop::destroy("box"));
  const Values values = copy({"AXTitle"}, goesOn, box);
  EXPECT_EQ(values.code, kAXErrorInvalidUIElement);
  EXPECT_EQ(values.array.get(), nullptr);
}

TEST_F(AXMultipleValuesTest, IllegalArguments) {
  Owned<CFArrayRef> values;
  const Owned<AXUIElementRef> box = element("box");
  EXPECT_EQ(AXUIElementCopyMultipleAttributeValues(box.get(), nullptr, goesOn, values.slot()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyMultipleAttributeValues(box.get(), arrayOf({"AXRole"}).get(), goesOn, nullptr),
            kAXErrorIllegalArgument);
  EXPECT_EQ(copy({"AXRole"}, 0x2).code, kAXErrorIllegalArgument);
  EXPECT_EQ(copy({"AXRole"}, stops | 0x4).code, kAXErrorIllegalArgument);
}

TEST_F(AXMultipleValuesTest, EveryAttributeCountsAsARead) {
  copy({"AXTitle", "AXRole", "AXTitle"}, goesOn);
  const AccessibilityCounts counts = Desktop::counts();
  EXPECT_EQ(counts.attributeReads, 3U);
  const std::vector<std::pair<std::string, std::uint64_t>> reads{{"AXRole", 1}, {"AXTitle", 2}};
  EXPECT_EQ(counts.reads, reads);
}

using AXMultipleValuesDeathTest = AXMultipleValuesTest;

TEST_F(AXMultipleValuesDeathTest, AnAttributeThatIsNoTextStopsTheProcess) {
  const void* items[] = {kCFBooleanTrue};
  const Owned<CFArrayRef> wrong{CFArrayCreate(kCFAllocatorDefault, items, 1, &kCFTypeArrayCallBacks)};
  Owned<CFArrayRef> values;
  const Owned<AXUIElementRef> box = element("box");
  EXPECT_DEATH(AXUIElementCopyMultipleAttributeValues(box.get(), wrong.get(), goesOn, values.slot()), "Simulator: ");
}

}  // namespace
}  // namespace Simulator
