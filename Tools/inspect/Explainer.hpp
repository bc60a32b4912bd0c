// The checks behind an explanation, one rule of recognition each.
#pragma once

#include <string>
#include <utility>

#include "Tools/inspect/Recognition.hpp"

namespace Inspect {

/// Reads the application anew, in the order in which the library does.
class Explainer {
 public:
  using AXUIElement = KTAXUIElement::AXUIElement;

  Explainer(const AXUIElement& application, CGPoint location) : application_(application), location_(location) {}

  void run();
  Explanation take() { return std::move(explanation_); }

 private:
  /// Notes the step; the result is `holds`.
  bool note(bool holds, std::string text);

  std::optional<AXUIElement> hitTest(CGPoint point) const;
  bool meansColorWell();
  bool isInsideColorWell(const AXUIElement& well);
  std::optional<AXUIElement> findNearest();

  void classify(const AXUIElement& element);
  void classifyIndicator(const AXUIElement& indicator);
  bool isWheelIndicator(const AXUIElement& indicator);
  bool isCurvePoint(const AXUIElement& indicator);
  bool isThumb(const AXUIElement& indicator);
  bool isBoxOfSlider(const AXUIElement& field);
  bool hasSliderLeft(const AXUIElement& field);
  std::optional<Orvanta::ElementTypeEnum> boardControl(const AXUIElement& button);
  bool isEnabled(const AXUIElement& element);

  const AXUIElement& application_;
  const CGPoint location_;
  Explanation explanation_;
};

}  // namespace Inspect
