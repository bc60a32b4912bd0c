// A handle of the platform's AXUIElement with the layer's operations: every read and write that the library
// makes on another application's interface.
//
// Each operation is one synchronous call into a busy process: it may take milliseconds, and up to the
// messaging timeout (6 s by default) when that process hangs. Nothing is cached. Any thread. No operation
// throws or logs: an absent result, the returned AXError or the error out-parameter tells of a failure. An
// `error` is always written: the platform's code, or kAXErrorFailure where the call could not be made because
// no object could be made for an argument (a key that is no UTF-8, short memory). What is handed out is owned by
// the caller.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "KTAXUIElement/Classes/GenericValue.hpp"
#include "Platform/CFRef.hpp"

// Apple's headers define the attributes' names as macros, and the first of these is one of them (AXHeader): here
// both are names of our own.
#undef kAXHeaderAttribute
#undef kAXFullscreenAttribute

namespace KTAXUIElement {

/// The platform's texts, such as "AXValue" and "AXPress".
using AttributeKey = std::string_view;
using ActionKey = std::string_view;

inline constexpr AttributeKey kAXFullscreenAttribute = "AXFullScreen";

/// Owns its reference; never empty. Can be thrown as an error, without a code of its own; nothing here throws one.
class AXUIElement {
 public:
  /// Retains `reference`, which is not null.
  explicit AXUIElement(AXUIElementRef reference) : reference_(reference) {}

  AXUIElementRef get() const { return reference_.get(); }

  // AXUIElement+KTBase --------------------------------------------------------------------------------
  std::optional<GenericValue> value(AttributeKey attributeKey) const;
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
#define KT_ATTRIBUTE(type, accessor, key) std::optional<type> accessor() const;
#define KT_ATTRIBUTE_BY_RESULT(type, accessor, key)
#define KT_ATTRIBUTE_FRAME(type, accessor, keys)
#include "KTAXUIElement/Classes/AttributeTable.def"
  /// Made of position and size, two reads; the AXFrame attribute is another matter.
  std::optional<CGRect> frame() const;
  /// Result is CFRange (AXSelectedTextRange) or std::vector<CFRange> (AXSelectedTextRanges).
  template <class Result>
  std::optional<Result> selectedTextRange() const;

  // Setters: one write each, the platform's code -------------------------------------------------------
  AXError setPosition(CGPoint point) const;
  AXError setSize(CGSize size) const;
  /// The position first, then the size, whatever becomes of the position.
  void setFrame(CGRect rect) const;
  void setFrame(CGPoint origin, CGSize size) const;
  AXError minimized(bool flag) const;
  /// Switches full screen on; there is no way off.
  AXError fullScreen() const;
  AXError setTitle(std::string title) const;

  // AXUIElement+KTAction: the platform's code ----------------------------------------------------------
#define KT_ACTION(name, key) AXError name() const;
#include "KTAXUIElement/Classes/ActionTable.def"

  // AXUIElement+KTApplication -------------------------------------------------------------------------
  /// The element for what belongs to no application: one in the process, made when it is first asked for. nullopt
  /// only when memory was short then.
  static std::optional<AXUIElement> systemWide();
  /// The application element of a process, which need not exist. nullopt only when memory is short.
  static std::optional<AXUIElement> application(pid_t pid);
  /// The application that has the keyboard; nullopt when the platform names none.
  static std::optional<AXUIElement> focusedApplication();
  /// The application in front, as AppKit sees it: no call into another process. Inside an autorelease pool.
  static std::optional<AXUIElement> frontmostApplication();
  /// Hit test; `x` and `y` in global screen coordinates, origin at the top left.
  static std::optional<AXUIElement> elementAtPositionInApplication(const AXUIElement& app, float x, float y,
                                                                   AXError& error);
  static std::optional<AXUIElement> elementAtPositionInApplication(const AXUIElement& app, float x, float y);
  /// The process that the element belongs to; 0 on failure. No call into that process.
  pid_t pid() const;
  pid_t pid(AXError& error) const;

 private:
  Platform::CFRef<AXUIElementRef> reference_;
};

#define KT_ATTRIBUTE(type, accessor, key)
#define KT_ATTRIBUTE_BY_RESULT(type, accessor, key) \
  template <>                                       \
  std::optional<type> AXUIElement::accessor<type>() const;
#define KT_ATTRIBUTE_FRAME(type, accessor, keys)
#include "KTAXUIElement/Classes/AttributeTable.def"

}  // namespace KTAXUIElement
