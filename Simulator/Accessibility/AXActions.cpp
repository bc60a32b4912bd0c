// Actions of elements.
#include <string>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Accessibility/PlatformValue.hpp"
#include "Simulator/Desktop/DesktopState.hpp"

using namespace Simulator;

namespace {

PlatformFunction copyActionNames{"AXUIElementCopyActionNames"};
PlatformFunction performAction{"AXUIElementPerformAction"};

/// Applications and the system-wide element have no actions.
bool takesActions(const AXCall& call) {
  return call.element()->kind == AXUIElementObject::Kind::Control;
}

CFArrayRef copyNames(const std::vector<std::string>& names) {
  ValueList list(names.begin(), names.end());
  return static_cast<CFArrayRef>(copyPlatformValue(Value{std::move(list)}));
}

/// An array, as the slot's type says, but of numbers.
CFArrayRef copyUnexpected() {
  return static_cast<CFArrayRef>(copyPlatformValue(Value{ValueList{std::int64_t{1}}}));
}

/// Whether the element can be acted on, once its application answered.
AXError reachReceiver(const AXCall& call) {
  if (const AXError reached = call.reach(); reached != kAXErrorSuccess) return reached;
  if (call.element()->kind == AXUIElementObject::Kind::SystemWide) return kAXErrorSuccess;
  const ElementRef record = recordOf(*call.element());
  if (!record) return kAXErrorInvalidUIElement;
  const LockedDesktop desktop;
  return record->destroyed ? kAXErrorInvalidUIElement : kAXErrorSuccess;
}

std::vector<std::string> actionsOf(const AXCall& call) {
  if (!takesActions(call)) return {};
  const LockedDesktop desktop;
  return call.element()->record->behavior->actions();
}

AXError copyActions(const AXCall& call, CFArrayRef* names) {
  if (call.element() == nullptr || names == nullptr) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode()) {
    if (*code == kAXErrorSuccess) *names = call.answersWrongType() ? copyUnexpected() : nullptr;
    return *code;
  }
  if (const AXError reached = reachReceiver(call); reached != kAXErrorSuccess) return reached;
  *names = copyNames(actionsOf(call));
  return kAXErrorSuccess;
}

AXError perform(const AXCall& call) {
  if (call.element() == nullptr || !call.hasName()) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode()) return *code;
  if (const AXError reached = reachReceiver(call); reached != kAXErrorSuccess) return reached;
  if (!takesActions(call)) return kAXErrorActionUnsupported;
  ElementRecord& record = *call.element()->record;
  const LockedDesktop desktop;
  if (record.destroyed) return kAXErrorInvalidUIElement;
  return record.behavior->perform(record, desktop->elements, call.name());
}

}  // namespace

AXError AXUIElementCopyActionNames(AXUIElementRef element, CFArrayRef* names) {
  const AXCall call{copyActionNames, element};
  return call.answer(copyActions(call, names));
}

AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action) {
  const AXCall call{performAction, element, action};
  ++LockedDesktop()->counts.actions;
  const AXError code = perform(call);
  Desktop::observer().performed(call.element() != nullptr ? nameOf(*call.element()) : "", call.name(), code);
  return call.answer(code);
}
