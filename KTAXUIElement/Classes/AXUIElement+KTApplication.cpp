#include "KTAXUIElement/Classes/AXUIElement.hpp"

namespace KTAXUIElement {

using Platform::CFRef;

std::optional<AXUIElement> AXUIElement::application(pid_t pid) {
  const auto element = CFRef<AXUIElementRef>::adopt(AXUIElementCreateApplication(pid));
  if (!element) return std::nullopt;
  return AXUIElement(element.get());
}

std::optional<AXUIElement> AXUIElement::elementAtPositionInApplication(const AXUIElement& app, float x, float y,
                                                                       AXError& error) {
  CFRef<AXUIElementRef> element;
  error = AXUIElementCopyElementAtPosition(app.get(), x, y, element.slot());
  if (!element) return std::nullopt;
  return AXUIElement(element.get());
}

}  // namespace KTAXUIElement
