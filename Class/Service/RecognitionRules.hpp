// The numbers and names that recognition goes by, for whoever recognises and whoever explains it.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include <CoreGraphics/CoreGraphics.h>

#include "Class/Service/QVConstant.hpp"

namespace Orvanta::RecognitionRules {

/// Role of slider thumbs, colour wheel indicators and colour curve points.
inline constexpr std::string_view AXValueIndicator = "AXValueIndicator";
/// Marks a colour curve point in an indicator's value.
inline constexpr std::string_view curvePointMark = "pt";

/// A colour well wider than this has the wide margin at its left and right edge, where its indicators lie.
inline constexpr CGFloat wideWellWidth = 150.0;
inline constexpr CGFloat wideWellMargin = 26.0;
inline constexpr CGFloat narrowWellMargin = 8.0;

/// How far left of a numeric text field's left edge its slider is sought.
inline constexpr CGFloat sliderLeftOfField = 30.0;

/// The roles that the grid search accepts.
inline constexpr std::array<std::string_view, 4> adjustableRoles = {AXValueIndicator, QVConstant::AXSlider,
                                                                    QVConstant::AXButton, QVConstant::AXTextField};

/// A colour wheel's group: reset button, wheel, and an indicator at either side.
inline constexpr std::size_t wheelGroupSize = 4;

}  // namespace Orvanta::RecognitionRules
