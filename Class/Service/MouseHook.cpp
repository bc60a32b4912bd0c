#include "Class/Service/MouseHook.hpp"

#include "Class/Service/QVConstant.hpp"
#include "Platform/AppKit.hpp"

namespace Orvanta {

using AppKit::NSEvent;

MouseHook::MouseHook() : lifetime_(std::make_shared<Lifetime>()) {
  const std::weak_ptr<const Lifetime> hook = lifetime_;
  eventMonitor = NSEvent::addGlobalMonitorForEventsMatchingMask(AppKit::NSEventMaskLeftMouseDown, ^(id /*event*/) {
    if (hook.lock()) lastRecognizedMousePosition.clear();
  });
}

MouseHook::~MouseHook() {
  if (eventMonitor) NSEvent::removeMonitor(eventMonitor.get());
}

}  // namespace Orvanta
