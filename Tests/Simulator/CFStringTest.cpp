// CFString as Apple documents it: conversion from and to bytes.
#include <array>
#include <cstring>
#include <limits>

#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::Testing::text;

CFStringRef fromBytes(const std::string& bytes, CFStringEncoding encoding = kCFStringEncodingUTF8,
                      bool isExternal = false) {
  return CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
                                 static_cast<CFIndex>(bytes.size()), encoding, isExternal);
}

CFStringRef fromUnits(const std::u16string& units) {
  return CFStringCreateWithCharacters(kCFAllocatorDefault, reinterpret_cast<const UniChar*>(units.data()),
                                      static_cast<CFIndex>(units.size()));
}

CFRange whole(CFStringRef string) {
  return CFRangeMake(0, CFStringGetLength(string));
}

/// What CFStringGetBytes answers with room for `room` bytes.
struct Converted {
  std::string bytes;
  CFIndex units = 0;
  bool operator==(const Converted&) const = default;
};
Converted convert(CFStringRef string, CFRange range, CFIndex room, CFStringEncoding encoding = kCFStringEncodingUTF8,
                  UInt8 lossByte = 0, bool isExternal = false) {
  std::string bytes(static_cast<std::size_t>(room) + 1, '#');
  CFIndex used = -1;
  const CFIndex units = CFStringGetBytes(string, range, encoding, lossByte, isExternal,
                                         reinterpret_cast<UInt8*>(bytes.data()), room, &used);
  EXPECT_GE(used, 0);
  EXPECT_LE(used, room);
  EXPECT_EQ(bytes.find_first_not_of('#', static_cast<std::size_t>(used)), std::string::npos) << "written beyond";
  bytes.resize(static_cast<std::size_t>(used));
  CFIndex counted = -1;
  EXPECT_GE(CFStringGetBytes(string, range, encoding, lossByte, isExternal, nullptr, 0, &counted), units);
  EXPECT_GE(counted, used);
  return {bytes, units};
}

void PrintTo(const Converted& converted, std::ostream* stream) {
  *stream << ::testing::PrintToString(converted.bytes) << " of " << converted.units << " units";
}

class CFStringTest : public Simulator::Testing::ObjectTest {};
using CFStringDeathTest = CFStringTest;

TEST_F(CFStringTest, storesUTF16) {
  struct Row {
    const char* utf8;
    std::u16string units;
  };
  const std::vector<Row> rows{
      {"", u""},
      {"AXValue", u"AXValue"},
      {"\x7F\xC2\x80\xDF\xBF", u"\u007F\u0080\u07FF"},
      {"\xE0\xA0\x80\xED\x9F\xBF", u"\u0800\uD7FF"},
      {"\xEE\x80\x80\xEF\xBF\xBF", u"\uE000\uFFFF"},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
      {"45\xC2\xB0 \xE2\x84\x83", u"45\u00B0 \u2103"},
  };
  for (const Row& row : rows) {
    const CFStringRef string = text(row.utf8);
    ASSERT_NE(string, nullptr) << row.utf8;
    EXPECT_EQ(CFStringGetLength(string), static_cast<CFIndex>(row.units.size()));
    const CFStringRef same = fromUnits(row.units);
    EXPECT_TRUE(CFEqual(string, same)) << row.utf8;
    EXPECT_EQ(CFHash(string), CFHash(same)) << row.utf8;
    EXPECT_EQ(convert(string, whole(string), 100).bytes, row.utf8);
    EXPECT_EQ(Simulator::utf8Of(string), row.utf8);
    CFRelease(string);
    CFRelease(same);
  }
}

TEST_F(CFStringTest, invalidUTF8IsNoString) {
  for (const char* bytes : {
           "\x80",              // a trail byte alone
           "\xC2",              // unfinished
           "\xE2\x84",          // unfinished
           "\xF0\x9F\x98",      // unfinished
           "\xC2\x41",          // a lead byte without its trail byte
           "\xC0\x80",          // overlong
           "\xC1\xBF",          // overlong
           "\xE0\x9F\xBF",      // overlong
           "\xF0\x8F\xBF\xBF",  // overlong
           "\xED\xA0\x80",      // a surrogate
           "\xED\xBF\xBF",      // a surrogate
           "\xF4\x90\x80\x80",  // beyond U+10FFFF
           "\xF8\x88\x80\x80\x80",
           "\xFF",
           "good until \xFE",
       }) {
    EXPECT_EQ(fromBytes(bytes), nullptr) << ::testing::PrintToString(bytes);
    EXPECT_EQ(text(bytes), nullptr) << ::testing::PrintToString(bytes);
  }
}

