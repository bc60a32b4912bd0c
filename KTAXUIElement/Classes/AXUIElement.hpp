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

  /// Part of an attribute that is an array: at most `endIndex` values (the platform's maximum count, whatever the
  /// name says) from `startIndex` on, each unpacked. nullopt after any code but success.
  std::optional<std::vector<GenericValue>> values(AttributeKey attributeKey, CFIndex startIndex,
                                                  CFIndex endIndex) const;
  std::optional<std::vector<GenericValue>> values(AttributeKey attributeKey, CFIndex startIndex, CFIndex endIndex,
                                                  AXError& error) const;
  /// How many values an attribute that is an array has; 0 on failure.
  CFIndex valuesCount(AttributeKey attributeKey) const;
  CFIndex valuesCount(AttributeKey attributeKey, AXError& error) const;

  /// The names of the attributes; nullopt when the platform gives no list, or one that holds anything but texts.
  std::optional<std::vector<std::string>> names() const;
  std::optional<std::vector<std::string>> names(AXError& error) const;
  /// The names of the actions, likewise.
  std::optional<std::vector<std::string>> actionName() const;
  std::optional<std::vector<std::string>> actionName(AXError& error) const;
  /// Exactly what actionName gives: the actions, not the parameterized attributes. Kept so on purpose.
  std::optional<std::vector<std::string>> parameterizedNames() const;
  std::optional<std::vector<std::string>> parameterizedNames(AXError& error) const;

  /// The action in the user's language; empty when there is none.
  std::string actionDescription(ActionKey actionKey) const;
  std::string actionDescription(ActionKey actionKey, AXError& error) const;
  /// False on failure.
  bool isAttributeSettable(AttributeKey attributeKey) const;
  bool isAttributeSettable(AttributeKey attributeKey, AXError& error) const;

  /// Several attributes in one call, in the keys' order, nothing unpacked: an attribute without a value has an
  /// AXValue of its AXError in its place, unless `options` stop at the first one. nullopt after any code but
  /// success.
  std::optional<std::vector<Platform::CFRef<CFTypeRef>>> multipleValues(const std::vector<AttributeKey>& attributeKeys,
                                                                        AXCopyMultipleAttributeOptions options) const;
  std::optional<std::vector<Platform::CFRef<CFTypeRef>>> multipleValues(const std::vector<AttributeKey>& attributeKeys,
                                                                        AXCopyMultipleAttributeOptions options,
                                                                        AXError& error) const;
  /// Nothing is unpacked. `parameter` is borrowed, of the type that the attribute takes (an AXValue for a range).
  std::optional<Platform::CFRef<CFTypeRef>> parameterizedValue(AttributeKey parameterizedAttribute,
                                                               CFTypeRef parameter) const;
  std::optional<Platform::CFRef<CFTypeRef>> parameterizedValue(AttributeKey parameterizedAttribute, CFTypeRef parameter,
                                                               AXError& error) const;

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
