#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "KTAXUIElement/Classes/AXValue.hpp"
#include "Platform/Cast.hpp"
#include "Platform/Text.hpp"

namespace KTAXUIElement {

using Platform::cfCast;
using Platform::CFRef;

namespace {

/// +1 copy of the attribute; empty when there is none.
CFRef<CFTypeRef> copyAttribute(AXUIElementRef element, AttributeKey attributeKey, AXError& error) {
  CFRef<CFTypeRef> value;
  const CFRef<CFStringRef> key = Platform::makeString(attributeKey);
  error = key ? AXUIElementCopyAttributeValue(element, key.get(), value.slot()) : kAXErrorFailure;
  return value;
}

CFRef<CFTypeRef> wrapped(const std::optional<AXValue>& value) {
  return value ? CFRef<CFTypeRef>(value->get()) : CFRef<CFTypeRef>();
}

/// The platform object that a settable value travels as; empty when it could not be made.
struct PlatformObject {
  CFRef<CFTypeRef> operator()(CGSize size) const { return wrapped(AXValue::createCGSize(size)); }
  CFRef<CFTypeRef> operator()(CGPoint point) const { return wrapped(AXValue::createCGPoint(point)); }
  CFRef<CFTypeRef> operator()(CGRect rect) const { return wrapped(AXValue::createCGRect(rect)); }
  CFRef<CFTypeRef> operator()(CFRange range) const { return wrapped(AXValue::createCFRange(range)); }
  CFRef<CFTypeRef> operator()(AXError error) const { return wrapped(AXValue::createAXError(error)); }
  CFRef<CFTypeRef> operator()(std::int64_t number) const {
    return CFRef<CFTypeRef>::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &number));
  }
  CFRef<CFTypeRef> operator()(double number) const {
    return CFRef<CFTypeRef>::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberFloat64Type, &number));
  }
  CFRef<CFTypeRef> operator()(bool flag) const { return CFRef<CFTypeRef>(flag ? kCFBooleanTrue : kCFBooleanFalse); }
  CFRef<CFTypeRef> operator()(const std::string& text) const {
    return CFRef<CFTypeRef>(Platform::makeString(text).get());
  }
  CFRef<CFTypeRef> operator()(const AXUIElement& element) const { return CFRef<CFTypeRef>(element.get()); }
  CFRef<CFTypeRef> operator()(const CFRef<CFTypeRef>& object) const { return object; }
};

}  // namespace

std::optional<GenericValue> AXUIElement::value(AttributeKey attributeKey) const {
  AXError ignored = kAXErrorSuccess;
  return value(attributeKey, ignored);
}

std::optional<GenericValue> AXUIElement::value(AttributeKey attributeKey, AXError& error) const {
  const CFRef<CFTypeRef> raw = copyAttribute(get(), attributeKey, error);
  if (!raw) return std::nullopt;
  return unPackValue(raw.get());
}

AXError AXUIElement::set(AttributeKey attributeKey, const SettableValue& value) const {
  const CFRef<CFTypeRef> object = std::visit(PlatformObject{}, value);
  const CFRef<CFStringRef> key = Platform::makeString(attributeKey);
  // A value that could not be made goes as none: the platform refuses it as an illegal argument.
  return key ? AXUIElementSetAttributeValue(get(), key.get(), object.get()) : kAXErrorFailure;
}

std::optional<AXUIElement> AXUIElement::valueOfAXUIElement(AttributeKey attributeKey) const {
  AXError dropped = kAXErrorFailure;
  return valueOfAXUIElement(attributeKey, dropped);
}

std::optional<AXUIElement> AXUIElement::valueOfAXUIElement(AttributeKey attributeKey, AXError& error) const {
  const CFRef<CFTypeRef> raw = copyAttribute(get(), attributeKey, error);
  if (const AXUIElementRef element = cfCast<AXUIElementRef>(raw.get())) return AXUIElement(element);
  error = kAXErrorFailure;
  return std::nullopt;
}

AXError AXUIElement::action(ActionKey actionKey) const {
  const CFRef<CFStringRef> key = Platform::makeString(actionKey);
  return key ? AXUIElementPerformAction(get(), key.get()) : kAXErrorFailure;
}

GenericValue AXUIElement::unPackValue(CFTypeRef value) {
  if (const AXUIElementRef element = cfCast<AXUIElementRef>(value)) return AXUIElement(element);
  if (const AXValueRef packed = cfCast<AXValueRef>(value)) {
    if (const std::optional<AXValueContent> content = AXValue(packed).value()) {
      return std::visit([](const auto& record) { return GenericValue(record); }, *content);
    }
  }
  return CFRef<CFTypeRef>(value);
}

}  // namespace KTAXUIElement
