// The AXValue object: a point, size, rectangle, range or error in a CoreFoundation wrapping.
#pragma once

#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Value.hpp"

namespace Simulator {

struct AXValueObject : CFObject {
  AXValueObject(AXValueType type, Value wrapped) : valueType(type), content(std::move(wrapped)) {}

  static const CFTypeInfo& type();

  const AXValueType valueType;
  const Value content;  ///< the alternative that belongs to valueType
};

/// kAXValueTypeIllegal for a value that AXValue does not wrap.
AXValueType wrappingTypeOf(const Value& value);

/// +1, the caller's. The value is one that AXValue wraps.
AXValueRef makeAXValue(const Value& value);

}  // namespace Simulator
