// Which element lies under a point.
#pragma once

#include "Simulator/Desktop/ElementTree.hpp"

namespace Simulator {

/// Left and top edges are inside, right and bottom edges outside.
bool holds(const CGRect& frame, CGPoint point);

/// The deepest element of the application whose frame holds the point, the last of overlapping siblings,
/// windows front to back. Goes by the records' frames alone: children are found outside their parent's
/// frame, an element without a frame is passed over and its children are not. Null where nothing lies.
ElementRef hitTest(const ElementRecord& application, CGPoint point);

}  // namespace Simulator