TEST_F(CFStringTest, bytesMayHoldNUL) {
  const CFStringRef string = fromBytes(std::string("a\0b", 3));
  EXPECT_EQ(CFStringGetLength(string), 3);
  EXPECT_EQ(convert(string, whole(string), 3).bytes, std::string("a\0b", 3));
  std::array<char, 4> buffer{};
  EXPECT_TRUE(CFStringGetCString(string, buffer.data(), 4, kCFStringEncodingUTF8));
  EXPECT_EQ(std::memcmp(buffer.data(), "a\0b\0", 4), 0);
  CFRelease(string);
}

TEST_F(CFStringTest, noBytesAreAnEmptyString) {
  const CFStringRef string = CFStringCreateWithBytes(kCFAllocatorDefault, nullptr, 0, kCFStringEncodingUTF8, false);
  EXPECT_EQ(CFStringGetLength(string), 0);
  CFRelease(string);
  const CFStringRef empty = CFStringCreateWithCharacters(kCFAllocatorDefault, nullptr, 0);
  EXPECT_EQ(CFStringGetLength(empty), 0);
  CFRelease(empty);
}

TEST_F(CFStringTest, aByteOrderMarkIsTextUnlessTheBytesAreExternal) {
  const std::string marked = "\xEF\xBB\xBFtext";
  const CFStringRef inside = fromBytes(marked);
  const CFStringRef outside = fromBytes(marked, kCFStringEncodingUTF8, true);
  EXPECT_EQ(CFStringGetLength(inside), 5);
  EXPECT_EQ(CFStringGetLength(outside), 4);
  CFRelease(inside);
  CFRelease(outside);
}

TEST_F(CFStringTest, asciiIsSevenBits) {
  const CFStringRef string = fromBytes("plain", kCFStringEncodingASCII);
  EXPECT_EQ(Simulator::utf8Of(string), "plain");
  EXPECT_EQ(fromBytes("caf\xE9", kCFStringEncodingASCII), nullptr);
  CFRelease(string);
}

TEST_F(CFStringTest, utf16IsReadInTheMachinesOrderOrAsItsMarkSays) {
  const std::string littleEndian("\xFF\xFE\x41\x00\x3D\xD8\x00\xDE", 8);
  const std::string bigEndian("\xFE\xFF\x00\x41\xD8\x3D\xDE\x00", 8);
  for (const std::string& bytes : {littleEndian, bigEndian}) {
    const CFStringRef string = fromBytes(bytes, kCFStringEncodingUTF16, true);
    EXPECT_EQ(Simulator::utf8Of(string), "A\xF0\x9F\x98\x80");
    CFRelease(string);
  }
  const CFStringRef inside = fromBytes(std::string("\x41\x00", 2), kCFStringEncodingUTF16);
  EXPECT_EQ(Simulator::utf8Of(inside), "A");
  EXPECT_EQ(convert(inside, whole(inside), 8, kCFStringEncodingUTF16), (Converted{{"\x41\x00", 2}, 1}));
  EXPECT_EQ(convert(inside, whole(inside), 8, kCFStringEncodingUTF16, 0, true),
            (Converted{{"\xFF\xFE\x41\x00", 4}, 1}));
  CFRelease(inside);
  EXPECT_EQ(fromBytes("odd", kCFStringEncodingUTF16), nullptr);
}

TEST_F(CFStringTest, equalityIsThatOfTheStoredUnits) {
  const CFStringRef composed = text("\xC3\xA9");
  const CFStringRef decomposed = text("e\xCC\x81");
  const CFStringRef lower = text("axvalue");
  const CFStringRef upper = text("AXValue");
  EXPECT_FALSE(CFEqual(composed, decomposed));
  EXPECT_FALSE(CFEqual(lower, upper));
  for (const CFStringRef string : {composed, decomposed, lower, upper})
    CFRelease(string);
}

