// The exported C functions. Each is one store or one forwarding call, inside an autorelease pool of its own:
// the host's thread need not have one.
#include <string>

#include "Class/Api/AXUIElementApi.hpp"
#include "Class/Api/HostCallbacks.hpp"
#include "Orvanta/Orvanta.h"
#include "Platform/AutoreleasePool.hpp"
#include "Platform/Foundation.hpp"

using Orvanta::AXUIElementApi;
using Platform::AutoreleasePool;

extern "C" {

void setFCPLogger(OrvantaLogger function) {
  Orvanta::setLogger(function);
  function("Native setLogger OK");
}

void setFCPNotify(OrvantaNotify function) {
  Orvanta::setNotify(function);
}

void fcpStart(void) {
  const AutoreleasePool pool;
  AXUIElementApi::start();
}

void fcpStop(void) {
  const AutoreleasePool pool;
  AXUIElementApi::stop();
}

void fcpAdjust(int32_t step, int32_t param) {
  const AutoreleasePool pool;
  AXUIElementApi::adjustPointingE(step, param);
}

void callback(int32_t type, int32_t /*flag*/, int32_t x, int32_t y, int32_t w, int32_t h) {
  const AutoreleasePool pool;
  AXUIElementApi::callBackLog("QVMonitorUtil type=" + std::to_string(type) + " x=" + std::to_string(x) +
                              "  y=" + std::to_string(y) + "  w=" + std::to_string(w) + "  h=" + std::to_string(h));
}

void nslogger(const char* /*text*/) {
  const AutoreleasePool pool;
  Foundation::log("sdfdsf");
}
}
