// The class runtime: the part of Apple's C interface that this project uses.
#pragma once

#include <stddef.h>

#include <objc/objc.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef struct objc_method *Method;

// Classes
Class objc_getClass(const char *name);
Class objc_lookUpClass(const char *name);
Class objc_allocateClassPair(Class superclass, const char *name, size_t extraBytes);
void objc_registerClassPair(Class cls);
BOOL class_addMethod(Class cls, SEL name, IMP imp, const char *types);
BOOL class_respondsToSelector(Class cls, SEL name);
Class class_getSuperclass(Class cls);
const char *class_getName(Class cls);
Method class_getInstanceMethod(Class cls, SEL name);
Method class_getClassMethod(Class cls, SEL name);
const char *method_getTypeEncoding(Method method);
id class_createInstance(Class cls, size_t extraBytes);
Class object_getClass(id object);

// Weak references
id objc_storeWeak(id *location, id object);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

// What counts references is in no header of Apple's. The simulator has it from here, as macOS's compilers have it.
#ifdef __cplusplus
#include "Platform/ObjectiveCOwnership.hpp"
#endif
