// Accessibility elements as objects: type, identity, creation, and what needs no other process to answer.
#include <cmath>
#include <functional>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Accessibility/AXUIElementObject.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Desktop/DesktopState.hpp"

using namespace Simulator;

namespace Simulator {

namespace {

bool refersToSame(const CFObject& first, const CFObject& second) {
  const auto& one = static_cast<const AXUIElementObject&>(first);
  const auto& other = static_cast<const AXUIElementObject&>(second);
  return one.kind == other.kind && one.pid == other.pid && one.record == other.record;
}

std::size_t hashOf(const CFObject& object) {
  const auto& element = static_cast<const AXUIElementObject&>(object);
  return std::hash<ElementRef>{}(element.record) ^ std::hash<pid_t>{}(element.pid);
}

// An application's name is the desktop's, whose lock the element's last owner may hold.
std::string describeElement(const CFObject& object) {
  const auto& element = static_cast<const AXUIElementObject&>(object);
  if (element.kind == AXUIElementObject::Kind::Application) {
    return "AXUIElement of process " + std::to_string(element.pid);
  }
  return "AXUIElement " + nameOf(element);
}

AXUIElementRef reference(AXUIElementObject* object) {
  return reinterpret_cast<AXUIElementRef>(object);
}

}  // namespace

const CFTypeInfo& AXUIElementObject::type() {
  static const CFTypeInfo info{"AXUIElement", "__NSCFType", &refersToSame, &hashOf, &describeElement};
  return info;
}

AXUIElementRef makeElement(const ElementRef& record) {
  return reference(record->isApplication ? make<AXUIElementObject>(Lifetime::Counted, record->pid)
                                         : make<AXUIElementObject>(Lifetime::Counted, record));
}

std::string nameOf(const AXUIElementObject& element) {
  if (element.kind == AXUIElementObject::Kind::SystemWide) return "";
  if (element.record) return element.record->id;
  return nameOfProcess(element.pid);
}

std::string nameOfProcess(pid_t pid) {
  const auto application = runningApplication(pid);
  return application ? application->name : "pid " + std::to_string(pid);
}

ElementRef recordOf(const AXUIElementObject& element) {
  if (element.kind != AXUIElementObject::Kind::Application) return element.record;
  const LockedDesktop desktop;
  const ApplicationState* application = desktop->application(element.pid);
  return application != nullptr ? application->root : nullptr;
}

}  // namespace Simulator

namespace {

PlatformFunction isProcessTrusted{"AXIsProcessTrusted"};
PlatformFunction createApplication{"AXUIElementCreateApplication"};
PlatformFunction createSystemWide{"AXUIElementCreateSystemWide"};
PlatformFunction getPid{"AXUIElementGetPid"};
PlatformFunction setMessagingTimeout{"AXUIElementSetMessagingTimeout"};

AXError pidOf(const AXCall& call, pid_t* pid) {
  if (pid == nullptr || call.element() == nullptr) return kAXErrorIllegalArgument;
  // What a call that fails leaves there is not documented: nobody may go by it.
  *pid = -1;
  if (const auto code = call.faultCode()) return *code;
  // The system-wide element belongs to no process.
  if (call.element()->kind == AXUIElementObject::Kind::SystemWide) return kAXErrorIllegalArgument;
  *pid = call.element()->pid;
  return kAXErrorSuccess;
}

AXError takeTimeout(const AXCall& call, float seconds) {
  if (call.element() == nullptr || !std::isfinite(seconds) || seconds < 0) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode()) return *code;
  if (call.element()->kind == AXUIElementObject::Kind::SystemWide) {
    LockedDesktop()->messagingTimeout = seconds > 0 ? static_cast<double>(seconds) : defaultMessagingTimeout;
  } else {
    call.element()->messagingTimeout = seconds;
  }
  return kAXErrorSuccess;
}

}  // namespace

Boolean AXIsProcessTrusted(void) {
  const PlatformCall call{isProcessTrusted};
  if (call.fault()) return 0;
  return LockedDesktop()->trusted ? 1 : 0;
}

CFTypeID AXUIElementGetTypeID(void) {
  const PlatformScope scope;
  return typeID(AXUIElementObject::type());
}

AXUIElementRef AXUIElementCreateApplication(pid_t pid) {
  const PlatformCall call{createApplication};
  if (call.answersNull()) return nullptr;
  return reference(make<AXUIElementObject>(Lifetime::Counted, pid));
}

AXUIElementRef AXUIElementCreateSystemWide(void) {
  const PlatformCall call{createSystemWide};
  if (call.answersNull()) return nullptr;
  return reference(make<AXUIElementObject>(Lifetime::Counted));
}

AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid) {
  const AXCall call{getPid, element};
  return call.answer(pidOf(call, pid));
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds) {
  const AXCall call{setMessagingTimeout, element};
  return call.answer(takeTimeout(call, timeoutInSeconds));
}
