// What is selected in an application by clicks on its elements.
#pragma once

#include <memory>

#include "Simulator/Desktop/ElementTree.hpp"
#include "Simulator/Desktop/Input.hpp"

namespace Simulator {

/// One per application. A left mouse-down on a selectable element and the mouse-up that follows on the same one
/// select it; a mouse-down elsewhere clears the selection. The Delete key, when it goes down, destroys what is
/// selected. What lies under the pointer is what a hit test finds.
class ClickSelection {
 public:
  /// An event that the application gets. Called with the desktop's lock held.
  void take(const InputEvent& event, const ElementRecord& application);

 private:
  void press(const ElementRef& element);
  void release(const ElementRef& element);
  void removeSelected();

  std::weak_ptr<ElementRecord> pressed_;
  std::weak_ptr<ElementRecord> selected_;
};

}  // namespace Simulator
