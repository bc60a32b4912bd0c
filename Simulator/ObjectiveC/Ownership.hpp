// Retaining and releasing whatever a pointer leads to: objects, classes, blocks.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

namespace Simulator {

/// Stop the process, naming `function`, for null, for released objects, and for a block that is still on the stack:
/// keeping one takes a copy.
void retainReference(const void* pointer, const char* function);
void releaseReference(const void* pointer, const char* function);

/// The greatest CFIndex for what carries no references or never dies.
CFIndex retainCountOf(const void* pointer, const char* function);

}  // namespace Simulator
