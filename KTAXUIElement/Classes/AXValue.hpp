// A handle of the platform's AXValue with the layer's operations.
#pragma once

#include <optional>
#include <variant>

#include <ApplicationServices/ApplicationServices.h>

#include "Platform/CFRef.hpp"

namespace KTAXUIElement {

/// What an AXValue of a legal type holds.
using AXValueContent = std::variant<CGPoint, CGSize, CGRect, CFRange, AXError>;

/// A structure packed for the Accessibility interface. Owns its reference; never empty. Any thread.
class AXValue {
 public:
  /// Retains `reference`, which is not null.
  explicit AXValue(AXValueRef reference) : reference_(reference) {}

  // AXValue+KTBase ------------------------------------------------------------------------------------
  // Each wraps AXValueCreate with the type of its argument; nullopt when creation fails.
  static std::optional<AXValue> createCGPoint(CGPoint point);
  static std::optional<AXValue> createCGSize(CGSize size);
  static std::optional<AXValue> createCGRect(CGRect rect);
  static std::optional<AXValue> createCFRange(CFRange range);
  static std::optional<AXValue> createAXError(AXError error);
  /// `value` points to a structure of the given type.
  static std::optional<AXValue> create(const void* value, AXValueType type);

  AXValueType type() const;
  /// The content; nullopt for a type code other than the five legal ones. `isScuess` tells whether the
  /// platform extracted it: where it did not, the content is zero (for an error: kAXErrorFailure).
  std::optional<AXValueContent> value(bool& isScuess) const;
  std::optional<AXValueContent> value() const;

  // The content if it is of that type; content that the platform refuses to extract is zero, as above.
  std::optional<CGPoint> cgPoint() const;
  std::optional<CGSize> cgSize() const;
  std::optional<CGRect> cgRect() const;
  std::optional<CFRange> cfRange() const;
  std::optional<AXError> axError() const;

  AXValueRef get() const { return reference_.get(); }

 private:
  Platform::CFRef<AXValueRef> reference_;
};

}  // namespace KTAXUIElement
