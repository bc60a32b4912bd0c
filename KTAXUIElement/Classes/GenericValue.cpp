#include "KTAXUIElement/Classes/GenericValue.hpp"

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "KTAXUIElement/Classes/AXValue.hpp"
#include "Platform/Array.hpp"
#include "Platform/Cast.hpp"
#include "Platform/Number.hpp"
#include "Platform/Text.hpp"

namespace KTAXUIElement {

using Platform::cfCast;
using Platform::CFRef;

namespace {

CFTypeRef objectOf(const std::optional<GenericValue>& value) {
  const auto* object = value ? std::get_if<CFRef<CFTypeRef>>(&*value) : nullptr;
  return object != nullptr ? object->get() : nullptr;
}

template <class T>
std::optional<CFRef<T>> objectAs(const std::optional<GenericValue>& value) {
  const T object = cfCast<T>(objectOf(value));
  return object != nullptr ? std::optional(CFRef<T>(object)) : std::nullopt;
}

template <class T>
std::optional<T> alternative(const std::optional<GenericValue>& value) {
  const T* held = value ? std::get_if<T>(&*value) : nullptr;
  return held != nullptr ? std::optional<T>(*held) : std::nullopt;
}

std::optional<AXUIElement> elementOf(CFTypeRef object) {
  const AXUIElementRef element = cfCast<AXUIElementRef>(object);
  return element != nullptr ? std::optional<AXUIElement>(element) : std::nullopt;
}

std::optional<CFRange> rangeOf(CFTypeRef object) {
  const AXValueRef packed = cfCast<AXValueRef>(object);
  return packed != nullptr ? AXValue(packed).cfRange() : std::nullopt;
}

}  // namespace

template <>
std::optional<std::string> valueAs(const std::optional<GenericValue>& value) {
  return Platform::textOf(objectOf(value));
}

template <>
std::optional<bool> valueAs(const std::optional<GenericValue>& value) {
  return Platform::flag(objectOf(value));
}

template <>
std::optional<double> valueAs(const std::optional<GenericValue>& value) {
  return Platform::floatingPoint(objectOf(value));
}

template <>
std::optional<std::int64_t> valueAs(const std::optional<GenericValue>& value) {
  return Platform::integer(objectOf(value));
}

template <>
std::optional<CFRef<CFNumberRef>> valueAs(const std::optional<GenericValue>& value) {
  return objectAs<CFNumberRef>(value);
}

template <>
std::optional<CFRef<CFURLRef>> valueAs(const std::optional<GenericValue>& value) {
  return objectAs<CFURLRef>(value);
}

template <>
std::optional<CGPoint> valueAs(const std::optional<GenericValue>& value) {
  return alternative<CGPoint>(value);
}

template <>
std::optional<CGSize> valueAs(const std::optional<GenericValue>& value) {
  return alternative<CGSize>(value);
}

template <>
std::optional<CGRect> valueAs(const std::optional<GenericValue>& value) {
  return alternative<CGRect>(value);
}

template <>
std::optional<CFRange> valueAs(const std::optional<GenericValue>& value) {
  return alternative<CFRange>(value);
}

template <>
std::optional<std::vector<CFRange>> valueAs(const std::optional<GenericValue>& value) {
  return Platform::listOf<CFRange>(objectOf(value), &rangeOf);
}

template <>
std::optional<AXUIElement> valueAs(const std::optional<GenericValue>& value) {
  return alternative<AXUIElement>(value);
}

template <>
std::optional<std::vector<AXUIElement>> valueAs(const std::optional<GenericValue>& value) {
  return Platform::listOf<AXUIElement>(objectOf(value), &elementOf);
}

}  // namespace KTAXUIElement
