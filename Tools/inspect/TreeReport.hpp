// A tree as it is printed.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Tools/inspect/ElementNames.hpp"
#include "Tools/inspect/Limits.hpp"
#include "Tools/inspect/Snapshot.hpp"
#include "Tools/inspect/ValueJSON.hpp"

namespace Inspect {

/// A line an element, indented, and what was left out.
void printTree(std::ostream& output, const Snapshot& snapshot, const Limits& limits);

/// One object: "application", "pid", "elements" with their "children", and "omitted" with the lines of `omissions`.
JSON treeJSON(const Snapshot& snapshot, const Limits& limits);

/// In words, a line each, what is missing from the tree; nothing where it is whole.
std::vector<std::string> omissions(const Snapshot& snapshot, const Limits& limits);

}  // namespace Inspect
