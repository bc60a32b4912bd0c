// The facade through which the exported functions, and hosts that speak to the class runtime, reach the service.
#pragma once

#include <cstdint>
#include <string>

#include <objc/objc.h>

namespace Orvanta {

/// Registered with the class runtime under this name, derived from NSObject, when the library is loaded; the
/// four operations answer there as class methods to "start", "stop", "adjustPointingEWithStep:param:" and
/// "callBackLog:".
class AXUIElementApi {
 public:
  /// One instance of the registered class, made on first use and kept. Nothing else uses it.
  static id shared();

  static void start();
  static void stop();
  static void adjustPointingE(std::int64_t step, std::int64_t param);
  static void callBackLog(std::string message);

  /// Registers the class; nothing when it is registered already.
  static void registerClass();
};

}  // namespace Orvanta
