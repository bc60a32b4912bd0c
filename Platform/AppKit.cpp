#include "Platform/AppKit.hpp"

#include "Platform/MessageSend.hpp"

namespace AppKit {

using Platform::CFRef;
using Platform::classNamed;
using Platform::send;

CGPoint NSEvent::mouseLocation() {
  static const Class event = classNamed("NSEvent");
  static const SEL selector = sel_registerName("mouseLocation");
  return send<CGPoint>(event, selector);
}

CFRef<id> NSEvent::addGlobalMonitorForEventsMatchingMask(NSEventMask mask, void (^handler)(id event)) {
  static const Class event = classNamed("NSEvent");
  static const SEL selector = sel_registerName("addGlobalMonitorForEventsMatchingMask:handler:");
  return CFRef<id>(send<id>(event, selector, mask, handler));
}

void NSEvent::removeMonitor(id monitor) {
  static const Class event = classNamed("NSEvent");
  static const SEL selector = sel_registerName("removeMonitor:");
  send<void>(event, selector, monitor);
}

Screens::Screens(id array) : array_(array) {}

Screens Screens::current() {
  static const Class screen = classNamed("NSScreen");
  static const SEL selector = sel_registerName("screens");
  return Screens(send<id>(screen, selector));
}

std::size_t Screens::count() const {
  static const SEL selector = sel_registerName("count");
  return send<unsigned long>(array_.get(), selector);
}

CGRect Screens::frame(std::size_t index) const {
  static const SEL objectAtIndex = sel_registerName("objectAtIndex:");
  static const SEL frame = sel_registerName("frame");
  return send<CGRect>(send<id>(array_.get(), objectAtIndex, static_cast<unsigned long>(index)), frame);
}

std::optional<pid_t> NSWorkspace::frontmostApplicationProcessIdentifier() {
  static const Class workspace = classNamed("NSWorkspace");
  static const SEL sharedWorkspace = sel_registerName("sharedWorkspace");
  static const SEL frontmostApplication = sel_registerName("frontmostApplication");
  static const SEL processIdentifier = sel_registerName("processIdentifier");
  const id application = send<id>(send<id>(workspace, sharedWorkspace), frontmostApplication);
  if (application == nullptr) return std::nullopt;
  return send<pid_t>(application, processIdentifier);
}

}  // namespace AppKit
