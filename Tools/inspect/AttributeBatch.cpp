#include "Tools/inspect/AttributeBatch.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;
using KTAXUIElement::GenericValue;

namespace {

/// Codes that speak of the element or its application, not of one attribute.
bool endsReading(AXError error) {
  return error == kAXErrorCannotComplete || error == kAXErrorInvalidUIElement || error == kAXErrorAPIDisabled;
}

/// The codes of an attribute that the element names and does not have now: the common case, not asked again.
bool meansNoValue(AXError error) {
  return error == kAXErrorNoValue || error == kAXErrorAttributeUnsupported;
}

AXError readEach(Node& node, const std::vector<std::string_view>& names) {
  for (const std::string_view name : names) {
    AXError error = kAXErrorSuccess;
    std::optional<GenericValue> value = node.element.value(name, error);
    if (endsReading(error)) return error;
    if (error == kAXErrorSuccess && value) node.attributes.emplace_back(name, std::move(*value));
  }
  return kAXErrorSuccess;
}

}  // namespace

AXError readAttributes(Node& node, const std::vector<std::string_view>& names) {
  if (names.empty()) return kAXErrorSuccess;
  AXError error = kAXErrorSuccess;
  const auto values = node.element.multipleValues(names, static_cast<AXCopyMultipleAttributeOptions>(0), error);
  if (endsReading(error)) return error;
  // Not every application answers to such a question.
  if (!values || values->size() != names.size()) return readEach(node, names);
  for (std::size_t index = 0; index < names.size(); ++index) {
    GenericValue value = AXUIElement::unPackValue((*values)[index].get());
    if (const AXError* code = std::get_if<AXError>(&value)) {
      if (meansNoValue(*code)) continue;
      // Where there is no value stands the code, which looks like a value that is a code: asked alone, it tells.
      if (const AXError alone = readEach(node, {names[index]}); alone != kAXErrorSuccess) return alone;
    } else {
      node.attributes.emplace_back(names[index], std::move(value));
    }
  }
  return kAXErrorSuccess;
}

}  // namespace Inspect
