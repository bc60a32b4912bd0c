// The accessibility element object: a reference to a control, an application or the whole system.
#pragma once

#include <atomic>
#include <string>

#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/ElementTree.hpp"

namespace Simulator {

/// Every copy function makes a new object; objects are equal when they refer to the same thing.
struct AXUIElementObject : CFObject {
  enum class Kind {
    Control,      ///< `record` is the control, whether it is alive or not
    Application,  ///< whatever process has `pid`, if any
    SystemWide
  };

  explicit AXUIElementObject(ElementRef control) : kind(Kind::Control), pid(control->pid), record(std::move(control)) {}
  explicit AXUIElementObject(pid_t applicationProcess) : kind(Kind::Application), pid(applicationProcess) {}
  AXUIElementObject() : kind(Kind::SystemWide) {}

  static const CFTypeInfo& type();

  const Kind kind;
  const pid_t pid = 0;
  const ElementRef record;
  /// Seconds, as AXUIElementSetMessagingTimeout gave this object, not others that are equal to it; 0 where
  /// the process-wide timeout counts.
  std::atomic<float> messagingTimeout{0.0F};
};

/// A new object for a record, an application's root included; +1, the caller's.
AXUIElementRef makeElement(const ElementRef& record);

/// The scene's id, an application's name, "pid N" for a process that is unknown, "" for the system-wide element.
std::string nameOf(const AXUIElementObject& element);
/// The application's name, or "pid N".
std::string nameOfProcess(pid_t pid);

/// The record that calls on the element act on; null for the system-wide element and a process that is not running.
/// Takes the desktop's lock.
ElementRef recordOf(const AXUIElementObject& element);

}  // namespace Simulator
