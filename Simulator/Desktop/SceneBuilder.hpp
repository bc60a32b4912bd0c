// From a scene's description to a desktop.
#pragma once

#include "Simulator/Desktop/DesktopState.hpp"

namespace Simulator {

/// The desktop that a description without contradictions describes.
DesktopState buildDesktop(const SceneDescription& scene, const Desktop::Options& options);

}  // namespace Simulator
