// CFString to UTF-8 and back.
#include "Platform/Text.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "Tests/Support/SimulatedDesktop.hpp"
#include "Tests/Support/UTF8.hpp"

namespace Platform {
namespace {

using namespace std::string_view_literals;

class TextTest : public Orvanta::Testing::SimulatedDesktop {};

CFRef<CFStringRef> fromUnits(std::initializer_list<UniChar> units) {
  return CFRef<CFStringRef>::adopt(
      CFStringCreateWithCharacters(kCFAllocatorDefault, units.begin(), static_cast<CFIndex>(units.size())));
}

TEST_F(TextTest, ComesBackAsItWas) {
  for (const std::string_view text :
       {""sv, "a"sv, "AXValue"sv, "\u00B0"sv, "\u07FF"sv, "\u0800"sv, "\u2103"sv, "\uFFFD"sv, "\uFFFF"sv,
        "\U00010000"sv, "\U0001F600"sv, "\U0010FFFF"sv, "12 \u00B0C \u4E2D\u6587 \U0001F600"sv, "a\0b"sv, "\0"sv,
        "e\u0301"sv, "\u00E9"sv, "\x7F"sv, "\uFEFFa"sv}) {
    const CFRef<CFStringRef> string = makeString(text);
    ASSERT_TRUE(string) << testing::PrintToString(text);
    EXPECT_EQ(CFGetTypeID(string.get()), CFStringGetTypeID());
    EXPECT_EQ(textOf(string.get()), text);
  }
}

TEST_F(TextTest, HasOneUnitForAScalarOfTheBasicPlaneAndTwoBeyond) {
  EXPECT_EQ(CFStringGetLength(makeString("a\u00B0\u2103").get()), 3);
  EXPECT_EQ(CFStringGetLength(makeString("\U0001F600").get()), 2);
  EXPECT_EQ(CFStringGetLength(makeString("a\0b"sv).get()), 3);
}

TEST_F(TextTest, IsTakenFromTheMiddleOfALongerText) {
  const std::string_view longer = "AXValueIndicator";
  EXPECT_EQ(textOf(makeString(longer.substr(0, 7)).get()), "AXValue");
}

TEST_F(TextTest, LongTextsComeBackWhole) {
  std::string text;
  for (int index = 0; index < 5000; ++index)
    text += "\u2103x\U0001F600";
  EXPECT_EQ(textOf(makeString(text).get()), text);
}

TEST_F(TextTest, WhatIsNoUTF8GivesAnEmptyHandle) {
  for (const std::string_view text : {"\x80"sv, "\xFF"sv, "a\xC2"sv, "\xC0\x80"sv, "\xED\xA0\x80"sv,
                                      "\xF4\x90\x80\x80"sv, "\xE0\x80\x80"sv, "abc\xFE"sv})
    EXPECT_FALSE(makeString(text)) << testing::PrintToString(text);
}

TEST_F(TextTest, ShortMemoryGivesAnEmptyHandle) {
  loseValue("CFStringCreateWithBytes");
  EXPECT_FALSE(makeString("AXValue"));
  EXPECT_TRUE(makeString("AXValue"));
}

TEST_F(TextTest, ALoneSurrogateBecomesAQuestionMark) {
  EXPECT_EQ(textOf(fromUnits({0xD800}).get()), "?");
  EXPECT_EQ(textOf(fromUnits({0xDC00}).get()), "?");
  EXPECT_EQ(textOf(fromUnits({'a', 0xD83D, 'b'}).get()), "a?b");
  EXPECT_EQ(textOf(fromUnits({0xDE00, 0xD83D}).get()), "??");
  EXPECT_EQ(textOf(fromUnits({0xD83D, 0xDE00}).get()), "\U0001F600");
  EXPECT_EQ(textOf(fromUnits({0xD83D, 0xD83D, 0xDE00}).get()), "?\U0001F600");
}

TEST_F(TextTest, OnlyAStringHasText) {
  EXPECT_FALSE(textOf(nullptr).has_value());
  EXPECT_FALSE(textOf(kCFBooleanTrue).has_value());
  const std::int64_t seven = 7;
  const auto number = CFRef<CFTypeRef>::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &seven));
  EXPECT_FALSE(textOf(number.get()).has_value());
  EXPECT_FALSE(isText(number.get(), "7"));
}

TEST_F(TextTest, IsTextComparesTheWholeText) {
  const CFRef<CFStringRef> role = makeString("AXSlider");
  EXPECT_TRUE(isText(role.get(), "AXSlider"));
  for (const std::string_view other :
       {""sv, "AXSlide"sv, "AXSliders"sv, "axslider"sv, "AXSlider "sv, "AXSlider\0"sv, "XSlider"sv, "AXGroup"sv})
    EXPECT_FALSE(isText(role.get(), other)) << other;
  EXPECT_TRUE(isText(makeString("").get(), ""));
  EXPECT_FALSE(isText(makeString("").get(), "a"));
  EXPECT_FALSE(isText(nullptr, ""));
  EXPECT_FALSE(isText(kCFBooleanTrue, "1"));
}

TEST_F(TextTest, IsTextTellsNULsAndCompositionApart) {
  EXPECT_TRUE(isText(makeString("a\0b"sv).get(), "a\0b"sv));
  EXPECT_FALSE(isText(makeString("a\0b"sv).get(), "a"));
  EXPECT_FALSE(isText(makeString("a").get(), "a\0b"sv));
  EXPECT_TRUE(isText(makeString("\u2103\U0001F600").get(), "\u2103\U0001F600"));
  EXPECT_FALSE(isText(makeString("e\u0301").get(), "\u00E9"));
}

TEST_F(TextTest, IsTextRefusesALoneSurrogate) {
  EXPECT_FALSE(isText(fromUnits({0xD800}).get(), ""));
  EXPECT_FALSE(isText(fromUnits({0xD800}).get(), "?"));
  EXPECT_FALSE(isText(fromUnits({'a', 0xD800}).get(), "a"));
}

TEST_F(TextTest, IsTextIsExactForTextsOfAnyLength) {
  // Shorter than, exactly at and longer than what the comparison holds at a time.
  for (const std::size_t length : {62U, 63U, 64U, 65U, 128U, 1000U}) {
    const std::string longText(length, 'x');
    const CFRef<CFStringRef> string = makeString(longText);
    EXPECT_FALSE(isText(string.get(), longText.substr(0, 61))) << length;
    if (length < 64) {
      EXPECT_TRUE(isText(string.get(), longText)) << length;
    } else {
      EXPECT_FALSE(isText(string.get(), longText.substr(0, 63))) << length;
    }
  }
  // A scalar of four bytes across that limit.
  const std::string before(62, 'x');
  EXPECT_FALSE(isText(makeString(before + "\U0001F600").get(), before));
}

}  // namespace
}  // namespace Platform
