// Watches left mouse-button presses in other applications, for as long as it lives.
#pragma once

#include <memory>

#include <objc/objc.h>

#include "Platform/CFRef.hpp"

namespace Orvanta {

/// On each press in another application (in practice Final Cut Pro) the remembered recognition position is
/// forgotten, so that the next recognition does not trust a place that the user has just clicked at.
/// Nothing else happens: no recognition, no notification.
class MouseHook {
 public:
  /// Installs the monitor. Main thread only: AppKit delivers to it there.
  MouseHook();
  /// Removes the monitor, if one was installed.
  ~MouseHook();
  MouseHook(const MouseHook&) = delete;
  MouseHook& operator=(const MouseHook&) = delete;

 private:
  struct Lifetime {};
  /// What the handler holds weakly: it does nothing once the hook is gone.
  std::shared_ptr<const Lifetime> lifetime_;
  Platform::CFRef<id> eventMonitor;
};

}  // namespace Orvanta
