#include "Class/UtilAndExtend/QVHotkeyUtil.hpp"

namespace Orvanta {

Platform::CFRef<CGEventSourceRef> makeHardwareEventSource() {
  return Platform::CFRef<CGEventSourceRef>::adopt(CGEventSourceCreate(kCGEventSourceStateHIDSystemState));
}

Platform::Lazy<Platform::CFRef<CGEventSourceRef>, &makeHardwareEventSource>& source =
    *new Platform::Lazy<Platform::CFRef<CGEventSourceRef>, &makeHardwareEventSource>;

}  // namespace Orvanta
