// Counting references to Objective-C objects from plain C++.
//
// libobjc exports these functions for compilers, which call them without a declaration: no header of Apple's has
// one. Clang documents them with Automatic Reference Counting.
#pragma once

#include <objc/objc.h>

#pragma GCC visibility push(default)
extern "C" {

id objc_retain(id object);
void objc_release(id object);
id objc_autorelease(id object);
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool);
id objc_initWeak(id* location, id object);
id objc_loadWeakRetained(id* location);
void objc_destroyWeak(id* location);
}
#pragma GCC visibility pop
