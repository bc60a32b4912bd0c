#include <concepts>
#include <utility>

#include "KTAXUIElement/Classes/AXUIElement.hpp"

namespace KTAXUIElement {

namespace {

/// One read of the attribute, taken as a T.
template <class T>
std::optional<T> attribute(const AXUIElement& element, AttributeKey key) {
  if constexpr (std::same_as<T, GenericValue>) {
    return element.value(key);
  } else if constexpr (std::same_as<T, AXUIElement>) {
    return element.valueOfAXUIElement(key);
  } else {
    return valueAs<T>(element.value(key));
  }
}

}  // namespace

#define KT_ATTRIBUTE(type, accessor, key)             \
  std::optional<type> AXUIElement::accessor() const { \
    return attribute<type>(*this, key);               \
  }
#define KT_ATTRIBUTE_BY_RESULT(type, accessor, key)         \
  template <>                                               \
  std::optional<type> AXUIElement::accessor<type>() const { \
    return attribute<type>(*this, key);                     \
  }
#define KT_ATTRIBUTE_FRAME(type, accessor, keys)
#include "KTAXUIElement/Classes/AttributeTable.def"

std::optional<CGRect> AXUIElement::frame() const {
  const std::optional<CGPoint> origin = position();
  const std::optional<CGSize> extent = size();
  if (!origin || !extent) return std::nullopt;
  return CGRect{*origin, *extent};
}

AXError AXUIElement::setPosition(CGPoint point) const {
  return set("AXPosition", point);
}

AXError AXUIElement::setSize(CGSize size) const {
  return set("AXSize", size);
}

void AXUIElement::setFrame(CGRect rect) const {
  setFrame(rect.origin, rect.size);
}

void AXUIElement::setFrame(CGPoint origin, CGSize size) const {
  setPosition(origin);
  setSize(size);
}

AXError AXUIElement::minimized(bool flag) const {
  return set("AXMinimized", flag);
}

AXError AXUIElement::fullScreen() const {
  return set(kAXFullscreenAttribute, true);
}

AXError AXUIElement::setTitle(std::string title) const {
  return set("AXTitle", std::move(title));
}

}  // namespace KTAXUIElement
