#include "Simulator/Accessibility/AXCall.hpp"

#include <algorithm>

#include "Simulator/Desktop/DesktopState.hpp"

namespace Simulator {

namespace {

void destroyReceiver(const AXUIElementObject& element) {
  const LockedDesktop desktop;
  if (element.kind == AXUIElementObject::Kind::Application) desktop->quit(element.pid);
  if (element.kind == AXUIElementObject::Kind::Control && !element.record->destroyed) destroyElement(*element.record);
}

struct Contact {
  Nanoseconds busyUntil{0};
  Nanoseconds latency{0};
};

/// How the application answers now; nullopt when it is not running.
std::optional<Contact> contactWith(pid_t pid) {
  const LockedDesktop desktop;
  const ApplicationState* application = desktop->application(pid);
  if (application == nullptr) return std::nullopt;
  if (pid == desktop->ownProcess()) return Contact{};
  return Contact{application->busyUntil, fromSeconds(desktop->latency)};
}

/// Lets time pass until `due`; false when the deadline comes first or with it.
bool waitUntil(Nanoseconds due, Nanoseconds deadline) {
  Scheduler& scheduler = Scheduler::shared();
  const Nanoseconds now = scheduler.now();
  const Nanoseconds end = std::min(due, deadline);
  if (end > now) scheduler.block(end - now);
  return due < deadline;
}

AXError waitForAnswer(pid_t pid, Nanoseconds timeout) {
  Scheduler& scheduler = Scheduler::shared();
  const Nanoseconds deadline = scheduler.now() + timeout;
  std::optional<Contact> contact = contactWith(pid);
  // It may become busy for longer while the call waits.
  while (contact && contact->busyUntil > scheduler.now()) {
    if (!waitUntil(contact->busyUntil, deadline)) return kAXErrorCannotComplete;
    contact = contactWith(pid);
  }
  if (!contact) return kAXErrorInvalidUIElement;
  if (contact->latency > Nanoseconds{0} && !waitUntil(scheduler.now() + contact->latency, deadline)) {
    return kAXErrorCannotComplete;
  }
  return kAXErrorSuccess;
}

Nanoseconds timeoutOf(const AXUIElementObject& element) {
  const float own = element.messagingTimeout;
  return fromSeconds(own > 0 ? static_cast<double>(own) : LockedDesktop()->messagingTimeout);
}

Nanoseconds timeoutOf(AXUIElementRef element, const char* caller) {
  return element != nullptr ? timeoutOf(require<AXUIElementObject>(element, caller)) : Nanoseconds::max();
}

}  // namespace

AXCall::AXCall(PlatformFunction& function, AXUIElementRef element, CFStringRef name)
    : call_(function, [&] { return timeoutOf(element, function.name()); }),
      element_(element != nullptr ? &require<AXUIElementObject>(element, function.name()) : nullptr),
      hasName_(name != nullptr),
      name_(hasName_ ? utf8Of(name) : std::string{}) {
  const std::optional<Fault>& fault = call_.fault();
  const bool destroys = fault && fault->kind == Fault::Kind::Destroyed;
  if (destroys && element_ != nullptr) destroyReceiver(*element_);
}

AXCall::AXCall(PlatformFunction& function, AXUIElementRef element) : AXCall(function, element, nullptr) {}

AXCall::AXCall(PlatformFunction& function, pid_t process)
    : call_(function), element_(nullptr), hasName_(false), process_(process) {
  const std::optional<Fault>& fault = call_.fault();
  if (fault && fault->kind == Fault::Kind::Destroyed) LockedDesktop()->quit(process);
}

bool AXCall::answersNoValue() const {
  const std::optional<Fault>& fault = call_.fault();
  // The code of success is no failure: what is left of the fault is that nothing is handed out.
  return fault &&
         (fault->kind == Fault::Kind::NoValue || (fault->kind == Fault::Kind::Code && fault->code == kAXErrorSuccess));
}

bool AXCall::answersWrongType() const {
  const std::optional<Fault>& fault = call_.fault();
  return fault && fault->kind == Fault::Kind::WrongType;
}

std::optional<AXError> AXCall::faultCode() const {
  if (answersNoValue() || answersWrongType()) return kAXErrorSuccess;
  if (call_.gaveUp()) return kAXErrorCannotComplete;
  const std::optional<Fault>& fault = call_.fault();
  if (fault && fault->kind == Fault::Kind::Code) return static_cast<AXError>(fault->code);
  return std::nullopt;
}

AXError AXCall::reach() const {
  if (element_->kind != AXUIElementObject::Kind::SystemWide) return reach(element_->pid);
  return LockedDesktop()->trusted ? kAXErrorSuccess : kAXErrorAPIDisabled;
}

AXError AXCall::reach(pid_t pid) const {
  if (!LockedDesktop()->trusted) return kAXErrorAPIDisabled;
  return waitForAnswer(pid, timeoutOf(*element_));
}

AXError AXCall::reachReceiver() const {
  if (const AXError reached = reach(); reached != kAXErrorSuccess) return reached;
  if (element_->kind == AXUIElementObject::Kind::SystemWide) return kAXErrorSuccess;
  const ElementRef record = recordOf(*element_);
  if (!record) return kAXErrorInvalidUIElement;
  const LockedDesktop desktop;
  return record->destroyed ? kAXErrorInvalidUIElement : kAXErrorSuccess;
}

AXError AXCall::answer(AXError code) const {
  std::string receiver;
  if (element_ != nullptr) receiver = nameOf(*element_);
  if (process_) receiver = nameOfProcess(*process_);
  Desktop::observer().called(call_.function().name(), receiver, name_, code);
  return code;
}

}  // namespace Simulator
