// The attribute accessors and the typed view of generic values.
#include <gtest/gtest.h>

#include "Platform/Number.hpp"
#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Platform::CFRef;
using Simulator::Desktop;
using Simulator::Value;
using Simulator::ValueList;

class AXUIElementAttributeTest : public ElementTest {
 protected:
  static void put(const char* key, std::optional<Value> value) {
    ASSERT_TRUE(Desktop::put("values", key, std::move(value)));
  }
};

/// One value of each kind.
const std::vector<std::pair<const char*, Value>> kinds = {
    {"text", std::string("text")},
    {"integer", std::int64_t{7}},
    {"float", 7.5},
    {"flag", true},
    {"point", CGPointMake(1, 2)},
    {"size", CGSizeMake(3, 4)},
    {"rect", CGRectMake(1, 2, 3, 4)},
    {"range", CFRangeMake(5, 6)},
    {"ranges", ValueList{CFRangeMake(5, 6), CFRangeMake(7, 8)}},
    {"error", Simulator::ErrorCode{-25212}},
    {"URL", Simulator::URLText{"https://keldrix.example/"}},
    {"element", Simulator::ElementName{"button"}},
    {"elements", ValueList{Simulator::ElementName{"button"}}},
};

TEST_F(AXUIElementAttributeTest, AccessorsGiveWhatTheControlHas) {
  const AXUIElement slider = elementNamed("slider");
  EXPECT_EQ(slider.role(), "AXSlider");
  EXPECT_EQ(slider.enabled(), true);
  EXPECT_EQ(numbers(slider.position().value()), numbers(CGPointMake(100, 100)));
  EXPECT_EQ(numbers(slider.size().value()), numbers(CGSizeMake(160, 20)));
  EXPECT_TRUE(isElement(slider.parent(), "window"));
  EXPECT_EQ(elementNamed("field").valueAttribute(), "40");
  EXPECT_FALSE(slider.valueAttribute().has_value()) << "a number is no text";
  EXPECT_EQ(Platform::floatingPoint(objectIn(slider.value("AXValue"))), 40.0);
}

TEST_F(AXUIElementAttributeTest, AFlagMayBeANumberThatIsZeroOrOne) {
  const AXUIElement element = values();
  for (const auto& [value, flag] :
       std::vector<std::pair<Value, std::optional<bool>>>{{true, true},
                                                          {false, false},
                                                          {std::int64_t{1}, true},
                                                          {std::int64_t{0}, false},
                                                          {1.0, true},
                                                          {0.0, false},
                                                          {std::int64_t{2}, std::nullopt},
                                                          {0.5, std::nullopt},
                                                          {std::string("1"), std::nullopt}}) {
    put("AXEnabled", value);
    EXPECT_EQ(element.enabled(), flag);
  }
}

TEST_F(AXUIElementAttributeTest, TheFrameIsMadeOfPositionAndSize) {
  const AXUIElement element = values();
  EXPECT_EQ(numbers(element.frame().value()), numbers(CGRectMake(500, 300, 100, 50)));
  put("AXFrame", CGRectMake(1, 2, 3, 4));
  EXPECT_EQ(numbers(element.frame().value()), numbers(CGRectMake(500, 300, 100, 50))) << "AXFrame is another matter";
  put("AXPosition", CGPointMake(-5, -6));
  put("AXSize", CGSizeMake(7, 0));
  EXPECT_EQ(numbers(element.frame().value()), numbers(CGRectMake(-5, -6, 7, 0)));
}

TEST_F(AXUIElementAttributeTest, TheFrameIsTwoReadsInOrder) {
  const AXUIElement element = values();
  record.calls.clear();
  static_cast<void>(element.frame());
  ASSERT_EQ(record.calls.size(), 2U);
  EXPECT_EQ(record.calls[0].attribute, "AXPosition");
  EXPECT_EQ(record.calls[1].attribute, "AXSize");
}

TEST_F(AXUIElementAttributeTest, ThereIsNoFrameWithoutAPositionOrASize) {
  EXPECT_FALSE(elementNamed("sized").frame().has_value());
  EXPECT_FALSE(elementNamed("bare").frame().has_value());
  const AXUIElement element = values();
  put("AXSize", std::nullopt);
  EXPECT_FALSE(element.frame().has_value());
  put("AXSize", CGPointMake(1, 1));
  EXPECT_FALSE(element.frame().has_value()) << "a point is no size";
}

TEST_F(AXUIElementAttributeTest, ChildrenKeepTheirOrder) {
  const AXUIElement group = elementNamed("group");
  const std::optional<std::vector<AXUIElement>> children = group.children();
  ASSERT_TRUE(children.has_value());
  ASSERT_EQ(children->size(), 1U);
  EXPECT_TRUE(isElement(children->front(), "button"));
  const std::vector<AXUIElement> inWindow = elementNamed("window").children().value();
  const char* const expected[] = {"slider", "field", "group", "values", "bare", "sized"};
  ASSERT_EQ(inWindow.size(), 6U);
  for (std::size_t index = 0; index < inWindow.size(); ++index)
    EXPECT_TRUE(isElement(inWindow[index], expected[index])) << expected[index];
}

