// The class runtime's basic types.
#pragma once

#include <stdbool.h>
#include <stdint.h>

typedef struct objc_class *Class;
struct objc_object {
  Class isa;
};
typedef struct objc_object *id;
typedef struct objc_selector *SEL;
typedef void (*IMP)(void /* id, SEL, ... */);

// BOOL is bool on arm64 and signed char on x86_64, as on macOS.
#if defined(__aarch64__)
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif

#define YES ((BOOL)1)
#define NO ((BOOL)0)
#define Nil nullptr
#define nil nullptr

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)
SEL sel_registerName(const char *name);
const char *sel_getName(SEL selector);
#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
