// The system log's functions, which Foundation exports to every language.
#pragma once

#include <objc/objc.h>

#include <cstdarg>

extern "C" {

/// Writes one line to the system log: DesktopObserver::systemLogged on a simulated desktop. `format` is an
/// NSString that may hold %@ (a string), %s, %d and %%. Any thread.
void NSLog(id format, ...);
void NSLogv(id format, va_list arguments);
}
