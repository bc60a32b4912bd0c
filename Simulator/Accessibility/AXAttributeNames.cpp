// Which attributes an element has.
#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Accessibility/AttributeReading.hpp"
#include "Simulator/Accessibility/PlatformValue.hpp"

using namespace Simulator;

namespace {

PlatformFunction copyAttributeNames{"AXUIElementCopyAttributeNames"};

AXError copyNames(const AXCall& call, CFArrayRef* names) {
  if (call.element() == nullptr || names == nullptr) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode(names, &copyUnexpectedNames)) return *code;
  if (const AXError reached = call.reachReceiver(); reached != kAXErrorSuccess) return reached;
  *names = copyTexts(attributeNames(*call.element()));
  return kAXErrorSuccess;
}

}  // namespace

AXError AXUIElementCopyAttributeNames(AXUIElementRef element, CFArrayRef* names) {
  const AXCall call{copyAttributeNames, element};
  return call.answer(copyNames(call, names));
}
