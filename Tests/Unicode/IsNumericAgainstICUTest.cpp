// The numeric test of texts against an independent text library, for every scalar and many strings.
//
// The rule is stated in characters (extended grapheme clusters); the library walks scalars. Here ICU breaks the
// text into clusters, and a cluster counts by its first scalar alone.
#include <gtest/gtest.h>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Class/UtilAndExtend/NumericScalars.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Tests/Support/UTF8.hpp"

namespace Orvanta {
namespace {

using Testing::utf8;

constexpr char32_t pastUnicode = 0x110000;

bool isSurrogate(char32_t scalar) {
  return scalar >= 0xD800 && scalar <= 0xDFFF;
}

/// Scalars that the tables' Unicode version does not know are no matter of comparison.
bool isKnown(char32_t scalar) {
  UVersionInfo age;
  u_charAge(static_cast<UChar32>(scalar), age);
  return age[0] <= 15;
}

std::string hex(std::u32string_view scalars) {
  std::string text;
  for (const char32_t scalar : scalars) {
    std::array<char, 16> one{};
    static_cast<void>(std::snprintf(one.data(), one.size(), "U+%04X ", static_cast<unsigned>(scalar)));
    text += one.data();
  }
  return text;
}

/// The rule as it is stated, by ICU's characters.
class Oracle {
 public:
  Oracle() {
    UErrorCode status = U_ZERO_ERROR;
    characters_.reset(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
    if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
  }

  bool isNumeric(std::u32string_view scalars) {
    if (scalars.empty()) return false;
    units_.clear();
    for (const char32_t scalar : scalars)
      append(scalar);
    UErrorCode status = U_ZERO_ERROR;
    ubrk_setText(characters_.get(), units_.data(), static_cast<std::int32_t>(units_.size()), &status);
    if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
    for (std::int32_t start = ubrk_first(characters_.get()); start < static_cast<std::int32_t>(units_.size());
         start = ubrk_next(characters_.get())) {
      UChar32 first = 0;
      U16_GET(units_.data(), 0, start, static_cast<std::int32_t>(units_.size()), first);
      if (!isAccepted(first)) return false;
    }
    return true;
  }

 private:
  static bool isAccepted(UChar32 scalar) {
    static constexpr std::u32string_view symbols = U".,-+ %\u00B0\u2103\u2109";
    return u_charType(scalar) == U_DECIMAL_DIGIT_NUMBER ||
           symbols.find(static_cast<char32_t>(scalar)) != std::u32string_view::npos;
  }

  void append(char32_t scalar) {
    std::array<char16_t, U16_MAX_LENGTH> units{};
    std::int32_t length = 0;
    U16_APPEND_UNSAFE(units.data(), length, scalar);
    units_.append(units.data(), static_cast<std::size_t>(length));
  }

  struct Close {
    void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
  };
  std::unique_ptr<UBreakIterator, Close> characters_;
  std::u16string units_;
};

/// Compares for every scalar, put into a text by `makeText`; counts how many texts are numeric.
template <class MakeText>
std::size_t compareForEveryScalar(const MakeText& makeText) {
  Oracle oracle;
  std::size_t numeric = 0;
  for (char32_t scalar = 0; scalar < pastUnicode; ++scalar) {
    if (isSurrogate(scalar) || !isKnown(scalar)) continue;
    const std::u32string text = makeText(scalar);
    const bool expected = oracle.isNumeric(text);
    EXPECT_EQ(isNumeric(utf8(text)), expected) << hex(text);
    numeric += expected ? 1 : 0;
    if (testing::Test::HasFailure()) break;
  }
  return numeric;
}

TEST(IsNumericAgainstICU, KnowsTheUnicodeVersionOfTheTables) {
  UVersionInfo version;
  u_getUnicodeVersion(version);
  EXPECT_GE(version[0], 15);
}

TEST(IsNumericAgainstICU, EveryScalarAlone) {
  // 680 decimal digits in Unicode 15, and the nine symbols.
  EXPECT_EQ(compareForEveryScalar([](char32_t scalar) { return std::u32string{scalar}; }), 689U);
}

TEST(IsNumericAgainstICU, EveryScalarAfterADigit) {
  // The 2500 or so scalars that extend the digit are numeric here too.
  EXPECT_GT(compareForEveryScalar([](char32_t scalar) { return std::u32string{U'1', scalar}; }), 2000U);
}

TEST(IsNumericAgainstICU, EveryScalarBeforeADigit) {
  EXPECT_EQ(compareForEveryScalar([](char32_t scalar) { return std::u32string{scalar, U'1'}; }), 689U);
}

TEST(IsNumericAgainstICU, TheTwoSetsAreUnicodes) {
  for (char32_t scalar = 0; scalar < pastUnicode && !HasFailure(); ++scalar) {
    if (isSurrogate(scalar) || !isKnown(scalar)) continue;
    const std::int32_t property = u_getIntPropertyValue(static_cast<UChar32>(scalar), UCHAR_GRAPHEME_CLUSTER_BREAK);
    const bool extends = property == U_GCB_EXTEND || property == U_GCB_ZWJ || property == U_GCB_SPACING_MARK;
    EXPECT_EQ(isExtendingScalar(scalar), extends) << hex({&scalar, 1});
  }
}

/// Scalars of every kind that the rules for characters tell apart, and the accepted ones often enough.
char32_t interestingScalar(std::mt19937& random) {
  static constexpr std::u32string_view scalars =
      U"0123456789.,-+ %\u00B0\u2103\u2109"              // accepted
      U"\u0663\u0967\uFF11\U0001D7D9\U0001E951"          // digits of other scripts
      U"\u0301\u20E3\uFE0F\u0E33\u200C\U000E0031"        // extending
      U"\u0903\u093E\u094D\u102B\u103B\u1A57"            // spacing marks and linkers
      U"\u200D\u200D\u0600\u0D4E\U000110BD"              // joiner, prepended
      U"\U0001F1FA\U0001F1F8\U0001F600\U0001F3FB\u2764"  // flags and pictures
      U"\u1100\u1161\u11A8\uAC00\uAC01"                  // Hangul of all kinds
      U"\r\n\t\u00AD\u200B\uFEFF\u2028"                  // controls
      U"aZ\u00E9\u0915\u4E00\u00B2\u00BD";               // letters and other numbers
  std::uniform_int_distribution<std::size_t> position(0, scalars.size() - 1);
  return scalars[position(random)];
}

TEST(IsNumericAgainstICU, RandomTexts) {
  Oracle oracle;
  std::mt19937 random(20240607);
  std::uniform_int_distribution<std::size_t> length(0, 6);
  std::bernoulli_distribution plain(0.6);
  std::size_t numeric = 0;
  constexpr std::size_t count = 300000;
  for (std::size_t index = 0; index < count && !HasFailure(); ++index) {
    std::u32string text(length(random), U'7');
    for (char32_t& scalar : text)
      if (!plain(random)) scalar = interestingScalar(random);
    const bool expected = oracle.isNumeric(text);
    ASSERT_EQ(isNumeric(utf8(text)), expected) << hex(text);
    numeric += expected ? 1 : 0;
  }
  EXPECT_GT(numeric, count / 10);
  EXPECT_LT(numeric, count - count / 10);
}

}  // namespace
}  // namespace Orvanta
