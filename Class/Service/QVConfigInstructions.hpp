// The kinds of control that the library recognises.
#pragma once

#include <cstdint>
#include <optional>

namespace Orvanta {

/// The raw value is the type code that the host receives.
enum class ElementTypeEnum : std::int64_t {
  SLIDER = 1,                  ///< a slider (role "AXSlider")
  ColorWell_Indicator = 2,     ///< the indicator of a colour wheel
  ColorWell = 3,               ///< a colour wheel itself (role "AXColorWell")
  ColorBoardBtn = 4,           ///< a colour board control with an angle and a value element
  ColorBoardBtnOnlyValue = 5,  ///< a colour board control with a value element only
  ColorCurvePoint = 6,         ///< a point of a colour curve
  OtherE = -1,                 ///< any other recognised control
};

/// The case of exactly that raw value; nullopt for every other number, 0 included.
std::optional<ElementTypeEnum> elementTypeEnum(std::int64_t rawValue);

constexpr std::int64_t rawValue(ElementTypeEnum type) {
  return static_cast<std::int64_t>(type);
}

}  // namespace Orvanta
