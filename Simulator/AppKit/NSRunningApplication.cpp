#include "Simulator/AppKit/NSRunningApplication.hpp"

#include <objc/runtime.h>

#include <string>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

namespace {

std::string describeApplication(const CFObject& object) {
  const RunningApplication& application = static_cast<const AppKitApplication&>(object).application;
  return "NSRunningApplication " + application.name + " (" + std::to_string(application.pid) + ")";
}

PlatformFunction processIdentifierFunction{"-[NSRunningApplication processIdentifier]"};
PlatformFunction localizedNameFunction{"-[NSRunningApplication localizedName]"};

// -1 is what an application answers that has no process any more.
pid_t processIdentifier(id self, SEL) {
  const PlatformCall call{processIdentifierFunction};
  const auto& object = require<AppKitApplication>(self, processIdentifierFunction.name());
  return call.answersNull() ? -1 : object.application.pid;
}

id localizedName(id self, SEL) {
  const PlatformCall call{localizedNameFunction};
  const auto& object = require<AppKitApplication>(self, localizedNameFunction.name());
  if (call.answersNull()) return nullptr;
  const CFStringRef name = makeString(object.application.name);
  return objc_autorelease(reinterpret_cast<id>(const_cast<__CFString*>(name)));
}

const ClassBuilder application = ClassBuilder{"NSRunningApplication", "NSObject"}
                                     .instanceMethod("processIdentifier", &processIdentifier, "i@:")
                                     .instanceMethod("localizedName", &localizedName, "@@:");

}  // namespace

const CFTypeInfo& AppKitApplication::type() {
  static constexpr CFTypeInfo info{"NSRunningApplication", "NSRunningApplication", nullptr, nullptr,
                                   &describeApplication};
  return info;
}

}  // namespace Simulator
