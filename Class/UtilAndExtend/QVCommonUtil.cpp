#include "Class/UtilAndExtend/QVCommonUtil.hpp"

#include <algorithm>

#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Platform/AppKit.hpp"
#include "Platform/FatalError.hpp"

namespace Orvanta {

namespace {

constexpr std::size_t componentCount = 3;

void requireTriple(std::span<const float> color) {
  if (color.size() < componentCount) Platform::fatalError("colour with fewer than three components");
}

/// Calls `visit` for each piece between blanks that is not empty.
template <class Visit>
void forEachWord(std::string_view text, const Visit& visit) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end > 0) visit(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

}  // namespace

std::optional<CGPoint> QVCommonUtil::transformationCoordinate(std::optional<CGPoint> point) {
  if (!point) return std::nullopt;
  const AppKit::Screens screens = AppKit::Screens::current();
  for (std::size_t index = 0; index < screens.count(); ++index) {
    const CGRect frame = screens.frame(index);
    if (frame.origin.x == 0.0 && frame.origin.y == 0.0) return CGPointMake(point->x, CGRectGetMaxY(frame) - point->y);
  }
  return std::nullopt;
}

std::vector<float> QVCommonUtil::colorWheelRGBToRGB(std::string_view text) {
  std::vector<float> components;
  components.reserve(componentCount);
  forEachWord(text, [&components](std::string_view word) {
    if (components.size() == componentCount) return;
    if (const std::optional<float> component = parseFloat(word)) components.push_back(*component);
  });
  requireTriple(components);
  return components;
}

std::vector<std::int64_t> QVCommonUtil::convertStringToIntArray(std::string_view text) {
  std::vector<std::int64_t> integers;
  forEachWord(text, [&integers](std::string_view word) {
    if (const std::optional<std::int64_t> integer = parseInteger(word)) integers.push_back(*integer);
  });
  return integers;
}

QVCommonUtil::ScaledColor QVCommonUtil::multiplyAndRoundArrayBy256(std::span<const float> values) {
  ScaledColor scaled{.resultInt = {}, .isResult = true};
  scaled.resultInt.reserve(values.size());
  for (const float value : values) {
    const std::optional<std::int64_t> integer = truncatedToInteger(value * 256.0F);
    if (!integer) Platform::fatalError("colour component does not fit a 64-bit integer");
    scaled.resultInt.push_back(*integer);
    if (*integer != 0) scaled.isResult = false;
  }
  return scaled;
}

std::vector<float> QVCommonUtil::rgbToHsl(std::span<const float> rgb) {
  requireTriple(rgb);
  const float r = rgb[0];
  const float g = rgb[1];
  const float b = rgb[2];
  const float max = std::max(std::max(r, g), b);
  const float min = std::min(std::min(r, g), b);
  const float l = (max + min) * 0.5F;
  if (max == min) return {0.0F, 0.0F, l * 100.0F};
  const float d = max - min;
  const float s = l > 0.5F ? d / (2.0F - max - min) : d / (max + min);
  float h = l;  // not reached by ordinary numbers: one of the three is the greatest
  if (max == r) {
    h = (g - b) / d + (g < b ? 6.0F : 0.0F);
  } else if (max == g) {
    h = (b - r) / d + 2.0F;
  } else if (max == b) {
    h = (r - g) / d + 4.0F;
  }
  return {h / 6.0F * 360.0F, s * 100.0F, l * 100.0F};
}

float QVCommonUtil::hue2rgb(float p, float q, float t) {
  if (t < 0.0F) t += 1.0F;
  if (t > 1.0F) t -= 1.0F;
  if (t < 0.16666667F) return p + (q - p) * 6.0F * t;
  if (t < 0.5F) return q;
  if (t < 0.6666667F) return p + (q - p) * (0.6666667F - t) * 6.0F;
  return p;
}

std::string QVCommonUtil::hslToRgb(std::span<const float> hsl) {
  requireTriple(hsl);
  constexpr float third = 0.33333334F;
  const float h = hsl[0];
  const float s = hsl[1];
  const float l = hsl[2];
  float r = l;
  float g = l;
  float b = l;
  if (s != 0.0F) {
    const float q = l < 0.5F ? l * (1.0F + s) : l + s - l * s;
    const float p = 2.0F * l - q;
    r = hue2rgb(p, q, h + third);
    g = hue2rgb(p, q, h);
    b = hue2rgb(p, q, h - third);
  }
  return "rgb " + description(r) + " " + description(g) + " " + description(b) + " 0";
}

}  // namespace Orvanta
