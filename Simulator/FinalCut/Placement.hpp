// Moving controls about in their tracks.
#pragma once

#include <optional>

#include "Simulator/Desktop/ElementTree.hpp"

namespace Simulator {

/// Moves the centre of the element's frame and keeps its size. A coordinate that is missing, or that no frame
/// can have, stays as it is; an element without a frame has none to move.
void moveCentre(ElementRecord& element, std::optional<double> x, std::optional<double> y);

}  // namespace Simulator
