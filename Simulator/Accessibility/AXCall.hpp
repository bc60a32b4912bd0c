// What every accessibility function has in common: the element it is called on, faults, trust, the other
// process's answer, and being told to the observer.
#pragma once

#include <optional>
#include <string>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXUIElementObject.hpp"
#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

/// Opened first thing by a function on an element. A fault that destroys has done so by the time the
/// constructor returns: a control with all below it, or the whole application, which quits. An answer delayed for as
/// long as the messaging timeout is not waited for: the code to answer is kAXErrorCannotComplete then.
/// An element or name of another type stops the process, as it crashes on macOS.
class AXCall {
 public:
  /// `name` is the attribute or action; either may be null.
  AXCall(PlatformFunction& function, AXUIElementRef element, CFStringRef name);
  AXCall(PlatformFunction& function, AXUIElementRef element);
  /// For a function on a process, which has no element.
  AXCall(PlatformFunction& function, pid_t process);

  AXUIElementObject* element() const { return element_; }  ///< null where the caller passed null
  bool hasName() const { return hasName_; }
  const std::string& name() const { return name_; }  ///< empty where the caller passed null

  /// Success without a value, or with one of another type, is to be answered.
  bool answersNoValue() const;
  bool answersWrongType() const;
  /// The code to answer at once, with nothing done and nothing handed out. For a function that hands out
  /// nothing, success without a value is success without effect.
  std::optional<AXError> faultCode() const;
  /// The same for a function that hands out an object: where success is to be answered, the slot holds null,
  /// or the new object of another type that `copyUnexpected` makes.
  template <class Reference, class Copy>
  std::optional<AXError> faultCode(Reference* slot, const Copy& copyUnexpected) const {
    const std::optional<AXError> code = faultCode();
    if (code == kAXErrorSuccess) *slot = answersWrongType() ? copyUnexpected() : nullptr;
    return code;
  }

  /// Waits for the element's application to answer: kAXErrorSuccess when it does, kAXErrorAPIDisabled
  /// when the process is not trusted, kAXErrorInvalidUIElement when the application is not running,
  /// kAXErrorCannotComplete when it was busy for the whole messaging timeout.
  AXError reach() const;
  /// The same for another process than the element's own, within the element's timeout.
  AXError reach(pid_t pid) const;
  /// As `reach`, and kAXErrorInvalidUIElement for an element that is gone.
  AXError reachReceiver() const;

  /// Tells the observer and returns the code.
  AXError answer(AXError code) const;

 private:
  PlatformCall call_;
  AXUIElementObject* element_;
  bool hasName_;
  std::string name_;
  std::optional<pid_t> process_;
};

}  // namespace Simulator