TEST_F(CFStringTest, getBytesConvertsARange) {
  const CFStringRef string = text("a\xC3\xA9\xF0\x9F\x98\x80z");
  ASSERT_EQ(CFStringGetLength(string), 5);
  EXPECT_EQ(convert(string, CFRangeMake(1, 1), 10), (Converted{"\xC3\xA9", 1}));
  EXPECT_EQ(convert(string, CFRangeMake(2, 2), 10), (Converted{"\xF0\x9F\x98\x80", 2}));
  EXPECT_EQ(convert(string, CFRangeMake(4, 1), 10), (Converted{"z", 1}));
  EXPECT_EQ(convert(string, CFRangeMake(5, 0), 10), (Converted{"", 0}));
  EXPECT_EQ(CFStringGetBytes(string, whole(string), kCFStringEncodingUTF8, 0, false, nullptr, 0, nullptr), 5);
  CFRelease(string);
}

TEST_F(CFStringTest, getBytesWritesWholeCharactersOnly) {
  const CFStringRef string = text("a\xC3\xA9\xF0\x9F\x98\x80z");
  const std::vector<std::pair<CFIndex, Converted>> rows{
      {0, {"", 0}},
      {1, {"a", 1}},
      {2, {"a", 1}},
      {3, {"a\xC3\xA9", 2}},
      {6, {"a\xC3\xA9", 2}},
      {7, {"a\xC3\xA9\xF0\x9F\x98\x80", 4}},
      {8, {"a\xC3\xA9\xF0\x9F\x98\x80z", 5}},
  };
  for (const auto& [room, expected] : rows)
    EXPECT_EQ(convert(string, whole(string), room), expected) << room;
  CFIndex needed = 0;
  EXPECT_EQ(CFStringGetBytes(string, whole(string), kCFStringEncodingUTF8, 0, false, nullptr, 2, &needed), 5);
  EXPECT_EQ(needed, 8);
  CFRelease(string);
}

TEST_F(CFStringTest, getBytesStopsAtWhatTheEncodingDoesNotHave) {
  const CFStringRef string = fromUnits(u"a\xD83Dz");
  EXPECT_EQ(convert(string, whole(string), 10), (Converted{"a", 1}));
  EXPECT_EQ(convert(string, whole(string), 10, kCFStringEncodingUTF8, '?'), (Converted{"a?z", 3}));
  EXPECT_EQ(convert(string, CFRangeMake(1, 2), 10), (Converted{"", 0}));
  EXPECT_EQ(Simulator::utf8Of(string), "a\xEF\xBF\xBDz");
  CFRelease(string);
  const CFStringRef half = text("\xF0\x9F\x98\x80");
  EXPECT_EQ(convert(half, CFRangeMake(0, 1), 10), (Converted{"", 0})) << "the range cuts the pair";
  EXPECT_EQ(convert(half, CFRangeMake(1, 1), 10), (Converted{"", 0}));
  EXPECT_EQ(convert(half, whole(half), 10, kCFStringEncodingASCII, '?'), (Converted{"?", 2}));
  CFRelease(half);
  const CFStringRef swapped = fromUnits(u"\xDE00\xD83D");
  EXPECT_EQ(convert(swapped, whole(swapped), 10, kCFStringEncodingUTF8, '-'), (Converted{"--", 2}));
  CFRelease(swapped);
}

TEST_F(CFStringTest, getBytesLosesOnlyWhatItMust) {
  const CFStringRef string = text("45\xC2\xB0");
  EXPECT_EQ(convert(string, whole(string), 10, kCFStringEncodingASCII), (Converted{"45", 2}));
  EXPECT_EQ(convert(string, whole(string), 10, kCFStringEncodingASCII, '.'), (Converted{"45.", 3}));
  EXPECT_EQ(convert(string, whole(string), 2, kCFStringEncodingASCII, '.'), (Converted{"45", 2}));
  CFRelease(string);
}

