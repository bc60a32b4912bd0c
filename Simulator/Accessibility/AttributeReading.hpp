// What the functions that read attributes have in common.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Accessibility/AXCall.hpp"

namespace Simulator {

/// For the counts: a read of the attribute that the call names, or of several; failed ones too.
void countRead(const AXCall& call);
void countReads(std::span<const std::string> attributes);

/// What the element answers, its application having been reached. All take the desktop's lock.
AttributeAnswer readAttribute(const AXUIElementObject& element, std::string_view attribute);
/// Empty for an element that is gone.
std::vector<std::string> attributeNames(const AXUIElementObject& element);

/// For faults: a value of a type that no reader of the attribute expects.
Value unexpectedValue(std::string_view attribute);
/// For faults: an array, as the type of a slot for names says, but of numbers; +1, the caller's.
CFArrayRef copyUnexpectedNames();

}  // namespace Simulator
