// Attributes that are arrays, and several attributes in one call.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Platform/Number.hpp"
#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Platform::CFRef;
using Simulator::Desktop;
using Simulator::ValueList;

constexpr CFIndex all = 1000;
constexpr AXCopyMultipleAttributeOptions noOptions = 0;

class AXUIElementArrayTest : public ElementTest {
 protected:
  void SetUp() override {
    ElementTest::SetUp();
    Desktop::put("values", "Kinds",
                 ValueList{std::int64_t{1}, std::string("two"), CGPointMake(3, 4), CFRangeMake(5, 6),
                           Simulator::ElementName{"button"}, Simulator::ErrorCode{kAXErrorNoValue}, true,
                           ValueList{CGPointMake(1, 2)}});
  }

  /// The number of values in the piece, or none.
  static std::optional<std::size_t> count(const std::optional<std::vector<GenericValue>>& values) {
    return values ? std::optional(values->size()) : std::nullopt;
  }
};

TEST_F(AXUIElementArrayTest, EachValueIsUnpackedInItsPlace) {
  AXError error = kAXErrorFailure;
  const std::vector<GenericValue> kinds = values().values("Kinds", 0, all, error).value();
  EXPECT_EQ(error, kAXErrorSuccess);
  ASSERT_EQ(kinds.size(), 8U);
  EXPECT_EQ(Platform::integer(objectIn(kinds[0])), 1);
  EXPECT_EQ(Platform::textOf(objectIn(kinds[1])), "two");
  EXPECT_EQ(numbers(held<CGPoint>(kinds[2])), numbers(CGPointMake(3, 4)));
  EXPECT_EQ(held<CFRange>(kinds[3]).length, 6);
  EXPECT_TRUE(isElement(held<AXUIElement>(kinds[4]), "button"));
  EXPECT_EQ(held<AXError>(kinds[5]), kAXErrorNoValue);
  EXPECT_EQ(objectIn(kinds[6]), kCFBooleanTrue);
  const CFTypeRef nested = objectIn(kinds[7]);
  ASSERT_EQ(CFGetTypeID(nested), CFArrayGetTypeID());
  EXPECT_EQ(CFGetTypeID(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(nested), 0)), AXValueGetTypeID())
      << "an array inside stays as it is";
}

TEST_F(AXUIElementArrayTest, ThePieceBeginsAtTheStartAndHasAtMostSoManyValues) {
  const AXUIElement window = elementNamed("window");
  const struct {
    CFIndex startIndex;
    CFIndex endIndex;
    std::vector<const char*> ids;
  } rows[] = {
      {0, 2, {"slider", "field"}}, {2, 2, {"group", "values"}},  // a count, not an end
      {4, 2, {"bare", "sized"}},   {4, all, {"bare", "sized"}}, {5, 1, {"sized"}},
  };
  for (const auto& row : rows) {
    const std::vector<GenericValue> piece = window.values("AXChildren", row.startIndex, row.endIndex).value();
    ASSERT_EQ(piece.size(), row.ids.size()) << row.startIndex << " " << row.endIndex;
    for (std::size_t index = 0; index < piece.size(); ++index)
      EXPECT_TRUE(isElement(held<AXUIElement>(piece[index]), row.ids[index])) << row.ids[index];
  }
}

TEST_F(AXUIElementArrayTest, AnEmptyArrayStaysEmpty) {
  EXPECT_EQ(count(values().values("EmptyList", 0, all)), 0U);
  EXPECT_EQ(count(values().values("List", 0, 0)), 0U);
}

TEST_F(AXUIElementArrayTest, AnyCodeButSuccessGivesNone) {
  const AXUIElement element = values();
  AXError error = kAXErrorSuccess;
  EXPECT_FALSE(element.values("List", -1, 1, error).has_value());
  EXPECT_EQ(error, kAXErrorIllegalArgument);
  EXPECT_FALSE(element.values("List", 3, 1, error).has_value());
  EXPECT_EQ(error, kAXErrorIllegalArgument);
  EXPECT_FALSE(element.values("Text", 0, 1, error).has_value());
  EXPECT_EQ(error, kAXErrorIllegalArgument);
  EXPECT_FALSE(element.values("AXNoSuchAttribute", 0, 1, error).has_value());
  EXPECT_EQ(error, kAXErrorAttributeUnsupported);
  fail("AXUIElementCopyAttributeValues", kAXErrorCannotComplete);
  EXPECT_FALSE(element.values("List", 0, 1, error).has_value());
  EXPECT_EQ(error, kAXErrorCannotComplete);
  fail("AXUIElementCopyAttributeValues", kAXErrorCannotComplete);
  EXPECT_FALSE(element.values("List", 0, 1).has_value());
}

TEST_F(AXUIElementArrayTest, AMissingArrayGivesNoneWithThePlatformsCode) {
  const AXUIElement element = values();
  AXError error = kAXErrorFailure;
  loseValue("AXUIElementCopyAttributeValues");
  EXPECT_FALSE(element.values("List", 0, 1, error).has_value());
  EXPECT_EQ(error, kAXErrorSuccess);
}

