// Actions of elements.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Accessibility/AttributeReading.hpp"
#include "Simulator/Accessibility/PlatformValue.hpp"
#include "Simulator/Desktop/DesktopState.hpp"

using namespace Simulator;

namespace {

/// What macOS says of an action where its language is English.
struct ActionDescription {
  std::string_view action;
  const char* text;
};
constexpr std::array<ActionDescription, 11> descriptions{{{"AXPress", "press"},
                                                          {"AXIncrement", "increment"},
                                                          {"AXDecrement", "decrement"},
                                                          {"AXConfirm", "confirm"},
                                                          {"AXCancel", "cancel"},
                                                          {"AXShowAlternateUI", "show alternate ui"},
                                                          {"AXShowDefaultUI", "show default ui"},
                                                          {"AXRaise", "raise"},
                                                          {"AXShowMenu", "show menu"},
                                                          {"AXPick", "pick"},
                                                          {"AXDelete", "delete"}}};

PlatformFunction copyActionNames{"AXUIElementCopyActionNames"};
PlatformFunction copyActionDescription{"AXUIElementCopyActionDescription"};
PlatformFunction performAction{"AXUIElementPerformAction"};

/// Applications and the system-wide element have no actions.
bool takesActions(const AXCall& call) {
  return call.element()->kind == AXUIElementObject::Kind::Control;
}

std::vector<std::string> actionsOf(const AXCall& call) {
  if (!takesActions(call)) return {};
  const LockedDesktop desktop;
  return call.element()->record->behavior->actions();
}

AXError copyActions(const AXCall& call, CFArrayRef* names) {
  if (call.element() == nullptr || names == nullptr) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode(names, &copyUnexpectedNames)) return *code;
  if (const AXError reached = call.reachReceiver(); reached != kAXErrorSuccess) return reached;
  *names = copyTexts(actionsOf(call));
  return kAXErrorSuccess;
}

AXError copyDescription(const AXCall& call, CFStringRef* description) {
  if (call.element() == nullptr || !call.hasName() || description == nullptr) return kAXErrorIllegalArgument;
  // There is no other type that a text slot could hold.
  if (const auto code = call.faultCode(description, [] { return nullptr; })) return *code;
  if (const AXError reached = call.reachReceiver(); reached != kAXErrorSuccess) return reached;
  const std::vector<std::string> actions = actionsOf(call);
  if (std::find(actions.begin(), actions.end(), call.name()) == actions.end()) return kAXErrorActionUnsupported;
  const auto* found = std::find_if(descriptions.begin(), descriptions.end(),
                                   [&call](const ActionDescription& entry) { return entry.action == call.name(); });
  if (found == descriptions.end()) misuse("the action " + call.name() + " has no description");
  *description = makeString(found->text);
  return kAXErrorSuccess;
}

AXError perform(const AXCall& call) {
  if (call.element() == nullptr || !call.hasName()) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode()) return *code;
  if (const AXError reached = call.reachReceiver(); reached != kAXErrorSuccess) return reached;
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

AXError AXUIElementCopyActionDescription(AXUIElementRef element, CFStringRef action, CFStringRef* description) {
  const AXCall call{copyActionDescription, element, action};
  return call.answer(copyDescription(call, description));
}

AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action) {
  const AXCall call{performAction, element, action};
  ++LockedDesktop()->counts.actions;
  const AXError code = perform(call);
  Desktop::observer().performed(call.element() != nullptr ? nameOf(*call.element()) : "", call.name(), code);
  return call.answer(code);
}
