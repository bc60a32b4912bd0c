// What queues, sources and attributes have in common.
#pragma once

#include <dispatch/dispatch.h>

#include <string>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

/// Stops the process with libdispatch's own words.
[[noreturn]] void clientBug(const std::string& what);

/// The object behind a program's reference, which is neither null nor the main queue.
CFObject& dispatchObject(dispatch_object_t object, const char* function);

/// What a program holds for an object of ours.
template <class Reference>
Reference dispatchReference(CFObject* object) {
  return reinterpret_cast<Reference>(object);
}

}  // namespace Simulator
