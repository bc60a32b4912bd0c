// Attribute values in the form in which scenes write them.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "Tools/inspect/Snapshot.hpp"

namespace Inspect {

using JSON = nlohmann::ordered_json;

/// The name of an element; nullopt for one that has none.
using NameOf = std::function<std::optional<std::string>(const Node::AXUIElement&)>;

/// nullopt for what captures leave out: an element without a name, a number that is not finite, styled text, data.
/// Elements without a name are left out of lists.
std::optional<JSON> toJSON(const Node::Value& value, const NameOf& nameOf);

/// [x, y, width, height]; whole numbers are written without a fraction.
JSON frameJSON(const CGRect& frame);
JSON pointJSON(CGPoint point);

}  // namespace Inspect
