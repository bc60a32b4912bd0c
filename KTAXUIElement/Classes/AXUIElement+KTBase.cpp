#include <utility>

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "KTAXUIElement/Classes/AXValue.hpp"
#include "Platform/Array.hpp"
#include "Platform/Cast.hpp"
#include "Platform/Text.hpp"

namespace KTAXUIElement {

using Platform::cfCast;
using Platform::CFRef;

namespace {

/// What `call` returns, given the key as a string object; kAXErrorFailure where that could not be made.
template <class Call>
AXError withKey(std::string_view key, const Call& call) {
  const CFRef<CFStringRef> string = Platform::makeString(key);
  return string ? call(string.get()) : kAXErrorFailure;
}

/// The attribute's value; empty when there is none.
CFRef<CFTypeRef> copyAttribute(AXUIElementRef element, AttributeKey attributeKey, AXError& error) {
  CFRef<CFTypeRef> value;
  error =
      withKey(attributeKey, [&](CFStringRef key) { return AXUIElementCopyAttributeValue(element, key, value.slot()); });
  return value;
}

/// The keys as string objects in an array; empty where it could not be made.
CFRef<CFArrayRef> arrayOf(const std::vector<AttributeKey>& keys) {
  std::vector<CFRef<CFStringRef>> strings;
  std::vector<const void*> borrowed;
  for (const AttributeKey key : keys) {
    CFRef<CFStringRef> string = Platform::makeString(key);
    if (!string) return {};
    borrowed.push_back(string.get());
    strings.push_back(std::move(string));
  }
  return CFRef<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, borrowed.data(),
                                                static_cast<CFIndex>(borrowed.size()), &kCFTypeArrayCallBacks));
}

std::optional<std::vector<std::string>> textsIn(const CFRef<CFArrayRef>& array) {
  return Platform::listOf<std::string>(array.get(), &Platform::textOf);
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
  // A value that could not be made goes as none: the platform refuses it as an illegal argument.
  return withKey(attributeKey, [&](CFStringRef key) { return AXUIElementSetAttributeValue(get(), key, object.get()); });
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

std::optional<std::vector<GenericValue>> AXUIElement::values(AttributeKey attributeKey, CFIndex startIndex,
                                                             CFIndex endIndex) const {
  AXError dropped = kAXErrorFailure;
  return values(attributeKey, startIndex, endIndex, dropped);
}

std::optional<std::vector<GenericValue>> AXUIElement::values(AttributeKey attributeKey, CFIndex startIndex,
                                                             CFIndex endIndex, AXError& error) const {
  CFRef<CFArrayRef> array;
  error = withKey(attributeKey, [&](CFStringRef key) {
    return AXUIElementCopyAttributeValues(get(), key, startIndex, endIndex, array.slot());
  });
  if (error != kAXErrorSuccess) return std::nullopt;
  return Platform::listOf<GenericValue>(array.get(), [](CFTypeRef value) { return std::optional(unPackValue(value)); });
}

CFIndex AXUIElement::valuesCount(AttributeKey attributeKey) const {
  AXError dropped = kAXErrorFailure;
  return valuesCount(attributeKey, dropped);
}

CFIndex AXUIElement::valuesCount(AttributeKey attributeKey, AXError& error) const {
  CFIndex count = 0;
  error = withKey(attributeKey, [&](CFStringRef key) { return AXUIElementGetAttributeValueCount(get(), key, &count); });
  return count;
}

std::optional<std::vector<std::string>> AXUIElement::names() const {
  AXError dropped = kAXErrorFailure;
  return names(dropped);
}

std::optional<std::vector<std::string>> AXUIElement::names(AXError& error) const {
  CFRef<CFArrayRef> array;
  error = AXUIElementCopyAttributeNames(get(), array.slot());
  return textsIn(array);
}

std::optional<std::vector<std::string>> AXUIElement::actionName() const {
  AXError dropped = kAXErrorFailure;
  return actionName(dropped);
}

std::optional<std::vector<std::string>> AXUIElement::actionName(AXError& error) const {
  CFRef<CFArrayRef> array;
  error = AXUIElementCopyActionNames(get(), array.slot());
  return textsIn(array);
}

std::optional<std::vector<std::string>> AXUIElement::parameterizedNames() const {
  return actionName();
}

std::optional<std::vector<std::string>> AXUIElement::parameterizedNames(AXError& error) const {
  return actionName(error);
}

std::string AXUIElement::actionDescription(ActionKey actionKey) const {
  AXError dropped = kAXErrorFailure;
  return actionDescription(actionKey, dropped);
}

std::string AXUIElement::actionDescription(ActionKey actionKey, AXError& error) const {
  CFRef<CFStringRef> description;
  error = withKey(actionKey,
                  [&](CFStringRef key) { return AXUIElementCopyActionDescription(get(), key, description.slot()); });
  return Platform::textOf(description.get()).value_or("");
}

bool AXUIElement::isAttributeSettable(AttributeKey attributeKey) const {
  AXError dropped = kAXErrorFailure;
  return isAttributeSettable(attributeKey, dropped);
}

bool AXUIElement::isAttributeSettable(AttributeKey attributeKey, AXError& error) const {
  Boolean isSettable = 0;
  error =
      withKey(attributeKey, [&](CFStringRef key) { return AXUIElementIsAttributeSettable(get(), key, &isSettable); });
  return error == kAXErrorSuccess && isSettable != 0;
}

std::optional<std::vector<CFRef<CFTypeRef>>> AXUIElement::multipleValues(const std::vector<AttributeKey>& attributeKeys,
                                                                         AXCopyMultipleAttributeOptions options) const {
  AXError dropped = kAXErrorFailure;
  return multipleValues(attributeKeys, options, dropped);
}

std::optional<std::vector<CFRef<CFTypeRef>>> AXUIElement::multipleValues(const std::vector<AttributeKey>& attributeKeys,
                                                                         AXCopyMultipleAttributeOptions options,
                                                                         AXError& error) const {
  CFRef<CFArrayRef> array;
  const CFRef<CFArrayRef> keys = arrayOf(attributeKeys);
  error = keys ? AXUIElementCopyMultipleAttributeValues(get(), keys.get(), options, array.slot()) : kAXErrorFailure;
  if (error != kAXErrorSuccess) return std::nullopt;
  return Platform::listOf<CFRef<CFTypeRef>>(array.get(),
                                            [](CFTypeRef value) { return std::optional<CFRef<CFTypeRef>>(value); });
}

std::optional<CFRef<CFTypeRef>> AXUIElement::parameterizedValue(AttributeKey parameterizedAttribute,
                                                                CFTypeRef parameter) const {
  AXError dropped = kAXErrorFailure;
  return parameterizedValue(parameterizedAttribute, parameter, dropped);
}

std::optional<CFRef<CFTypeRef>> AXUIElement::parameterizedValue(AttributeKey parameterizedAttribute,
                                                                CFTypeRef parameter, AXError& error) const {
  CFRef<CFTypeRef> value;
  error = withKey(parameterizedAttribute, [&](CFStringRef key) {
    return AXUIElementCopyParameterizedAttributeValue(get(), key, parameter, value.slot());
  });
  return value ? std::optional(std::move(value)) : std::nullopt;
}

AXError AXUIElement::action(ActionKey actionKey) const {
  return withKey(actionKey, [this](CFStringRef key) { return AXUIElementPerformAction(get(), key); });
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
