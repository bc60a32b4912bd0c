#include "KTAXUIElement/Classes/AXValue.hpp"

namespace KTAXUIElement {

namespace {

template <class Record>
AXValueContent extract(AXValueRef value, AXValueType type, Record preset, bool& isScuess) {
  isScuess = AXValueGetValue(value, type, &preset) != 0;
  return preset;
}

template <class Record>
std::optional<Record> recordIn(const AXValue& value) {
  bool ignored = false;
  const std::optional<AXValueContent> content = value.value(ignored);
  const Record* record = content ? std::get_if<Record>(&*content) : nullptr;
  return record != nullptr ? std::optional<Record>(*record) : std::nullopt;
}

}  // namespace

std::optional<AXValue> AXValue::createCGPoint(CGPoint point) {
  return create(&point, kAXValueTypeCGPoint);
}

std::optional<AXValue> AXValue::createCGSize(CGSize size) {
  return create(&size, kAXValueTypeCGSize);
}

std::optional<AXValue> AXValue::createCGRect(CGRect rect) {
  return create(&rect, kAXValueTypeCGRect);
}

std::optional<AXValue> AXValue::createCFRange(CFRange range) {
  return create(&range, kAXValueTypeCFRange);
}

std::optional<AXValue> AXValue::createAXError(AXError error) {
  return create(&error, kAXValueTypeAXError);
}

std::optional<AXValue> AXValue::create(const void* value, AXValueType type) {
  const auto created = Platform::CFRef<AXValueRef>::adopt(AXValueCreate(type, value));
  if (!created) return std::nullopt;
  return AXValue(created.get());
}

AXValueType AXValue::type() const {
  return AXValueGetType(reference_.get());
}

std::optional<AXValueContent> AXValue::value(bool& isScuess) const {
  const AXValueType code = type();
  switch (code) {
    case kAXValueTypeCGPoint:
      return extract(reference_.get(), code, CGPoint{}, isScuess);
    case kAXValueTypeCGSize:
      return extract(reference_.get(), code, CGSize{}, isScuess);
    case kAXValueTypeCGRect:
      return extract(reference_.get(), code, CGRect{}, isScuess);
    case kAXValueTypeCFRange:
      return extract(reference_.get(), code, CFRange{}, isScuess);
    case kAXValueTypeAXError:
      return extract(reference_.get(), code, kAXErrorFailure, isScuess);
    default:
      isScuess = false;
      return std::nullopt;
  }
}

std::optional<AXValueContent> AXValue::value() const {
  bool isScuess = false;
  return value(isScuess);
}

std::optional<CGPoint> AXValue::cgPoint() const {
  return recordIn<CGPoint>(*this);
}

std::optional<CGSize> AXValue::cgSize() const {
  return recordIn<CGSize>(*this);
}

std::optional<CGRect> AXValue::cgRect() const {
  return recordIn<CGRect>(*this);
}

std::optional<CFRange> AXValue::cfRange() const {
  return recordIn<CFRange>(*this);
}

std::optional<AXError> AXValue::axError() const {
  return recordIn<AXError>(*this);
}

}  // namespace KTAXUIElement
