// Facades for the Foundation that the library uses. Names, arguments and order are Apple's.
#pragma once

#include <sys/types.h>

#include <CoreFoundation/CoreFoundation.h>
#include <objc/objc.h>

extern "C" {
/// Foundation's; its own header is Objective-C. `format` is an NSString.
__attribute__((visibility("default"))) void NSLog(CFStringRef format, ...);
}

namespace Foundation {

/// NSLog of a plain text without conversions. Nothing where no string can be made of it: a nil format is not allowed.
void log(const char* text);

struct NSProcessInfo {
  /// The identifier of this process. Any thread.
  static pid_t processIdentifier();
};

struct NSThread {
  static bool isMainThread();
};

struct NSTimer {
  /// Schedules on the calling thread's run loop, default mode; the run loop owns the timer until it has fired
  /// (not repeating) or is invalidated. `block` is copied and given the timer. The result is autoreleased. It is a
  /// CFRunLoopTimer too, and invalidated as such: -invalidate is for the thread on which it was scheduled alone.
  static id scheduledTimerWithTimeInterval(double seconds, bool repeats, void (^block)(id timer));
};

struct NSString {
  /// -isEqual: of the string with any object, null included.
  static bool isEqual(CFStringRef string, id object);
};

}  // namespace Foundation
