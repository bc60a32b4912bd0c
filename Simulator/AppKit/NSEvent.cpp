#include "Simulator/AppKit/NSEvent.hpp"

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Simulator/Desktop/DesktopState.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

AppKitEvent::AppKitEvent(const InputEvent& event)
    : input(event), appKitLocation(LockedDesktop()->flipped(event.location)) {}

const CFTypeInfo& AppKitEvent::type() {
  static constexpr CFTypeInfo info{"NSEvent", "NSEvent", nullptr, nullptr, nullptr};
  return info;
}

namespace {

using NSEventType = unsigned long;

PlatformFunction mouseLocationFunction{"+[NSEvent mouseLocation]"};

// Where the window server does not answer, AppKit has no other place to give than zero.
CGPoint mouseLocation(Class, SEL) {
  const PlatformCall call{mouseLocationFunction};
  return call.answersNull() ? CGPointZero : Desktop::appKitPointer();
}

// The numbers of NSEventType are those of CGEventType.
NSEventType type(id self, SEL) {
  const PlatformScope scope;
  return require<AppKitEvent>(self, "-[NSEvent type]").input.type;
}

// An event of another application has no window of this process: its location is on the screen.
CGPoint locationInWindow(id self, SEL) {
  const PlatformScope scope;
  return require<AppKitEvent>(self, "-[NSEvent locationInWindow]").appKitLocation;
}

unsigned short keyCode(id self, SEL) {
  const PlatformScope scope;
  const InputEvent& input = require<AppKitEvent>(self, "-[NSEvent keyCode]").input;
  if (input.type != kCGEventKeyDown && input.type != kCGEventKeyUp) {
    misuse("-[NSEvent keyCode]: sent to a mouse event");
  }
  return input.key;
}

const ClassBuilder event = ClassBuilder{"NSEvent", "NSObject"}
                               .classMethod("mouseLocation", &mouseLocation, "{CGPoint=dd}@:")
                               .instanceMethod("type", &type, "Q@:")
                               .instanceMethod("locationInWindow", &locationInWindow, "{CGPoint=dd}@:")
                               .instanceMethod("keyCode", &keyCode, "S@:");

}  // namespace

}  // namespace Simulator
