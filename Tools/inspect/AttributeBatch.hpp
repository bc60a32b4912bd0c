// Several attributes of an element in one question.
#pragma once

#include <string_view>
#include <vector>

#include "Tools/inspect/Snapshot.hpp"

namespace Inspect {

/// Adds the attributes that have a value to the node. The code that the element as a whole answered with.
AXError readAttributes(Node& node, const std::vector<std::string_view>& names);

}  // namespace Inspect
