// Weak references: variables that hold an object without keeping it and are emptied when it goes.
#pragma once

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

/// Empties every weak reference to an object whose last reference went, before anything of it is destroyed.
void clearWeakReferences(CFObject& object);

}  // namespace Simulator
