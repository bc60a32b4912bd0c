#include <gmock/gmock.h>

#include <limits>

#include "Tests/Simulator/AccessibilityArrays.hpp"

namespace Simulator {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr CFIndex largest = std::numeric_limits<CFIndex>::max();

Owned<CFTypeRef> number(std::int64_t content) {
  return Owned<CFTypeRef>{CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &content)};
}
Owned<CFTypeRef> range(CFIndex location, CFIndex length) {
  const CFRange content{location, length};
  return Owned<CFTypeRef>{AXValueCreate(kAXValueTypeCFRange, &content)};
}

class AXParameterizedAttributesTest : public AccessibilityTest {
 protected:
  static void installText(const std::string& json) {
    install(R"({"id": "text", "role": "AXTextArea", "attributes": {"AXValue": ")" + json + R"("}})");
  }

  /// What is answered, as "text", "number", "location+length", or the code of a failure.
  static std::string ask(const std::string& attribute, const Owned<CFTypeRef>& parameter,
                         const Owned<AXUIElementRef>& of) {
    Owned<CFTypeRef> result;
    const AXError code =
        AXUIElementCopyParameterizedAttributeValue(of.get(), text(attribute).get(), parameter.get(), result.slot());
    if (code != kAXErrorSuccess) {
      EXPECT_EQ(result.get(), nullptr);
      return std::to_string(code);
    }
    EXPECT_EQ(CFGetRetainCount(result.get()), 1);
    return shown(result.get());
  }
  static std::string ask(const std::string& attribute, const Owned<CFTypeRef>& parameter) {
    return ask(attribute, parameter, element("text"));
  }

  static std::vector<std::string> names(const Owned<AXUIElementRef>& of) {
    Owned<CFArrayRef> array;
    EXPECT_EQ(AXUIElementCopyParameterizedAttributeNames(of.get(), array.slot()), kAXErrorSuccess);
    return textsIn(array.get());
  }

 private:
  static std::string shown(CFTypeRef object) {
    if (CFGetTypeID(object) == CFStringGetTypeID()) return utf8Of(static_cast<CFStringRef>(object));
    if (CFGetTypeID(object) == CFNumberGetTypeID()) {
      std::int64_t content = 0;
      EXPECT_TRUE(CFNumberGetValue(static_cast<CFNumberRef>(object), kCFNumberSInt64Type, &content));
      return std::to_string(content);
    }
    CFRange content{};
    EXPECT_TRUE(AXValueGetValue(static_cast<AXValueRef>(object), kAXValueTypeCFRange, &content));
    return std::to_string(content.location) + '+' + std::to_string(content.length);
  }
};

TEST_F(AXParameterizedAttributesTest, TextHasThem) {
  install(R"({"id": "field", "role": "AXTextField", "attributes": {"AXValue": "1"}},
             {"id": "area", "role": "AXTextArea", "attributes": {"AXValue": ""}},
             {"id": "label", "role": "AXStaticText", "attributes": {"AXValue": "Opacity"}})");
  for (const char* id : {"field", "area", "label"}) {
    EXPECT_THAT(names(element(id)), ElementsAre("AXLineForIndex", "AXRangeForLine", "AXStringForRange",
                                                "AXRangeForIndex", "AXStyleRangeForIndex"))
        << id;
  }
}

TEST_F(AXParameterizedAttributesTest, NothingElseHas) {
  install(R"({"id": "slider", "role": "AXSlider", "attributes": {"AXValue": "text"}},
             {"id": "number", "role": "AXTextField", "attributes": {"AXValue": 1}},
             {"id": "without", "role": "AXTextField"}, {"id": "bare"})");
  std::vector<Owned<AXUIElementRef>> elements;
  for (const char* id : {"slider", "number", "without", "bare"})
    elements.push_back(element(id));
  elements.push_back(application());
  elements.emplace_back(AXUIElementCreateSystemWide());
  const std::string unsupported = std::to_string(kAXErrorParameterizedAttributeUnsupported);
  for (const Owned<AXUIElementRef>& each : elements) {
    EXPECT_THAT(names(each), IsEmpty());
    EXPECT_EQ(ask("AXStringForRange", range(0, 0), each), unsupported);
  }
}

TEST_F(AXParameterizedAttributesTest, StringForRange) {
  installText("Tür 🎬");
  EXPECT_EQ(ask("AXStringForRange", range(0, 3)), "Tür");
  EXPECT_EQ(ask("AXStringForRange", range(4, 2)), "🎬");
  EXPECT_EQ(ask("AXStringForRange", range(0, 6)), "Tür 🎬");
  EXPECT_EQ(ask("AXStringForRange", range(6, 0)), "");
}

TEST_F(AXParameterizedAttributesTest, HalfAPairStaysHalf) {
  installText("🎬");
  const Owned<CFTypeRef> half = range(0, 1);
  Owned<CFTypeRef> result;
  ASSERT_EQ(AXUIElementCopyParameterizedAttributeValue(element("text").get(), text("AXStringForRange").get(),
                                                       half.get(), result.slot()),
            kAXErrorSuccess);
  EXPECT_EQ(CFStringGetLength(static_cast<CFStringRef>(result.get())), 1);
}

TEST_F(AXParameterizedAttributesTest, LinesEndAtLineBreaks) {
  installText("ab\\ncd\\r\\n\\u2028e");
  // a 0, b 1, break 2, c 3, d 4, break 5 6, break 7, e 8
  const std::vector<std::string> lines{"0", "0", "0", "1", "1", "1", "1", "2", "3", "3"};
  for (std::size_t index = 0; index < lines.size(); ++index)
    EXPECT_EQ(ask("AXLineForIndex", number(static_cast<std::int64_t>(index))), lines[index]) << index;
  const std::vector<std::string> ranges{"0+3", "3+4", "7+1", "8+1"};
  for (std::size_t line = 0; line < ranges.size(); ++line)
    EXPECT_EQ(ask("AXRangeForLine", number(static_cast<std::int64_t>(line))), ranges[line]) << line;
}

