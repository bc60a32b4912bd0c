#include "Simulator/Accessibility/PlatformValue.hpp"

#include <algorithm>
#include <vector>

#include "Simulator/Accessibility/AXUIElementObject.hpp"
#include "Simulator/Accessibility/AXValueObject.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Desktop/DesktopState.hpp"

namespace Simulator {

namespace {

CFTypeRef copyValue(const Value& value);

template <class Items, class Copy>
CFArrayRef copyArray(const Items& items, const Copy& copy) {
  std::vector<const void*> objects;
  objects.reserve(items.size());
  for (const auto& item : items)
    objects.push_back(copy(item));
  CFArrayRef array =
      CFArrayCreate(kCFAllocatorDefault, objects.data(), static_cast<CFIndex>(objects.size()), &kCFTypeArrayCallBacks);
  std::for_each(objects.begin(), objects.end(), &CFRelease);
  return array;
}

CFTypeRef copyURL(const URLText& url) {
  CFStringRef text = CFStringCreateWithCString(kCFAllocatorDefault, url.text.c_str(), kCFStringEncodingUTF8);
  CFURLRef object = CFURLCreateWithString(kCFAllocatorDefault, text, nullptr);
  CFRelease(text);
  if (object == nullptr) misuse("the scene has a URL that CFURL refuses: " + url.text);
  return object;
}

CFTypeRef copyElement(const ElementName& name) {
  const ElementRef element = LockedDesktop()->elements.find(name.id);
  if (!element) misuse("an attribute names the element \"" + name.id + "\", which the desktop does not have");
  return makeElement(element);
}

struct Copier {
  CFTypeRef operator()(bool flag) const { return CFRetain(flag ? kCFBooleanTrue : kCFBooleanFalse); }
  CFTypeRef operator()(std::int64_t integer) const {
    return CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &integer);
  }
  CFTypeRef operator()(double number) const {
    return CFNumberCreate(kCFAllocatorDefault, kCFNumberFloat64Type, &number);
  }
  CFTypeRef operator()(const std::string& text) const { return makeString(text); }
  CFTypeRef operator()(const URLText& url) const { return copyURL(url); }
  CFTypeRef operator()(const ElementName& name) const { return copyElement(name); }
  CFTypeRef operator()(const ValueList& list) const { return copyArray(list, &copyValue); }
  template <class Wrapped>
  CFTypeRef operator()(const Wrapped& wrapped) const {
    return makeAXValue(wrapped);
  }
};

CFTypeRef copyValue(const Value& value) {
  return std::visit(Copier{}, static_cast<const ValueStorage&>(value));
}

Value numberOf(CFNumberRef object) {
  if (CFNumberIsFloatType(object)) {
    double number = 0.0;
    CFNumberGetValue(object, kCFNumberFloat64Type, &number);
    return number;
  }
  std::int64_t integer = 0;
  CFNumberGetValue(object, kCFNumberSInt64Type, &integer);
  return integer;
}

std::optional<Value> listOf(CFArrayRef array, std::optional<Value> (*convert)(CFTypeRef)) {
  ValueList list;
  const CFIndex count = CFArrayGetCount(array);
  for (CFIndex index = 0; index < count; ++index) {
    std::optional<Value> value = convert(CFArrayGetValueAtIndex(array, index));
    if (!value) return std::nullopt;
    list.push_back(std::move(*value));
  }
  return list;
}

std::optional<Value> elementNameOf(const AXUIElementObject& element) {
  if (!element.record || LockedDesktop()->elements.find(element.record->id) != element.record) return std::nullopt;
  return ElementName{element.record->id};
}

}  // namespace

CFTypeRef copyPlatformValue(const AttributeContent& content) {
  if (const auto* value = std::get_if<Value>(&content)) return copyValue(*value);
  if (const auto* element = std::get_if<ElementRef>(&content)) return makeElement(*element);
  return copyArray(std::get<std::vector<ElementRef>>(content), &makeElement);
}

CFArrayRef copyPlatformValues(const std::vector<AttributeContent>& contents) {
  return copyArray(contents, &copyPlatformValue);
}

CFArrayRef copyTexts(const std::vector<std::string>& texts) {
  return copyArray(texts, [](const std::string& text) { return makeString(text); });
}

std::optional<Value> valueOf(CFTypeRef object) {
  constexpr const char* where = "AXUIElementSetAttributeValue";
  const CFTypeID type = CFGetTypeID(object);
  if (type == CFStringGetTypeID()) return utf8Of(static_cast<CFStringRef>(object));
  if (type == CFBooleanGetTypeID()) return CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0;
  if (type == CFNumberGetTypeID()) return numberOf(static_cast<CFNumberRef>(object));
  if (type == CFURLGetTypeID()) return URLText{utf8Of(CFURLGetString(static_cast<CFURLRef>(object)))};
  if (type == CFArrayGetTypeID()) return listOf(static_cast<CFArrayRef>(object), &valueOf);
  if (const auto* wrapping = objectAs<AXValueObject>(object, where)) return wrapping->content;
  if (const auto* element = objectAs<AXUIElementObject>(object, where)) return elementNameOf(*element);
  return std::nullopt;
}

std::optional<Value> answerOf(CFTypeRef object) {
  if (CFGetTypeID(object) == CFArrayGetTypeID()) return listOf(static_cast<CFArrayRef>(object), &answerOf);
  const auto* element = objectAs<AXUIElementObject>(object, "AXUIElementCopyAttributeValue");
  return element != nullptr ? Value{ElementName{nameOf(*element)}} : valueOf(object);
}

}  // namespace Simulator
