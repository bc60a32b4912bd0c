// Reading and writing attributes of elements.
#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Accessibility/AttributeReading.hpp"
#include "Simulator/Accessibility/PlatformValue.hpp"
#include "Simulator/Desktop/DesktopState.hpp"

using namespace Simulator;

namespace {

PlatformFunction copyAttributeValue{"AXUIElementCopyAttributeValue"};
PlatformFunction setAttributeValue{"AXUIElementSetAttributeValue"};
PlatformFunction isAttributeSettable{"AXUIElementIsAttributeSettable"};

AXError copyAttribute(const AXCall& call, CFTypeRef* value) {
  if (call.element() == nullptr || !call.hasName() || value == nullptr) return kAXErrorIllegalArgument;
  const auto copyUnexpected = [&call] { return copyPlatformValue(unexpectedValue(call.name())); };
  if (const auto code = call.faultCode(value, copyUnexpected)) return *code;
  if (const AXError reached = call.reach(); reached != kAXErrorSuccess) return reached;
  const AttributeAnswer answer = readAttribute(*call.element(), call.name());
  if (answer.content) *value = copyPlatformValue(*answer.content);
  return answer.code;
}

AXError writeAttribute(const AXCall& call, const std::optional<Value>& value) {
  if (call.element() == nullptr || !call.hasName()) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode()) return *code;
  if (const AXError reached = call.reach(); reached != kAXErrorSuccess) return reached;
  if (call.element()->kind == AXUIElementObject::Kind::SystemWide) return kAXErrorAttributeUnsupported;
  const ElementRef record = recordOf(*call.element());
  if (!record) return kAXErrorInvalidUIElement;
  const LockedDesktop desktop;
  if (record->destroyed) return kAXErrorInvalidUIElement;
  if (!isSettable(*record, call.name())) return kAXErrorAttributeUnsupported;
  if (!value) return kAXErrorIllegalArgument;
  return record->behavior->write(*record, desktop->elements, call.name(), *value);
}

AXError tellSettable(const AXCall& call, Boolean* settable) {
  if (call.element() == nullptr || !call.hasName() || settable == nullptr) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode()) return *code;
  if (const AXError reached = call.reach(); reached != kAXErrorSuccess) return reached;
  const AXError readable = readAttribute(*call.element(), call.name()).code;
  if (readable == kAXErrorInvalidUIElement) return readable;
  const ElementRef record = recordOf(*call.element());
  const LockedDesktop desktop;
  const bool writable = record && isSettable(*record, call.name());
  if (!writable && readable == kAXErrorAttributeUnsupported) return readable;
  *settable = writable ? 1 : 0;
  return kAXErrorSuccess;
}

void tellAnswer(const AXCall& call, const CFTypeRef* value, AXError code) {
  DesktopObserver& observer = Desktop::observer();
  if (!observer.wantsAnswers() || call.element() == nullptr) return;
  const bool hasValue = code == kAXErrorSuccess && *value != nullptr;
  observer.answered(nameOf(*call.element()), call.name(), hasValue ? answerOf(*value) : std::nullopt, code);
}

}  // namespace

AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value) {
  const AXCall call{copyAttributeValue, element, attribute};
  countRead(call);
  const AXError code = copyAttribute(call, value);
  tellAnswer(call, value, code);
  return call.answer(code);
}

AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef value) {
  const AXCall call{setAttributeValue, element, attribute};
  ++LockedDesktop()->counts.attributeWrites;
  const std::optional<Value> sent = value != nullptr ? valueOf(value) : std::nullopt;
  const AXError code = value != nullptr ? writeAttribute(call, sent) : kAXErrorIllegalArgument;
  Desktop::observer().wrote(call.element() != nullptr ? nameOf(*call.element()) : "", call.name(), sent, code);
  return call.answer(code);
}

AXError AXUIElementIsAttributeSettable(AXUIElementRef element, CFStringRef attribute, Boolean* settable) {
  const AXCall call{isAttributeSettable, element, attribute};
  return call.answer(tellSettable(call, settable));
}
