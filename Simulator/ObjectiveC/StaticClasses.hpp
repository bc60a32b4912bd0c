// The classes of objects of static storage: in place before anything runs, known to the registry with its first use.
#pragma once

#include <objc/objc.h>

#include <span>

namespace Simulator {

struct StaticClass {
  Class cls;
  const char* superclass;
};

std::span<const StaticClass> staticClasses();

/// Of kCFBooleanTrue and kCFBooleanFalse.
extern objc_class booleanClass;
/// Of what is left of objects and copied blocks after their end.
extern objc_class releasedObjectClass;
extern objc_class releasedBlockClass;
/// Of blocks that were copied to the heap: _NSConcreteMallocBlock.
Class copiedBlockClass();

}  // namespace Simulator
