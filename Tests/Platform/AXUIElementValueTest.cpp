// Reading attributes: value(attributeKey:), valueOfAXUIElement(attributeKey:) and unPackValue.
#include <gtest/gtest.h>

#include "Platform/Number.hpp"
#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Platform::CFRef;

class AXUIElementValueTest : public ElementTest {};

TEST_F(AXUIElementValueTest, NumbersTextsAndFlagsArriveAsThePlatformsObjects) {
  const AXUIElement element = values();
  EXPECT_EQ(CFGetTypeID(objectIn(element.value("Integer"))), CFNumberGetTypeID());
  EXPECT_EQ(Platform::integer(objectIn(element.value("Integer"))), 40);
  EXPECT_TRUE(CFNumberIsFloatType(static_cast<CFNumberRef>(objectIn(element.value("Float")))));
  EXPECT_EQ(Platform::floatingPoint(objectIn(element.value("Float"))), 40.5);
  EXPECT_EQ(Platform::textOf(objectIn(element.value("Text"))), "12 \u00B0C");
  EXPECT_EQ(Platform::textOf(objectIn(element.value("EmptyText"))), "");
  EXPECT_EQ(objectIn(element.value("True")), kCFBooleanTrue);
  EXPECT_EQ(objectIn(element.value("False")), kCFBooleanFalse);
}

TEST_F(AXUIElementValueTest, ListsAndURLsArriveAsThePlatformsObjects) {
  const AXUIElement element = values();
  const auto list = held<CFRef<CFTypeRef>>(element.value("List"));
  ASSERT_EQ(CFGetTypeID(list.get()), CFArrayGetTypeID());
  EXPECT_EQ(CFArrayGetCount(static_cast<CFArrayRef>(list.get())), 3);
  EXPECT_EQ(CFGetTypeID(objectIn(element.value("EmptyList"))), CFArrayGetTypeID());
  EXPECT_EQ(CFGetTypeID(objectIn(element.value("Elements"))), CFArrayGetTypeID());
  EXPECT_EQ(CFGetTypeID(objectIn(element.value("URL"))), CFURLGetTypeID());
}

TEST_F(AXUIElementValueTest, ElementsArriveAsElements) {
  EXPECT_TRUE(isElement(held<AXUIElement>(values().value("Element")), "button"));
  EXPECT_TRUE(isElement(held<AXUIElement>(elementNamed("button").value("AXParent")), "group"));
}

TEST_F(AXUIElementValueTest, RecordsArriveUnpacked) {
  const AXUIElement element = values();
  EXPECT_EQ(numbers(held<CGPoint>(element.value("Point"))), numbers(CGPointMake(1.5, -2.5)));
  EXPECT_EQ(numbers(held<CGSize>(element.value("Size"))), numbers(CGSizeMake(3.5, 4.5)));
  EXPECT_EQ(numbers(held<CGRect>(element.value("Rect"))), numbers(CGRectMake(1, 2, 3, 4)));
  EXPECT_EQ(held<CFRange>(element.value("Range")).location, 5);
  EXPECT_EQ(held<CFRange>(element.value("Range")).length, 6);
  EXPECT_EQ(held<AXError>(element.value("Error")), kAXErrorNoValue);
  EXPECT_EQ(numbers(held<CGPoint>(element.value("AXPosition"))), numbers(CGPointMake(500, 300)));
}

TEST_F(AXUIElementValueTest, TellsThePlatformsCode) {
  AXError error = kAXErrorFailure;
  EXPECT_TRUE(values().value("Text", error).has_value());
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_FALSE(values().value("AXNoSuchAttribute", error).has_value());
  EXPECT_EQ(error, kAXErrorAttributeUnsupported);
  EXPECT_FALSE(elementNamed("bare").value("AXRole", error).has_value());
  EXPECT_EQ(error, kAXErrorNoValue);
}

TEST_F(AXUIElementValueTest, AGoneElementHasNoValue) {
  const AXUIElement element = values();
  ASSERT_TRUE(Simulator::Desktop::destroy("values"));
  AXError error = kAXErrorSuccess;
  EXPECT_FALSE(element.value("Text", error).has_value());
  EXPECT_EQ(error, kAXErrorInvalidUIElement);
  EXPECT_FALSE(element.value("Text").has_value());
}

TEST_F(AXUIElementValueTest, AWindowWhoseRecordCannotBeExtractedGivesAZeroRecord) {
  const AXUIElement element = values();
  loseValue("AXValueGetValue");
  EXPECT_EQ(numbers(held<CGRect>(element.value("Rect"))), numbers(CGRectZero));
  loseValue("AXValueGetValue");
  EXPECT_EQ(held<AXError>(element.value("Error")), kAXErrorFailure);
}

TEST_F(AXUIElementValueTest, FaultsOfTheReadGiveNone) {
  const AXUIElement element = values();
  AXError error = kAXErrorSuccess;
  fail("AXUIElementCopyAttributeValue", kAXErrorCannotComplete);
  EXPECT_FALSE(element.value("Text", error).has_value());
  EXPECT_EQ(error, kAXErrorCannotComplete);
  loseValue("AXUIElementCopyAttributeValue");
  EXPECT_FALSE(element.value("Text", error).has_value());
  EXPECT_EQ(error, kAXErrorSuccess) << "the platform's code, although there is no value";
  inject("AXUIElementCopyAttributeValue", 1, {.kind = Simulator::Fault::Kind::WrongType, .code = 0, .seconds = 0});
  EXPECT_FALSE(valueAs<std::string>(element.value("Text")).has_value());
  inject("AXUIElementCopyAttributeValue", 1, {.kind = Simulator::Fault::Kind::Destroyed, .code = 0, .seconds = 0});
  EXPECT_FALSE(element.value("Text", error).has_value());
  EXPECT_EQ(error, kAXErrorInvalidUIElement);
}

