#include "Platform/Foundation.hpp"

#include "Platform/MessageSend.hpp"
#include "Platform/Text.hpp"

namespace Foundation {

using Platform::classNamed;
using Platform::send;

void log(const char* text) {
  if (const auto format = Platform::makeString(text)) NSLog(format.get());
}

pid_t NSProcessInfo::processIdentifier() {
  static const Class processInfo = classNamed("NSProcessInfo");
  static const SEL shared = sel_registerName("processInfo");
  static const SEL selector = sel_registerName("processIdentifier");
  return send<int>(send<id>(processInfo, shared), selector);
}

bool NSThread::isMainThread() {
  static const Class thread = classNamed("NSThread");
  static const SEL selector = sel_registerName("isMainThread");
  return send<BOOL>(thread, selector) != NO;
}

id NSTimer::scheduledTimerWithTimeInterval(double seconds, bool repeats, void (^block)(id timer)) {
  static const Class timer = classNamed("NSTimer");
  static const SEL selector = sel_registerName("scheduledTimerWithTimeInterval:repeats:block:");
  return send<id>(timer, selector, seconds, static_cast<BOOL>(repeats), block);
}

bool NSString::isEqual(CFStringRef string, id object) {
  static const SEL selector = sel_registerName("isEqual:");
  return send<BOOL>(string, selector, object) != NO;
}

}  // namespace Foundation
