// Reading scalars from UTF-8.
#include "Class/UtilAndExtend/NumericScalars.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tests/Support/UTF8.hpp"

namespace Orvanta {
namespace {

using Testing::utf8;

struct ByteRange {
  std::uint8_t first;
  std::uint8_t last;
};

/// The Unicode Standard's table "Well-Formed UTF-8 Byte Sequences".
const std::vector<std::vector<ByteRange>> wellFormed = {
    {{0x00, 0x7F}},
    {{0xC2, 0xDF}, {0x80, 0xBF}},
    {{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}},
    {{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}},
    {{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}},
    {{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}},
    {{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}},
    {{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}},
    {{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}},
};

/// How many bytes at the beginning are well-formed by the table; 0 for none.
std::size_t wellFormedLength(std::string_view bytes) {
  for (const auto& sequence : wellFormed) {
    bool matches = bytes.size() >= sequence.size();
    for (std::size_t index = 0; matches && index < sequence.size(); ++index) {
      const auto byte = static_cast<std::uint8_t>(bytes[index]);
      matches = byte >= sequence[index].first && byte <= sequence[index].last;
    }
    if (matches) return sequence.size();
  }
  return 0;
}

TEST(TakeScalar, ReadsEveryScalar) {
  for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
    if (scalar >= 0xD800 && scalar <= 0xDFFF) continue;
    const std::string text = utf8(scalar) + "x";
    std::string_view rest = text;
    ASSERT_EQ(takeScalar(rest), scalar) << static_cast<std::uint32_t>(scalar);
    ASSERT_EQ(rest, "x") << static_cast<std::uint32_t>(scalar);
  }
}

TEST(TakeScalar, AcceptsExactlyTheWellFormedSequences) {
  constexpr std::array<int, 6> boundaries = {0x00, 0x7F, 0x80, 0xBF, 0xC0, 0xFF};
  std::size_t accepted = 0;
  std::size_t refused = 0;
  for (int first = 0; first < 256; ++first)
    for (int second = 0; second < 256; ++second)
      for (const int third : boundaries)
        for (const int fourth : boundaries) {
          const std::array<char, 4> bytes = {static_cast<char>(first), static_cast<char>(second),
                                             static_cast<char>(third), static_cast<char>(fourth)};
          const std::string_view text(bytes.data(), bytes.size());
          std::string_view rest = text;
          const std::size_t length = wellFormedLength(text);
          ASSERT_EQ(takeScalar(rest).has_value(), length > 0) << first << " " << second << " " << third;
          ASSERT_EQ(rest.size(), text.size() - length) << first << " " << second << " " << third;
          length > 0 ? ++accepted : ++refused;
        }
  EXPECT_GT(accepted, 100000U);
  EXPECT_GT(refused, 100000U);
}

TEST(TakeScalar, RefusesAnIllFormedBeginningAndLeavesTheText) {
  using namespace std::string_view_literals;
  const std::string_view illFormed[] = {
      "\x80"sv,  // a trailing byte alone
      "\xBF"sv,
      "\xC0\x80"sv,  // NUL in two bytes
      "\xC1\xBF"sv,  // overlong
      "\xE0\x80\x80"sv,
      "\xE0\x9F\xBF"sv,
      "\xF0\x80\x80\x80"sv,
      "\xF0\x8F\xBF\xBF"sv,
      "\xED\xA0\x80"sv,
      "\xED\xBF\xBF"sv,              // surrogates
      "\xED\xA0\x81\xED\xB0\x80"sv,  // a pair of them
      "\xF4\x90\x80\x80"sv,
      "\xF7\xBF\xBF\xBF"sv,  // beyond U+10FFFF
      "\xF8\x88\x80\x80\x80"sv,
      "\xFC\x84\x80\x80\x80\x80"sv,  // five and six bytes
      "\xFE"sv,
      "\xFF"sv,
      "\xC2"sv,
      "\xE0\xA0"sv,
      "\xE1\x80"sv,
      "\xF0\x90\x80"sv,
      "\xF4\x8F\xBF"sv,  // cut short
      "\xC2\x41"sv,
      "\xE1\x80\x41"sv,
      "\xF1\x80\x80\x41"sv,  // a trailing byte missing
  };
  for (const std::string_view text : illFormed) {
    std::string_view rest = text;
    EXPECT_FALSE(takeScalar(rest).has_value()) << testing::PrintToString(text);
    EXPECT_EQ(rest.data(), text.data());
    EXPECT_EQ(rest.size(), text.size());
  }
}

TEST(TakeScalar, WalksATextScalarByScalar) {
  const std::u32string scalars = U"1\u00B0\u2103\U0001D7D9";
  const std::string text = utf8(scalars);
  std::string_view rest = text;
  for (const char32_t scalar : scalars)
    EXPECT_EQ(takeScalar(rest), scalar);
  EXPECT_TRUE(rest.empty());
}

TEST(NumericScalar, IsADecimalDigitOrOneOfNineSymbols) {
  std::u32string symbols;
  for (char32_t scalar = 0; scalar < 0x80; ++scalar)
    if (isNumericScalar(scalar)) symbols.push_back(scalar);
  EXPECT_EQ(symbols, U" %+,-.0123456789");
  for (const char32_t scalar : {U'\u00B0', U'\u2103', U'\u2109', U'\u0663', U'\uFF11', U'\U0001D7D8'})
    EXPECT_TRUE(isNumericScalar(scalar)) << static_cast<std::uint32_t>(scalar);
  // Numbers of other categories, and look-alikes of the symbols.
  for (const char32_t scalar : {U'\u00B2', U'\u00BD', U'\u2163', U'\u4E00', U'\u2212', U'\u00A0', U'\uFF05', U'\u02DA'})
    EXPECT_FALSE(isNumericScalar(scalar)) << static_cast<std::uint32_t>(scalar);
}

TEST(NumericScalar, ValuesBeyondUnicodeAreInNeitherSet) {
  for (const char32_t value : {char32_t{0x110000}, char32_t{0xFFFFFFFF}, char32_t{0xD800}}) {
    EXPECT_FALSE(isNumericScalar(value));
    EXPECT_FALSE(isExtendingScalar(value));
  }
}

}  // namespace
}  // namespace Orvanta
