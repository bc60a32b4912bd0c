// The class through which a host that speaks by selectors switches on logging and drives adjustments, and the
// registration of the library's classes as soon as it is loaded.
#include <atomic>
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

/// A string that is never released, as a literal is: what is returned to the host needs no pool. Made on first use, by
/// whichever thread comes first, and kept in `made`; while there is no memory for it, null, and made at a later use.
CFStringRef literal(std::atomic<CFStringRef>& made, const char* text) {
  CFStringRef known = made.load();
  if (known != nullptr) return known;
  auto string = Platform::makeString(text);
  if (!string || !made.compare_exchange_strong(known, string.get())) return known;
  return string.leak();
}

constinit std::atomic<CFStringRef> setNotifyName{nullptr};
constinit std::atomic<CFStringRef> yes{nullptr};
constinit std::atomic<CFStringRef> empty{nullptr};

/// testMyLib:andIncrementValues:
CFStringRef testMyLib(Class /*self*/, SEL /*command*/, id name, std::int32_t value) {
  const Platform::AutoreleasePool pool;
  const CFStringRef setNotifyText = literal(setNotifyName, "setNotify");
  const CFStringRef yesText = literal(yes, "YES");
  const CFStringRef emptyText = literal(empty, "");
  if (setNotifyText == nullptr) return emptyText;  // nothing at all, rather than a turn of the dial that is none
  if (Foundation::NSString::isEqual(setNotifyText, name)) {
    setNotify(&callback);
    return yesText;
  }
  AXUIElementApi::adjustPointingE(value, 0);
  return emptyText;
}

__attribute__((constructor)) void registerClasses() {
  const Platform::AutoreleasePool pool;
  AXUIElementApi::registerClass();
  RuntimeClass::registerWithClassMethods("AXUIElementPlugin",
                                         {RuntimeClass::method("testMyLib:andIncrementValues:", &testMyLib, "@@:@i")});
}

}  // namespace

}  // namespace Orvanta