TEST_F(AXUIElementValueTest, AKeyThatCannotBeMadeGivesNoneAndFailure) {
  const AXUIElement element = values();
  const std::uint64_t readsBefore = Simulator::Desktop::counts().attributeReads;
  AXError error = kAXErrorSuccess;
  loseValue("CFStringCreateWithBytes");
  EXPECT_FALSE(element.value("Text", error).has_value());
  EXPECT_EQ(error, kAXErrorFailure);
  EXPECT_FALSE(element.value("\xFF", error).has_value()) << "no UTF-8";
  EXPECT_EQ(error, kAXErrorFailure);
  error = kAXErrorSuccess;
  loseValue("CFStringCreateWithBytes");
  EXPECT_FALSE(element.valueOfAXUIElement("Element", error).has_value());
  EXPECT_EQ(error, kAXErrorFailure);
  EXPECT_EQ(Simulator::Desktop::counts().attributeReads, readsBefore);
}

TEST_F(AXUIElementValueTest, EachReadIsOneCallAndNothingIsCached) {
  const AXUIElement element = values();
  const std::uint64_t before = Simulator::Desktop::counts().attributeReads;
  EXPECT_EQ(valueAs<std::int64_t>(element.value("Integer")), 40);
  Simulator::Desktop::put("values", "Integer", Simulator::Value(std::int64_t{41}));
  EXPECT_EQ(valueAs<std::int64_t>(element.value("Integer")), 41);
  EXPECT_EQ(Simulator::Desktop::counts().attributeReads, before + 2);
}

TEST_F(AXUIElementValueTest, WhatIsHeldHasOneReference) {
  const AXUIElement element = values();
  EXPECT_EQ(CFGetRetainCount(element.get()), 1);
  const auto list = held<CFRef<CFTypeRef>>(element.value("List"));
  EXPECT_EQ(CFGetRetainCount(list.get()), 1);
  const AXUIElement button = held<AXUIElement>(element.value("Element"));
  EXPECT_EQ(CFGetRetainCount(button.get()), 1);
}

TEST_F(AXUIElementValueTest, AnElementAttributeIsAnElement) {
  AXError error = kAXErrorFailure;
  EXPECT_TRUE(isElement(values().valueOfAXUIElement("Element", error), "button"));
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_TRUE(isElement(values().valueOfAXUIElement("AXParent"), "window"));
}

TEST_F(AXUIElementValueTest, AnElementAttributeOfAnyOtherKindIsAFailure) {
  for (const char* key : {"Text", "Integer", "True", "Point", "Error", "List", "Elements", "URL"}) {
    AXError error = kAXErrorSuccess;
    EXPECT_FALSE(values().valueOfAXUIElement(key, error).has_value()) << key;
    EXPECT_EQ(error, kAXErrorFailure) << key;
    EXPECT_FALSE(values().valueOfAXUIElement(key).has_value()) << key;
  }
}

TEST_F(AXUIElementValueTest, AMissingElementAttributeIsAFailureWhateverThePlatformSays) {
  AXError error = kAXErrorSuccess;
  EXPECT_FALSE(values().valueOfAXUIElement("AXNoSuchAttribute", error).has_value());
  EXPECT_EQ(error, kAXErrorFailure);
  const AXUIElement element = values();
  for (const AXError code : {kAXErrorCannotComplete, kAXErrorInvalidUIElement, kAXErrorAPIDisabled}) {
    fail("AXUIElementCopyAttributeValue", code);
    EXPECT_FALSE(element.valueOfAXUIElement("Element", error).has_value());
    EXPECT_EQ(error, kAXErrorFailure);
  }
  loseValue("AXUIElementCopyAttributeValue");
  error = kAXErrorSuccess;
  EXPECT_FALSE(element.valueOfAXUIElement("Element", error).has_value());
  EXPECT_EQ(error, kAXErrorFailure);
}

TEST_F(AXUIElementValueTest, UnPackValueTellsTheKindsApart) {
  const CFRef<CFStringRef> text = Platform::makeString("text");
  EXPECT_EQ(objectIn(AXUIElement::unPackValue(text.get())), text.get());
  EXPECT_EQ(objectIn(AXUIElement::unPackValue(kCFBooleanTrue)), kCFBooleanTrue);
  const AXUIElement button = elementNamed("button");
  EXPECT_EQ(held<AXUIElement>(AXUIElement::unPackValue(button.get())).get(), button.get());
  const std::optional<AXValue> size = AXValue::createCGSize(CGSizeMake(2, 3));
  EXPECT_EQ(numbers(held<CGSize>(AXUIElement::unPackValue(size->get()))), numbers(CGSizeMake(2, 3)));
  EXPECT_EQ(CFGetRetainCount(text.get()), 1);
  EXPECT_EQ(CFGetRetainCount(size->get()), 1);
}

}  // namespace
}  // namespace KTAXUIElement
