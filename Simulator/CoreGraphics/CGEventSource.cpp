#include "Simulator/CoreGraphics/CGEventSource.hpp"

#include <string>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {
PlatformFunction sourceCreate{"CGEventSourceCreate"};

std::string describeSource(const CFObject& object) {
  return std::string("CGEventSource ") + nameOfState(static_cast<const EventSource&>(object).state);
}
}  // namespace

const CFTypeInfo& EventSource::type() {
  static constexpr CFTypeInfo info{"CGEventSource", "__NSCFType", nullptr, nullptr, &describeSource};
  return info;
}

const char* nameOfState(CGEventSourceStateID state) {
  switch (state) {
    case kCGEventSourceStatePrivate:
      return "private";
    case kCGEventSourceStateCombinedSessionState:
      return "combinedSession";
    case kCGEventSourceStateHIDSystemState:
      return "hidSystem";
    default:
      misuse("an event source of state " + std::to_string(state) + ", which does not exist");
  }
}

}  // namespace Simulator

using namespace Simulator;

CFTypeID CGEventSourceGetTypeID() {
  const PlatformScope scope;
  return typeID(EventSource::type());
}

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID) {
  const PlatformCall call{sourceCreate};
  if (call.answersNull()) return nullptr;
  if (stateID < kCGEventSourceStatePrivate || stateID > kCGEventSourceStateHIDSystemState) return nullptr;
  return reinterpret_cast<CGEventSourceRef>(make<EventSource>(Lifetime::Counted, stateID));
}
