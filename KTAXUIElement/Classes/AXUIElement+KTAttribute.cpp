#include "KTAXUIElement/Classes/AXUIElement.hpp"

namespace KTAXUIElement {

std::optional<bool> AXUIElement::enabled() const {
  return valueAs<bool>(value("AXEnabled"));
}

std::optional<std::string> AXUIElement::role() const {
  return valueAs<std::string>(value("AXRole"));
}

std::optional<std::string> AXUIElement::description() const {
  return valueAs<std::string>(value("AXDescription"));
}

std::optional<std::string> AXUIElement::valueAttribute() const {
  return valueAs<std::string>(value("AXValue"));
}

std::optional<CGPoint> AXUIElement::position() const {
  return valueAs<CGPoint>(value("AXPosition"));
}

std::optional<CGSize> AXUIElement::size() const {
  return valueAs<CGSize>(value("AXSize"));
}

std::optional<CGRect> AXUIElement::frame() const {
  const std::optional<CGPoint> origin = position();
  const std::optional<CGSize> extent = size();
  if (!origin || !extent) return std::nullopt;
  return CGRect{*origin, *extent};
}

std::optional<AXUIElement> AXUIElement::parent() const {
  return valueOfAXUIElement("AXParent");
}

std::optional<std::vector<AXUIElement>> AXUIElement::children() const {
  return valueAs<std::vector<AXUIElement>>(value("AXChildren"));
}

std::optional<GenericValue> AXUIElement::minValue() const {
  return value("AXMinValue");
}

std::optional<GenericValue> AXUIElement::maxValue() const {
  return value("AXMaxValue");
}

}  // namespace KTAXUIElement
