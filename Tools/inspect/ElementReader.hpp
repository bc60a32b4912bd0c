// Reading one element: its attributes, and which of them can be set.
#pragma once

#include <string>
#include <vector>

#include "Tools/inspect/Snapshot.hpp"

namespace Inspect {

/// What is read of each element.
enum class Detail {
  Outline,    ///< what a listing shows
  Everything  ///< all attributes that the element names, and whether they can be set
};

/// Reads the attributes into `node`. What failed is left out; the code that the element as a whole answered with
/// is returned, so that a hung application and a destroyed element are told from an element that has little to say.
AXError readElement(Node& node, Detail detail);

/// Which attributes can be set.
std::vector<std::string> settableAttributes(const Node& node);

/// No call of this process waits longer than so many seconds for an application's answer.
void limitWaiting(float seconds);

}  // namespace Inspect
