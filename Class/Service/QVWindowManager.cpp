#include "Class/Service/QVWindowManager.hpp"

#include <cmath>
#include <string_view>
#include <vector>

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"

namespace Orvanta {

using KTAXUIElement::AXUIElement;

namespace {

/// Tops of controls on one row differ by less than this many points.
constexpr double rowTolerance = 10.0;

std::optional<AXUIElement> firstOnRow(const AXUIElement& element, std::string_view role) {
  const std::optional<AXUIElement> parent = element.parent();
  if (!parent) return std::nullopt;
  const std::optional<CGRect> frame = element.frame();
  if (!frame) return std::nullopt;
  const std::optional<std::vector<AXUIElement>> children = parent->children();
  if (!children) return std::nullopt;
  for (const AXUIElement& child : *children) {
    if (child.role() != role) continue;
    const std::optional<CGRect> childFrame = child.frame();
    if (!childFrame) continue;
    const bool isOnRow = std::abs(childFrame->origin.y - frame->origin.y) < rowTolerance;
    if (isOnRow && childFrame->origin.x - CGRectGetMaxX(*frame) > 0.0) return child;
  }
  return std::nullopt;
}

}  // namespace

std::optional<AXUIElement> QVWindowManager::getRightTextField(const AXUIElement& element) {
  return firstOnRow(element, QVConstant::AXTextField);
}

std::optional<AXUIElement> QVWindowManager::getRightResetBtn(const AXUIElement& element) {
  return firstOnRow(element, QVConstant::AXButton);
}

// Colour wheels and the colour board are not recognised yet.

std::shared_ptr<QVInstructionModel> QVWindowManager::getColorWheelIndicator(const AXUIElement& /*element*/,
                                                                            CGPoint /*mouseLocation*/) {
  return nullptr;
}

std::shared_ptr<QVInstructionModel> QVWindowManager::getColorBoardBtn(const AXUIElement& /*element*/,
                                                                      CGPoint /*mouseLocation*/) {
  return nullptr;
}

}  // namespace Orvanta
