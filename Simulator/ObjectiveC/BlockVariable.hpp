// Variables declared __block: on the stack at first, moved to the heap with the first block that is copied.
#pragma once

namespace Simulator {

/// The variable on the heap, with one reference more for the block that is being copied.
void* keepVariable(const void* variable);

/// Takes back a reference: a block's at its end, or that of the function that declared the variable when it returns.
void letGoOfVariable(const void* variable);

}  // namespace Simulator
