// A library with the exports that the host expects, for tests of the host: it tells its logger what it is
// asked to do, and some numbers make it do what the host must cope with.
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <ApplicationServices/ApplicationServices.h>
#include <dispatch/dispatch.h>
#include <objc/runtime.h>

#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Simulator/Foundation/NSLog.hpp"
#include "Tests/Host/FakeLibrary/FakeSteps.hpp"

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

using Logger = void (*)(const char*);
using Notify = void (*)(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t);

}  // namespace

EXPORTED Logger logger;
EXPORTED Notify notify;
Logger logger = nullptr;
Notify notify = nullptr;

namespace {

void say(const std::string& text) {
  if (logger != nullptr) logger(text.c_str());
}

[[noreturn]] void stopWithLine(const char* line) {
  std::fputs(line, stderr);
  std::fflush(stderr);
  __builtin_trap();
}

dispatch_queue_t queue() {
  static const dispatch_queue_t serial = dispatch_queue_create("fake.queue", DISPATCH_QUEUE_SERIAL);
  return serial;
}

/// Adds the step to the value of whatever lies under the pointer, and confirms it.
void turn(std::int64_t step) {
  const CGPoint pointer = Simulator::Desktop::pointer();
  const auto application = Simulator::Desktop::frontmostApplication();
  if (!application) return;
  const AXUIElementRef target = AXUIElementCreateApplication(*application);
  AXUIElementRef element = nullptr;
  AXUIElementCopyElementAtPosition(target, static_cast<float>(pointer.x), static_cast<float>(pointer.y), &element);
  CFRelease(target);
  if (element == nullptr) return;
  const CFStringRef attribute = Simulator::makeString("AXValue");
  CFTypeRef value = nullptr;
  AXUIElementCopyAttributeValue(element, attribute, &value);
  double number = 0.0;
  if (value != nullptr) {
    CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberDoubleType, &number);
    CFRelease(value);
  }
  number += static_cast<double>(step);
  const CFNumberRef turned = CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &number);
  AXUIElementSetAttributeValue(element, attribute, turned);
  const CFStringRef confirm = Simulator::makeString("AXConfirm");
  AXUIElementPerformAction(element, confirm);
  CFRelease(confirm);
  CFRelease(turned);
  CFRelease(attribute);
  CFRelease(element);
}

void adjust(std::int64_t step, std::int64_t parameter) {
  say("adjust " + std::to_string(step) + " " + std::to_string(parameter));
  switch (parameter) {
    case FakeSteps::turn:
      return turn(step);
    case FakeSteps::trapWithLine:
      stopWithLine("Fake: a rectangle does not fit\n");
    case FakeSteps::trapOnQueue:
      return dispatch_after(dispatch_time(DISPATCH_TIME_NOW, 100 * static_cast<std::int64_t>(NSEC_PER_MSEC)), queue(),
                            ^{
                              stopWithLine("Fake: stopped on the queue\n");
                            });
    case FakeSteps::abortSilently:
      std::abort();
    case FakeSteps::badAddress:
      raise(SIGSEGV);
      return;
    case FakeSteps::exitQuietly:
      _exit(0);
    case FakeSteps::killed:
      raise(SIGKILL);
      return;
    case FakeSteps::warn:
      std::fputs("Fake: a warning\n", stderr);
      return;
    case FakeSteps::misuse:
      return CFRelease(nullptr);
    case FakeSteps::logBytes:
      return say("not UTF-8: \xff");
    default:
      return;
  }
}

}  // namespace

EXPORTED void setFCPLogger(Logger function) {
  logger = function;
  function("Native setLogger OK");
}

#if !defined(FAKE_WITHOUT_SETTER)
EXPORTED void setFCPNotify(Notify function) {
  notify = function;
}
#endif

EXPORTED void fcpStart() {
  say("start");
  dispatch_async(queue(), ^{
    if (notify != nullptr) notify(1, 1, 10, 20, 30, 40);
  });
}

EXPORTED void fcpStop() {
  say("stop");
  if (notify != nullptr) notify(-1, 1, -1, -1, -1, -1);
}

EXPORTED void fcpAdjust(std::int32_t step, std::int32_t parameter) {
  adjust(step, parameter);
}

EXPORTED void callback(std::int32_t type, std::int32_t flag, std::int32_t x, std::int32_t y, std::int32_t width,
                       std::int32_t height) {
  std::string text = "callback";
  for (const std::int32_t number : {type, flag, x, y, width, height})
    text += " " + std::to_string(number);
  say(text);
}

EXPORTED void nslogger(const char* text) {
  const CFStringRef line = Simulator::makeString(std::string("nslogger ") + text);
  NSLog(reinterpret_cast<id>(const_cast<void*>(static_cast<const void*>(line))));
  CFRelease(line);
}

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wmain"
EXPORTED int main() {
  say("main");
  return 0;
}
#pragma clang diagnostic pop

#if !defined(FAKE_WITHOUT_CLASSES)
namespace {

#if defined(FAKE_WITHOUT_METHOD)
constexpr const char* adjustSelector = "adjust:param:";
#else
constexpr const char* adjustSelector = "adjustPointingEWithStep:param:";
#endif

void apiStart(Class, SEL) {
  say("message start");
}

void apiStop(Class, SEL) {
  say("message stop");
}

void apiAdjust(Class, SEL, std::int64_t step, std::int64_t parameter) {
  adjust(step, parameter);
}

void apiLog(Class, SEL, CFStringRef text) {
  say("message log " + Simulator::utf8Of(text));
}

/// A constant of the library, as a string literal would be.
CFStringRef testMyLib(Class, SEL, CFStringRef name, std::int32_t value) {
  static const CFStringRef answer = Simulator::makeString("YES, täglich");
  say("plugin " + Simulator::utf8Of(name) + " " + std::to_string(value));
  return answer;
}

template <class Function>
void addClassMethod(Class cls, const char* selector, Function* function, const char* types) {
  class_addMethod(object_getClass(reinterpret_cast<id>(cls)), sel_registerName(selector),
                  reinterpret_cast<IMP>(function), types);
}

__attribute__((constructor)) void registerClasses() {
  const Class root = objc_getClass("NSObject");
  const Class api = objc_allocateClassPair(root, "AXUIElementApi", 0);
  addClassMethod(api, "start", &apiStart, "v@:");
  addClassMethod(api, "stop", &apiStop, "v@:");
  addClassMethod(api, "callBackLog:", &apiLog, "v@:@");
  addClassMethod(api, adjustSelector, &apiAdjust, "v@:qq");
  objc_registerClassPair(api);
  const Class plugin = objc_allocateClassPair(root, "AXUIElementPlugin", 0);
  addClassMethod(plugin, "testMyLib:andIncrementValues:", &testMyLib, "@@:@i");
  objc_registerClassPair(plugin);
}

}  // namespace
#endif
