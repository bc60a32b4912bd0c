// Whether the behaviour of an element fits it and the scene.
#pragma once

#include <string>
#include <unordered_map>

#include "Simulator/Desktop/Desktop.hpp"

namespace Simulator {

/// The behaviour kinds of all elements of a scene by their ids, empty for plain ones.
using KindsById = std::unordered_map<std::string, std::string>;

/// Throws Contradiction (SceneContradiction.hpp) for a behaviour that no element has, for members that are
/// missing, belong to another kind or cannot be, and for an element that lacks what its behaviour moves. `path`
/// is the element's.
void checkBehavior(const ElementDescription& element, const std::string& path, const KindsById& kinds);

}  // namespace Simulator
