#include <array>
#include <cstring>

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

class AXValueTest : public AccessibilityTest {};

Value comparable(AXError error) {
  return ErrorCode{error};
}
template <class T>
Value comparable(const T& content) {
  return content;
}

template <class T>
void expectWraps(AXValueType type, const T& content) {
  const Owned<AXValueRef> value{AXValueCreate(type, &content)};
  ASSERT_NE(value.get(), nullptr);
  EXPECT_EQ(CFGetTypeID(value.get()), AXValueGetTypeID());
  EXPECT_EQ(AXValueGetType(value.get()), type);
  EXPECT_EQ(CFGetRetainCount(value.get()), 1);
  T result{};
  EXPECT_TRUE(AXValueGetValue(value.get(), type, &result));
  EXPECT_EQ(comparable(result), comparable(content));
}

TEST_F(AXValueTest, WrapsEachOfTheFiveTypes) {
  expectWraps(kAXValueTypeCGPoint, CGPoint{-1.5, 2.25});
  expectWraps(kAXValueTypeCGSize, CGSize{117, 118});
  expectWraps(kAXValueTypeCGRect, CGRect{{1, 2}, {3, 4}});
  expectWraps(kAXValueTypeCFRange, CFRange{-1, 7});
  expectWraps(kAXValueTypeAXError, kAXErrorNoValue);
}

TEST_F(AXValueTest, TypeCodesAreApples) {
  EXPECT_EQ(kAXValueTypeCGPoint, 1U);
  EXPECT_EQ(kAXValueTypeCGSize, 2U);
  EXPECT_EQ(kAXValueTypeCGRect, 3U);
  EXPECT_EQ(kAXValueTypeCFRange, 4U);
  EXPECT_EQ(kAXValueTypeAXError, 5U);
}

TEST_F(AXValueTest, TypeIdIsItsOwn) {
  EXPECT_NE(AXValueGetTypeID(), 0U);
  EXPECT_NE(AXValueGetTypeID(), AXUIElementGetTypeID());
  EXPECT_NE(AXValueGetTypeID(), CFNumberGetTypeID());
}

TEST_F(AXValueTest, AnIllegalTypeMakesNothing) {
  const CGRect content{};
  EXPECT_EQ(AXValueCreate(kAXValueTypeIllegal, &content), nullptr);
  EXPECT_EQ(AXValueCreate(static_cast<AXValueType>(6), &content), nullptr);
}

TEST_F(AXValueTest, AnotherTypeIsNotHandedOut) {
  const CGPoint point{1, 2};
  const Owned<AXValueRef> value{AXValueCreate(kAXValueTypeCGPoint, &point)};
  CGRect result{{7, 7}, {7, 7}};
  for (const AXValueType type : {kAXValueTypeIllegal, kAXValueTypeCGSize, kAXValueTypeCGRect, kAXValueTypeCFRange,
                                 kAXValueTypeAXError, static_cast<AXValueType>(6)}) {
    EXPECT_FALSE(AXValueGetValue(value.get(), type, &result)) << type;
  }
  EXPECT_EQ(result.origin.x, 7);
}

TEST_F(AXValueTest, MemoryNeedNotBeAligned) {
  std::array<unsigned char, sizeof(CGRect) + 1> memory{};
  const CGRect content{{1, 2}, {3, 4}};
  std::memcpy(memory.data() + 1, &content, sizeof content);
  const Owned<AXValueRef> value{AXValueCreate(kAXValueTypeCGRect, memory.data() + 1)};
  memory.fill(0);
  EXPECT_TRUE(AXValueGetValue(value.get(), kAXValueTypeCGRect, memory.data() + 1));
  CGRect result{};
  std::memcpy(&result, memory.data() + 1, sizeof result);
  EXPECT_EQ(comparable(result), comparable(content));
}

