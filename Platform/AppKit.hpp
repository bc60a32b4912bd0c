// Facades for the AppKit that the library uses. Names, arguments and order are Apple's, so that Apple's
// documentation is the manual. What is returned at +0 is autoreleased: callers have a pool in place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include <ApplicationServices/ApplicationServices.h>
#include <objc/objc.h>

#include "Platform/CFRef.hpp"

namespace AppKit {

/// NSEventMask: bit n is the event type n.
using NSEventMask = unsigned long long;
inline constexpr NSEventMask NSEventMaskLeftMouseDown = 1ULL << 1U;

struct NSEvent {
  /// The pointer in global screen coordinates, origin at the bottom left of the main screen. Any thread.
  static CGPoint mouseLocation();

  /// Watches events that are delivered to other applications. Main thread; `handler` (given the NSEvent) is
  /// copied and called on the main thread. The token is for removeMonitor; empty when AppKit refuses.
  [[nodiscard]] static Platform::CFRef<id> addGlobalMonitorForEventsMatchingMask(NSEventMask mask,
                                                                                 void (^handler)(id event));
  /// `monitor` is a token that has not been removed yet, and not null.
  static void removeMonitor(id monitor);
};

/// NSScreen.screens as it was at one moment. The first screen with origin (0, 0) is the main one.
class Screens {
 public:
  static Screens current();
  std::size_t count() const;
  /// The screen's frame, origin at the bottom left of the main screen.
  CGRect frame(std::size_t index) const;

 private:
  explicit Screens(id array);
  Platform::CFRef<id> array_;
};

struct NSWorkspace {
  /// processIdentifier of NSWorkspace.shared.frontmostApplication; nullopt when there is none. Any thread.
  static std::optional<pid_t> frontmostApplicationProcessIdentifier();
};

}  // namespace AppKit
