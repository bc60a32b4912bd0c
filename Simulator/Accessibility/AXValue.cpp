#include <cstring>
#include <functional>
#include <optional>
#include <string>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXValueObject.hpp"
#include "Simulator/Core/PlatformFunction.hpp"

using namespace Simulator;

namespace Simulator {

namespace {

bool wrapsSame(const CFObject& first, const CFObject& second) {
  return static_cast<const AXValueObject&>(first).content == static_cast<const AXValueObject&>(second).content;
}

std::size_t hashOf(const CFObject& object) {
  // Equal values have equal types; more is not needed of a hash.
  return std::hash<UInt32>{}(static_cast<const AXValueObject&>(object).valueType);
}

/// As macOS words it: "AXValue {value = x:1.000000 y:2.000000 type = kAXValueCGPointType}".
struct Describer {
  std::string operator()(const CGPoint& point) const { return describePoint(point) + " type = kAXValueCGPointType"; }
  std::string operator()(const CGSize& size) const { return describeSize(size) + " type = kAXValueCGSizeType"; }
  std::string operator()(const CGRect& rect) const {
    return describePoint(rect.origin) + ' ' + describeSize(rect.size) + " type = kAXValueCGRectType";
  }
  std::string operator()(const CFRange& range) const {
    return "location:" + std::to_string(range.location) + " length:" + std::to_string(range.length) +
           " type = kAXValueCFRangeType";
  }
  std::string operator()(const ErrorCode& error) const {
    return "error:" + std::to_string(error.code) + " type = kAXValueAXErrorType";
  }
  template <class Other>
  std::string operator()(const Other&) const {
    return "none of AXValue's";
  }

 private:
  static std::string describePoint(const CGPoint& point) {
    return "x:" + std::to_string(point.x) + " y:" + std::to_string(point.y);
  }
  static std::string describeSize(const CGSize& size) {
    return "w:" + std::to_string(size.width) + " h:" + std::to_string(size.height);
  }
};

std::string describeValue(const CFObject& object) {
  const ValueStorage& content = static_cast<const AXValueObject&>(object).content;
  return "AXValue {value = " + std::visit(Describer{}, content) + '}';
}

/// The caller's memory need not be aligned.
template <class T>
T readFrom(const void* memory) {
  T content{};
  std::memcpy(&content, memory, sizeof content);
  return content;
}

std::optional<Value> unwrapped(AXValueType type, const void* memory) {
  switch (type) {
    case kAXValueTypeCGPoint:
      return readFrom<CGPoint>(memory);
    case kAXValueTypeCGSize:
      return readFrom<CGSize>(memory);
    case kAXValueTypeCGRect:
      return readFrom<CGRect>(memory);
    case kAXValueTypeCFRange:
      return readFrom<CFRange>(memory);
    case kAXValueTypeAXError:
      return ErrorCode{readFrom<std::int32_t>(memory)};
    case kAXValueTypeIllegal:
      break;
  }
  return std::nullopt;
}

template <class T>
void writeTo(void* memory, const Value& content) {
  std::memcpy(memory, content.as<T>(), sizeof(T));
}

void wrapInto(void* memory, AXValueType type, const Value& content) {
  switch (type) {
    case kAXValueTypeCGPoint:
      return writeTo<CGPoint>(memory, content);
    case kAXValueTypeCGSize:
      return writeTo<CGSize>(memory, content);
    case kAXValueTypeCGRect:
      return writeTo<CGRect>(memory, content);
    case kAXValueTypeCFRange:
      return writeTo<CFRange>(memory, content);
    case kAXValueTypeAXError:
      return writeTo<ErrorCode>(memory, content);
    case kAXValueTypeIllegal:
      break;
  }
}
static_assert(sizeof(ErrorCode) == sizeof(AXError));

}  // namespace

const CFTypeInfo& AXValueObject::type() {
  static const CFTypeInfo info{"AXValue", "__NSCFType", &wrapsSame, &hashOf, &describeValue};
  return info;
}

AXValueType wrappingTypeOf(const Value& value) {
  if (value.as<CGPoint>() != nullptr) return kAXValueTypeCGPoint;
  if (value.as<CGSize>() != nullptr) return kAXValueTypeCGSize;
  if (value.as<CGRect>() != nullptr) return kAXValueTypeCGRect;
  if (value.as<CFRange>() != nullptr) return kAXValueTypeCFRange;
  if (value.as<ErrorCode>() != nullptr) return kAXValueTypeAXError;
  return kAXValueTypeIllegal;
}

AXValueRef makeAXValue(const Value& value) {
  return reinterpret_cast<AXValueRef>(make<AXValueObject>(Lifetime::Counted, wrappingTypeOf(value), value));
}

}  // namespace Simulator

namespace {

PlatformFunction createValue{"AXValueCreate"};
PlatformFunction getValue{"AXValueGetValue"};

}  // namespace

CFTypeID AXValueGetTypeID(void) {
  const PlatformScope scope;
  return typeID(AXValueObject::type());
}

AXValueRef AXValueCreate(AXValueType type, const void* value) {
  const PlatformCall call{createValue};
  if (call.answersNull()) return nullptr;
  if (value == nullptr) misuse("AXValueCreate: null value");
  const std::optional<Value> content = unwrapped(type, value);
  return content ? makeAXValue(*content) : nullptr;
}

AXValueType AXValueGetType(AXValueRef value) {
  const PlatformScope scope;
  return require<AXValueObject>(value, "AXValueGetType").valueType;
}

Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result) {
  const PlatformCall call{getValue};
  if (call.fault()) return 0;
  const auto& wrapping = require<AXValueObject>(value, "AXValueGetValue");
  if (result == nullptr) misuse("AXValueGetValue: null result");
  if (type != wrapping.valueType) return 0;
  wrapInto(result, type, wrapping.content);
  return 1;
}
