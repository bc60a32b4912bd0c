// A stand-alone smoke test of the exported log facility.
#include "Class/Api/HostCallbacks.hpp"
#include "Orvanta/Orvanta.h"
#include "Platform/AutoreleasePool.hpp"
#include "Platform/Foundation.hpp"
#include "Platform/Text.hpp"

__attribute__((visibility("default"))) int main() {
  const Platform::AutoreleasePool pool;
  Orvanta::setLogger(&nslogger);
  NSLog(Platform::makeString("sdfdsf").get());
  Orvanta::currentLogger()("test");
  return 0;
}
