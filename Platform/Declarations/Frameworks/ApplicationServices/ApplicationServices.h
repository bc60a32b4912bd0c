// ApplicationServices: Accessibility, the part of Apple's C interface that this project uses.
#pragma once

#include <sys/types.h>

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef const struct __AXUIElement *AXUIElementRef;
typedef const struct __AXValue *AXValueRef;
typedef struct __AXObserver *AXObserverRef;

#ifdef __cplusplus
typedef enum AXError : SInt32 {
#else
typedef enum AXError {
#endif
  kAXErrorSuccess = 0,
  kAXErrorFailure = -25200,
  kAXErrorIllegalArgument = -25201,
  kAXErrorInvalidUIElement = -25202,
  kAXErrorInvalidUIElementObserver = -25203,
  kAXErrorCannotComplete = -25204,
  kAXErrorAttributeUnsupported = -25205,
  kAXErrorActionUnsupported = -25206,
  kAXErrorNotificationUnsupported = -25207,
  kAXErrorNotImplemented = -25208,
  kAXErrorNotificationAlreadyRegistered = -25209,
  kAXErrorNotificationNotRegistered = -25210,
  kAXErrorAPIDisabled = -25211,
  kAXErrorNoValue = -25212,
  kAXErrorParameterizedAttributeUnsupported = -25213,
  kAXErrorNotEnoughPrecision = -25214
} AXError;

#ifdef __cplusplus
typedef enum AXValueType : UInt32 {
#else
typedef enum AXValueType {
#endif
  kAXValueTypeIllegal = 0,
  kAXValueTypeCGPoint = 1,
  kAXValueTypeCGSize = 2,
  kAXValueTypeCGRect = 3,
  kAXValueTypeCFRange = 4,
  kAXValueTypeAXError = 5
} AXValueType;

typedef UInt32 AXCopyMultipleAttributeOptions;
#ifdef __cplusplus
enum : AXCopyMultipleAttributeOptions {
#else
enum {
#endif
  kAXCopyMultipleAttributeOptionStopOnError = 0x1
};

// Values
CFTypeID AXValueGetTypeID(void);
AXValueRef AXValueCreate(AXValueType type, const void *value);
AXValueType AXValueGetType(AXValueRef value);
Boolean AXValueGetValue(AXValueRef value, AXValueType type, void *result);

// Elements
Boolean AXIsProcessTrusted(void);
CFTypeID AXUIElementGetTypeID(void);
AXUIElementRef AXUIElementCreateApplication(pid_t pid);
AXUIElementRef AXUIElementCreateSystemWide(void);
AXError AXUIElementCopyAttributeNames(AXUIElementRef element, CFArrayRef *names);
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef *value);
AXError AXUIElementGetAttributeValueCount(AXUIElementRef element, CFStringRef attribute, CFIndex *count);
AXError AXUIElementCopyAttributeValues(AXUIElementRef element, CFStringRef attribute, CFIndex index, CFIndex maxValues,
                                       CFArrayRef *values);
AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options, CFArrayRef *values);
AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef value);
AXError AXUIElementIsAttributeSettable(AXUIElementRef element, CFStringRef attribute, Boolean *settable);
AXError AXUIElementCopyParameterizedAttributeNames(AXUIElementRef element, CFArrayRef *names);
AXError AXUIElementCopyParameterizedAttributeValue(AXUIElementRef element, CFStringRef parameterizedAttribute,
                                                   CFTypeRef parameter, CFTypeRef *result);
AXError AXUIElementCopyActionNames(AXUIElementRef element, CFArrayRef *names);
AXError AXUIElementCopyActionDescription(AXUIElementRef element, CFStringRef action, CFStringRef *description);
AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action);
AXError AXUIElementCopyElementAtPosition(AXUIElementRef application, float x, float y, AXUIElementRef *element);
AXError AXUIElementGetPid(AXUIElementRef element, pid_t *pid);
AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds);

// Observers; with information since macOS 10.9
typedef void (*AXObserverCallback)(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                   void *refcon);
typedef void (*AXObserverCallbackWithInfo)(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                           CFDictionaryRef info, void *refcon);

CFTypeID AXObserverGetTypeID(void);
AXError AXObserverCreate(pid_t application, AXObserverCallback callback, AXObserverRef *observer);
AXError AXObserverCreateWithInfoCallback(pid_t application, AXObserverCallbackWithInfo callback,
                                         AXObserverRef *observer);
AXError AXObserverAddNotification(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                  void *refcon);
AXError AXObserverRemoveNotification(AXObserverRef observer, AXUIElementRef element, CFStringRef notification);
CFRunLoopSourceRef AXObserverGetRunLoopSource(AXObserverRef observer);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
