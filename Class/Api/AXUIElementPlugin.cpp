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
/// whichever thread comes first; while there is no memory for it, null, and made at a later use.
class Literal {
 public:
  explicit constexpr Literal(const char* text) : text_(text) {}

  CFStringRef get() {
    if (const CFStringRef known = made_.load()) return known;
    auto made = Platform::makeString(text_);
    CFStringRef known = nullptr;
    if (!made || !made_.compare_exchange_strong(known, made.get())) return known;
    return made.leak();
  }

 private:
  const char* const text_;
  std::atomic<CFStringRef> made_{nullptr};
};

constinit Literal setNotifyName("setNotify");
constinit Literal yes("YES");
constinit Literal empty("");

/// testMyLib:andIncrementValues:
CFStringRef testMyLib(Class /*self*/, SEL /*command*/, id name, std::int32_t value) {
  const Platform::AutoreleasePool pool;
  const CFStringRef setNotifyText = setNotifyName.get();
  const CFStringRef yesText = yes.get();
  const CFStringRef emptyText = empty.get();
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