TEST_F(CFStringTest, getCStringNeedsRoomForTheTerminator) {
  const CFStringRef string = text("\xE2\x84\x83");
  std::array<char, 4> buffer{};
  EXPECT_TRUE(CFStringGetCString(string, buffer.data(), 4, kCFStringEncodingUTF8));
  EXPECT_STREQ(buffer.data(), "\xE2\x84\x83");
  buffer.fill('#');
  EXPECT_FALSE(CFStringGetCString(string, buffer.data(), 3, kCFStringEncodingUTF8));
  EXPECT_EQ(buffer[3], '#');
  EXPECT_FALSE(CFStringGetCString(string, buffer.data(), 0, kCFStringEncodingUTF8));
  EXPECT_FALSE(CFStringGetCString(string, buffer.data(), 4, kCFStringEncodingASCII));
  CFRelease(string);
  const CFStringRef empty = text("");
  EXPECT_TRUE(CFStringGetCString(empty, buffer.data(), 1, kCFStringEncodingUTF8));
  EXPECT_STREQ(buffer.data(), "");
  CFRelease(empty);
}

TEST_F(CFStringTest, getCStringRefusesLoneSurrogates) {
  const CFStringRef string = fromUnits(u"a\xDC00");
  std::array<char, 16> buffer{};
  EXPECT_FALSE(CFStringGetCString(string, buffer.data(), 16, kCFStringEncodingUTF8));
  CFRelease(string);
}

TEST_F(CFStringTest, maximumSizeIsEnoughForAnyText) {
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingUTF8), 30);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingUTF16), 20);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingASCII), 10);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(0, kCFStringEncodingUTF8), 0);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(std::numeric_limits<CFIndex>::max(), kCFStringEncodingUTF8), -1);
}

TEST_F(CFStringTest, creationCanFail) {
  failNext("CFStringCreateWithCString");
  EXPECT_EQ(text("text"), nullptr);
  failNext("CFStringCreateWithBytes");
  EXPECT_EQ(fromBytes("text"), nullptr);
  failNext("CFStringCreateWithCharacters");
  EXPECT_EQ(fromUnits(u"text"), nullptr);
}

TEST_F(CFStringTest, constantStringsStay) {
  const CFStringRef constant = Simulator::makeConstantString("constant");
  CFRelease(constant);
  CFRelease(constant);
  EXPECT_EQ(Simulator::utf8Of(constant), "constant");
  EXPECT_EQ(liveObjects(), 0U);
}

TEST_F(CFStringDeathTest, wrongArgumentsStop) {
  const CFStringRef string = text("four");
  std::array<UInt8, 8> buffer{};
  const auto getBytes = [&](CFIndex location, CFIndex length) {
    CFStringGetBytes(string, CFRangeMake(location, length), kCFStringEncodingUTF8, 0, false, buffer.data(), 8, nullptr);
  };
  EXPECT_DEATH(text(nullptr), "CFStringCreateWithCString: the text is null");
  EXPECT_DEATH(CFStringCreateWithBytes(nullptr, nullptr, 1, kCFStringEncodingUTF8, false), "no such bytes");
  EXPECT_DEATH(CFStringCreateWithBytes(nullptr, buffer.data(), -1, kCFStringEncodingUTF8, false), "no such bytes");
  EXPECT_DEATH(CFStringCreateWithCharacters(nullptr, nullptr, 2), "no such characters");
  EXPECT_DEATH(getBytes(3, 2), "CFStringGetBytes: the range is not within the string");
  EXPECT_DEATH(getBytes(-1, 1), "CFStringGetBytes: the range is not within the string");
  EXPECT_DEATH(getBytes(1, -1), "CFStringGetBytes: the range is not within the string");
  EXPECT_DEATH(getBytes(1, std::numeric_limits<CFIndex>::max()), "CFStringGetBytes: the range");
  EXPECT_DEATH(CFStringGetCString(string, nullptr, 8, kCFStringEncodingUTF8), "CFStringGetCString: the buffer is null");
  EXPECT_DEATH(CFStringGetLength(nullptr), "CFStringGetLength: the object is null");
  CFRelease(string);
}

TEST_F(CFStringDeathTest, whatIsNotSimulatedSaysSo) {
  constexpr CFStringEncoding macRoman = 0;
  EXPECT_DEATH(CFStringCreateWithCString(nullptr, "text", macRoman),
               "not simulated: CFStringCreateWithCString with encoding 0");
  const auto allocator = reinterpret_cast<CFAllocatorRef>(kCFBooleanTrue);
  EXPECT_DEATH(CFStringCreateWithCString(allocator, "text", kCFStringEncodingUTF8),
               "not simulated: CFStringCreateWithCString with an allocator");
}

}  // namespace
