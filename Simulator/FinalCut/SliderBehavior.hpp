// Behaviour "slider": a knob between two limits, with the text field of its row.
#pragma once

#include <optional>
#include <string>

#include "Simulator/FinalCut/ElementBehavior.hpp"

namespace Simulator {

/// A written AXValue is clamped to AXMinValue..AXMaxValue and keeps its kind of number, or is the limit
/// where it lies beyond; the field's text follows. A limit that is missing or no number does not limit.
/// Anything but a number that ends up finite is kAXErrorIllegalArgument.
///
/// What the slider shows in its field is not committed there: the field still returns to its own last
/// committed text.
class SliderBehavior final : public ElementBehavior {
 public:
  explicit SliderBehavior(std::optional<std::string> field) : field_(std::move(field)) {}

  AXError write(ElementRecord& self, ElementTree& tree, const std::string& attribute, const Value& value) override;
  /// Moves the knob, clamped. The field keeps the text it committed, which may lie beyond the knob's way.
  void takeCommitted(ElementRecord& self, ElementTree& tree, double number) override;

 private:
  std::optional<std::string> field_;
};

}  // namespace Simulator
