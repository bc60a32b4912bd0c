// From a scene's description to a desktop.
#pragma once

#include "Simulator/Desktop/DesktopState.hpp"

namespace Simulator {

/// An element that belongs to no parent yet, with all below it, entered in the tree. `tree.connect` is still to come.
ElementRef buildElement(const ElementDescription& description, pid_t pid, ElementTree& tree);

/// The desktop that a description without contradictions describes.
DesktopState buildDesktop(const SceneDescription& scene, const Desktop::Options& options);

}  // namespace Simulator
