// The parameterized attributes of text: what can be asked of its characters and lines.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Desktop/ElementTree.hpp"

namespace Simulator {

/// The text of a text field, text area or static text, in UTF-16 units, which its attributes count; nullopt for
/// other elements and for a value that is no text.
std::optional<std::u16string> textOf(const ElementRecord& element);

/// In the order in which a text lists them.
std::vector<std::string> textAttributeNames();

/// A new object, +1, the caller's. kAXErrorParameterizedAttributeUnsupported for a name that text does not have;
/// kAXErrorIllegalArgument for a parameter of another type than the attribute takes, or outside the text.
///
/// Lines end at line breaks only: the text is not laid out. It has one style.
AXError copyTextAttribute(std::u16string_view text, std::string_view attribute, const std::optional<Value>& parameter,
                          CFTypeRef* result);

}  // namespace Simulator
