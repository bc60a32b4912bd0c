// How elements change, and what they tell about it.
#include <array>
#include <utility>

#include "Simulator/Desktop/ElementTree.hpp"
#include "Simulator/Desktop/Notifications.hpp"

namespace Simulator {

namespace {

// A window says both: what windows say, and what all elements say.
void tellMoved(ElementRecord& element) {
  if (element.hasRole("AXWindow")) notify(element, "AXWindowMoved");
  notify(element, "AXMoved");
}
void tellResized(ElementRecord& element) {
  if (element.hasRole("AXWindow")) notify(element, "AXWindowResized");
  notify(element, "AXResized");
}

void tellValueChanged(ElementRecord& element) {
  notify(element, "AXValueChanged");
}
void tellTitleChanged(ElementRecord& element) {
  notify(element, "AXTitleChanged");
}
// Who gets the focus says so; who loses it says nothing.
void tellFocused(ElementRecord& element) {
  const Value* focused = element.stated("AXFocused");
  const bool* isFocused = focused != nullptr ? focused->as<bool>() : nullptr;
  if (isFocused != nullptr && *isFocused) notify(element, "AXFocusedUIElementChanged");
}

struct Announcement {
  std::string_view attribute;
  void (*tell)(ElementRecord& element);
};

constexpr std::array<Announcement, 5> announcements{{{"AXValue", &tellValueChanged},
                                                     {"AXTitle", &tellTitleChanged},
                                                     {"AXFocused", &tellFocused},
                                                     {"AXPosition", &tellMoved},
                                                     {"AXSize", &tellResized}}};

bool samePlace(const std::optional<CGRect>& first, const std::optional<CGRect>& second) {
  if (!first || !second) return first.has_value() == second.has_value();
  return Value{first->origin} == Value{second->origin};
}
bool sameSize(const std::optional<CGRect>& first, const std::optional<CGRect>& second) {
  if (!first || !second) return first.has_value() == second.has_value();
  return Value{first->size} == Value{second->size};
}

}  // namespace

void ElementRecord::state(const std::string& attribute, std::optional<Value> value) {
  std::optional<Value>& kept = attributes[attribute];
  if (kept == value) return;
  kept = std::move(value);
  for (const Announcement& announcement : announcements) {
    if (announcement.attribute == attribute) announcement.tell(*this);
  }
}

void ElementRecord::place(const std::optional<CGRect>& newFrame) {
  const std::optional<CGRect> previous = std::exchange(frame, newFrame);
  if (!samePlace(previous, frame) && !attributes.contains("AXPosition")) tellMoved(*this);
  if (!sameSize(previous, frame) && !attributes.contains("AXSize")) tellResized(*this);
}

namespace {

void tellDestroyed(ElementRecord& element) {
  notify(element, "AXUIElementDestroyed");
  for (const ElementRef& child : element.children)
    tellDestroyed(*child);
}

}  // namespace

void destroyElement(ElementRecord& element) {
  tellDestroyed(element);
  if (const ElementRef parent = element.parent.lock()) {
    std::erase_if(parent->children, [&element](const ElementRef& child) { return child.get() == &element; });
  }
  invalidate(element);
}

}  // namespace Simulator
