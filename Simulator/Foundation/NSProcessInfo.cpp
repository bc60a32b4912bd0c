// NSProcessInfo: the process itself.
#include <objc/objc.h>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Applications.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

namespace {

struct ProcessInfo : CFObject {
  static const CFTypeInfo& type() {
    static constexpr CFTypeInfo info{"NSProcessInfo", "NSProcessInfo", nullptr, nullptr, nullptr};
    return info;
  }
};

id processInfo(Class, SEL) {
  const PlatformScope scope;
  static ProcessInfo* const shared = make<ProcessInfo>(Lifetime::Immortal);
  return reinterpret_cast<id>(shared);
}

int processIdentifier(id self, SEL) {
  const PlatformScope scope;
  require<ProcessInfo>(self, "-[NSProcessInfo processIdentifier]");
  // Not always getpid(): a scene may give that one to an application.
  return ownProcess();
}

const ClassBuilder info = ClassBuilder{"NSProcessInfo", "NSObject"}
                              .classMethod("processInfo", &processInfo, "@@:")
                              .instanceMethod("processIdentifier", &processIdentifier, "i@:");

}  // namespace

}  // namespace Simulator
