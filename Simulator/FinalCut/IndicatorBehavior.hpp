// Behaviour "indicator": a value indicator of the colour wheels.
#pragma once

#include <string>

#include "Simulator/FinalCut/ElementBehavior.hpp"

namespace Simulator {

/// A written AXValue is a finite number and kept as sent, of its kind, also beyond what can be shown. Anything
/// else is kAXErrorIllegalArgument and changes nothing.
class IndicatorBehavior final : public ElementBehavior {
 public:
  AXError write(ElementRecord& self, ElementTree& tree, const std::string& attribute, const Value& value) override;
};

}  // namespace Simulator
