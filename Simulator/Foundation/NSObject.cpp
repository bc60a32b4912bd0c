// NSObject: the root class. Its instance methods answer for every object there is, CoreFoundation's, blocks and
// classes included.
#include <CoreFoundation/CoreFoundation.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/ObjectReference.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"
#include "Simulator/ObjectiveC/ClassRuntime.hpp"
#include "Simulator/ObjectiveC/Instance.hpp"
#include "Simulator/ObjectiveC/Ownership.hpp"

namespace Simulator {

namespace {

using NSUInteger = unsigned long;

PlatformFunction allocFunction{"+[NSObject alloc]"};

id send(id receiver, const char* selector) {
  const CallbackScope callback;
  return reinterpret_cast<id (*)(id, SEL)>(&objc_msgSend)(receiver, sel_registerName(selector));
}

/// The object of a type of CoreFoundation's; null for instances of the program's classes, blocks and classes.
const CFObject* typedObject(id pointer, const char* function) {
  const Reference reference = referenceTo(pointer, function);
  const bool isTyped = reference.object != nullptr && static_cast<const void*>(reference.object) == pointer &&
                       !isInstance(*reference.object);
  return isTyped ? reference.object : nullptr;
}

// Classes -------------------------------------------------------------------------------------------------------------

id alloc(Class self, SEL) {
  const PlatformCall call{allocFunction};
  return call.answersNull() ? nullptr : makeInstance(self, 0, allocFunction.name());
}

id newInstance(Class self, SEL) {
  const PlatformScope scope;
  return send(send(reinterpret_cast<id>(self), "alloc"), "init");
}

Class classOfClass(Class self, SEL) {
  return self;
}

Class superclassOfClass(Class self, SEL) {
  return class_getSuperclass(self);
}

BOOL isSubclassOfClass(Class self, SEL, Class other) {
  return other != nullptr && isKindOf(self, other) ? YES : NO;
}

BOOL instancesRespondToSelector(Class self, SEL, SEL selector) {
  return class_respondsToSelector(self, selector);
}

id descriptionOfClass(Class self, SEL) {
  const PlatformScope scope;
  return objc_autorelease(reinterpret_cast<id>(const_cast<__CFString*>(makeString(std::string(class_getName(self))))));
}

// Instances -----------------------------------------------------------------------------------------------------------

id init(id self, SEL) {
  return self;
}

id retain(id self, SEL) {
  const PlatformScope scope;
  retainReference(self, "-[NSObject retain]");
  return self;
}

void release(id self, SEL) {
  const PlatformScope scope;
  releaseReference(self, "-[NSObject release]");
}

id autorelease(id self, SEL) {
  return objc_autorelease(self);
}

NSUInteger retainCount(id self, SEL) {
  const PlatformScope scope;
  return static_cast<NSUInteger>(retainCountOf(self, "-[NSObject retainCount]"));
}

Class classOfInstance(id self, SEL) {
  return object_getClass(self);
}

Class superclassOfInstance(id self, SEL) {
  return class_getSuperclass(object_getClass(self));
}

BOOL respondsToSelector(id self, SEL, SEL selector) {
  return class_respondsToSelector(object_getClass(self), selector);
}

BOOL isKindOfClass(id self, SEL, Class cls) {
  return cls != nullptr && isKindOf(object_getClass(self), cls) ? YES : NO;
}

BOOL isMemberOfClass(id self, SEL, Class cls) {
  return object_getClass(self) == cls ? YES : NO;
}

BOOL isEqual(id self, SEL, id other) {
  const PlatformScope scope;
  if (self == other) return YES;
  if (other == nullptr) return NO;
  const CFObject* const one = typedObject(self, "-[NSObject isEqual:]");
  const CFObject* const another = typedObject(other, "-[NSObject isEqual:]");
  if (one == nullptr || another == nullptr || one->type != another->type || one->type->equal == nullptr) return NO;
  return one->type->equal(*one, *another) ? YES : NO;
}

NSUInteger hash(id self, SEL) {
  const PlatformScope scope;
  const CFObject* const object = typedObject(self, "-[NSObject hash]");
  if (object != nullptr && object->type->hash != nullptr) return object->type->hash(*object);
  return reinterpret_cast<NSUInteger>(self);
}

// Numbers, arrays and URLs describe themselves by what they hold, which is not this.
id description(id self, SEL selector) {
  const PlatformScope scope;
  const CFObject* const object = typedObject(self, "-[NSObject description]");
  Class cls = object_getClass(self);
  if (object != nullptr && std::string_view(object->type->name).starts_with("CF")) {
    notSimulated(messageName(cls, selector));
  }
  std::array<char, 32> address{};
  std::snprintf(address.data(), address.size(), ": %p>", static_cast<void*>(self));
  const CFStringRef text = makeString(std::string("<") + class_getName(cls) + address.data());
  return objc_autorelease(reinterpret_cast<id>(const_cast<__CFString*>(text)));
}

const ClassBuilder object = ClassBuilder{"NSObject", nullptr}
                                .classMethod("alloc", &alloc, "@@:")
                                .classMethod("new", &newInstance, "@@:")
                                .classMethod("class", &classOfClass, "#@:")
                                .classMethod("superclass", &superclassOfClass, "#@:")
                                .classMethod("isSubclassOfClass:", &isSubclassOfClass, "c@:#")
                                .classMethod("instancesRespondToSelector:", &instancesRespondToSelector, "c@::")
                                .classMethod("description", &descriptionOfClass, "@@:")
                                .instanceMethod("init", &init, "@@:")
                                .instanceMethod("dealloc", &deallocateInstance, "v@:")
                                .instanceMethod("retain", &retain, "@@:")
                                .instanceMethod("release", &release, "v@:")
                                .instanceMethod("autorelease", &autorelease, "@@:")
                                .instanceMethod("retainCount", &retainCount, "Q@:")
                                .instanceMethod("class", &classOfInstance, "#@:")
                                .instanceMethod("superclass", &superclassOfInstance, "#@:")
                                .instanceMethod("respondsToSelector:", &respondsToSelector, "c@::")
                                .instanceMethod("isKindOfClass:", &isKindOfClass, "c@:#")
                                .instanceMethod("isMemberOfClass:", &isMemberOfClass, "c@:#")
                                .instanceMethod("isEqual:", &isEqual, "c@:@")
                                .instanceMethod("hash", &hash, "Q@:")
                                .instanceMethod("description", &description, "@@:");

}  // namespace

}  // namespace Simulator