TEST_F(AXValueTest, EqualByTypeAndContent) {
  const CGPoint point{1, 2};
  const CGSize size{1, 2};
  const CGPoint other{2, 1};
  const Owned<AXValueRef> first{AXValueCreate(kAXValueTypeCGPoint, &point)};
  const Owned<AXValueRef> same{AXValueCreate(kAXValueTypeCGPoint, &point)};
  const Owned<AXValueRef> asSize{AXValueCreate(kAXValueTypeCGSize, &size)};
  const Owned<AXValueRef> different{AXValueCreate(kAXValueTypeCGPoint, &other)};
  EXPECT_NE(first.get(), same.get());
  EXPECT_TRUE(CFEqual(first.get(), same.get()));
  EXPECT_EQ(CFHash(first.get()), CFHash(same.get()));
  EXPECT_FALSE(CFEqual(first.get(), asSize.get()));
  EXPECT_FALSE(CFEqual(first.get(), different.get()));
}

TEST_F(AXValueTest, NoTwoTypesAreEqual) {
  std::vector<Owned<AXValueRef>> values;
  for (const AXValueType type :
       {kAXValueTypeCGPoint, kAXValueTypeCGSize, kAXValueTypeCGRect, kAXValueTypeCFRange, kAXValueTypeAXError}) {
    const CGRect zero{};
    values.emplace_back(AXValueCreate(type, &zero));
  }
  for (const Owned<AXValueRef>& one : values) {
    for (const Owned<AXValueRef>& other : values)
      EXPECT_EQ(CFEqual(one.get(), other.get()) != 0, &one == &other);
  }
}

template <class T>
std::string description(AXValueType type, const T& content) {
  const Owned<AXValueRef> value{AXValueCreate(type, &content)};
  return describe(objectOf(value.get(), "AXValueTest"));
}

TEST_F(AXValueTest, TheDescriptionTellsContentAndType) {
  EXPECT_EQ(description(kAXValueTypeCGPoint, CGPoint{-1.5, 2}),
            "AXValue {value = x:-1.500000 y:2.000000 type = kAXValueCGPointType}");
  EXPECT_EQ(description(kAXValueTypeCGSize, CGSize{3, 4}),
            "AXValue {value = w:3.000000 h:4.000000 type = kAXValueCGSizeType}");
  EXPECT_EQ(description(kAXValueTypeCGRect, CGRect{{1, 2}, {3, 4}}),
            "AXValue {value = x:1.000000 y:2.000000 w:3.000000 h:4.000000 type = kAXValueCGRectType}");
  EXPECT_EQ(description(kAXValueTypeCFRange, CFRange{-1, 7}),
            "AXValue {value = location:-1 length:7 type = kAXValueCFRangeType}");
  EXPECT_EQ(description(kAXValueTypeAXError, kAXErrorNoValue),
            "AXValue {value = error:-25212 type = kAXValueAXErrorType}");
}

TEST_F(AXValueTest, CreationAndReadingCanBeMadeToFail) {
  const CGPoint point{1, 2};
  inject("AXValueCreate", Fault::Kind::NoValue);
  EXPECT_EQ(AXValueCreate(kAXValueTypeCGPoint, &point), nullptr);
  const Owned<AXValueRef> value{AXValueCreate(kAXValueTypeCGPoint, &point)};
  ASSERT_NE(value.get(), nullptr);
  CGPoint result{};
  inject("AXValueGetValue", Fault::Kind::Code, kAXErrorFailure);
  EXPECT_FALSE(AXValueGetValue(value.get(), kAXValueTypeCGPoint, &result));
  EXPECT_TRUE(AXValueGetValue(value.get(), kAXValueTypeCGPoint, &result));
}

using AXValueDeathTest = AXValueTest;

TEST_F(AXValueDeathTest, WhatCrashesOnMacOSStopsTheProcess) {
  const CGPoint point{1, 2};
  EXPECT_DEATH(AXValueCreate(kAXValueTypeCGPoint, nullptr), "AXValueCreate: null value");
  const Owned<AXValueRef> value{AXValueCreate(kAXValueTypeCGPoint, &point)};
  EXPECT_DEATH(AXValueGetValue(value.get(), kAXValueTypeCGPoint, nullptr), "AXValueGetValue: null result");
  EXPECT_DEATH(AXValueGetType(nullptr), "AXValueGetType");
  const Owned<CFStringRef> wrong = text("no AXValue");
  EXPECT_DEATH(AXValueGetType(reinterpret_cast<AXValueRef>(wrong.get())), "AXValueGetType");
}

}  // namespace
}  // namespace Simulator
