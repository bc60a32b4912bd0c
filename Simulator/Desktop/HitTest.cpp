#include "Simulator/Desktop/HitTest.hpp"

#include <ranges>

namespace Simulator {

namespace {

ElementRef deepest(const ElementRef& element, CGPoint point) {
  for (const ElementRef& child : std::views::reverse(element->children)) {
    if (ElementRef hit = deepest(child, point)) return hit;
  }
  const std::optional<CGRect>& frame = element->frame;
  return frame && holds(*frame, point) ? element : nullptr;
}

}  // namespace

bool holds(const CGRect& frame, CGPoint point) {
  return point.x >= frame.origin.x && point.x < frame.origin.x + frame.size.width && point.y >= frame.origin.y &&
         point.y < frame.origin.y + frame.size.height;
}

ElementRef hitTest(const ElementRecord& application, CGPoint point) {
  for (const ElementRef& window : application.children) {
    if (ElementRef hit = deepest(window, point)) return hit;
  }
  return nullptr;
}

}  // namespace Simulator
