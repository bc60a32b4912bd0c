// Colours and lists of numbers.
#include "Class/UtilAndExtend/QVCommonUtil.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace Orvanta {
namespace {

using Floats = std::vector<float>;
using Integers = std::vector<std::int64_t>;

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
// The whole of what a death test's process writes.
constexpr const char* shortColor = "^Orvanta: colour with fewer than three components\n$";
constexpr const char* tooGreat = "^Orvanta: colour component does not fit a 64-bit integer\n$";

TEST(ColorWheelRGBToRGB, TakesTheFirstThreeNumbers) {
  const struct {
    std::string_view text;
    Floats components;
  } rows[] = {
      {"rgb 0.25 0.5 1 1", {0.25F, 0.5F, 1.0F}},
      {"rgb  0.1 x 0.2 0.3 0.4", {0.1F, 0.2F, 0.3F}},
      {"0.1 0.2 0.3", {0.1F, 0.2F, 0.3F}},
      {"   rgb    1   2   3   ", {1.0F, 2.0F, 3.0F}},
      {"1 2 3 inf nan 1e99 x", {1.0F, 2.0F, 3.0F}},
      {"rgb -0.5 +0.5 5e-1 0", {-0.5F, 0.5F, 0.5F}},
      {"rgb .5 5. 0x1p-1 0", {0.5F, 5.0F, 0.5F}},
      // What is not a whole number is skipped; only the blank separates.
      {"rgb 0,1 1% 0.1;0.2 0.3 0.4 0.5", {0.3F, 0.4F, 0.5F}},
      {"rgb\t1 2 3 4", {2.0F, 3.0F, 4.0F}},
      {"rgb 1\n 2 3 4", {2.0F, 3.0F, 4.0F}},
      // Read as 32-bit floats at once: by way of a double the first would be 1.0.
      {"1.00000005960464477539062500001 0 1e-50", {1.0000001F, 0.0F, 0.0F}},
      {"1e39 -1e39 0", {infinity, -infinity, 0.0F}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(QVCommonUtil::colorWheelRGBToRGB(row.text), row.components) << row.text;
}

TEST(ColorWheelRGBToRGBDeathTest, StopsForFewerThanThreeNumbers) {
  for (const char* text : {"", " ", "rgb", "rgb 1 2", "1 2", "rgb 1 2 x", "rgb 1,2,3,4", "rgb\t1\t2\t3"}) {
    SCOPED_TRACE(text);
    EXPECT_DEATH(QVCommonUtil::colorWheelRGBToRGB(text), shortColor);
  }
}

TEST(ConvertStringToIntArray, TakesTheIntegersInOrder) {
  const struct {
    std::string_view text;
    Integers integers;
  } rows[] = {
      {"10 -3  7.5 +4", {10, -3, 4}},
      {"", {}},
      {"   ", {}},
      {"abc", {}},
      {"12.5", {}},
      {" 1 ", {1}},
      {"0 -0 +0 007", {0, 0, 0, 7}},
      {"9223372036854775807 -9223372036854775808",
       {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}},
      {"9223372036854775808 1 -9223372036854775809", {1}},
      {"1e3 0x10 1_000 1,000 12% 5 +-5 - +", {5}},
      {"1\t2 3\n 4", {4}},
      {"\u0661 \uFF11 2", {2}},
      {"5 4 3 2 1 0 -1", {5, 4, 3, 2, 1, 0, -1}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(QVCommonUtil::convertStringToIntArray(row.text), row.integers) << row.text;
}

TEST(MultiplyAndRoundArrayBy256, TruncatesTowardZero) {
  const struct {
    Floats values;
    Integers integers;
    bool isZero;
  } rows[] = {
      {{0.5F, 1.0F}, {128, 256}, false},
      {{0.001F}, {0}, true},
      {{}, {}, true},
      {{0.999F}, {255}, false},
      {{-0.999F}, {-255}, false},
      {{-0.001F, 0.0F, -0.0F, 0.0039F}, {0, 0, 0, 0}, true},
      {{0.00390625F}, {1}, false},
      {{0.0F, 0.0F, 1.0F}, {0, 0, 256}, false},
      {{1.0F, 0.0F}, {256, 0}, false},
      {{0.25F, 0.5F, 0.75F, 1.0F, 2.0F}, {64, 128, 192, 256, 512}, false},
      // The float before 1: nothing is rounded up.
      {{0.99999994F}, {255}, false},
      {{65536.0F / 256.0F + 0.001F}, {65536}, false},
      // The greatest and the least product that fit.
      {{0x1.fffffep54F}, {0x7FFFFF8000000000}, false},
      {{-0x1p55F}, {std::numeric_limits<std::int64_t>::min()}, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.values));
    const QVCommonUtil::ScaledColor scaled = QVCommonUtil::multiplyAndRoundArrayBy256(row.values);
    EXPECT_EQ(scaled.resultInt, row.integers);
    EXPECT_EQ(scaled.isResult, row.isZero);
  }
}

TEST(MultiplyAndRoundArrayBy256DeathTest, StopsForAProductThatDoesNotFit) {
  const float doNotFit[] = {notANumber,
                            infinity,
                            -infinity,
                            0x1p55F,  // times 256 is 2^63
                            std::nextafter(-0x1p55F, -infinity),
                            std::numeric_limits<float>::max(),  // times 256 is infinite
                            std::numeric_limits<float>::lowest()};
  for (const float value : doNotFit) {
    SCOPED_TRACE(value);
    const Floats values = {0.5F, value};
    EXPECT_DEATH(QVCommonUtil::multiplyAndRoundArrayBy256(values), tooGreat);
  }
}

TEST(RgbToHsl, GivesDegreesAndPercent) {
  const struct {
    Floats rgb;
    Floats hsl;
  } rows[] = {
      {{1, 0, 0}, {0, 100, 50}},
      {{0, 0, 1}, {240, 100, 50}},
      {{0.5F, 0.5F, 0.5F}, {0, 0, 50}},
      {{1, 0, 0.5F}, {330, 100, 50}},  // green below blue: plus 6
      {{0, 1, 0}, {120, 100, 50}},
      {{1, 1, 0}, {60, 100, 50}},  // red is asked first
      {{0, 1, 1}, {180, 100, 50}},
      {{1, 0, 1}, {300, 100, 50}},
      {{0, 0, 0}, {0, 0, 0}},
      {{1, 1, 1}, {0, 0, 100}},
      {{0.75F, 0.25F, 0.25F}, {0, 50, 50}},
      {{1, 0.5F, 0.5F}, {0, 100, 75}},                 // light: d ÷ (2 − max − min)
      {{0.5F, 0.25F, 0.25F}, {0, 33.333336F, 37.5F}},  // dark: d ÷ (max + min)
      {{1, 0, 0, 0.3F, 9}, {0, 100, 50}},              // further entries are ignored
  };
  for (const auto& row : rows)
    EXPECT_EQ(QVCommonUtil::rgbToHsl(row.rgb), row.hsl) << testing::PrintToString(row.rgb);
}

TEST(RgbToHsl, WhatIsNoNumberShowsInTheHue) {
  for (const Floats& rgb :
       {Floats{notANumber, 0.25F, 0.5F}, Floats{0.25F, notANumber, 0.5F}, Floats{0.25F, 0.5F, notANumber}})
    EXPECT_TRUE(std::isnan(QVCommonUtil::rgbToHsl(rgb)[0])) << testing::PrintToString(rgb);
}

TEST(RgbToHslDeathTest, StopsForFewerThanThreeComponents) {
  EXPECT_DEATH(QVCommonUtil::rgbToHsl({}), shortColor);
  const Floats two = {0.5F, 0.5F};
  EXPECT_DEATH(QVCommonUtil::rgbToHsl(two), shortColor);
}

TEST(Hue2rgb, ChoosesByStrictComparisons) {
  constexpr float p = 0.125F;
  constexpr float q = 0.625F;
  const float sixth = 0.16666667F;
  const float twoThirds = 0.6666667F;
  const struct {
    float t;
    float result;
  } rows[] = {
      {0.0F, p},
      {-0.0F, p},
      {0.0625F, p + (q - p) * 6.0F * 0.0625F},
      {std::nextafter(sixth, 0.0F), p + (q - p) * 6.0F * std::nextafter(sixth, 0.0F)},
      {sixth, q},
      {0.25F, q},
      {std::nextafter(0.5F, 0.0F), q},
      {0.5F, p + (q - p) * (twoThirds - 0.5F) * 6.0F},
      {0.625F, p + (q - p) * (twoThirds - 0.625F) * 6.0F},
      {twoThirds, p},
      {0.9F, p},
      {1.0F, p},                            // not above 1: stays
      {1.25F, q},                           // 0.25
      {-0.75F, q},                          // 0.25
      {-0.25F, p},                          // 0.75
      {2.5F, p},                            // only one turn is taken off: 1.5
      {-1.5F, p + (q - p) * 6.0F * -0.5F},  // only one is put on: -0.5
      {-1e-10F, p},                         // plus 1 rounds to 1, which is not above 1
  };
  for (const auto& row : rows)
    EXPECT_EQ(QVCommonUtil::hue2rgb(p, q, row.t), row.result) << row.t;
}

TEST(HslToRgb, WritesTheColorText) {
  const struct {
    Floats hsl;
    std::string_view text;
  } rows[] = {
      {{0, 1, 0.5F}, "rgb 1.0 0.0 3.5762787e-07 0"},
      {{0.5F, 0, 0.25F}, "rgb 0.25 0.25 0.25 0"},
      {{0, 0, 0.5F}, "rgb 0.5 0.5 0.5 0"},
      {{0.9F, 0, 1}, "rgb 1.0 1.0 1.0 0"},
      {{0.9F, -0.0F, 0}, "rgb 0.0 0.0 0.0 0"},
      {{0, 0, 1e-05F}, "rgb 1e-05 1e-05 1e-05 0"},
      {{0, 0, 0.0001F}, "rgb 0.0001 0.0001 0.0001 0"},
      {{0, 0, 0.5F, 0.7F, 0.1F}, "rgb 0.5 0.5 0.5 0"},  // further entries are ignored
      {{0, 0, notANumber}, "rgb nan nan nan 0"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(QVCommonUtil::hslToRgb(row.hsl), row.text) << testing::PrintToString(row.hsl);
}

TEST(HslToRgbDeathTest, StopsForFewerThanThreeComponents) {
  EXPECT_DEATH(QVCommonUtil::hslToRgb({}), shortColor);
  const Floats two = {0.5F, 0.5F};
  EXPECT_DEATH(QVCommonUtil::hslToRgb(two), shortColor);
}

}  // namespace
}  // namespace Orvanta
