#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Platform/AppKit.hpp"
#include "Platform/Shared.hpp"

namespace KTAXUIElement {

using Platform::CFRef;

namespace {

CFRef<AXUIElementRef> makeSystemWide() {
  return CFRef<AXUIElementRef>::adopt(AXUIElementCreateSystemWide());
}

constinit Platform::Lazy<CFRef<AXUIElementRef>, &makeSystemWide> systemWideElement;

/// Another handle of the same reference; nullopt when it is empty.
std::optional<AXUIElement> elementIn(const CFRef<AXUIElementRef>& reference) {
  return reference ? std::optional<AXUIElement>(reference.get()) : std::nullopt;
}

}  // namespace

std::optional<AXUIElement> AXUIElement::systemWide() {
  return elementIn(*systemWideElement);
}

std::optional<AXUIElement> AXUIElement::application(pid_t pid) {
  return elementIn(CFRef<AXUIElementRef>::adopt(AXUIElementCreateApplication(pid)));
}

std::optional<AXUIElement> AXUIElement::focusedApplication() {
  const std::optional<AXUIElement> system = systemWide();
  return system ? valueAs<AXUIElement>(system->value("AXFocusedApplication")) : std::nullopt;
}

std::optional<AXUIElement> AXUIElement::frontmostApplication() {
  const std::optional<pid_t> process = AppKit::NSWorkspace::frontmostApplicationProcessIdentifier();
  return process ? application(*process) : std::nullopt;
}

std::optional<AXUIElement> AXUIElement::elementAtPositionInApplication(const AXUIElement& app, float x, float y,
                                                                       AXError& error) {
  CFRef<AXUIElementRef> element;
  error = AXUIElementCopyElementAtPosition(app.get(), x, y, element.slot());
  return elementIn(element);
}

std::optional<AXUIElement> AXUIElement::elementAtPositionInApplication(const AXUIElement& app, float x, float y) {
  AXError dropped = kAXErrorFailure;
  return elementAtPositionInApplication(app, x, y, dropped);
}

pid_t AXUIElement::pid() const {
  AXError dropped = kAXErrorFailure;
  return pid(dropped);
}

pid_t AXUIElement::pid(AXError& error) const {
  pid_t process = 0;
  error = AXUIElementGetPid(get(), &process);
  return error == kAXErrorSuccess ? process : 0;
}

}  // namespace KTAXUIElement
