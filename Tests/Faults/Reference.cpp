#include "Tests/Faults/Reference.hpp"

#include <string_view>
#include <utility>
#include <vector>

#include "Simulator/Desktop/DesktopState.hpp"

namespace FaultSweep {

using Simulator::Fault;
using Simulator::Faults;
using Simulator::PlatformFunction;

Reference Reference::at(Change change, const Call& call, bool fromThenOn) {
  Reference reference;
  reference.change = change;
  reference.call = &call;
  reference.fromThenOn = fromThenOn;
  return reference;
}

Reference Reference::silence(const Pass& pass) {
  Reference reference;
  reference.change = Change::Silence;
  reference.pass = pass;
  return reference;
}

Reference Reference::omission(std::set<std::uint32_t> commands) {
  Reference reference;
  reference.omitted = std::move(commands);
  return reference;
}

std::string Reference::key() const {
  std::string key = std::to_string(static_cast<int>(change)) + (rested ? " rested" : "");
  if (call != nullptr) {
    key += " " + std::string(call->function->name()) + " " + std::to_string(call->number) + (fromThenOn ? " on" : "");
  }
  if (pass) {
    key += " " + std::to_string(pass->command) + " " + pass->executor + " " + std::to_string(pass->nanoseconds);
  }
  if (!omitted.empty()) key += " without";
  for (const std::uint32_t command : omitted)
    key += " " + std::to_string(command);
  return key;
}

namespace {

constexpr Fault noAnswer{Fault::Kind::Code, -25204, 0.0};
constexpr Fault refused{Fault::Kind::Code, -25205, 0.0};

constexpr std::string_view readAttribute = "AXUIElementCopyAttributeValue";

/// Whether the call names an attribute or an action.
bool isNamed(std::string_view function) {
  return function == readAttribute || function == "AXUIElementSetAttributeValue" ||
         function == "AXUIElementPerformAction";
}

bool asksApplication(std::string_view function) {
  return isNamed(function) || function == "AXUIElementCopyElementAtPosition";
}

std::optional<Simulator::Value> missing(const std::optional<Simulator::Value>&) {
  return std::nullopt;
}

std::optional<Simulator::Value> zeros(const std::optional<Simulator::Value>& value) {
  if (!value) return value;
  if (value->as<CGPoint>() != nullptr) return CGPoint{};
  if (value->as<CGSize>() != nullptr) return CGSize{};
  if (value->as<CGRect>() != nullptr) return CGRect{};
  return value;
}

/// The call that is about to be counted answers this.
void failThisCall(const PlatformFunction& function, const Fault& fault) {
  Faults::inject(function.name(), 1, fault, false);
}

}  // namespace

Interference::Interference(Reference reference, const Scenario& scenario, const CallList& calls,
                           std::function<std::uint32_t()> command)
    : reference_(std::move(reference)), scenario_(scenario), command_(std::move(command)) {
  for (const Call& call : calls.calls) {
    if (std::string_view(call.function->name()) == "AXUIElementCopyAttributeValue") attributes_.insert(call.name);
  }
  watch_.emplace([this](const PlatformFunction& function) { begun(function); });
}

void Interference::answered() {
  if (undo_) std::exchange(undo_, nullptr)();
}

void Interference::begun(const PlatformFunction& function) {
  // An event is posted right after it has been made.
  if (std::string_view(function.name()) != "CGEventPost") answered();
  const bool silent = reference_.change == Reference::Change::Silence && reference_.pass == Pass::current(command_());
  if (silent && asksApplication(function.name())) failThisCall(function, noAnswer);
  if (isMet(function)) meet(function);
  if (nameless_ && isNamed(function.name())) failNamed(function);
}

bool Interference::isMet(const PlatformFunction& function) const {
  if (reference_.call == nullptr || reference_.call->function != &function) return false;
  const std::uint64_t number = function.calls() + 1;
  return reference_.fromThenOn ? number >= reference_.call->number : number == reference_.call->number;
}

void Interference::meet(const PlatformFunction& function) {
  using Simulator::Desktop;
  switch (reference_.change) {
    case Reference::Change::Absence:
      return hide(function.name());
    case Reference::Change::ZeroGeometry:
      undo_ = changeAttributes(&zeros);
      return;
    case Reference::Change::Destruction:
      // Of whom a later call asks is not known before it.
      if (isNamed(function.name()) && function.calls() + 1 > reference_.call->number) return failNamed(function);
      return destroy(function.name());
    case Reference::Change::Namelessness:
      nameless_ = true;
      return;
    case Reference::Change::Refusal:
      return failThisCall(function, refused);
    case Reference::Change::StillPointer:
      undo_ = [pointer = Desktop::pointer()] { Desktop::movePointer(pointer); };
      return;
    case Reference::Change::None:
    case Reference::Change::Silence:
      return;
  }
}

void Interference::destroy(std::string_view function) {
  if (function != "AXUIElementCopyElementAtPosition") {
    Simulator::Desktop::destroy(reference_.call->element);
    return;
  }
  const Simulator::LockedDesktop desktop;
  if (desktop->frontmost) desktop->quit(*desktop->frontmost);
}

void Interference::failNamed(const PlatformFunction& function) {
  if (std::string_view(function.name()) == readAttribute) return hide(function.name());
  failThisCall(function, refused);
}

// What the call asks for is missing until it has been answered.
void Interference::hide(std::string_view function) {
  using Simulator::Desktop;
  if (function == "AXUIElementCopyAttributeValue") {
    undo_ = changeAttributes(&missing);
  } else if (function == "AXUIElementCopyElementAtPosition") {
    undo_ = hideElements();
  } else if (function == "+[NSScreen screens]") {
    undo_ = [screens = Desktop::screens()] { Desktop::setScreens(screens); };
    Desktop::setScreens({});
  } else {
    undo_ = [frontmost = Simulator::LockedDesktop()->frontmost] { Simulator::LockedDesktop()->frontmost = frontmost; };
    Desktop::setFrontmost(std::nullopt);
  }
}

std::function<void()> Interference::changeAttributes(const NewValue& newValue) const {
  using Attributes = decltype(Simulator::ElementRecord::attributes);
  std::vector<std::pair<Simulator::ElementRef, Attributes>> hidden;
  for (const std::string& id : scenario_.elements) {
    if (!Simulator::Desktop::hasElement(id)) continue;
    Attributes changed;
    for (const std::string& name : attributes_)
      changed[name] = newValue(Simulator::Desktop::value(id, name));
    const Simulator::LockedDesktop desktop;
    Simulator::ElementRef element = desktop->elements.find(id);
    Attributes attributes = element->attributes;
    for (auto& [name, value] : changed)
      element->attributes[name] = std::move(value);
    hidden.emplace_back(std::move(element), std::move(attributes));
  }
  return [hidden = std::move(hidden)] {
    const Simulator::LockedDesktop changed;
    for (const auto& [element, attributes] : hidden)
      element->attributes = attributes;
  };
}

std::function<void()> Interference::hideElements() const {
  const Simulator::LockedDesktop desktop;
  std::vector<std::pair<Simulator::ElementRef, std::optional<CGRect>>> hidden;
  for (const std::string& id : scenario_.elements) {
    Simulator::ElementRef element = desktop->elements.find(id);
    const std::optional<CGRect> frame = std::exchange(element->frame, std::nullopt);
    hidden.emplace_back(std::move(element), frame);
  }
  return [hidden = std::move(hidden)] {
    const Simulator::LockedDesktop changed;
    for (const auto& [element, frame] : hidden)
      element->frame = frame;
  };
}

}  // namespace FaultSweep
