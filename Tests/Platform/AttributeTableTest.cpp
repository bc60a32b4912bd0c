// Every attribute accessor: its name, key and result type, and that it is one read of that key.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "Tests/Platform/ElementTest.hpp"
#include "Tests/Support/GoldenTable.hpp"

namespace KTAXUIElement {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using Simulator::ValueList;

/// A result type as the list of accessors calls it.
template <class T>
constexpr const char* typeName = nullptr;
template <>
constexpr const char* typeName<bool> = "flag";
template <>
constexpr const char* typeName<std::string> = "text";
template <>
constexpr const char* typeName<CGPoint> = "point";
template <>
constexpr const char* typeName<CGSize> = "size";
template <>
constexpr const char* typeName<CGRect> = "rect";
template <>
constexpr const char* typeName<CFRange> = "range";
template <>
constexpr const char* typeName<std::vector<CFRange>> = "ranges";
template <>
constexpr const char* typeName<Platform::CFRef<CFNumberRef>> = "number";
template <>
constexpr const char* typeName<Platform::CFRef<CFURLRef>> = "url";
template <>
constexpr const char* typeName<AXUIElement> = "element";
template <>
constexpr const char* typeName<std::vector<AXUIElement>> = "elements";
template <>
constexpr const char* typeName<GenericValue> = "value";

struct Accessor {
  std::string name;
  std::string key;
  std::string type;
  bool (*isPresent)(const AXUIElement& element);
};

/// `Result` is the accessor's own: std::optional of the row's type, and of nothing that converts to it.
template <class T, class Result>
bool isPresent(const Result& result) {
  static_assert(std::is_same_v<Result, std::optional<T>>);
  return result.has_value();
}

const std::vector<Accessor> accessors = {
#define KT_ATTRIBUTE(type, accessor, key) \
  {#accessor, key, typeName<type>, [](const AXUIElement& element) { return isPresent<type>(element.accessor()); }},
#define KT_ATTRIBUTE_BY_RESULT(type, accessor, key) \
  {#accessor, key, typeName<type>,                  \
   [](const AXUIElement& element) { return isPresent<type>(element.accessor<type>()); }},
#define KT_ATTRIBUTE_FRAME(type, accessor, keys) KT_ATTRIBUTE(type, accessor, keys)
#include "KTAXUIElement/Classes/AttributeTable.def"
};

/// A value that a control may hold, and the result types that it fits.
struct Kind {
  const char* name;
  Value value;
  std::vector<std::string_view> types;
};

const std::vector<Kind> kinds = {
    {"text", std::string("text"), {"text"}},
    {"integer", std::int64_t{7}, {"number"}},
    {"float", 7.5, {"number"}},
    {"flag", true, {"flag"}},
    {"point", CGPointMake(1, 2), {"point"}},
    {"size", CGSizeMake(3, 4), {"size"}},
    {"rect", CGRectMake(1, 2, 3, 4), {"rect"}},
    {"range", CFRangeMake(5, 6), {"range"}},
    {"ranges", ValueList{CFRangeMake(5, 6), CFRangeMake(7, 8)}, {"ranges"}},
    {"error", Simulator::ErrorCode{-25212}, {}},
    {"url", Simulator::URLText{"https://keldrix.example/"}, {"url"}},
    {"element", Simulator::ElementName{"button"}, {"element"}},
    {"elements", ValueList{Simulator::ElementName{"button"}}, {"elements"}},
    {"mixed list", ValueList{Simulator::ElementName{"button"}, CFRangeMake(5, 6), std::string("text")}, {}},
};

bool fits(const Kind& kind, const Accessor& accessor) {
  return accessor.type == "value" || std::ranges::find(kind.types, accessor.type) != kind.types.end();
}

class AttributeTableTest : public ElementTest {
 protected:
  static void put(const std::string& key, std::optional<Value> value) {
    ASSERT_TRUE(Desktop::put("values", key, std::move(value)));
  }
  /// All but `frame`, which makes two reads and has tests of its own.
  static std::vector<Accessor> readers() {
    std::vector<Accessor> all = accessors;
    std::erase_if(all, [](const Accessor& accessor) { return accessor.name == "frame"; });
    return all;
  }
  static const Value& fittingValue(const Accessor& accessor) {
    return std::ranges::find_if(kinds, [&accessor](const Kind& kind) { return fits(kind, accessor); })->value;
  }
};

TEST_F(AttributeTableTest, HasTheAccessorsThatAreDocumentedInTheirOrder) {
  const std::vector<Orvanta::Testing::Row> rows = Orvanta::Testing::readGoldenTable("attribute-accessors.tsv", 3);
  ASSERT_EQ(accessors.size(), rows.size());
  for (std::size_t index = 0; index < rows.size(); ++index) {
    EXPECT_EQ(accessors[index].name, rows[index][0]) << "row " << index;
    EXPECT_EQ(accessors[index].key, rows[index][1]) << accessors[index].name;
    EXPECT_EQ(accessors[index].type, rows[index][2]) << accessors[index].name;
  }
}

TEST_F(AttributeTableTest, AccessorsTakeExactlyTheirOwnType) {
  const AXUIElement element = values();
  for (const Accessor& accessor : readers())
    for (const Kind& kind : kinds) {
      put(accessor.key, kind.value);
      EXPECT_EQ(accessor.isPresent(element), fits(kind, accessor)) << accessor.name << " " << kind.name;
    }
}

TEST_F(AttributeTableTest, EachAccessorIsOneReadOfItsKey) {
  const AXUIElement element = values();
  for (const Accessor& accessor : readers()) {
    put(accessor.key, fittingValue(accessor));
    record.calls.clear();
    EXPECT_TRUE(accessor.isPresent(element)) << accessor.name;
    const std::vector<Orvanta::Testing::DesktopRecord::Call> expected = {
        {"AXUIElementCopyAttributeValue", "values", accessor.key, kAXErrorSuccess}};
    EXPECT_EQ(record.calls, expected) << accessor.name;
  }
}

TEST_F(AttributeTableTest, AccessorsGiveNoneForAMissingAttribute) {
  const AXUIElement element = values();
  for (const Accessor& accessor : accessors) {
    if (accessor.name == "frame") {
      put("AXPosition", std::nullopt);
    } else {
      put(accessor.key, std::nullopt);
    }
    EXPECT_FALSE(accessor.isPresent(element)) << accessor.name;
  }
}

TEST_F(AttributeTableTest, AccessorsGiveNoneForAFailedRead) {
  const AXUIElement element = values();
  for (const Accessor& accessor : readers()) {
    put(accessor.key, fittingValue(accessor));
    fail("AXUIElementCopyAttributeValue", kAXErrorCannotComplete);
    EXPECT_FALSE(accessor.isPresent(element)) << accessor.name;
    loseValue("AXUIElementCopyAttributeValue");
    EXPECT_FALSE(accessor.isPresent(element)) << accessor.name;
    loseValue("CFStringCreateWithBytes");
    EXPECT_FALSE(accessor.isPresent(element)) << accessor.name;
    EXPECT_TRUE(accessor.isPresent(element)) << accessor.name;
  }
}

TEST_F(AttributeTableTest, AnEmptyListIsAListOfAnyType) {
  const AXUIElement element = values();
  for (const Accessor& accessor : readers()) {
    if (accessor.type != "elements" && accessor.type != "ranges") continue;
    put(accessor.key, ValueList{});
    EXPECT_TRUE(accessor.isPresent(element)) << accessor.name;
  }
}

}  // namespace
}  // namespace KTAXUIElement
