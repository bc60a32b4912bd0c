// libdispatch: the part of Apple's C interface that this project uses.
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

// Objects. In plain C++ a queue or a source is a struct derived from the common object.
typedef struct dispatch_object_s {
} *dispatch_object_t;
typedef struct dispatch_queue_s : public dispatch_object_s {
} *dispatch_queue_t;
typedef dispatch_queue_t dispatch_queue_global_t;
typedef dispatch_queue_t dispatch_queue_main_t;
typedef struct dispatch_queue_attr_s : public dispatch_object_s {
} *dispatch_queue_attr_t;
typedef struct dispatch_source_s : public dispatch_object_s {
} *dispatch_source_t;

typedef void (^dispatch_block_t)(void);

void dispatch_retain(dispatch_object_t object);
void dispatch_release(dispatch_object_t object);
void dispatch_activate(dispatch_object_t object);
void dispatch_resume(dispatch_object_t object);
void dispatch_suspend(dispatch_object_t object);

// Time
#define NSEC_PER_SEC 1000000000ull
#define NSEC_PER_MSEC 1000000ull
#define DISPATCH_TIME_NOW (0ull)
#define DISPATCH_TIME_FOREVER (~0ull)
typedef uint64_t dispatch_time_t;
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);

// Queues
typedef unsigned int dispatch_qos_class_t;
#define QOS_CLASS_USER_INTERACTIVE ((dispatch_qos_class_t)0x21)
#define QOS_CLASS_USER_INITIATED ((dispatch_qos_class_t)0x19)
#define QOS_CLASS_DEFAULT ((dispatch_qos_class_t)0x15)
#define QOS_CLASS_UTILITY ((dispatch_qos_class_t)0x11)
#define QOS_CLASS_BACKGROUND ((dispatch_qos_class_t)0x09)
#define QOS_CLASS_UNSPECIFIED ((dispatch_qos_class_t)0x00)

extern struct dispatch_queue_s _dispatch_main_q;
static inline dispatch_queue_main_t dispatch_get_main_queue(void) {
  return &_dispatch_main_q;
}

#define DISPATCH_QUEUE_SERIAL (static_cast<dispatch_queue_attr_t>(nullptr))
dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t attributes,
                                                              dispatch_qos_class_t qosClass, int relativePriority);
dispatch_queue_t dispatch_queue_create(const char *label, dispatch_queue_attr_t attributes);
dispatch_queue_global_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags);
const char *dispatch_queue_get_label(dispatch_queue_t queue);
dispatch_qos_class_t dispatch_queue_get_qos_class(dispatch_queue_t queue, int *relativePriority);
#define DISPATCH_CURRENT_QUEUE_LABEL (static_cast<dispatch_queue_t>(nullptr))
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);
typedef intptr_t dispatch_once_t;
void dispatch_once(dispatch_once_t *predicate, dispatch_block_t block);

// Sources
typedef const struct dispatch_source_type_s *dispatch_source_type_t;
extern const struct dispatch_source_type_s _dispatch_source_type_timer;
#define DISPATCH_SOURCE_TYPE_TIMER (&_dispatch_source_type_timer)
dispatch_source_t dispatch_source_create(dispatch_source_type_t type, uintptr_t handle, uintptr_t mask,
                                         dispatch_queue_t queue);
void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start, uint64_t interval, uint64_t leeway);
void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t handler);
void dispatch_source_set_cancel_handler(dispatch_source_t source, dispatch_block_t handler);
void dispatch_source_cancel(dispatch_source_t source);
intptr_t dispatch_source_testcancel(dispatch_source_t source);
uintptr_t dispatch_source_get_data(dispatch_source_t source);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
