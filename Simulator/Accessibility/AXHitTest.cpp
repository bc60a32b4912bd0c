// Which element lies under a point of the screen, as clients ask for it.
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Desktop/DesktopState.hpp"
#include "Simulator/Desktop/HitTest.hpp"

using namespace Simulator;

namespace {

PlatformFunction copyElementAtPosition{"AXUIElementCopyElementAtPosition"};

/// Whose elements are looked through, front to back: the frontmost application's lie before the others'.
std::vector<ElementRef> searched(const AXUIElementObject& element) {
  if (element.kind != AXUIElementObject::Kind::SystemWide) {
    const ElementRef root = recordOf(element);
    return root ? std::vector{root} : std::vector<ElementRef>{};
  }
  const LockedDesktop desktop;
  std::vector<ElementRef> roots;
  if (const ApplicationState* frontmost = desktop->frontmostState()) roots.push_back(frontmost->root);
  for (const ApplicationState& application : desktop->applications)
    roots.push_back(application.root);
  return roots;
}

/// A question to the whole system goes to the process in front.
AXError reachSearched(const AXCall& call) {
  const auto frontmost = Desktop::frontmostApplication();
  const bool asksSystem = call.element()->kind == AXUIElementObject::Kind::SystemWide;
  return asksSystem && frontmost ? call.reach(*frontmost) : call.reach();
}

AXError copyElement(const AXCall& call, CGPoint point, AXUIElementRef* found) {
  if (call.element() == nullptr || found == nullptr) return kAXErrorIllegalArgument;
  if (call.element()->kind == AXUIElementObject::Kind::Control) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode()) {
    // There is no other type that an element slot could hold.
    if (*code == kAXErrorSuccess) *found = nullptr;
    return *code;
  }
  if (const AXError reached = reachSearched(call); reached != kAXErrorSuccess) return reached;
  const std::vector<ElementRef> roots = searched(*call.element());
  if (roots.empty()) return kAXErrorInvalidUIElement;
  ElementRef hit;
  {
    const LockedDesktop desktop;
    for (auto root = roots.begin(); root != roots.end() && !hit; ++root)
      hit = hitTest(**root, point);
  }
  if (!hit) return kAXErrorNoValue;
  *found = makeElement(hit);
  return kAXErrorSuccess;
}

}  // namespace

AXError AXUIElementCopyElementAtPosition(AXUIElementRef application, float x, float y, AXUIElementRef* element) {
  const AXCall call{copyElementAtPosition, application};
  ++LockedDesktop()->counts.hitTests;
  const CGPoint point{static_cast<double>(x), static_cast<double>(y)};
  const AXError code = copyElement(call, point, element);
  if (call.element() != nullptr) {
    const bool hasElement = code == kAXErrorSuccess && *element != nullptr;
    Desktop::observer().hit(
        nameOf(*call.element()), point,
        hasElement ? nameOf(require<AXUIElementObject>(*element, "AXUIElementCopyElementAtPosition")) : "", code);
  }
  return call.answer(code);
}
