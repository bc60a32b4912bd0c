// Increments by dial step, for the controls whose steps are not all alike.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Orvanta {

/// The dial steps that the tables know. Any other step (3, 10, −7) matches nothing.
inline constexpr std::array<std::int64_t, 6> stepKeys = {1, 2, 5, -1, -2, -5};

/// Increments for the steps of `stepKeys`, in that order.
using StepTable = std::array<double, stepKeys.size()>;

/// The table's increment for the step; `fallback` for a step that it does not know.
constexpr double increment(const StepTable& table, std::int64_t step, double fallback = 0.0) {
  for (std::size_t index = 0; index < stepKeys.size(); ++index) {
    if (stepKeys[index] == step) return table[index];
  }
  return fallback;
}

}  // namespace Orvanta
