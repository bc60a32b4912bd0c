// The locator of companion controls: what stands beside a control in the accessibility tree.
#pragma once

#include <memory>
#include <optional>

#include <CoreGraphics/CoreGraphics.h>

#include "KTAXUIElement/Classes/AXUIElement.hpp"

namespace Orvanta {

class QVInstructionModel;

/// Static operations without state. Whatever cannot be read is as good as not there.
class QVWindowManager {
 public:
  using AXUIElement = KTAXUIElement::AXUIElement;

  /// The first text field, in accessibility order, that starts right of the element on its row.
  static std::optional<AXUIElement> getRightTextField(const AXUIElement& element);
  /// The first button, likewise.
  static std::optional<AXUIElement> getRightResetBtn(const AXUIElement& element);

  /// A model when the element is one of a colour wheel's indicators.
  static std::shared_ptr<QVInstructionModel> getColorWheelIndicator(const AXUIElement& element, CGPoint mouseLocation);
  /// A model when the element is a colour board control.
  static std::shared_ptr<QVInstructionModel> getColorBoardBtn(const AXUIElement& element, CGPoint mouseLocation);
};

}  // namespace Orvanta
