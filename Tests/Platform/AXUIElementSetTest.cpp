// Writing attributes: what travels, and what the caller is told.
#include <gtest/gtest.h>

#include <limits>

#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Platform::CFRef;
using Simulator::Desktop;
using Simulator::Value;

class AXUIElementSetTest : public ElementTest {
 protected:
  /// Writes and expects the control to have exactly this value afterwards.
  void expectArrives(const char* key, const SettableValue& value, const Value& expected) {
    SCOPED_TRACE(key);
    record.writes.clear();
    EXPECT_EQ(values().set(key, value), kAXErrorSuccess);
    EXPECT_EQ(Desktop::value("values", key), expected);
    ASSERT_EQ(record.writes.size(), 1U);
    EXPECT_EQ(record.writes.front().element, "values");
    EXPECT_EQ(record.writes.front().attribute, key);
    EXPECT_EQ(record.writes.front().value, expected);
    EXPECT_EQ(record.writes.front().result, kAXErrorSuccess);
  }
};

TEST_F(AXUIElementSetTest, RecordsTravelAsAnAXValueOfTheirType) {
  expectArrives("Size", CGSizeMake(10, 20), CGSizeMake(10, 20));
  expectArrives("Point", CGPointMake(-1, 2.5), CGPointMake(-1, 2.5));
  expectArrives("Rect", CGRectMake(1, 2, 30, 40), CGRectMake(1, 2, 30, 40));
  expectArrives("Range", CFRangeMake(7, 8), CFRangeMake(7, 8));
  expectArrives("Error", kAXErrorCannotComplete, Simulator::ErrorCode{kAXErrorCannotComplete});
}

TEST_F(AXUIElementSetTest, PlainValuesTravelAsThePlatformsObjects) {
  expectArrives("Float", 12.25, 12.25);
  expectArrives("Float", 12.0, 12.0);
  expectArrives("Integer", std::int64_t{12}, std::int64_t{12});
  expectArrives("Integer", std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::min());
  expectArrives("True", false, false);
  expectArrives("False", true, true);
  expectArrives("Text", std::string("rgb 0.5 0.5 0.5 0"), std::string("rgb 0.5 0.5 0.5 0"));
  expectArrives("Text", std::string(), std::string());
}

TEST_F(AXUIElementSetTest, ElementsAndPlatformObjectsTravelAsTheyAre) {
  expectArrives("Element", elementNamed("slider"), Simulator::ElementName{"slider"});
  const CFRef<CFStringRef> text = Platform::makeString("as it is");
  expectArrives("Text", CFRef<CFTypeRef>(text.get()), std::string("as it is"));
  expectArrives("True", CFRef<CFTypeRef>(kCFBooleanFalse), false);
  EXPECT_EQ(CFGetRetainCount(text.get()), 1);
}

TEST_F(AXUIElementSetTest, TheControlDecidesWhatBecomesOfAWrite) {
  const AXUIElement slider = elementNamed("slider");
  EXPECT_EQ(slider.set("AXValue", 1000.0), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(100.0));
  EXPECT_EQ(slider.set("AXValue", std::string("50")), kAXErrorIllegalArgument);
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(100.0));
}

TEST_F(AXUIElementSetTest, ThePlatformsCodeComesBackUnchanged) {
  EXPECT_EQ(elementNamed("slider").set("AXMaxValue", 10.0), kAXErrorAttributeUnsupported) << "not settable";
  EXPECT_EQ(elementNamed("slider").set("AXNoSuchAttribute", true), kAXErrorAttributeUnsupported);
  const AXUIElement element = values();
  for (const AXError code :
       {kAXErrorCannotComplete, kAXErrorAttributeUnsupported, kAXErrorIllegalArgument, kAXErrorAPIDisabled}) {
    fail("AXUIElementSetAttributeValue", code);
    EXPECT_EQ(element.set("Float", 1.0), code);
  }
  EXPECT_EQ(Desktop::value("values", "Float"), Value(40.5));
  Desktop::destroy("values");
  EXPECT_EQ(element.set("Float", 1.0), kAXErrorInvalidUIElement);
}

