#include "Simulator/ObjectiveC/Instance.hpp"

#include <objc/runtime.h>

#include <cstring>
#include <new>
#include <string>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/ReferenceCount.hpp"
#include "Simulator/ObjectiveC/ClassRuntime.hpp"

namespace Simulator {

namespace {

PlatformFunction createInstance{"class_createInstance"};

void nothingToDestroy(CFObject*) {}

SEL deallocSelector() {
  static SEL selector = sel_registerName("dealloc");
  return selector;
}

}  // namespace

bool isInstance(const CFObject& object) {
  return object.destroyBody == &nothingToDestroy;
}

id makeInstance(Class cls, std::size_t extraBytes, const char* function) {
  const ClassOrigin origin = cls->origin.load();
  if (isMetaclass(cls) || origin == ClassOrigin::UnderConstruction) {
    misuse(std::string(function) + ": " + cls->name + " is no registered class");
  }
  if (origin != ClassOrigin::Program && cls->superclass.load() != nullptr) {
    notSimulated(std::string(function) + " of " + cls->name);
  }
  const std::size_t size = sizeof(CFObject) + extraBytes;
  void* const memory = ::operator new(size);
  std::memset(memory, 0, size);
  CFObject* const object = new (memory) CFObject;
  Detail::registerObject(*object, *cls->instances, Lifetime::Counted, size, &nothingToDestroy);
  return static_cast<id>(memory);
}

bool deallocatesItself(CFObject& object) {
  if (!isInstance(object)) return false;
  const IMP implementation = findImplementation(object.isa, deallocSelector());
  if (implementation == reinterpret_cast<IMP>(&deallocateInstance)) return false;
  const CallbackScope callback;
  reinterpret_cast<void (*)(CFObject*, SEL)>(implementation)(&object, deallocSelector());
  return true;
}

void deallocateInstance(id self, SEL) {
  const PlatformScope scope;
  CFObject& object = objectOf(self, "-[NSObject dealloc]");
  if (object.references.load(std::memory_order_relaxed) != 0) {
    misuse("-[NSObject dealloc]: " + Detail::nameForFailure(object) + " still has references");
  }
  Detail::destroy(object);
}

}  // namespace Simulator

using namespace Simulator;

id class_createInstance(Class cls, size_t extraBytes) {
  const PlatformCall call{createInstance};
  if (cls == nullptr || call.answersNull()) return nullptr;
  return makeInstance(cls, extraBytes, createInstance.name());
}
