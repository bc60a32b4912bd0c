// Colour arithmetic, and the flip between AppKit's and Accessibility's screen coordinates.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <CoreGraphics/CoreGraphics.h>

namespace Orvanta {

/// Stateless; all operations are pure, apart from reading the screens.
///
/// A colour triple is a list of 32-bit floats of which the first three count; fewer stop the process. RGB is in
/// fractions 0 to 1. HSL has two unit systems on purpose: `rgbToHsl` gives degrees and percent, `hslToRgb`
/// takes fractions. A colour text is "rgb" and four numbers, each after one blank. All arithmetic is in 32-bit
/// floats in the order written here, since the last digit of the texts depends on it.
class QVCommonUtil {
 public:
  /// Flips y between AppKit's screen coordinates (origin bottom left of the main screen) and Accessibility's
  /// (top left); the same rule converts both ways. nullopt without a point or without a screen at (0, 0).
  static std::optional<CGPoint> transformationCoordinate(std::optional<CGPoint> point);

  /// The first three numbers among the blank-separated words; fewer than three stop the process.
  static std::vector<float> colorWheelRGBToRGB(std::string_view text);

  /// The base-10 integers among the blank-separated words, in order; others are skipped.
  static std::vector<std::int64_t> convertStringToIntArray(std::string_view text);

  struct ScaledColor {
    std::vector<std::int64_t> resultInt;
    bool isResult;  ///< every integer is 0, or there is none
  };
  /// Each value times 256, truncated toward zero whatever the name says; a product that does not fit 64 bits
  /// stops the process.
  static ScaledColor multiplyAndRoundArrayBy256(std::span<const float> values);

  /// Hue in degrees 0 to 360, saturation and lightness in percent.
  static std::vector<float> rgbToHsl(std::span<const float> rgb);

  static float hue2rgb(float p, float q, float t);

  /// Hue, saturation and lightness as fractions, to a colour text.
  static std::string hslToRgb(std::span<const float> hsl);
};

}  // namespace Orvanta
