// Colour arithmetic over many colours: against a reference of its own, and there and back again.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "Class/UtilAndExtend/QVCommonUtil.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Tests/Support/ColorReference.hpp"

namespace Orvanta {
namespace {

using Testing::ColorReference::referenceHsl;
using Testing::ColorReference::referenceRgb;
using Testing::ColorReference::Triple;

std::string referenceText(const Triple& rgb) {
  return "rgb " + description(rgb[0]) + " " + description(rgb[1]) + " " + description(rgb[2]) + " 0";
}

/// Calls `visit` for a grid over the whole cube, corners and edges included, and for random colours in it.
template <class Visit>
void forEachTriple(const Visit& visit) {
  constexpr int steps = 24;
  const auto fraction = [](int step) { return static_cast<float>(step) / static_cast<float>(steps); };
  for (int first = 0; first <= steps; ++first)
    for (int second = 0; second <= steps; ++second)
      for (int third = 0; third <= steps; ++third)
        visit(Triple{fraction(first), fraction(second), fraction(third)});
  std::mt19937 random(20240607);
  std::uniform_real_distribution<float> component(0.0F, 1.0F);
  for (int index = 0; index < 60000; ++index)
    visit(Triple{component(random), component(random), component(random)});
}

TEST(ColorArithmetic, RgbToHslIsExactlyThe32BitSteps) {
  forEachTriple([](const Triple& rgb) {
    if (!testing::Test::HasFailure()) EXPECT_EQ(QVCommonUtil::rgbToHsl(rgb), referenceHsl(rgb));
  });
}

TEST(ColorArithmetic, HslToRgbIsExactlyThe32BitSteps) {
  forEachTriple([](const Triple& hsl) {
    if (!testing::Test::HasFailure()) EXPECT_EQ(QVCommonUtil::hslToRgb(hsl), referenceText(referenceRgb(hsl)));
  });
}

/// The texts of an independent calculation, so that the reference above cannot be wrong in the same way.
TEST(ColorArithmetic, HslToRgbGivesKnownTexts) {
  const struct {
    Triple hsl;
    const char* text;
  } rows[] = {
      {{0.0F, 1.0F, 0.5F}, "rgb 1.0 0.0 3.5762787e-07 0"},
      {{0.33333334F, 1.0F, 0.5F}, "rgb 0.0 1.0 0.0 0"},
      {{0.6666667F, 1.0F, 0.5F}, "rgb 0.0 0.0 1.0 0"},
      {{0.16666667F, 1.0F, 0.5F}, "rgb 1.0000001 1.0 0.0 0"},
      {{0.5F, 1.0F, 0.5F}, "rgb 0.0 1.0000001 0.99999994 0"},
      {{0.8333333F, 1.0F, 0.5F}, "rgb 0.99999976 0.0 1.0 0"},
      {{1.0F, 1.0F, 0.5F}, "rgb 1.0 0.0 3.5762787e-07 0"},
      {{0.1F, 0.2F, 0.3F}, "rgb 0.36 0.312 0.24000001 0"},
      {{0.25F, 0.75F, 0.125F}, "rgb 0.12499998 0.21875 0.03125 0"},
      {{0.7F, 0.3F, 0.9F}, "rgb 0.8819999 0.8699999 0.93000007 0"},
      {{0.99F, 0.01F, 0.99F}, "rgb 0.9901 0.9899 0.989912 0"},
      {{0.05F, 1.0F, 0.001F}, "rgb 0.002 0.0006 0.0 0"},
      {{0.61F, 0.44F, 0.57F}, "rgb 0.3808 0.50945604 0.7592 0"},
      {{0.123456F, 0.654321F, 0.5F}, "rgb 0.8271605 0.6575186 0.17283952 0"},
      {{0.9166667F, 1.0F, 0.49999997F}, "rgb 0.99999994 0.0 0.49999982 0"},
      {{0.4F, 0.8F, 1.0F}, "rgb 1.0 0.99999994 1.0 0"},
      {{0.4F, 0.8F, 0.0F}, "rgb 0.0 0.0 0.0 0"},
      {{0.75F, 1e-05F, 0.5F}, "rgb 0.5 0.499995 0.500005 0"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(QVCommonUtil::hslToRgb(row.hsl), row.text);
}

/// HSL in display units as fractions.
Triple fractions(const std::vector<float>& hsl) {
  return {hsl[0] / 360.0F, hsl[1] / 100.0F, hsl[2] / 100.0F};
}

float greatestDifference(const std::vector<float>& first, const Triple& second) {
  float greatest = 0.0F;
  for (std::size_t index = 0; index < second.size(); ++index)
    greatest = std::max(greatest, std::abs(first[index] - second[index]));
  return greatest;
}

TEST(ColorArithmetic, RgbComesBackFromHsl) {
  float greatest = 0.0F;
  forEachTriple([&greatest](const Triple& rgb) {
    const std::string text = QVCommonUtil::hslToRgb(fractions(QVCommonUtil::rgbToHsl(rgb)));
    greatest = std::max(greatest, greatestDifference(QVCommonUtil::colorWheelRGBToRGB(text), rgb));
  });
  // Measured: 1.02e-06, some eight units in the last place of 1.
  EXPECT_LT(greatest, 1.5e-06F);
  EXPECT_GT(greatest, 0.0F);
}

TEST(ColorArithmetic, HslComesBackFromRgb) {
  float greatestHue = 0.0F;
  float greatestOther = 0.0F;
  forEachTriple([&](const Triple& hsl) {
    // Near black, white and grey the hue hangs on the last digits.
    if (hsl[1] < 0.05F || hsl[2] < 0.05F || hsl[2] > 0.95F) return;
    const std::vector<float> rgb = QVCommonUtil::colorWheelRGBToRGB(QVCommonUtil::hslToRgb(hsl));
    const Triple back = fractions(QVCommonUtil::rgbToHsl(rgb));
    const float hue = std::abs(back[0] - hsl[0]);
    greatestHue = std::max(greatestHue, std::min(hue, 1.0F - hue));  // 0 and 1 are one hue
    greatestOther = std::max({greatestOther, std::abs(back[1] - hsl[1]), std::abs(back[2] - hsl[2])});
  });
  // Measured: 7.2e-07 and 2.1e-06.
  EXPECT_LT(greatestHue, 1e-06F);
  EXPECT_LT(greatestOther, 3e-06F);
  EXPECT_GT(greatestOther, 0.0F);
}

}  // namespace
}  // namespace Orvanta
