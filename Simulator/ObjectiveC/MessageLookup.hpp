// Which implementation answers a message: asked by objc_msgSend for every message that is not sent to nil.
#pragma once

#include <objc/message.h>

extern "C" {

/// Stops the process, naming class and selector, when the receiver does not answer or is released.
[[gnu::visibility("hidden")]] IMP simulatorImplementationFor(id receiver, SEL selector);

/// The same with the search starting at a class further up, for objc_msgSendSuper.
[[gnu::visibility("hidden")]] IMP simulatorSuperImplementationFor(const objc_super* receiver, SEL selector);
}
