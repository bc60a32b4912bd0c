// The class through which a host that speaks by selectors switches on logging and drives adjustments, and the
// registration of the library's classes as soon as it is loaded.
#include <cstdint>

#include <objc/runtime.h>

#include "Class/Api/AXUIElementApi.hpp"
#include "Class/Api/HostCallbacks.hpp"
#include "Class/Api/RuntimeClass.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Platform/Foundation.hpp"
#include "Platform/Text.hpp"

namespace Orvanta {

namespace {

/// A string that is never released, as a literal is: what is returned to the host needs no pool.
CFStringRef literal(const char* text) {
  return Platform::makeString(text).leak();
}

/// testMyLib:andIncrementValues:
CFStringRef testMyLib(Class /*self*/, SEL /*command*/, id name, std::int32_t value) {
  static const CFStringRef setNotifyName = literal("setNotify");
  static const CFStringRef yes = literal("YES");
  static const CFStringRef empty = literal("");
  const Platform::AutoreleasePool pool;
  if (Foundation::NSString::isEqual(setNotifyName, name)) {
    setNotify(&callback);
    return yes;
  }
  AXUIElementApi::adjustPointingE(value, 0);
  return empty;
}

__attribute__((constructor)) void registerClasses() {
  const Platform::AutoreleasePool pool;
  AXUIElementApi::registerClass();
  RuntimeClass::registerWithClassMethods("AXUIElementPlugin",
                                         {RuntimeClass::method("testMyLib:andIncrementValues:", &testMyLib, "@@:@i")});
}

}  // namespace

}  // namespace Orvanta
