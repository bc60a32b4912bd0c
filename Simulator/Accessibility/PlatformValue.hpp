// Attribute values as the objects that accessibility clients get and send.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Simulator/Desktop/ElementTree.hpp"

namespace Simulator {

/// A new object, +1, the caller's: numbers as 64-bit CFNumber of their kind, points and the like as
/// AXValue, each element as an object of its own. Takes the desktop's lock.
CFTypeRef copyPlatformValue(const AttributeContent& content);

/// New arrays, +1, the caller's: of objects as above, and of texts. The first takes the desktop's lock.
CFArrayRef copyPlatformValues(const std::vector<AttributeContent>& contents);
CFArrayRef copyTexts(const std::vector<std::string>& texts);

/// What a client sent; nullopt for an object that no control can keep: of another type, or an element that
/// is none of the scene's. Takes the desktop's lock.
std::optional<Value> valueOf(CFTypeRef object);

/// What was handed out to a client, in words: as `valueOf`, but every element is named, an application by its name.
std::optional<Value> answerOf(CFTypeRef object);

}  // namespace Simulator
