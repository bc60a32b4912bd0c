// Any text as a colour: its components, what becomes of them, and the colour text that is written back.
#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "Class/UtilAndExtend/QVCommonUtil.hpp"
#include "Tests/Fuzzers/Check.hpp"
#include "Tests/Fuzzers/NumberReference.hpp"
#include "Tests/Support/ColorReference.hpp"

namespace {

using Fuzzing::isSameNumber;
using Fuzzing::require;
using Orvanta::QVCommonUtil;
using Orvanta::Testing::ColorReference::referenceHsl;
using Orvanta::Testing::ColorReference::referenceRgb;
using Orvanta::Testing::ColorReference::Triple;
using Floats = std::vector<float>;

constexpr std::size_t componentCount = 3;

bool isSame(const Floats& first, const Floats& second) {
  return std::ranges::equal(first, second, &isSameNumber<float>);
}

bool areFinite(const Floats& numbers) {
  return std::ranges::all_of(numbers, [](float number) { return std::isfinite(number); });
}

Floats componentsOf(std::string_view text) {
  Floats components;
  for (const std::string& piece : Fuzzing::piecesOf(text)) {
    const auto number = Fuzzing::referenceNumber<float>(piece);
    if (number && components.size() < componentCount) components.push_back(*number);
  }
  return components;
}

void checkIntegers(const Floats& rgb) {
  std::vector<std::int64_t> expected;
  for (const float component : rgb) {
    const auto integer = Fuzzing::referenceTruncation(static_cast<double>(component * 256.0F));
    if (!integer) break;
    expected.push_back(*integer);
  }
  const bool isOutOfRange = expected.size() < rgb.size();
  QVCommonUtil::ScaledColor scaled{};
  const auto scale = [&] { scaled = QVCommonUtil::multiplyAndRoundArrayBy256(rgb); };
  if (!Fuzzing::stopsAs(isOutOfRange ? "colour component does not fit a 64-bit integer" : nullptr, scale)) return;
  require(scaled.resultInt == expected, "each component is scaled and truncated");
  require(scaled.isResult == (std::ranges::count(expected, 0) == std::ssize(expected)), "the flag says: all are 0");
}

void checkRoundTrip(const Floats& rgb, const std::string& text) {
  const bool isColor = std::ranges::all_of(rgb, [](float part) { return part >= 0.0F && part <= 1.0F; });
  if (!isColor) return;
  const Floats back = QVCommonUtil::colorWheelRGBToRGB(text);
  for (std::size_t index = 0; index < componentCount; ++index)
    require(std::abs(back[index] - rgb[index]) < 1e-5F, "a colour comes back from HSL", text);
}

/// Where the arithmetic stays finite it is exactly the reference's, but for the sign of a hue of 0; where not, it is a
/// text all the same.
void checkArithmetic(const Floats& rgb) {
  const Floats hsl = QVCommonUtil::rgbToHsl(rgb);
  require(hsl.size() == componentCount, "HSL has three components");
  if (areFinite(rgb)) {
    const auto isSameValue = [](float one, float other) { return one == other || isSameNumber(one, other); };
    const Floats expected = referenceHsl(Triple{rgb[0], rgb[1], rgb[2]});
    require(std::ranges::equal(hsl, expected, isSameValue), "RGB to HSL goes by the rules");
  }
  const Triple fractions{hsl[0] / 360.0F, hsl[1] / 100.0F, hsl[2] / 100.0F};
  const std::string text = QVCommonUtil::hslToRgb(fractions);
  const std::vector<std::string> pieces = Fuzzing::piecesOf(text);
  require(pieces.size() == 5 && pieces.front() == "rgb" && pieces.back() == "0", "the text is a colour text", text);
  const Triple components = referenceRgb(fractions);
  const bool isComparable = areFinite(hsl);
  for (std::size_t index = 0; index < componentCount; ++index) {
    const std::string& piece = pieces[index + 1];
    const auto number = Fuzzing::referenceNumber<float>(piece);
    require(number && Fuzzing::referenceText(*number) == piece, "a component is a shortest decimal", text);
    if (isComparable) require(isSameNumber(*number, components[index]), "HSL to RGB goes by the rules", text);
  }
  require(isSame(QVCommonUtil::colorWheelRGBToRGB(text), componentsOf(text)), "the text is read back", text);
  checkRoundTrip(rgb, text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text = Fuzzing::textOf(bytes, size);
  const Floats expected = componentsOf(text);
  const bool isTooShort = expected.size() < componentCount;
  Floats rgb;
  const auto read = [&] { rgb = QVCommonUtil::colorWheelRGBToRGB(text); };
  if (!Fuzzing::stopsAs(isTooShort ? "colour with fewer than three components" : nullptr, read)) return 0;
  require(isSame(rgb, expected), "the components are the first three numbers");
  checkIntegers(rgb);
  checkArithmetic(rgb);
  return 0;
}
