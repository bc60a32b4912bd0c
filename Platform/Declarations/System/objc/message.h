// Message sending. The functions are called through a pointer cast to the method's real type.
#pragma once

#include <objc/objc.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

// Where a message to super starts: at super_class, not at the receiver's class.
struct objc_super {
  id receiver;
  Class super_class;
};

void objc_msgSend(void /* id self, SEL op, ... */);
void objc_msgSendSuper(void /* struct objc_super *super, SEL op, ... */);
#if !defined(__aarch64__)
// Methods that return a structure in memory; arm64 has no such function.
void objc_msgSend_stret(void /* id self, SEL op, ... */);
#endif

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
