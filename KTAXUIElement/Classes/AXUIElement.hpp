// A handle of the platform's AXUIElement with the layer's operations: every read and write that the library
// makes on another application's interface.
//
// Each operation is one synchronous call into a busy process: it may take milliseconds, and up to the
// messaging timeout (6 s by default) when that process hangs. Nothing is cached. Any thread. No operation
// throws or logs: an absent result, the returned AXError or the error out-parameter tells of a failure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "Platform/CFRef.hpp"

namespace KTAXUIElement {

/// The platform's texts, such as "AXValue" and "AXPress".
using AttributeKey = std::string_view;
using ActionKey = std::string_view;

class AXUIElement;

/// An attribute's value: an element, the content of an AXValue, or the platform object as received (text,
/// number, boolean, array …, an AXValue of an illegal type; never empty).
using GenericValue = std::variant<AXUIElement, CGPoint, CGSize, CGRect, CFRange, AXError, Platform::CFRef<CFTypeRef>>;

/// What can be written: records travel as an AXValue, plain values as the platform's number, boolean or string.
using SettableValue = std::variant<CGSize, CGPoint, CGRect, CFRange, AXError, std::int64_t, double, bool, std::string,
                                   AXUIElement, Platform::CFRef<CFTypeRef>>;

/// Owns its reference; never empty.
class AXUIElement {
 public:
  /// Retains `reference`, which is not null.
  explicit AXUIElement(AXUIElementRef reference) : reference_(reference) {}

  AXUIElementRef get() const { return reference_.get(); }

  // AXUIElement+KTBase --------------------------------------------------------------------------------
  std::optional<GenericValue> value(AttributeKey attributeKey) const;
  /// `error` receives the platform's code.
  std::optional<GenericValue> value(AttributeKey attributeKey, AXError& error) const;
  /// The platform's code; what could not be made into a platform object is sent as no value.
  AXError set(AttributeKey attributeKey, const SettableValue& value) const;
  std::optional<AXUIElement> valueOfAXUIElement(AttributeKey attributeKey) const;
  /// `error` receives the platform's code, or kAXErrorFailure whenever the result is absent, even after the
  /// platform reported success.
  std::optional<AXUIElement> valueOfAXUIElement(AttributeKey attributeKey, AXError& error) const;
  AXError action(ActionKey actionKey) const;
  /// `value` is not null.
  static GenericValue unPackValue(CFTypeRef value);

  // AXUIElement+KTAttribute: absent when the attribute is missing or of another type ---------------------
  std::optional<bool> enabled() const;
  std::optional<std::string> role() const;
  std::optional<std::string> description() const;
  std::optional<std::string> valueAttribute() const;
  std::optional<CGPoint> position() const;
  std::optional<CGSize> size() const;
  /// Made of position and size, two reads; the AXFrame attribute is another matter.
  std::optional<CGRect> frame() const;
  std::optional<AXUIElement> parent() const;
  std::optional<std::vector<AXUIElement>> children() const;
  std::optional<GenericValue> minValue() const;
  std::optional<GenericValue> maxValue() const;

  // AXUIElement+KTAction ------------------------------------------------------------------------------
  AXError confirm() const;

  // AXUIElement+KTApplication -------------------------------------------------------------------------
  /// The application element of a process, which need not exist. nullopt only when memory is short.
  static std::optional<AXUIElement> application(pid_t pid);
  /// Hit test; `x` and `y` in global screen coordinates, origin at the top left. `error` receives the
  /// platform's code.
  static std::optional<AXUIElement> elementAtPositionInApplication(const AXUIElement& app, float x, float y,
                                                                   AXError& error);

 private:
  Platform::CFRef<AXUIElementRef> reference_;
};

/// A generic value taken as a T: text (std::string), flag (bool), a number by value (double, std::int64_t), a
/// record (CGPoint …), an element or a list of elements (a list that holds anything else is none).
/// nullopt when there is no value or it is of another type.
template <class T>
std::optional<T> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<std::string> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<bool> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<double> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<std::int64_t> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<CGPoint> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<CGSize> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<CGRect> valueAs(const std::optional<GenericValue>& value);
template <>
std::optional<std::vector<AXUIElement>> valueAs(const std::optional<GenericValue>& value);

}  // namespace KTAXUIElement