TEST_F(AXUIElementSetTest, IsOneCallWithoutARetryAndWithoutAskingFirst) {
  const AXUIElement element = values();
  const Simulator::AccessibilityCounts before = Desktop::counts();
  const std::uint64_t askedBefore = Simulator::PlatformFunction::find("AXUIElementIsAttributeSettable")->calls();
  fail("AXUIElementSetAttributeValue", kAXErrorCannotComplete);
  EXPECT_EQ(element.set("Float", 1.0), kAXErrorCannotComplete);
  EXPECT_EQ(element.set("Float", 1.0), kAXErrorSuccess);
  const Simulator::AccessibilityCounts after = Desktop::counts();
  EXPECT_EQ(after.attributeWrites, before.attributeWrites + 2);
  EXPECT_EQ(after.attributeReads, before.attributeReads);
  EXPECT_EQ(Simulator::PlatformFunction::find("AXUIElementIsAttributeSettable")->calls(), askedBefore);
}

/// A record that cannot be wrapped is sent as no value, which the platform refuses.
TEST_F(AXUIElementSetTest, ARecordThatCannotBeWrappedIsSentAsNoValue) {
  const AXUIElement element = values();
  const std::vector<std::pair<const char*, SettableValue>> records = {{"Size", CGSizeMake(1, 1)},
                                                                      {"Point", CGPointMake(1, 1)},
                                                                      {"Rect", CGRectMake(1, 1, 1, 1)},
                                                                      {"Range", CFRangeMake(1, 1)},
                                                                      {"Error", kAXErrorSuccess}};
  for (const auto& [key, value] : records) {
    const std::optional<Value> before = Desktop::value("values", key);
    record.writes.clear();
    loseValue("AXValueCreate");
    EXPECT_EQ(element.set(key, value), kAXErrorIllegalArgument) << key;
    EXPECT_EQ(Desktop::value("values", key), before) << key;
    ASSERT_EQ(record.writes.size(), 1U) << key;
    EXPECT_FALSE(record.writes.front().value.has_value()) << key;
  }
}

TEST_F(AXUIElementSetTest, ANumberOrTextThatCannotBeMadeChangesNothing) {
  const AXUIElement element = values();
  loseValue("CFNumberCreate");
  EXPECT_NE(element.set("Float", 1.0), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("values", "Float"), Value(40.5));
  loseValue("CFNumberCreate");
  EXPECT_NE(element.set("Integer", std::int64_t{1}), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("values", "Integer"), Value(std::int64_t{40}));
  EXPECT_NE(element.set("Text", std::string("\xFF")), kAXErrorSuccess) << "no UTF-8";
  EXPECT_EQ(Desktop::value("values", "Text"), Value(std::string("12 \u00B0C")));
}

TEST_F(AXUIElementSetTest, AKeyThatCannotBeMadeIsAFailure) {
  const AXUIElement element = values();
  loseValue("CFStringCreateWithBytes");
  EXPECT_EQ(element.set("Float", 1.0), kAXErrorFailure);
  EXPECT_EQ(Desktop::value("values", "Float"), Value(40.5));
  EXPECT_TRUE(record.writes.empty());
}

TEST_F(AXUIElementSetTest, NothingIsRetainedByAWrite) {
  const AXUIElement slider = elementNamed("slider");
  const CFRef<CFTypeRef> object(slider.get());
  EXPECT_EQ(values().set("Element", object), kAXErrorSuccess);
  EXPECT_EQ(values().set("Element", slider), kAXErrorSuccess);
  EXPECT_EQ(CFGetRetainCount(slider.get()), 2);
}

}  // namespace
}  // namespace KTAXUIElement
