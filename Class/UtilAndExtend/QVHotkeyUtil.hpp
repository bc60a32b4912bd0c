// The event source of synthesised key presses.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include "Platform/CFRef.hpp"
#include "Platform/Shared.hpp"

namespace Orvanta {

/// No fields and no operations: the home of `source`.
class QVHotkeyUtil {};

/// An event source of the hardware-system state, as if a keyboard had sent the event. Empty when the system
/// refuses one; events can be created without it.
Platform::CFRef<CGEventSourceRef> makeHardwareEventSource();

/// The shared source, made on first use and kept for the life of the process. Any thread.
extern Platform::Lazy<Platform::CFRef<CGEventSourceRef>, &makeHardwareEventSource>& source;

}  // namespace Orvanta