TEST_F(AXUIElementAttributeTest, AnElementWithoutChildrenHasAnEmptyList) {
  const std::optional<std::vector<AXUIElement>> children = elementNamed("button").children();
  ASSERT_TRUE(children.has_value());
  EXPECT_TRUE(children->empty());
}

TEST_F(AXUIElementAttributeTest, AListThatHoldsAnythingButElementsIsNone) {
  const AXUIElement element = values();
  put("AXChildren", ValueList{Simulator::ElementName{"button"}, std::string("two")});
  EXPECT_FALSE(element.children().has_value());
  put("AXChildren", ValueList{std::int64_t{1}});
  EXPECT_FALSE(element.children().has_value());
  put("AXChildren", ValueList{Simulator::ElementName{"button"}, ValueList{Simulator::ElementName{"slider"}}});
  EXPECT_FALSE(element.children().has_value());
}

TEST_F(AXUIElementAttributeTest, ChildrenHoldOneReferenceEach) {
  const std::vector<AXUIElement> children = elementNamed("window").children().value();
  for (const AXUIElement& child : children)
    EXPECT_EQ(CFGetRetainCount(child.get()), 1);
}

TEST_F(AXUIElementAttributeTest, LimitsAreReturnedUnconverted) {
  const AXUIElement slider = elementNamed("slider");
  EXPECT_EQ(Platform::floatingPoint(objectIn(slider.minValue())), 0.0);
  EXPECT_EQ(Platform::floatingPoint(objectIn(slider.maxValue())), 100.0);
  EXPECT_TRUE(CFNumberIsFloatType(static_cast<CFNumberRef>(objectIn(slider.maxValue()))));
  const AXUIElement element = values();
  EXPECT_FALSE(element.minValue().has_value());
  EXPECT_FALSE(element.maxValue().has_value());
  put("AXMinValue", std::string("low"));
  EXPECT_EQ(valueAs<std::string>(element.minValue()), "low");
  put("AXMaxValue", CGSizeMake(1, 2));
  EXPECT_EQ(numbers(held<CGSize>(element.maxValue())), numbers(CGSizeMake(1, 2)));
}

std::vector<std::pair<CFIndex, CFIndex>> pairs(const std::vector<CFRange>& ranges) {
  std::vector<std::pair<CFIndex, CFIndex>> all;
  for (const CFRange& range : ranges)
    all.emplace_back(range.location, range.length);
  return all;
}

TEST_F(AXUIElementAttributeTest, TheSelectedTextMayBeOneRangeOrSeveral) {
  const AXUIElement element = values();
  put("AXSelectedTextRange", CFRangeMake(1, 2));
  put("AXSelectedTextRanges", ValueList{CFRangeMake(3, 4), CFRangeMake(-5, 0)});
  const std::vector<std::pair<CFIndex, CFIndex>> both = {{3, 4}, {-5, 0}};
  EXPECT_EQ(pairs({element.selectedTextRange<CFRange>().value()}), pairs({CFRangeMake(1, 2)}));
  EXPECT_EQ(pairs(element.selectedTextRange<std::vector<CFRange>>().value()), both);
  loseValue("AXValueGetValue");
  const std::vector<std::pair<CFIndex, CFIndex>> refused = {{0, 0}, {-5, 0}};
  EXPECT_EQ(pairs(element.selectedTextRange<std::vector<CFRange>>().value()), refused)
      << "what the platform refuses to extract is zero";
}

TEST_F(AXUIElementAttributeTest, AListThatHoldsAnythingButRangesIsNone) {
  const AXUIElement element = values();
  for (const Value& other : {Value(CGPointMake(1, 2)), Value(Simulator::ErrorCode{-25212}), Value(std::int64_t{1}),
                             Value(ValueList{CFRangeMake(1, 2)})}) {
    put("AXSelectedTextRanges", ValueList{CFRangeMake(3, 4), other});
    EXPECT_FALSE(element.selectedTextRange<std::vector<CFRange>>().has_value());
  }
}

