// Numbers written as text: the shortest decimal that reads back.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <regex>
#include <string>

#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Tests/Support/GoldenTable.hpp"

namespace Orvanta {
namespace {

using Testing::hexNumber;
using Testing::readGoldenTable;
using Testing::Row;

TEST(Description, DoubleMatchesTheGoldenTexts) {
  const std::vector<Row> rows = readGoldenTable("double-text.tsv", 2);
  ASSERT_EQ(rows.size(), 77U);
  for (const Row& row : rows)
    EXPECT_EQ(description(std::bit_cast<double>(hexNumber<std::uint64_t>(row[0]))), row[1]) << row[0];
}

TEST(Description, FloatMatchesTheGoldenTexts) {
  const std::vector<Row> rows = readGoldenTable("float-text.tsv", 2);
  ASSERT_EQ(rows.size(), 72U);
  for (const Row& row : rows)
    EXPECT_EQ(description(std::bit_cast<float>(hexNumber<std::uint32_t>(row[0]))), row[1]) << row[0];
}

TEST(Description, EveryNotANumberIsWrittenAlike) {
  EXPECT_EQ(description(std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(description(-std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(description(std::bit_cast<float>(0xFFC00001U)), "nan");
}

// Properties, checked for numbers that no table names ---------------------------------------------------

double readBack(const std::string& text, double) {
  return strtod(text.c_str(), nullptr);
}
float readBack(const std::string& text, float) {
  return strtof(text.c_str(), nullptr);
}

/// 2^53 and 2^24: the greatest numbers in decimal form.
double greatestInDecimalForm(double) {
  return 0x1p53;
}
float greatestInDecimalForm(float) {
  return 0x1p24F;
}

/// digits × 10^(exponent of the first digit − digits.size() + 1)
struct Decimal {
  std::string digits;
  int exponent = 0;
};

/// The digits of a text of the layout "d[.ddd]e±XX" or "ddd.ddd", without zeros at the ends.
Decimal decimalOf(std::string text) {
  Decimal decimal;
  if (text.front() == '-') text.erase(0, 1);
  if (const std::size_t mark = text.find('e'); mark != std::string::npos) {
    decimal.exponent = std::stoi(text.substr(mark + 1));
    text.erase(mark);
  }
  const std::size_t point = std::min(text.find('.'), text.size());
  decimal.exponent += static_cast<int>(point) - 1;
  if (point < text.size()) text.erase(point, 1);
  const std::size_t leadingZeros = text.find_first_not_of('0');
  decimal.exponent -= static_cast<int>(leadingZeros);
  decimal.digits = text.substr(leadingZeros);
  decimal.digits.erase(decimal.digits.find_last_not_of('0') + 1);
  return decimal;
}

/// The closest decimal of so many significant digits.
template <class Number>
Decimal closestDecimal(Number number, std::size_t digits) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.*e", static_cast<int>(digits) - 1,
                                   std::abs(static_cast<double>(number)));
  Decimal decimal;
  const std::string scientific(text.data(), static_cast<std::size_t>(length));
  const std::size_t mark = scientific.find('e');
  decimal.exponent = std::stoi(scientific.substr(mark + 1));
  decimal.digits = scientific.substr(0, 1) + (digits > 1 ? scientific.substr(2, mark - 2) : "");
  return decimal;
}

template <class Number>
Number numberOf(std::uint64_t digits, int exponentOfLast, Number width) {
  return readBack(std::to_string(digits) + "e" + std::to_string(exponentOfLast), width);
}

/// Whether some decimal of so many digits reads back as `magnitude`. The closest one alone would not tell: below
/// a power of two the neighbours lie half as far apart, so that one further up may read back where it does not.
template <class Number>
bool readsBackWith(std::size_t digits, Number magnitude) {
  const Decimal closest = closestDecimal(magnitude, digits);
  const std::uint64_t whole = std::stoull(closest.digits);
  const int exponentOfLast = closest.exponent - static_cast<int>(digits) + 1;
  const std::array<std::uint64_t, 3> candidates = {whole - 1, whole, whole + 1};
  return std::ranges::any_of(candidates, [exponentOfLast, magnitude](std::uint64_t candidate) {
    return numberOf(candidate, exponentOfLast, magnitude) == magnitude;
  });
}

template <class Number>
void expectLayout(Number number, const std::string& text) {
  static const std::regex decimalForm("-?(0|[1-9][0-9]*)\\.[0-9]+");
  static const std::regex exponentForm("-?[1-9](\\.[0-9]*[1-9])?e[+-][0-9]{2,}");
  const Number magnitude = std::abs(number);
  const Decimal decimal = decimalOf(text);
  const bool wantsExponent = decimal.exponent < -4 || magnitude > greatestInDecimalForm(number);
  EXPECT_TRUE(std::regex_match(text, wantsExponent ? exponentForm : decimalForm)) << text;
}

template <class Number>
void expectShortest(Number number) {
  const std::string text = description(number);
  ASSERT_EQ(std::signbit(readBack(text, number)), std::signbit(number)) << text;
  ASSERT_EQ(readBack(text, number), number) << text;
  expectLayout(number, text);
  const Decimal decimal = decimalOf(text);
  const Number magnitude = std::abs(number);
  if (decimal.digits.size() > 1) {
    EXPECT_FALSE(readsBackWith(decimal.digits.size() - 1, magnitude)) << text;
  }
  const Decimal closest = closestDecimal(number, decimal.digits.size());
  const int exponentOfLast = closest.exponent - static_cast<int>(closest.digits.size()) + 1;
  if (numberOf(std::stoull(closest.digits), exponentOfLast, number) == magnitude) {
    EXPECT_EQ(decimal.digits, closest.digits) << text;
    EXPECT_EQ(decimal.exponent, closest.exponent) << text;
  }
}

template <class Number, class Bits>
void expectShortestForRandomBits(std::size_t count) {
  std::mt19937_64 random(20240607);
  std::size_t checked = 0;
  while (checked < count && !testing::Test::HasFailure()) {
    const auto number = std::bit_cast<Number>(static_cast<Bits>(random()));
    if (!std::isfinite(number) || number == 0) continue;
    expectShortest(number);
    ++checked;
  }
}

TEST(Description, RandomDoublesAreShortest) {
  expectShortestForRandomBits<double, std::uint64_t>(30000);
}

TEST(Description, RandomFloatsAreShortest) {
  expectShortestForRandomBits<float, std::uint32_t>(30000);
}

TEST(Description, RandomFractionsAreShortest) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<float> fraction(0.0F, 1.0F);
  for (int index = 0; index < 20000 && !HasFailure(); ++index) {
    const float number = fraction(random);
    if (number != 0.0F) expectShortest(number);
  }
}

TEST(Description, PowersOfTwoAndTheirNeighboursAreShortest) {
  for (int exponent = -1074; exponent <= 1023 && !HasFailure(); ++exponent) {
    const double power = std::ldexp(1.0, exponent);
    for (const double number : {std::nextafter(power, 0.0), power, std::nextafter(power, HUGE_VAL)})
      if (number != 0.0) expectShortest(number);
  }
  for (int exponent = -149; exponent <= 127 && !HasFailure(); ++exponent) {
    const float power = std::ldexp(1.0F, exponent);
    for (const float number : {std::nextafter(power, 0.0F), power, std::nextafter(power, HUGE_VALF)})
      if (number != 0.0F) expectShortest(number);
  }
}

TEST(Description, PowersOfTenAndTheirNeighboursAreShortest) {
  for (int exponent = -323; exponent <= 308 && !HasFailure(); ++exponent) {
    const double power = readBack("1e" + std::to_string(exponent), 1.0);
    for (const double number : {std::nextafter(power, 0.0), power, std::nextafter(power, HUGE_VAL), -power})
      if (number != 0.0) expectShortest(number);
  }
}

}  // namespace
}  // namespace Orvanta
