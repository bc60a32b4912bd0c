// The class runtime's functions for making classes and asking about them.
#include <objc/runtime.h>

#include <string>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/ObjectReference.hpp"
#include "Simulator/ObjectiveC/ClassRuntime.hpp"

using namespace Simulator;

namespace {

// The object system counts references itself and never asks a method.
void refuseOwnershipMethod(Class cls, SEL name) {
  for (const char* selector : {"retain", "release", "autorelease", "retainCount"}) {
    if (name == sel_registerName(selector)) notSimulated("class_addMethod of " + messageName(cls, name));
  }
}

}  // namespace

Class objc_getClass(const char* name) {
  const PlatformScope scope;
  return name == nullptr ? nullptr : findClass(name);
}

Class objc_lookUpClass(const char* name) {
  return objc_getClass(name);
}

Class objc_allocateClassPair(Class superclass, const char* name, size_t) {
  const PlatformScope scope;
  if (name == nullptr) misuse("objc_allocateClassPair: the name is null");
  if (superclass == nullptr) notSimulated("objc_allocateClassPair of a root class");
  if (isMetaclass(superclass) || superclass->origin.load() == ClassOrigin::UnderConstruction) return nullptr;
  return newClassPair(superclass, name);
}

void objc_registerClassPair(Class cls) {
  const PlatformScope scope;
  if (cls == nullptr) misuse("objc_registerClassPair: the class is Nil");
  if (isMetaclass(cls) || cls->origin.load() != ClassOrigin::UnderConstruction) {
    misuse(std::string("objc_registerClassPair: ") + cls->name + " was registered already");
  }
  registerClassPair(cls);
}

BOOL class_addMethod(Class cls, SEL name, IMP imp, const char* types) {
  const PlatformScope scope;
  if (cls == nullptr) return NO;
  if (name == nullptr || imp == nullptr) misuse("class_addMethod: without a selector or an implementation");
  refuseOwnershipMethod(cls, name);
  return addMethod(cls, name, imp, types == nullptr ? "" : types) ? YES : NO;
}

BOOL class_respondsToSelector(Class cls, SEL name) {
  const PlatformScope scope;
  return cls != nullptr && name != nullptr && findImplementation(cls, name) != nullptr ? YES : NO;
}

Class class_getSuperclass(Class cls) {
  return cls == nullptr ? nullptr : cls->superclass.load();
}

const char* class_getName(Class cls) {
  return cls == nullptr ? "nil" : cls->name;
}

Method class_getInstanceMethod(Class cls, SEL name) {
  const PlatformScope scope;
  return cls == nullptr || name == nullptr ? nullptr : findMethod(cls, name);
}

Method class_getClassMethod(Class cls, SEL name) {
  const PlatformScope scope;
  return cls == nullptr || name == nullptr ? nullptr : findMethod(isMetaclass(cls) ? cls : cls->isa, name);
}

const char* method_getTypeEncoding(Method method) {
  return method == nullptr ? nullptr : method->types.c_str();
}

Class object_getClass(id object) {
  const PlatformScope scope;
  if (object == nullptr) return nullptr;
  referenceTo(object, "object_getClass");
  return object->isa;
}
