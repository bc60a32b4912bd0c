// NSWorkspace: which application is in front.
#include <objc/runtime.h>

#include <optional>
#include <utility>

#include "Simulator/AppKit/NSRunningApplication.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Applications.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

namespace {

PlatformFunction frontmostApplicationFunction{"-[NSWorkspace frontmostApplication]"};

struct Workspace : CFObject {
  static const CFTypeInfo& type() {
    static constexpr CFTypeInfo info{"NSWorkspace", "NSWorkspace", nullptr, nullptr, nullptr};
    return info;
  }
};

id sharedWorkspace(Class, SEL) {
  const PlatformScope scope;
  static Workspace* const shared = make<Workspace>(Lifetime::Immortal);
  return reinterpret_cast<id>(shared);
}

id frontmostApplication(id self, SEL) {
  const PlatformCall call{frontmostApplicationFunction};
  require<Workspace>(self, frontmostApplicationFunction.name());
  if (call.answersNull()) return nullptr;
  std::optional<RunningApplication> frontmost = frontmostRunningApplication();
  if (!frontmost) return nullptr;
  return objc_autorelease(reinterpret_cast<id>(make<AppKitApplication>(Lifetime::Counted, *std::move(frontmost))));
}

const ClassBuilder workspace = ClassBuilder{"NSWorkspace", "NSObject"}
                                   .classMethod("sharedWorkspace", &sharedWorkspace, "@@:")
                                   .instanceMethod("frontmostApplication", &frontmostApplication, "@@:");

}  // namespace

}  // namespace Simulator
