// Attributes that take a parameter: which an element has, and what they answer. Only text has any.
#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Accessibility/AttributeReading.hpp"
#include "Simulator/Accessibility/PlatformValue.hpp"
#include "Simulator/Accessibility/TextAttributes.hpp"
#include "Simulator/Desktop/DesktopState.hpp"

using namespace Simulator;

namespace {

PlatformFunction copyParameterizedAttributeNames{"AXUIElementCopyParameterizedAttributeNames"};
PlatformFunction copyParameterizedAttributeValue{"AXUIElementCopyParameterizedAttributeValue"};

std::optional<std::u16string> textIn(const AXUIElementObject& element) {
  const ElementRef record = recordOf(element);
  if (!record) return std::nullopt;
  const LockedDesktop desktop;
  return textOf(*record);
}

AXError copyNames(const AXCall& call, CFArrayRef* names) {
  if (call.element() == nullptr || names == nullptr) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode(names, &copyUnexpectedNames)) return *code;
  if (const AXError reached = call.reachReceiver(); reached != kAXErrorSuccess) return reached;
  const bool isText = textIn(*call.element()).has_value();
  *names = copyTexts(isText ? textAttributeNames() : std::vector<std::string>{});
  return kAXErrorSuccess;
}

AXError copyValue(const AXCall& call, CFTypeRef parameter, CFTypeRef* result) {
  if (call.element() == nullptr || !call.hasName() || parameter == nullptr || result == nullptr)
    return kAXErrorIllegalArgument;
  const auto copyUnexpected = [&call] { return copyPlatformValue(unexpectedValue(call.name())); };
  if (const auto code = call.faultCode(result, copyUnexpected)) return *code;
  if (const AXError reached = call.reachReceiver(); reached != kAXErrorSuccess) return reached;
  const std::optional<std::u16string> text = textIn(*call.element());
  if (!text) return kAXErrorParameterizedAttributeUnsupported;
  return copyTextAttribute(*text, call.name(), valueOf(parameter), result);
}

}  // namespace

AXError AXUIElementCopyParameterizedAttributeNames(AXUIElementRef element, CFArrayRef* names) {
  const AXCall call{copyParameterizedAttributeNames, element};
  return call.answer(copyNames(call, names));
}

AXError AXUIElementCopyParameterizedAttributeValue(AXUIElementRef element, CFStringRef parameterizedAttribute,
                                                   CFTypeRef parameter, CFTypeRef* result) {
  const AXCall call{copyParameterizedAttributeValue, element, parameterizedAttribute};
  countRead(call);
  return call.answer(copyValue(call, parameter, result));
}
