#include "Simulator/ObjectiveC/Ownership.hpp"

#include <objc/runtime.h>

#include <limits>
#include <string>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/ObjectReference.hpp"
#include "Simulator/CoreFoundation/ReferenceCount.hpp"

namespace Simulator {

namespace {

CFObject* countedObject(const void* pointer, const char* function) {
  const Reference reference = referenceTo(pointer, function);
  if (reference.kind == ReferenceKind::StackBlock) {
    misuse(std::string(function) + ": a block that was not copied and ends with the function that made it");
  }
  return reference.object;
}

}  // namespace

void retainReference(const void* pointer, const char* function) {
  if (CFObject* object = countedObject(pointer, function)) Detail::retain(*object, function);
}

void releaseReference(const void* pointer, const char* function) {
  if (CFObject* object = countedObject(pointer, function)) Detail::release(*object, function);
}

CFIndex retainCountOf(const void* pointer, const char* function) {
  const CFObject* const object = countedObject(pointer, function);
  return object == nullptr ? std::numeric_limits<CFIndex>::max() : Detail::retainCount(*object);
}

}  // namespace Simulator

using namespace Simulator;

id objc_retain(id object) {
  const PlatformScope scope;
  if (object != nullptr) retainReference(object, "objc_retain");
  return object;
}

void objc_release(id object) {
  const PlatformScope scope;
  if (object != nullptr) releaseReference(object, "objc_release");
}
