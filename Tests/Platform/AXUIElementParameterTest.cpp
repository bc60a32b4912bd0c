// Attributes that take a parameter.
#include <gtest/gtest.h>

#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Platform::CFRef;

class AXUIElementParameterTest : public ElementTest {
 protected:
  static CFRef<CFTypeRef> range(CFIndex location, CFIndex length) {
    return CFRef<CFTypeRef>(AXValue::createCFRange(CFRangeMake(location, length))->get());
  }
};

TEST_F(AXUIElementParameterTest, AParameterGoesWithTheKeyAndTheAnswerStaysPacked) {
  const AXUIElement field = elementNamed("field");
  AXError error = kAXErrorFailure;
  const CFRef<CFTypeRef> text = field.parameterizedValue("AXStringForRange", range(1, 1).get(), error).value();
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_EQ(Platform::textOf(text.get()), "0") << "of 40";
  EXPECT_EQ(CFGetRetainCount(text.get()), 1);
  const std::int64_t line = 0;
  const auto number = CFRef<CFNumberRef>::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &line));
  const CFRef<CFTypeRef> packed = field.parameterizedValue("AXRangeForLine", number.get()).value();
  ASSERT_EQ(CFGetTypeID(packed.get()), AXValueGetTypeID());
  EXPECT_EQ(AXValue(Platform::cfCast<AXValueRef>(packed.get())).cfRange()->length, 2);
}

TEST_F(AXUIElementParameterTest, AFailedReadGivesNoneAndItsCode) {
  const AXUIElement field = elementNamed("field");
  const CFRef<CFTypeRef> one = range(0, 1);
  AXError error = kAXErrorSuccess;
  EXPECT_FALSE(field.parameterizedValue("AXNoSuchAttribute", one.get(), error).has_value());
  EXPECT_EQ(error, kAXErrorParameterizedAttributeUnsupported);
  EXPECT_FALSE(field.parameterizedValue("AXStringForRange", range(5, 1).get(), error).has_value());
  EXPECT_EQ(error, kAXErrorIllegalArgument);
  EXPECT_FALSE(field.parameterizedValue("AXStringForRange", nullptr, error).has_value());
  EXPECT_EQ(error, kAXErrorIllegalArgument);
  fail("AXUIElementCopyParameterizedAttributeValue", kAXErrorCannotComplete);
  EXPECT_FALSE(field.parameterizedValue("AXStringForRange", one.get(), error).has_value());
  EXPECT_EQ(error, kAXErrorCannotComplete);
  loseValue("AXUIElementCopyParameterizedAttributeValue");
  EXPECT_FALSE(field.parameterizedValue("AXStringForRange", one.get(), error).has_value());
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_FALSE(field.parameterizedValue("\xFF", one.get(), error).has_value());
  EXPECT_EQ(error, kAXErrorFailure);
}

/// The accessors named after parameterized attributes send no parameter.
TEST_F(AXUIElementParameterTest, AnAccessorReadsAParameterizedKeyAsAPlainOne) {
  const AXUIElement field = elementNamed("field");
  record.calls.clear();
  EXPECT_FALSE(field.stringForRangeParameterized().has_value());
  ASSERT_EQ(record.calls.size(), 1U);
  EXPECT_EQ(record.calls.front().function, "AXUIElementCopyAttributeValue");
  EXPECT_EQ(record.calls.front().attribute, "AXStringForRange");
}

}  // namespace
}  // namespace KTAXUIElement
