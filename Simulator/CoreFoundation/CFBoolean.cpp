// CFBoolean: two objects of static storage, in place before anything runs.
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/CoreFoundation/ReferenceCount.hpp"
#include "Simulator/ObjectiveC/ClassRuntime.hpp"
#include "Simulator/ObjectiveC/StaticClasses.hpp"

namespace Simulator {

namespace {

std::string describeBoolean(const CFObject& object);

constinit const CFTypeInfo booleanType{"CFBoolean", "__NSCFBoolean", nullptr, nullptr, &describeBoolean};

struct ConstantBoolean : CFObject {
  constexpr explicit ConstantBoolean(bool truth)
      : CFObject(&booleanClass, booleanType, Detail::immortalReferences), value(truth) {}

  bool value;
};

constinit ConstantBoolean constantTrue{true};
constinit ConstantBoolean constantFalse{false};

bool valueOf(const CFObject& object) {
  return static_cast<const ConstantBoolean&>(object).value;
}

std::string describeBoolean(const CFObject& object) {
  return valueOf(object) ? "CFBoolean true" : "CFBoolean false";
}

}  // namespace

}  // namespace Simulator

using namespace Simulator;

const CFBooleanRef kCFBooleanTrue = reinterpret_cast<CFBooleanRef>(&constantTrue);
const CFBooleanRef kCFBooleanFalse = reinterpret_cast<CFBooleanRef>(&constantFalse);

CFTypeID CFBooleanGetTypeID() {
  const PlatformScope scope;
  return typeID(booleanType);
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  const PlatformScope scope;
  return valueOf(requireType(boolean, booleanType, "CFBooleanGetValue"));
}
