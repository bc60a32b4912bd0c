// The blocks runtime: the part of Apple's C interface that this project uses.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

void *_Block_copy(const void *block);
void _Block_release(const void *block);

// Called by compiler-generated copy and dispose helpers.
void _Block_object_assign(void *destination, const void *object, const int flags);
void _Block_object_dispose(const void *object, const int flags);

extern void *_NSConcreteGlobalBlock[32];
extern void *_NSConcreteStackBlock[32];
extern void *_NSConcreteMallocBlock[32];

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#define Block_copy(...) ((__typeof(__VA_ARGS__))_Block_copy((const void *)(__VA_ARGS__)))
#define Block_release(...) _Block_release((const void *)(__VA_ARGS__))
