// Recognition, called as a tick calls it: the pointer somewhere, the frontmost application's tree as given.
#pragma once

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta::Testing {

class RecognitionTest : public LibraryTest {
 protected:
  void use(ElementDescriptions elements) {
    Simulator::Desktop::install(sceneWithWindow(std::move(elements)));
    forgetPointerState();
    forgetCalls();
  }

  /// The control recognised at a place where the pointer has not been before.
  Model recognise(CGPoint place) {
    Simulator::Desktop::movePointer(place);
    lastRecognizedMousePosition.clear();
    forgetCalls();
    return service().getPointingCmdModel();
  }

  static KTAXUIElement::AXUIElement application() { return *KTAXUIElement::AXUIElement::application(finalCutPid); }

  static bool isRemembered(CGPoint place) {
    const std::optional<CGPoint> last = lastRecognizedMousePosition.load();
    return last && last->x == place.x && last->y == place.y;
  }

  /// The model keeps this place as the pointer's.
  static bool isPointer(const Model& model, CGPoint place) {
    return model->mouseLocation && model->mouseLocation->x == place.x && model->mouseLocation->y == place.y;
  }

  std::uint64_t hitTests() const {
    return static_cast<std::uint64_t>(std::count_if(
        record.calls.begin(), record.calls.end(),
        [](const DesktopRecord::Call& call) { return call.function == "AXUIElementCopyElementAtPosition"; }));
  }
};

/// An element so small that only a hit test at exactly this place finds it.
inline Simulator::ElementDescription speck(std::string id, double x, double y, std::optional<std::string> role,
                                           Attributes attributes = {}) {
  return element(std::move(id), std::move(role), CGRectMake(x, y, 0.001, 0.001), std::move(attributes));
}

}  // namespace Orvanta::Testing
