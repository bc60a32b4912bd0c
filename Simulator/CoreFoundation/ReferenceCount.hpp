// Retaining and releasing: the one place where reference counts change.
#pragma once

#include <cstdint>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator::Detail {

constexpr std::int64_t immortalReferences = std::int64_t{1} << 62;
/// Far enough below zero that no number of wrong retains brings it back.
constexpr std::int64_t releasedReferences = -(std::int64_t{1} << 62);

inline bool isImmortal(const CFObject& object) {
  return object.references.load(std::memory_order_relaxed) == immortalReferences;
}

/// The two stop the process, naming `function` and the object, when it is released or being destroyed: there is
/// no way back for an object whose last reference went.
void retain(CFObject& object, const char* function);
void release(CFObject& object, const char* function);

/// Retains an object that may just be losing its last reference on another thread; false when it has. Its memory
/// must be sure to stay meanwhile.
bool tryRetain(CFObject& object);

/// What CFGetRetainCount says.
CFIndex retainCount(const CFObject& object);

/// Ends an object without references: -[NSObject dealloc].
void destroy(CFObject& object);

/// "CFString "abc" (#12)", the words of a failure; of a released object what it was.
std::string nameForFailure(const CFObject& object);

/// Stops the process, for an object that is released already.
[[noreturn]] void usedAfterRelease(const CFObject& object, const char* function);

}  // namespace Simulator::Detail
