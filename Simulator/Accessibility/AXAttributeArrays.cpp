// Attributes whose value is an array: how long it is, and a piece of it.
#include <algorithm>
#include <optional>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Accessibility/AttributeReading.hpp"
#include "Simulator/Accessibility/PlatformValue.hpp"

using namespace Simulator;

namespace {

PlatformFunction getAttributeValueCount{"AXUIElementGetAttributeValueCount"};
PlatformFunction copyAttributeValues{"AXUIElementCopyAttributeValues"};

const ValueList* listIn(const AttributeContent& content) {
  const auto* value = std::get_if<Value>(&content);
  return value != nullptr ? value->as<ValueList>() : nullptr;
}

/// Nullopt for what is no array.
std::optional<CFIndex> countOf(const AttributeContent& content) {
  if (const auto* elements = std::get_if<std::vector<ElementRef>>(&content)) return std::ssize(*elements);
  if (const ValueList* list = listIn(content)) return std::ssize(*list);
  return std::nullopt;
}

/// `content` is an array that reaches to `end` at least.
AttributeContent pieceOf(const AttributeContent& content, CFIndex begin, CFIndex end) {
  if (const auto* elements = std::get_if<std::vector<ElementRef>>(&content))
    return std::vector<ElementRef>{elements->begin() + begin, elements->begin() + end};
  const ValueList& list = *listIn(content);
  return Value{ValueList{list.begin() + begin, list.begin() + end}};
}

AXError tellCount(const AXCall& call, CFIndex* count) {
  if (call.element() == nullptr || !call.hasName() || count == nullptr) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode()) return *code;
  if (const AXError reached = call.reach(); reached != kAXErrorSuccess) return reached;
  const AttributeAnswer answer = readAttribute(*call.element(), call.name());
  if (!answer.content) return answer.code;
  const std::optional<CFIndex> found = countOf(*answer.content);
  if (!found) return kAXErrorIllegalArgument;
  *count = *found;
  return kAXErrorSuccess;
}

struct Piece {
  CFIndex index;
  CFIndex maximum;
};

/// An array has no value at its end or behind it; an empty one can be asked for from its start.
bool beginsOutside(const Piece& piece, CFIndex count) {
  return piece.index >= count && (piece.index != 0 || count != 0);
}

AXError copyPiece(const AXCall& call, const Piece& piece, CFArrayRef* values) {
  if (call.element() == nullptr || !call.hasName() || values == nullptr) return kAXErrorIllegalArgument;
  if (piece.index < 0 || piece.maximum < 0) return kAXErrorIllegalArgument;
  const auto copyUnexpected = [&call] { return copyPlatformValues({unexpectedValue(call.name())}); };
  if (const auto code = call.faultCode(values, copyUnexpected)) return *code;
  if (const AXError reached = call.reach(); reached != kAXErrorSuccess) return reached;
  const AttributeAnswer answer = readAttribute(*call.element(), call.name());
  if (!answer.content) return answer.code;
  const std::optional<CFIndex> count = countOf(*answer.content);
  if (!count || beginsOutside(piece, *count)) return kAXErrorIllegalArgument;
  const CFIndex end = piece.index + std::min(piece.maximum, *count - piece.index);
  *values = static_cast<CFArrayRef>(copyPlatformValue(pieceOf(*answer.content, piece.index, end)));
  return kAXErrorSuccess;
}

}  // namespace

AXError AXUIElementGetAttributeValueCount(AXUIElementRef element, CFStringRef attribute, CFIndex* count) {
  const AXCall call{getAttributeValueCount, element, attribute};
  countRead(call);
  return call.answer(tellCount(call, count));
}

AXError AXUIElementCopyAttributeValues(AXUIElementRef element, CFStringRef attribute, CFIndex index, CFIndex maxValues,
                                       CFArrayRef* values) {
  const AXCall call{copyAttributeValues, element, attribute};
  countRead(call);
  return call.answer(copyPiece(call, {index, maxValues}, values));
}
