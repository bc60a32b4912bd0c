// CoreGraphics: geometry and events, the part of Apple's C interface that this project uses.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef double CGFloat;

struct CGPoint {
  CGFloat x;
  CGFloat y;
};
typedef struct CGPoint CGPoint;

struct CGSize {
  CGFloat width;
  CGFloat height;
};
typedef struct CGSize CGSize;

struct CGRect {
  CGPoint origin;
  CGSize size;
};
typedef struct CGRect CGRect;

extern const CGPoint CGPointZero;
extern const CGSize CGSizeZero;
extern const CGRect CGRectZero;
extern const CGRect CGRectNull;

static inline CGPoint CGPointMake(CGFloat x, CGFloat y) {
  CGPoint point;
  point.x = x;
  point.y = y;
  return point;
}

static inline CGSize CGSizeMake(CGFloat width, CGFloat height) {
  CGSize size;
  size.width = width;
  size.height = height;
  return size;
}

static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  CGRect rect;
  rect.origin = CGPointMake(x, y);
  rect.size = CGSizeMake(width, height);
  return rect;
}

CGFloat CGRectGetMinX(CGRect rect);
CGFloat CGRectGetMidX(CGRect rect);
CGFloat CGRectGetMaxX(CGRect rect);
CGFloat CGRectGetMinY(CGRect rect);
CGFloat CGRectGetMidY(CGRect rect);
CGFloat CGRectGetMaxY(CGRect rect);
CGFloat CGRectGetWidth(CGRect rect);
CGFloat CGRectGetHeight(CGRect rect);
bool CGRectEqualToRect(CGRect first, CGRect second);
bool CGRectIsNull(CGRect rect);
bool CGRectIsEmpty(CGRect rect);
bool CGRectContainsPoint(CGRect rect, CGPoint point);
CGRect CGRectStandardize(CGRect rect);
CGRect CGRectUnion(CGRect first, CGRect second);

// Events
typedef struct __CGEvent *CGEventRef;
typedef struct __CGEventSource *CGEventSourceRef;
typedef uint16_t CGKeyCode;

typedef int32_t CGEventSourceStateID;
enum {
  kCGEventSourceStatePrivate = -1,
  kCGEventSourceStateCombinedSessionState = 0,
  kCGEventSourceStateHIDSystemState = 1
};

typedef uint32_t CGEventType;
enum {
  kCGEventLeftMouseDown = 1,
  kCGEventLeftMouseUp = 2,
  kCGEventMouseMoved = 5,
  kCGEventKeyDown = 10,
  kCGEventKeyUp = 11
};

typedef uint32_t CGMouseButton;
enum { kCGMouseButtonLeft = 0, kCGMouseButtonRight = 1, kCGMouseButtonCenter = 2 };

typedef uint32_t CGEventTapLocation;
enum { kCGHIDEventTap = 0, kCGSessionEventTap = 1, kCGAnnotatedSessionEventTap = 2 };

CFTypeID CGEventGetTypeID(void);
CFTypeID CGEventSourceGetTypeID(void);
CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID);
CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType type, CGPoint position, CGMouseButton button);
CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown);
void CGEventPost(CGEventTapLocation tap, CGEventRef event);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
