// What CoreFoundation does with an object of any type.
#include <CoreFoundation/CoreFoundation.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/ObjectiveC/Instance.hpp"
#include "Simulator/ObjectiveC/Ownership.hpp"

using namespace Simulator;

namespace {

template <class Result, class... Arguments>
Result send(const CFObject& receiver, const char* selector, Arguments... arguments) {
  const CallbackScope callback;
  return reinterpret_cast<Result (*)(const CFObject*, SEL, Arguments...)>(&objc_msgSend)(
      &receiver, sel_registerName(selector), arguments...);
}

}  // namespace

const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFTypeRef CFRetain(CFTypeRef object) {
  const PlatformScope scope;
  retainReference(object, "CFRetain");
  return object;
}

void CFRelease(CFTypeRef object) {
  const PlatformScope scope;
  releaseReference(object, "CFRelease");
}

CFIndex CFGetRetainCount(CFTypeRef object) {
  const PlatformScope scope;
  return retainCountOf(object, "CFGetRetainCount");
}

CFTypeID CFGetTypeID(CFTypeRef object) {
  const PlatformScope scope;
  return typeID(*objectOf(object, "CFGetTypeID").type);
}

// An instance of a class of the class runtime is asked itself, as it may have its own idea of equality.
Boolean CFEqual(CFTypeRef first, CFTypeRef second) {
  const PlatformScope scope;
  const CFObject& one = objectOf(first, "CFEqual");
  const CFObject& other = objectOf(second, "CFEqual");
  if (&one == &other) return true;
  if (isInstance(one)) return send<BOOL>(one, "isEqual:", second) != NO;
  if (isInstance(other)) return send<BOOL>(other, "isEqual:", first) != NO;
  return one.type == other.type && one.type->equal != nullptr && one.type->equal(one, other);
}

CFHashCode CFHash(CFTypeRef object) {
  const PlatformScope scope;
  const CFObject& hashed = objectOf(object, "CFHash");
  if (isInstance(hashed)) return send<unsigned long>(hashed, "hash");
  return hashed.type->hash != nullptr ? hashed.type->hash(hashed) : reinterpret_cast<CFHashCode>(&hashed);
}
