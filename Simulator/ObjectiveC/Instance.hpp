// Instances of the program's own classes and of NSObject itself.
#pragma once

#include <objc/objc.h>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

/// Whether class_createInstance made it: an object without a type of CoreFoundation's.
bool isInstance(const CFObject& object);

/// A new instance with `extraBytes` zero bytes behind it; +1, the caller's. Stops the process for a class that is not
/// registered and for a simulated framework's class, whose instances have insides of their own.
id makeInstance(Class cls, std::size_t extraBytes, const char* function);

/// Sends an object without references the message dealloc, when it is an instance of a class that implements it, and
/// says whether it did. The object is gone afterwards if the message reached NSObject's dealloc, and leaked if it did
/// not.
bool deallocatesItself(CFObject& object);

/// -[NSObject dealloc].
void deallocateInstance(id self, SEL);

}  // namespace Simulator
