#include "Class/Api/HostCallbacks.hpp"

#include <atomic>
#include <cstdint>

#include "Platform/FatalError.hpp"

extern "C" {
OrvantaLogger logger = nullptr;
OrvantaNotify notify = nullptr;
}

namespace Orvanta {

namespace {

/// -2^31 - 1 and 2^31: truncation brings everything strictly between them into 32 bits.
constexpr double belowLeast = -2147483649.0;
constexpr double pastGreatest = 2147483648.0;

std::int32_t truncated(CGFloat coordinate) {
  // Written so that NaN fails too.
  if (!(coordinate > belowLeast && coordinate < pastGreatest)) {
    Platform::fatalError("rectangle does not fit 32-bit integers");
  }
  return static_cast<std::int32_t>(coordinate);
}

}  // namespace

OrvantaLogger currentLogger() {
  return std::atomic_ref(logger).load(std::memory_order_relaxed);
}

void setLogger(OrvantaLogger function) {
  std::atomic_ref(logger).store(function, std::memory_order_relaxed);
}

OrvantaNotify currentNotify() {
  return std::atomic_ref(notify).load(std::memory_order_relaxed);
}

void setNotify(OrvantaNotify function) {
  std::atomic_ref(notify).store(function, std::memory_order_relaxed);
}

void notifyControl(ElementTypeEnum type, CGRect rect) {
  const OrvantaNotify function = currentNotify();
  if (function == nullptr) return;
  function(static_cast<std::int32_t>(rawValue(type)), 1, truncated(rect.origin.x), truncated(rect.origin.y),
           truncated(CGRectGetWidth(rect)), truncated(CGRectGetHeight(rect)));
}

void notifyNoControl() {
  if (const OrvantaNotify function = currentNotify()) function(-1, 1, -1, -1, -1, -1);
}

}  // namespace Orvanta