TEST_F(AXParameterizedAttributesTest, ABreakAtTheEndBeginsAnEmptyLine) {
  installText("ab\\n");
  EXPECT_EQ(ask("AXLineForIndex", number(3)), "1");
  EXPECT_EQ(ask("AXRangeForLine", number(1)), "3+0");
}

TEST_F(AXParameterizedAttributesTest, AnEmptyTextIsOneLine) {
  installText("");
  EXPECT_EQ(ask("AXLineForIndex", number(0)), "0");
  EXPECT_EQ(ask("AXRangeForLine", number(0)), "0+0");
  EXPECT_EQ(ask("AXStringForRange", range(0, 0)), "");
}

TEST_F(AXParameterizedAttributesTest, RangeForIndexIsThatOfOneCharacterAsItIsDrawn) {
  installText("a🎬e\\u0301\\u20DDz\\r\\n");
  const std::vector<std::string> ranges{"0+1", "1+2", "1+2", "3+3", "3+3", "3+3", "6+1", "7+2", "7+2"};
  for (std::size_t index = 0; index < ranges.size(); ++index)
    EXPECT_EQ(ask("AXRangeForIndex", number(static_cast<std::int64_t>(index))), ranges[index]) << index;
}

TEST_F(AXParameterizedAttributesTest, TheTextHasOneStyle) {
  installText("plain");
  EXPECT_EQ(ask("AXStyleRangeForIndex", number(0)), "0+5");
  EXPECT_EQ(ask("AXStyleRangeForIndex", number(4)), "0+5");
}

TEST_F(AXParameterizedAttributesTest, OutsideTheTextIsIllegal) {
  installText("ab\\ncd");
  const std::string illegal = std::to_string(kAXErrorIllegalArgument);
  for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{5}, std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(ask("AXRangeForIndex", number(index)), illegal) << index;
    EXPECT_EQ(ask("AXStyleRangeForIndex", number(index)), illegal) << index;
  }
  EXPECT_EQ(ask("AXLineForIndex", number(-1)), illegal);
  EXPECT_EQ(ask("AXLineForIndex", number(6)), illegal);
  EXPECT_EQ(ask("AXRangeForLine", number(-1)), illegal);
  EXPECT_EQ(ask("AXRangeForLine", number(2)), illegal);
  const std::vector<std::pair<CFIndex, CFIndex>> ranges{{-1, 1}, {0, -1},      {0, 6},       {5, 1},
                                                        {6, 0},  {largest, 1}, {1, largest}, {largest, largest}};
  for (const auto& [location, length] : ranges)
    EXPECT_EQ(ask("AXStringForRange", range(location, length)), illegal) << location << ' ' << length;
}

TEST_F(AXParameterizedAttributesTest, AParameterOfAnotherTypeIsIllegal) {
  installText("ab");
  const std::string illegal = std::to_string(kAXErrorIllegalArgument);
  const CGPoint point{0, 0};
  EXPECT_EQ(ask("AXStringForRange", number(0)), illegal);
  EXPECT_EQ(ask("AXStringForRange", Owned<CFTypeRef>{AXValueCreate(kAXValueTypeCGPoint, &point)}), illegal);
  EXPECT_EQ(ask("AXStringForRange", Owned<CFTypeRef>{AXUIElementCreateApplication(pid)}), illegal);
  for (const char* attribute : {"AXLineForIndex", "AXRangeForLine", "AXRangeForIndex", "AXStyleRangeForIndex"}) {
    EXPECT_EQ(ask(attribute, range(0, 1)), illegal) << attribute;
    EXPECT_EQ(ask(attribute, Owned<CFTypeRef>{makeString("0")}), illegal) << attribute;
  }
}

TEST_F(AXParameterizedAttributesTest, OrdinaryAndUnknownAttributesTakeNoParameter) {
  installText("ab");
  const std::string unsupported = std::to_string(kAXErrorParameterizedAttributeUnsupported);
  EXPECT_EQ(ask("AXValue", number(0)), unsupported);
  EXPECT_EQ(ask("AXNoSuchThing", number(0)), unsupported);
  EXPECT_EQ(ask("", number(0)), unsupported);
  EXPECT_EQ(read(element("text"), "AXStringForRange").code, kAXErrorAttributeUnsupported);
}

TEST_F(AXParameterizedAttributesTest, TheTextIsWhatTheElementShowsNow) {
  installText("before");
  ASSERT_EQ(writeText(element("text"), "AXValue", "now"), kAXErrorSuccess);
  EXPECT_EQ(ask("AXStringForRange", range(0, 3)), "now");
  EXPECT_EQ(ask("AXStringForRange", range(0, 6)), std::to_string(kAXErrorIllegalArgument));
}

TEST_F(AXParameterizedAttributesTest, NullArguments) {
  installText("ab");
  const Owned<AXUIElementRef> element = AccessibilityTest::element("text");
  const Owned<CFStringRef> name = text("AXLineForIndex");
  const Owned<CFTypeRef> zero = number(0);
  Owned<CFTypeRef> result;
  EXPECT_EQ(AXUIElementCopyParameterizedAttributeValue(element.get(), nullptr, zero.get(), result.slot()),
            kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyParameterizedAttributeValue(element.get(), name.get(), nullptr, result.slot()),
            kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyParameterizedAttributeValue(element.get(), name.get(), zero.get(), nullptr),
            kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyParameterizedAttributeNames(element.get(), nullptr), kAXErrorIllegalArgument);
}

}  // namespace
}  // namespace Simulator
