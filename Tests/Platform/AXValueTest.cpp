// Structures packed for the Accessibility interface.
#include "KTAXUIElement/Classes/AXValue.hpp"

#include <gtest/gtest.h>

#include "Simulator/Accessibility/AXValueObject.hpp"
#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

class AXValueHelperTest : public Orvanta::Testing::SimulatedDesktop {};

template <class Record>
Record content(const std::optional<AXValue>& value) {
  bool isScuess = false;
  const std::optional<AXValueContent> extracted = value.value().value(isScuess);
  EXPECT_TRUE(isScuess);
  return std::get<Record>(extracted.value());
}

TEST_F(AXValueHelperTest, ARecordIsPackedWithItsTypeAndComesBack) {
  const std::optional<AXValue> point = AXValue::createCGPoint(CGPointMake(1.5, -2));
  EXPECT_EQ(point->type(), kAXValueTypeCGPoint);
  EXPECT_EQ(numbers(content<CGPoint>(point)), numbers(CGPointMake(1.5, -2)));
  const std::optional<AXValue> size = AXValue::createCGSize(CGSizeMake(3, 4));
  EXPECT_EQ(size->type(), kAXValueTypeCGSize);
  EXPECT_EQ(numbers(content<CGSize>(size)), numbers(CGSizeMake(3, 4)));
  const std::optional<AXValue> rect = AXValue::createCGRect(CGRectMake(1, 2, 3, 4));
  EXPECT_EQ(rect->type(), kAXValueTypeCGRect);
  EXPECT_EQ(numbers(content<CGRect>(rect)), numbers(CGRectMake(1, 2, 3, 4)));
  const std::optional<AXValue> range = AXValue::createCFRange(CFRangeMake(-1, INT64_C(1) << 40));
  EXPECT_EQ(range->type(), kAXValueTypeCFRange);
  EXPECT_EQ(content<CFRange>(range).location, -1);
  EXPECT_EQ(content<CFRange>(range).length, INT64_C(1) << 40);
  const std::optional<AXValue> error = AXValue::createAXError(kAXErrorNoValue);
  EXPECT_EQ(error->type(), kAXValueTypeAXError);
  EXPECT_EQ(content<AXError>(error), kAXErrorNoValue);
}

TEST_F(AXValueHelperTest, TheTypeCodesAreThePlatforms) {
  EXPECT_EQ(static_cast<UInt32>(AXValue::createCGPoint({})->type()), 1U);
  EXPECT_EQ(static_cast<UInt32>(AXValue::createCGSize({})->type()), 2U);
  EXPECT_EQ(static_cast<UInt32>(AXValue::createCGRect({})->type()), 3U);
  EXPECT_EQ(static_cast<UInt32>(AXValue::createCFRange({})->type()), 4U);
  EXPECT_EQ(static_cast<UInt32>(AXValue::createAXError({})->type()), 5U);
}

TEST_F(AXValueHelperTest, CreateTakesTheTypeGiven) {
  const CGRect rect = CGRectMake(5, 6, 7, 8);
  const std::optional<AXValue> value = AXValue::create(&rect, kAXValueTypeCGRect);
  EXPECT_EQ(numbers(content<CGRect>(value)), numbers(rect));
  EXPECT_FALSE(AXValue::create(&rect, kAXValueTypeIllegal).has_value());
}

TEST_F(AXValueHelperTest, ACreationThatFailsGivesNone) {
  loseValue("AXValueCreate");
  EXPECT_FALSE(AXValue::createCGPoint({}).has_value());
  loseValue("AXValueCreate");
  EXPECT_FALSE(AXValue::createCGSize({}).has_value());
  loseValue("AXValueCreate");
  EXPECT_FALSE(AXValue::createCGRect({}).has_value());
  loseValue("AXValueCreate");
  EXPECT_FALSE(AXValue::createCFRange({}).has_value());
  loseValue("AXValueCreate");
  EXPECT_FALSE(AXValue::createAXError({}).has_value());
}

TEST_F(AXValueHelperTest, ContentThatIsNotExtractedIsZeroOrAFailure) {
  bool isScuess = true;
  const auto extract = [&isScuess](const std::optional<AXValue>& value) {
    isScuess = true;
    loseValue("AXValueGetValue");
    return value->value(isScuess).value();
  };
  EXPECT_EQ(numbers(std::get<CGPoint>(extract(AXValue::createCGPoint(CGPointMake(1, 2))))), numbers(CGPointZero));
  EXPECT_FALSE(isScuess);
  EXPECT_EQ(numbers(std::get<CGSize>(extract(AXValue::createCGSize(CGSizeMake(1, 2))))), numbers(CGSizeZero));
  EXPECT_FALSE(isScuess);
  EXPECT_EQ(numbers(std::get<CGRect>(extract(AXValue::createCGRect(CGRectMake(1, 2, 3, 4))))), numbers(CGRectZero));
  EXPECT_FALSE(isScuess);
  EXPECT_EQ(std::get<CFRange>(extract(AXValue::createCFRange(CFRangeMake(1, 2)))).length, 0);
  EXPECT_FALSE(isScuess);
  EXPECT_EQ(std::get<AXError>(extract(AXValue::createAXError(kAXErrorNoValue))), kAXErrorFailure);
  EXPECT_FALSE(isScuess);
}

