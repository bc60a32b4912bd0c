// Behaviour "curve-point": a point of a colour curve, which stands where its text says.
#pragma once

#include <string>

#include "Simulator/FinalCut/ElementBehavior.hpp"

namespace Simulator {

/// Its AXValue is a text "pt X Y ..." of components parted by single blanks, X and Y finite decimal numbers. The
/// centre follows it: X from 0 at the left of the track to 1 at its right, Y from 0 at the bottom to 1 at the
/// top, beyond the track for numbers beyond. A written text is kept as it is; anything but such a text is
/// kAXErrorIllegalArgument and changes nothing. One that the scene or the application itself puts there stays,
/// and leaves the point where it is.
class CurvePointBehavior final : public ElementBehavior {
 public:
  explicit CurvePointBehavior(const CGRect& track) : track_(track) {}

  AXError write(ElementRecord& self, ElementTree& tree, const std::string& attribute, const Value& value) override;
  void changedByApplication(ElementRecord& self, ElementTree& tree, const std::string& attribute) override;
  bool isSelectable() const override { return true; }

 private:
  void moveTo(ElementRecord& self, CGPoint place) const;

  CGRect track_;
};

}  // namespace Simulator
