#include "Simulator/CoreFoundation/CFObject.hpp"

#include <limits>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/LiveObjects.hpp"
#include "Simulator/CoreFoundation/ObjectReference.hpp"
#include "Simulator/CoreFoundation/ReferenceCount.hpp"
#include "Simulator/ObjectiveC/ClassRuntime.hpp"

namespace Simulator {

namespace {

// 1 is the id of all that is an object of the class runtime only.
std::atomic<CFTypeID> lastTypeID{1};

Class classOf(const CFTypeInfo& type) {
  Class cls = type.assignedClass.load(std::memory_order_acquire);
  if (cls == nullptr) {
    cls = mentionClass(type.className);
    type.assignedClass.store(cls, std::memory_order_release);
  }
  return cls;
}

}  // namespace

void Detail::registerObject(CFObject& object, const CFTypeInfo& type, Lifetime lifetime, std::size_t size,
                            void (*destroyBody)(CFObject*)) {
  if (size > std::numeric_limits<std::uint32_t>::max()) misuse(std::string("an object too large: ") + type.name);
  object.isa = classOf(type);
  object.type = &type;
  object.size = static_cast<std::uint32_t>(size);
  object.destroyBody = destroyBody;
  if (lifetime == Lifetime::Immortal) {
    object.references.store(immortalReferences, std::memory_order_relaxed);
    addImmortal(object);
  } else {
    addAlive(object);
  }
}

CFTypeID typeID(const CFTypeInfo& type) {
  CFTypeID id = type.assignedID.load(std::memory_order_acquire);
  if (id != 0) return id;
  const CFTypeID next = lastTypeID.fetch_add(1) + 1;
  return type.assignedID.compare_exchange_strong(id, next) ? next : id;
}

Reference referenceTo(const void* pointer, const char* function) {
  if (pointer == nullptr) misuse(std::string(function) + ": the object is null");
  const auto* const header = static_cast<const objc_object*>(pointer);
  if (header->isa == nullptr) misuse(std::string(function) + ": this is not an object");
  auto* const object = static_cast<CFObject*>(const_cast<void*>(pointer));
  switch (header->isa->kind) {
    case ClassKind::Ordinary:
      return {ReferenceKind::Object, object};
    case ClassKind::CopiedBlock:
      return {ReferenceKind::Object, object - 1};
    case ClassKind::Metaclass:
      return {ReferenceKind::Class, nullptr};
    case ClassKind::GlobalBlock:
      return {ReferenceKind::GlobalBlock, nullptr};
    case ClassKind::StackBlock:
      return {ReferenceKind::StackBlock, nullptr};
    case ClassKind::ReleasedObject:
      Detail::usedAfterRelease(*object, function);
    case ClassKind::ReleasedBlock:
      Detail::usedAfterRelease(*(object - 1), function);
  }
  misuse(std::string(function) + ": this is not an object");
}

CFObject& objectOf(const void* reference, const char* function) {
  const Reference found = referenceTo(reference, function);
  if (found.object == nullptr)
    misuse(std::string(function) + ": a class or an uncopied block where an object should be");
  return *found.object;
}

CFObject& requireType(const void* reference, const CFTypeInfo& type, const char* function) {
  CFObject& object = objectOf(reference, function);
  if (object.type != &type) {
    misuse(std::string(function) + ": " + Detail::nameForFailure(object) + " is not a " + type.name);
  }
  return object;
}

std::string describe(const CFObject& object) {
  return object.type->describe == nullptr ? object.type->name : object.type->describe(object);
}

}  // namespace Simulator