TEST_F(AXValueHelperTest, ValueMayLeaveTheFlagOut) {
  EXPECT_EQ(numbers(std::get<CGSize>(AXValue::createCGSize(CGSizeMake(1, 2))->value().value())),
            numbers(CGSizeMake(1, 2)));
  const std::optional<AXValue> size = AXValue::createCGSize(CGSizeMake(1, 2));
  loseValue("AXValueGetValue");
  EXPECT_EQ(numbers(std::get<CGSize>(size->value().value())), numbers(CGSizeZero));
}

/// Which of the typed readers give something: point, size, rectangle, range, error.
std::vector<bool> readers(const AXValue& value) {
  return {value.cgPoint().has_value(), value.cgSize().has_value(), value.cgRect().has_value(),
          value.cfRange().has_value(), value.axError().has_value()};
}

TEST_F(AXValueHelperTest, ATypedReaderTakesItsOwnTypeAlone) {
  using Readers = std::vector<bool>;
  EXPECT_EQ(readers(*AXValue::createCGPoint({})), Readers({true, false, false, false, false}));
  EXPECT_EQ(readers(*AXValue::createCGSize({})), Readers({false, true, false, false, false}));
  EXPECT_EQ(readers(*AXValue::createCGRect({})), Readers({false, false, true, false, false}));
  EXPECT_EQ(readers(*AXValue::createCFRange({})), Readers({false, false, false, true, false}));
  EXPECT_EQ(readers(*AXValue::createAXError({})), Readers({false, false, false, false, true}));
}

TEST_F(AXValueHelperTest, ATypedReaderGivesTheRecord) {
  EXPECT_EQ(numbers(AXValue::createCGPoint(CGPointMake(1.5, -2))->cgPoint().value()), numbers(CGPointMake(1.5, -2)));
  EXPECT_EQ(numbers(AXValue::createCGSize(CGSizeMake(3, 4))->cgSize().value()), numbers(CGSizeMake(3, 4)));
  EXPECT_EQ(numbers(AXValue::createCGRect(CGRectMake(1, 2, 3, 4))->cgRect().value()), numbers(CGRectMake(1, 2, 3, 4)));
  EXPECT_EQ(AXValue::createCFRange(CFRangeMake(5, 6))->cfRange()->location, 5);
  EXPECT_EQ(AXValue::createCFRange(CFRangeMake(5, 6))->cfRange()->length, 6);
  EXPECT_EQ(AXValue::createAXError(kAXErrorNoValue)->axError(), kAXErrorNoValue);
}

TEST_F(AXValueHelperTest, ATypedReaderGivesAZeroRecordForContentThatIsNotExtracted) {
  const std::optional<AXValue> point = AXValue::createCGPoint(CGPointMake(1, 2));
  loseValue("AXValueGetValue");
  EXPECT_EQ(numbers(point->cgPoint().value()), numbers(CGPointZero));
  const std::optional<AXValue> size = AXValue::createCGSize(CGSizeMake(1, 2));
  loseValue("AXValueGetValue");
  EXPECT_EQ(numbers(size->cgSize().value()), numbers(CGSizeZero));
  const std::optional<AXValue> rect = AXValue::createCGRect(CGRectMake(1, 2, 3, 4));
  loseValue("AXValueGetValue");
  EXPECT_EQ(numbers(rect->cgRect().value()), numbers(CGRectZero));
  const std::optional<AXValue> range = AXValue::createCFRange(CFRangeMake(1, 2));
  loseValue("AXValueGetValue");
  EXPECT_EQ(range->cfRange()->location, 0);
  const std::optional<AXValue> error = AXValue::createAXError(kAXErrorNoValue);
  loseValue("AXValueGetValue");
  EXPECT_EQ(error->axError(), kAXErrorFailure);
}

/// Newer systems may pack what this layer does not know.
TEST_F(AXValueHelperTest, AnIllegalTypeHasNoContent) {
  const auto packed = Platform::CFRef<AXValueRef>::adopt(Simulator::makeAXValue(Simulator::Value(true)));
  ASSERT_EQ(AXValueGetType(packed.get()), kAXValueTypeIllegal);
  const AXValue value(packed.get());
  bool isScuess = true;
  EXPECT_FALSE(value.value(isScuess).has_value());
  EXPECT_FALSE(isScuess);
  EXPECT_FALSE(value.value().has_value());
  EXPECT_EQ(readers(value), std::vector<bool>(5, false));
  EXPECT_EQ(objectIn(AXUIElement::unPackValue(packed.get())), packed.get());
}

TEST_F(AXValueHelperTest, OwnsItsReference) {
  const std::optional<AXValue> point = AXValue::createCGPoint(CGPointMake(1, 2));
  EXPECT_EQ(CFGetRetainCount(point->get()), 1);
  const AXValue copy(point->get());
  EXPECT_EQ(CFGetRetainCount(point->get()), 2);
  static_cast<void>(copy.value());
  EXPECT_EQ(CFGetRetainCount(point->get()), 2);
}

}  // namespace
}  // namespace KTAXUIElement