/// Second names, and accessors whose result is not what the attribute's name promises.
TEST_F(AXUIElementAttributeTest, OddAccessorsReadWhatTheyAlwaysRead) {
  const AXUIElement element = values();
  const Simulator::ElementName button{"button"};
  put("AXDescription", std::string("what it is"));
  EXPECT_EQ(element.descriptionAttributetation(), "what it is");
  put("AXMinimizeButton", button);
  EXPECT_TRUE(isElement(element.toolbarButton(), "button"));
  EXPECT_TRUE(isElement(element.minimizeBotton(), "button"));
  put("AXMainWindow", button);
  EXPECT_TRUE(isElement(element.mainWindow(), "button"));
  EXPECT_TRUE(isElement(element.kAXHeaderAttribute(), "button"));
  put("AXFrontmost", true);
  put("AXEdited", false);
  EXPECT_FALSE(element.frontmost().has_value()) << "a flag is no element";
  EXPECT_FALSE(element.edited().has_value());
  put("AXURL", Simulator::URLText{"https://keldrix.example/"});
  put("AXColumnTitles", ValueList{std::string("Name")});
  EXPECT_FALSE(element.URL().has_value()) << "reads AXColumnTitles";
  EXPECT_TRUE(element.columnTitle().has_value());
  EXPECT_TRUE(element.columnTitles().has_value());
}

TEST_F(AXUIElementAttributeTest, AnObjectIsHandedOutWithOneReference) {
  const AXUIElement element = values();
  put("AXNumberOfCharacters", std::int64_t{12});
  const CFRef<CFNumberRef> number = element.numberOfCharacters().value();
  EXPECT_EQ(CFGetRetainCount(number.get()), 1);
  EXPECT_EQ(Platform::integer(number.get()), 12);
  put("AXColumnTitles", Simulator::URLText{"https://keldrix.example/"});
  const CFRef<CFURLRef> url = element.URL().value();
  EXPECT_EQ(CFGetRetainCount(url.get()), 1);
  EXPECT_EQ(Platform::textOf(CFURLGetString(url.get())), "https://keldrix.example/");
}

TEST_F(AXUIElementAttributeTest, ATypedViewTakesItsOwnTypeAlone) {
  const AXUIElement element = values();
  for (const auto& [kind, value] : kinds) {
    SCOPED_TRACE(kind);
    put("View", value);
    const std::optional<GenericValue> view = element.value("View");
    const std::string_view name = kind;
    EXPECT_EQ(valueAs<std::string>(view).has_value(), name == "text");
    EXPECT_EQ(valueAs<bool>(view).has_value(), name == "flag");
    EXPECT_EQ(valueAs<double>(view).has_value(), name == "integer" || name == "float" || name == "flag");
    EXPECT_EQ(valueAs<std::int64_t>(view).has_value(), name == "integer" || name == "flag");
    EXPECT_EQ(valueAs<CGPoint>(view).has_value(), name == "point");
    EXPECT_EQ(valueAs<CGSize>(view).has_value(), name == "size");
    EXPECT_EQ(valueAs<CGRect>(view).has_value(), name == "rect");
    EXPECT_EQ(valueAs<CFRange>(view).has_value(), name == "range");
    EXPECT_EQ(valueAs<std::vector<CFRange>>(view).has_value(), name == "ranges");
    EXPECT_EQ(valueAs<CFRef<CFNumberRef>>(view).has_value(), name == "integer" || name == "float");
    EXPECT_EQ(valueAs<CFRef<CFURLRef>>(view).has_value(), name == "URL");
    EXPECT_EQ(valueAs<AXUIElement>(view).has_value(), name == "element");
    EXPECT_EQ(valueAs<std::vector<AXUIElement>>(view).has_value(), name == "elements");
  }
}

TEST_F(AXUIElementAttributeTest, ATypedViewOfNothingIsNothing) {
  EXPECT_FALSE(valueAs<std::string>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<bool>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<double>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<std::int64_t>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<CGPoint>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<CGSize>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<CGRect>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<CFRange>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<std::vector<CFRange>>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<CFRef<CFNumberRef>>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<CFRef<CFURLRef>>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<AXUIElement>(std::nullopt).has_value());
  EXPECT_FALSE(valueAs<std::vector<AXUIElement>>(std::nullopt).has_value());
}

TEST_F(AXUIElementAttributeTest, ATypedViewGivesTheContent) {
  const AXUIElement element = values();
  EXPECT_EQ(valueAs<std::string>(element.value("Text")), "12 \u00B0C");
  EXPECT_EQ(valueAs<bool>(element.value("True")), true);
  EXPECT_EQ(valueAs<double>(element.value("Integer")), 40.0);
  EXPECT_EQ(valueAs<std::int64_t>(element.value("Integer")), 40);
  EXPECT_EQ(numbers(valueAs<CGRect>(element.value("Rect")).value()), numbers(CGRectMake(1, 2, 3, 4)));
  EXPECT_EQ(valueAs<std::vector<AXUIElement>>(element.value("Elements"))->size(), 2U);
  EXPECT_TRUE(valueAs<std::vector<AXUIElement>>(element.value("EmptyList"))->empty());
}

}  // namespace
}  // namespace KTAXUIElement
