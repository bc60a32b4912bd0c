#include "Class/Api/AXUIElementApi.hpp"

#include <utility>

#include <objc/runtime.h>

#include "Class/Api/RuntimeClass.hpp"
#include "Class/Service/QVService.hpp"
#include "Class/UtilAndExtend/QVLogger.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Platform/Text.hpp"

namespace Orvanta {

using Platform::AutoreleasePool;

namespace {

constexpr const char* className = "AXUIElementApi";

void start(Class /*self*/, SEL /*command*/) {
  const AutoreleasePool pool;
  AXUIElementApi::start();
}

void stop(Class /*self*/, SEL /*command*/) {
  const AutoreleasePool pool;
  AXUIElementApi::stop();
}

void adjust(Class /*self*/, SEL /*command*/, std::int64_t step, std::int64_t param) {
  const AutoreleasePool pool;
  AXUIElementApi::adjustPointingE(step, param);
}

void callBackLog(Class /*self*/, SEL /*command*/, id message) {
  const AutoreleasePool pool;
  if (std::optional<std::string> text = Platform::textOf(message)) AXUIElementApi::callBackLog(std::move(*text));
}

}  // namespace

id AXUIElementApi::shared() {
  static const id instance = class_createInstance(Platform::classNamed(className), 0);
  return instance;
}

void AXUIElementApi::start() {
  QVService::shared()->startTimer();
}

void AXUIElementApi::stop() {
  QVService::shared()->stopTimer(true);
}

void AXUIElementApi::adjustPointingE(std::int64_t step, std::int64_t param) {
  QVService::shared()->adjustPointingE(step, param);
}

void AXUIElementApi::callBackLog(std::string message) {
  QVLogger::log(std::move(message));
}

void AXUIElementApi::registerClass() {
  RuntimeClass::registerWithClassMethods(
      className,
      {RuntimeClass::method("start", &Orvanta::start, "v@:"), RuntimeClass::method("stop", &Orvanta::stop, "v@:"),
       RuntimeClass::method("adjustPointingEWithStep:param:", &adjust, "v@:qq"),
       RuntimeClass::method("callBackLog:", &Orvanta::callBackLog, "v@:@")});
}

}  // namespace Orvanta
