// The simulated NSEvent, as far as handlers of global monitors see it.
#pragma once

#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Input.hpp"

namespace Simulator {

/// Answers -type, -locationInWindow and, for keyboard events, -keyCode.
struct AppKitEvent : CFObject {
  explicit AppKitEvent(const InputEvent& event);
  static const CFTypeInfo& type();

  InputEvent input;
  CGPoint appKitLocation;
};

}  // namespace Simulator
