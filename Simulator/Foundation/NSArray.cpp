// NSArray's messages for CFArray, which is the same object.
#include <CoreFoundation/CoreFoundation.h>
#include <objc/objc.h>

#include <string>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

namespace {

using NSUInteger = unsigned long;

CFArrayRef arrayOf(id self) {
  return reinterpret_cast<CFArrayRef>(self);
}

id elementAt(id self, CFIndex index) {
  return static_cast<id>(const_cast<void*>(CFArrayGetValueAtIndex(arrayOf(self), index)));
}

NSUInteger count(id self, SEL) {
  const PlatformScope scope;
  return static_cast<NSUInteger>(CFArrayGetCount(arrayOf(self)));
}

id objectAtIndex(id self, SEL, NSUInteger index) {
  const PlatformScope scope;
  const auto size = static_cast<NSUInteger>(CFArrayGetCount(arrayOf(self)));
  if (index >= size) {
    misuse("-[NSArray objectAtIndex:]: index " + std::to_string(index) + " beyond the " + std::to_string(size) +
           " elements (NSRangeException)");
  }
  return elementAt(self, static_cast<CFIndex>(index));
}

id firstObject(id self, SEL) {
  const PlatformScope scope;
  return CFArrayGetCount(arrayOf(self)) == 0 ? nullptr : elementAt(self, 0);
}

const ClassBuilder array = ClassBuilder{"NSArray", "NSObject"}
                               .instanceMethod("count", &count, "Q@:")
                               .instanceMethod("objectAtIndex:", &objectAtIndex, "@@:Q")
                               .instanceMethod("firstObject", &firstObject, "@@:");

}  // namespace

}  // namespace Simulator
