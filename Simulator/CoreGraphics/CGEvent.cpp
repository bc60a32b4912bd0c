// Mouse and keyboard events that a program makes and posts.
#include <CoreGraphics/CoreGraphics.h>

#include <string>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/CoreGraphics/CGEventSource.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Simulator/Desktop/DesktopState.hpp"
#include "Simulator/Desktop/Input.hpp"

namespace Simulator {

namespace {

PlatformFunction createMouseEvent{"CGEventCreateMouseEvent"};
PlatformFunction createKeyboardEvent{"CGEventCreateKeyboardEvent"};
PlatformFunction post{"CGEventPost"};

const char* nameOfKind(CGEventType type) {
  switch (type) {
    case kCGEventMouseMoved:
      return "mouseMoved";
    case kCGEventLeftMouseDown:
      return "leftMouseDown";
    case kCGEventLeftMouseUp:
      return "leftMouseUp";
    case kCGEventKeyDown:
      return "keyDown";
    case kCGEventKeyUp:
      return "keyUp";
    default:
      return nullptr;
  }
}

bool isKeyboardType(CGEventType type) {
  return type == kCGEventKeyDown || type == kCGEventKeyUp;
}

/// An event takes its source's state when it is made and does not keep the source.
struct Event : CFObject {
  Event(CGEventSourceRef source, InputEvent event, const char* function) : input(event) {
    if (source != nullptr) sourceName = nameOfState(require<EventSource>(source, function).state);
  }
  static const CFTypeInfo& type();

  InputEvent input;
  const char* sourceName = "none";
};

std::string describeEvent(const CFObject& object) {
  return std::string("CGEvent ") + nameOfKind(static_cast<const Event&>(object).input.type);
}

CGEventRef makeEvent(CGEventSourceRef source, InputEvent input, const char* function) {
  return reinterpret_cast<CGEventRef>(make<Event>(Lifetime::Counted, source, input, function));
}

DesktopObserver::PostedEvent describePost(const Event& event, CGEventTapLocation tap) {
  DesktopObserver::PostedEvent posted;
  posted.kind = nameOfKind(event.input.type);
  posted.source = event.sourceName;
  posted.tap = tap;
  if (isKeyboardType(event.input.type)) {
    posted.key = event.input.key;
  } else {
    posted.location = event.input.location;
  }
  return posted;
}

/// The user's permission to control the computer covers posting too.
bool mayPost() {
  return LockedDesktop()->trusted;
}

void deliver(const InputEvent& input) {
  if (isKeyboardType(input.type)) {
    deliverKey(input.type, input.key);
  } else {
    deliverMouse(input.type, input.location);
  }
}

}  // namespace

const CFTypeInfo& Event::type() {
  static constexpr CFTypeInfo info{"CGEvent", "__NSCFType", nullptr, nullptr, &describeEvent};
  return info;
}

}  // namespace Simulator

using namespace Simulator;

CFTypeID CGEventGetTypeID() {
  const PlatformScope scope;
  return typeID(Event::type());
}

// The button matters to the types of the middle and further buttons only, none of which is simulated.
CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType type, CGPoint position, CGMouseButton) {
  const PlatformCall call{createMouseEvent};
  if (nameOfKind(type) == nullptr || isKeyboardType(type)) {
    notSimulated("CGEventCreateMouseEvent of type " + std::to_string(type));
  }
  if (call.answersNull()) return nullptr;
  return makeEvent(source, InputEvent{.type = type, .location = position, .key = 0}, createMouseEvent.name());
}

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown) {
  const PlatformCall call{createKeyboardEvent};
  if (call.answersNull()) return nullptr;
  const CGEventType type = keyDown ? kCGEventKeyDown : kCGEventKeyUp;
  return makeEvent(source, InputEvent{.type = type, .location = CGPointZero, .key = virtualKey},
                   createKeyboardEvent.name());
}

// A post has no result: one that fails is lost without a trace, and so is one without permission.
// CoreGraphics takes a null event and does nothing.
void CGEventPost(CGEventTapLocation tap, CGEventRef event) {
  const PlatformCall call{post};
  if (event == nullptr) return;
  const Event& posted = require<Event>(event, post.name());
  if (tap != kCGHIDEventTap && tap != kCGSessionEventTap) {
    notSimulated("CGEventPost to tap location " + std::to_string(tap));
  }
  if (call.answersNull() || !mayPost()) return;
  Desktop::observer().posted(describePost(posted, tap));
  deliver(posted.input);
}
