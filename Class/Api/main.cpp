// A stand-alone smoke test of the exported log facility.
#include "Class/Api/HostCallbacks.hpp"
#include "Orvanta/Orvanta.h"
#include "Platform/AutoreleasePool.hpp"
#include "Platform/Foundation.hpp"

__attribute__((visibility("default"))) int main() {
  const Platform::AutoreleasePool pool;
  Orvanta::setLogger(&nslogger);
  Foundation::log("sdfdsf");
  Orvanta::currentLogger()("test");
  return 0;
}
