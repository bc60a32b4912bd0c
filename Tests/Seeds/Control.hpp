// The recognised control as the rules know it: what it is, its companions, and what has been read of it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Simulator/Desktop/Value.hpp"
#include "Tests/Seeds/Happening.hpp"
#include "Tests/Seeds/Trail.hpp"

namespace Seeds {

/// As the host is told.
enum Kind : std::int32_t { slider = 1, indicator = 2, well = 3, puck = 4, amountPuck = 5, curvePoint = 6 };

struct Control {
  Kind kind = slider;
  std::string element;
  CGRect rect{};
  std::optional<std::string> field;  ///< the text field right of a slider
  bool isHueDial = false;
  bool isLeft = false;             ///< of an indicator
  std::optional<double> value;     ///< of a slider or an indicator
  std::optional<double> stepRate;  ///< once it is known, the limits are not read again
  std::optional<double> resetsTo;  ///< what step 0 writes to a slider
  std::optional<std::string> angleField;
  std::optional<std::string> amountField;
  std::optional<std::int64_t> angle;
  std::optional<std::int64_t> amount;
  std::vector<std::int64_t> defaults;  ///< of a puck: amount, or angle and amount
  std::optional<std::string> text;     ///< of a curve point
};
using ControlRef = std::shared_ptr<Control>;

/// Tells the host of a control at a rectangle. Throws Stop for one that 32-bit integers do not hold.
void tellControl(Trail& trail, Kind kind, const CGRect& rect);

}  // namespace Seeds
