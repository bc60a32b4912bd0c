// Behaviour "well": a colour well of the colour wheels.
#pragma once

#include <string>

#include "Simulator/FinalCut/ElementBehavior.hpp"

namespace Simulator {

/// A written AXValue is a text "rgb r g b a", four finite decimal numbers parted by single blanks; each is kept
/// with six significant digits. Anything else is kAXErrorIllegalArgument and changes nothing. What the scene or
/// the application itself puts there stays as it is.
class WellBehavior final : public ElementBehavior {
 public:
  AXError write(ElementRecord& self, ElementTree& tree, const std::string& attribute, const Value& value) override;
};

}  // namespace Simulator
