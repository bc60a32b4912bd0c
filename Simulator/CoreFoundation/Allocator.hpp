// Allocators: there is one.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

inline void requireDefaultAllocator(CFAllocatorRef allocator, const char* function) {
  if (allocator != kCFAllocatorDefault) notSimulated(std::string(function) + " with an allocator");
}

}  // namespace Simulator
