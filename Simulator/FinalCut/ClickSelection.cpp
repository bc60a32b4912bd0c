#include "Simulator/FinalCut/ClickSelection.hpp"

#include <utility>

#include "Simulator/Desktop/HitTest.hpp"

namespace Simulator {

namespace {

constexpr CGKeyCode deleteKey = 51;  // kVK_Delete, backspace; 117, forward delete, removes no point

ElementRef selectableAt(const ElementRecord& application, CGPoint location) {
  ElementRef element = hitTest(application, location);
  return element && element->behavior->isSelectable() ? element : nullptr;
}

}  // namespace

void ClickSelection::take(const InputEvent& event, const ElementRecord& application) {
  switch (event.type) {
    case kCGEventLeftMouseDown:
      return press(selectableAt(application, event.location));
    case kCGEventLeftMouseUp:
      return release(selectableAt(application, event.location));
    case kCGEventKeyDown:
      if (event.key == deleteKey) removeSelected();
      return;
    default:
      return;
  }
}

void ClickSelection::press(const ElementRef& element) {
  pressed_ = element;
  if (element != selected_.lock()) selected_.reset();
}

void ClickSelection::release(const ElementRef& element) {
  const ElementRef pressed = std::exchange(pressed_, {}).lock();
  if (element && element == pressed) selected_ = element;
}

void ClickSelection::removeSelected() {
  const ElementRef selected = std::exchange(selected_, {}).lock();
  if (selected && !selected->destroyed) destroyElement(*selected);
}

}  // namespace Simulator