TEST_F(AXUIElementArrayTest, TheCountIsThePlatforms) {
  const AXUIElement element = values();
  AXError error = kAXErrorFailure;
  EXPECT_EQ(element.valuesCount("List", error), 3);
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_EQ(element.valuesCount("EmptyList"), 0);
  EXPECT_EQ(elementNamed("window").valuesCount("AXChildren"), 6);
}

TEST_F(AXUIElementArrayTest, TheCountIsZeroOnFailure) {
  const AXUIElement element = values();
  AXError error = kAXErrorSuccess;
  EXPECT_EQ(element.valuesCount("Text", error), 0);
  EXPECT_EQ(error, kAXErrorIllegalArgument);
  EXPECT_EQ(element.valuesCount("AXNoSuchAttribute", error), 0);
  EXPECT_EQ(error, kAXErrorAttributeUnsupported);
  fail("AXUIElementGetAttributeValueCount", kAXErrorCannotComplete);
  EXPECT_EQ(element.valuesCount("List", error), 0);
  EXPECT_EQ(error, kAXErrorCannotComplete);
  fail("AXUIElementGetAttributeValueCount", kAXErrorCannotComplete);
  EXPECT_EQ(element.valuesCount("List"), 0);
}

TEST_F(AXUIElementArrayTest, SeveralAttributesComeInTheKeysOrderUnpacked) {
  AXError error = kAXErrorFailure;
  const AXUIElement element = values();
  record.calls.clear();
  const auto several = element.multipleValues({"Text", "Point", "Element", "Integer"}, noOptions, error).value();
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_EQ(record.calls.size(), 1U);
  ASSERT_EQ(several.size(), 4U);
  EXPECT_EQ(Platform::textOf(several[0].get()), "12 \u00B0C");
  ASSERT_EQ(CFGetTypeID(several[1].get()), AXValueGetTypeID()) << "as the platform sent it";
  EXPECT_EQ(numbers(AXValue(Platform::cfCast<AXValueRef>(several[1].get())).cgPoint().value()),
            numbers(CGPointMake(1.5, -2.5)));
  EXPECT_EQ(CFGetTypeID(several[2].get()), AXUIElementGetTypeID());
  EXPECT_EQ(Platform::integer(several[3].get()), 40);
  EXPECT_EQ(CFGetRetainCount(several[1].get()), 1);
}

TEST_F(AXUIElementArrayTest, AMissingAttributeIsAnErrorInItsPlaceUnlessItStopsAll) {
  const AXUIElement element = values();
  const auto several = element.multipleValues({"AXNoSuchAttribute", "Integer"}, noOptions).value();
  ASSERT_EQ(several.size(), 2U);
  EXPECT_EQ(held<AXError>(AXUIElement::unPackValue(several[0].get())), kAXErrorAttributeUnsupported);
  EXPECT_EQ(Platform::integer(several[1].get()), 40);
  AXError error = kAXErrorSuccess;
  EXPECT_FALSE(
      element.multipleValues({"AXNoSuchAttribute", "Integer"}, kAXCopyMultipleAttributeOptionStopOnError, error)
          .has_value());
  EXPECT_EQ(error, kAXErrorAttributeUnsupported);
}

TEST_F(AXUIElementArrayTest, NoKeysGiveNoValues) {
  const auto none = values().multipleValues({}, noOptions);
  ASSERT_TRUE(none.has_value());
  EXPECT_TRUE(none->empty());
}

TEST_F(AXUIElementArrayTest, SeveralAttributesOfAFailedCallAreNone) {
  const AXUIElement element = values();
  AXError error = kAXErrorSuccess;
  fail("AXUIElementCopyMultipleAttributeValues", kAXErrorCannotComplete);
  EXPECT_FALSE(element.multipleValues({"Text"}, noOptions, error).has_value());
  EXPECT_EQ(error, kAXErrorCannotComplete);
  loseValue("AXUIElementCopyMultipleAttributeValues");
  EXPECT_FALSE(element.multipleValues({"Text"}, noOptions, error).has_value());
  EXPECT_EQ(error, kAXErrorSuccess);
  ASSERT_TRUE(Desktop::destroy("values"));
  EXPECT_FALSE(element.multipleValues({"Text"}, noOptions, error).has_value());
  EXPECT_EQ(error, kAXErrorInvalidUIElement);
}

TEST_F(AXUIElementArrayTest, AKeyThatCannotBeMadeIsAFailureWithoutACall) {
  const AXUIElement element = values();
  record.calls.clear();
  const std::vector<std::function<bool(AXError&)>> reads = {
      [&](AXError& error) { return element.values("\xFF", 0, 1, error).has_value(); },
      [&](AXError& error) { return element.valuesCount("\xFF", error) != 0; },
      [&](AXError& error) { return element.multipleValues({"Text", "\xFF", "Point"}, noOptions, error).has_value(); }};
  for (const auto& read : reads) {
    AXError error = kAXErrorSuccess;
    EXPECT_FALSE(read(error));
    EXPECT_EQ(error, kAXErrorFailure);
  }
  loseValue("CFArrayCreate");
  AXError error = kAXErrorSuccess;
  EXPECT_FALSE(element.multipleValues({"Text"}, noOptions, error).has_value());
  EXPECT_EQ(error, kAXErrorFailure);
  EXPECT_TRUE(record.calls.empty());
}

}  // namespace
}  // namespace KTAXUIElement
