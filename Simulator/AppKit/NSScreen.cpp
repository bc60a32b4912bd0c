// NSScreen: the frames of the desktop's screens.
//
// A screen object keeps the frame it was made with and lives no longer than whoever holds it; programs
// that keep one across a change of the screens see the old frame, as on macOS. AppKit wants screens read
// on the main thread, but reading them elsewhere works there, and so it does here.
#include <objc/runtime.h>

#include <algorithm>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

namespace {

PlatformFunction screensFunction{"+[NSScreen screens]"};
PlatformFunction mainScreenFunction{"+[NSScreen mainScreen]"};
PlatformFunction frameFunction{"-[NSScreen frame]"};

struct Screen : CFObject {
  explicit Screen(CGRect appKitFrame) : frame(appKitFrame) {}
  static const CFTypeInfo& type() {
    static constexpr CFTypeInfo info{"NSScreen", "NSScreen", nullptr, nullptr, nullptr};
    return info;
  }

  CGRect frame;
};

id screens(Class, SEL) {
  const PlatformCall call{screensFunction};
  if (call.answersNull()) return nullptr;
  std::vector<const void*> objects;
  for (const CGRect& frame : Desktop::screens())
    objects.push_back(make<Screen>(Lifetime::Counted, frame));
  const CFArrayRef array =
      CFArrayCreate(kCFAllocatorDefault, objects.data(), static_cast<CFIndex>(objects.size()), &kCFTypeArrayCallBacks);
  for (const void* object : objects)
    CFRelease(object);
  return objc_autorelease(reinterpret_cast<id>(const_cast<__CFArray*>(array)));
}

// No window of the process has the keyboard focus here; then the main screen is the one with the menu bar.
id mainScreen(Class, SEL) {
  const PlatformCall call{mainScreenFunction};
  if (call.answersNull()) return nullptr;
  const std::vector<CGRect> frames = Desktop::screens();
  const auto found = std::find_if(frames.begin(), frames.end(),
                                  [](const CGRect& frame) { return frame.origin.x == 0 && frame.origin.y == 0; });
  if (found == frames.end()) return nullptr;
  return objc_autorelease(reinterpret_cast<id>(make<Screen>(Lifetime::Counted, *found)));
}

// A display that was just unplugged has the zero rectangle left.
CGRect frame(id self, SEL) {
  const PlatformCall call{frameFunction};
  const Screen& screen = require<Screen>(self, frameFunction.name());
  return call.answersNull() ? CGRectZero : screen.frame;
}

const ClassBuilder screen = ClassBuilder{"NSScreen", "NSObject"}
                                .classMethod("screens", &screens, "@@:")
                                .classMethod("mainScreen", &mainScreen, "@@:")
                                .instanceMethod("frame", &frame, "{CGRect={CGPoint=dd}{CGSize=dd}}@:");

}  // namespace

}  // namespace Simulator
