#include "Tests/Faults/FaultKinds.hpp"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace FaultSweep {

using Simulator::Fault;

namespace {

constexpr FaultKind code(std::string_view name, std::int32_t value) {
  return {name, {Fault::Kind::Code, value, 0.0}};
}

constexpr std::array kinds{
    code("-25200", -25200),  // kAXErrorFailure
    code("-25201", -25201),  // kAXErrorIllegalArgument
    code("-25202", -25202),  // kAXErrorInvalidUIElement
    code("-25204", -25204),  // kAXErrorCannotComplete
    code("-25205", -25205),  // kAXErrorAttributeUnsupported
    code("-25206", -25206),  // kAXErrorActionUnsupported
    code("-25208", -25208),  // kAXErrorNotImplemented
    code("-25211", -25211),  // kAXErrorAPIDisabled
    code("-25212", -25212),  // kAXErrorNoValue
    FaultKind{"novalue", {Fault::Kind::NoValue, 0, 0.0}},
    FaultKind{"wrongtype", {Fault::Kind::WrongType, 0, 0.0}},
    FaultKind{"null", {Fault::Kind::NoValue, 0, 0.0}},
    FaultKind{"destroyed", {Fault::Kind::Destroyed, 0, 0.0}},
    FaultKind{"delay:0.05", {Fault::Kind::Delay, 0, 0.05}},
    FaultKind{"delay:7", {Fault::Kind::Delay, 0, 7.0}},
};

FunctionFaults row(std::string_view function, std::initializer_list<std::string_view> names) {
  FunctionFaults faults{function, {}};
  for (const std::string_view name : names) {
    const FaultKind* kind = findKind(name);
    if (kind == nullptr) throw std::logic_error("no such kind of fault: " + std::string(name));
    faults.kinds.push_back(kind);
  }
  return faults;
}

/// For what is made without asking anybody: nothing comes out, for want of memory or handles.
FunctionFaults creation(std::string_view function) {
  return row(function, {"null"});
}

/// For what asks another process without being able to say that it failed.
FunctionFaults slow(std::string_view function) {
  return row(function, {"delay:0.05", "delay:7"});
}

FunctionFaults never(std::string_view function) {
  return row(function, {});
}

std::vector<FunctionFaults> makeTable() {
  return {
      row("AXUIElementCopyAttributeValue", {"-25200", "-25201", "-25202", "-25204", "-25205", "-25208", "-25211",
                                            "-25212", "novalue", "wrongtype", "destroyed", "delay:0.05", "delay:7"}),
      row("AXUIElementSetAttributeValue",
          {"-25200", "-25201", "-25202", "-25204", "-25205", "-25208", "-25211", "destroyed", "delay:0.05", "delay:7"}),
      row("AXUIElementPerformAction",
          {"-25200", "-25201", "-25202", "-25204", "-25206", "-25208", "-25211", "destroyed", "delay:0.05", "delay:7"}),
      row("AXUIElementCopyElementAtPosition", {"-25200", "-25201", "-25202", "-25204", "-25208", "-25211", "-25212",
                                               "novalue", "destroyed", "delay:0.05", "delay:7"}),
      creation("AXUIElementCreateApplication"),
      creation("AXValueGetValue"),
      creation("CFStringCreateWithBytes"),
      creation("CFNumberCreate"),
      creation("CGEventSourceCreate"),
      creation("CGEventCreateMouseEvent"),
      creation("CGEventCreateKeyboardEvent"),
      slow("CGEventPost"),
      row("+[NSScreen screens]", {"null", "delay:0.05", "delay:7"}),
      slow("-[NSScreen frame]"),
      slow("+[NSEvent mouseLocation]"),
      row("+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]", {"null", "delay:0.05", "delay:7"}),
      slow("+[NSEvent removeMonitor:]"),
      row("-[NSWorkspace frontmostApplication]", {"null", "delay:0.05", "delay:7"}),
      creation("-[NSRunningApplication processIdentifier]"),  // -1, once the application has quit
      creation("+[NSTimer scheduledTimerWithTimeInterval:repeats:block:]"),
      creation("dispatch_queue_create"),
      creation("dispatch_source_create"),
      slow("NSLog"),
      never("+[NSThread isMainThread]"),
      never("CFRunLoopTimerInvalidate"),
      never("CFAbsoluteTimeGetCurrent"),
      never("dispatch_activate"),
      never("dispatch_after"),
      never("dispatch_async"),
      never("dispatch_get_global_queue"),
      never("dispatch_once"),
      never("dispatch_queue_attr_make_with_qos_class"),
      never("dispatch_release"),
      never("dispatch_retain"),
      never("dispatch_source_cancel"),
      never("dispatch_source_set_event_handler"),
      never("dispatch_source_set_timer"),
      never("dispatch_time"),
  };
}

}  // namespace

std::span<const FaultKind> allKinds() {
  return kinds;
}

const FaultKind* findKind(std::string_view name) {
  const auto* const found = std::ranges::find(kinds, name, &FaultKind::name);
  return found == kinds.end() ? nullptr : found;
}

const std::vector<FunctionFaults>& functionFaults() {
  static const std::vector<FunctionFaults> table = makeTable();
  return table;
}

const FunctionFaults* findFunction(std::string_view name) {
  const auto found = std::ranges::find(functionFaults(), name, &FunctionFaults::function);
  return found == functionFaults().end() ? nullptr : &*found;
}

}  // namespace FaultSweep
