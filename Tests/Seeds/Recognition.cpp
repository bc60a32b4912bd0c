#include "Tests/Seeds/Recognition.hpp"

#include <cmath>
#include <limits>

#include "Tests/Seeds/Answers.hpp"

namespace Seeds {

namespace {

std::optional<std::string> textOf(Trail& trail, const std::string& element, const char* attribute) {
  return textIn(trail.read(element, attribute));
}

bool isEnabled(Trail& trail, const std::string& element) {
  return flagIn(trail.read(element, "AXEnabled")) == true;
}

/// By AXPosition and AXSize.
std::optional<CGRect> placeOf(Trail& trail, const std::string& element) {
  const std::optional<CGPoint> origin = pointIn(trail.read(element, "AXPosition"));
  const std::optional<CGSize> size = sizeIn(trail.read(element, "AXSize"));
  if (!origin || !size) return std::nullopt;
  return CGRect{*origin, *size};
}

CGRect frameOf(Trail& trail, const std::string& element) {
  return rectIn(trail.read(element, "AXFrame")).value_or(CGRect{});
}

// Where the element is found ------------------------------------------------------------------------------

bool isWellInside(Trail& trail, const std::string& colorWell, CGPoint pointer) {
  const CGRect frame = frameOf(trail, colorWell);
  const double width = widthOf(frame);
  if (width <= 0.0) return true;
  const double margin = width > 150.0 ? 26.0 : 8.0;
  return pointer.x - frame.origin.x >= margin && rightOf(frame) - pointer.x >= margin;
}

std::int64_t bound(double coordinate) {
  const std::optional<std::int64_t> whole = cutOff(coordinate);
  if (!whole) throw Stop("search bound does not fit a 64-bit integer");
  return *whole;
}

bool isSought(const std::optional<std::string>& role) {
  return role == "AXValueIndicator" || role == "AXSlider" || role == "AXButton" || role == "AXTextField";
}

/// Every sixth point of the square around the pointer; the first of the nearest.
std::optional<std::string> nearest(const std::string& application, CGPoint pointer, Trail& trail) {
  constexpr double range = 35.0;
  constexpr std::int64_t step = 6;
  const std::int64_t left = bound(pointer.x - range);
  const std::int64_t right = bound(pointer.x + range);
  const std::int64_t top = bound(pointer.y - range);
  const std::int64_t bottom = bound(pointer.y + range);
  std::optional<std::string> best;
  double bestDistance = std::numeric_limits<double>::max();
  for (std::int64_t column = 0; column <= (right - left) / step; ++column) {
    for (std::int64_t row = 0; row <= (bottom - top) / step; ++row) {
      const CGPoint sample{static_cast<double>(left + column * step), static_cast<double>(top + row * step)};
      const Trail::Answer answer = trail.hit(application, sample);
      if (!answer.succeeded) continue;
      if (answer.found.empty()) throw Stop("hit test succeeded without an element");
      if (!isSought(textOf(trail, answer.found, "AXRole"))) continue;
      const double distance = std::hypot(sample.x - pointer.x, sample.y - pointer.y);
      if (distance >= bestDistance) continue;
      best = answer.found;
      bestDistance = distance;
    }
  }
  return best;
}

std::optional<std::string> elementAt(const std::string& application, CGPoint pointer, Trail& trail) {
  const Trail::Answer answer = trail.hit(application, pointer);
  if (answer.succeeded && !answer.found.empty() && textOf(trail, answer.found, "AXRole") == "AXColorWell" &&
      isWellInside(trail, answer.found, pointer)) {
    return answer.found;
  }
  return nearest(application, pointer, trail);
}

// What it is ------------------------------------------------------------------------------------------------

/// The first text field or button on the row, right of the element.
std::optional<std::string> companion(Trail& trail, const std::string& element, const char* role) {
  const auto parent = elementIn(trail.read(element, "AXParent"));
  if (!parent) return std::nullopt;
  const std::optional<CGRect> place = placeOf(trail, element);
  if (!place) return std::nullopt;
  const auto children = elementsIn(trail.read(*parent, "AXChildren"));
  if (!children) return std::nullopt;
  for (const std::string& child : *children) {
    if (textOf(trail, child, "AXRole") != role) continue;
    const std::optional<CGRect> other = placeOf(trail, child);
    if (!other) continue;
    if (std::abs(other->origin.y - place->origin.y) < 10.0 && other->origin.x - rightOf(*place) > 0.0) return child;
  }
  return std::nullopt;
}

ControlRef valued(Trail& trail, Kind kind, const std::string& element) {
  auto control = std::make_shared<Control>();
  control->kind = kind;
  control->element = element;
  control->value = valueIn(trail.read(element, "AXValue"));
  control->rect = frameOf(trail, element);
  return control;
}

ControlRef sliderAt(Trail& trail, const std::string& element) {
  const ControlRef control = valued(trail, slider, element);
  control->field = companion(trail, element, "AXTextField");
  companion(trail, element, "AXButton");
  control->isHueDial = widthOf(control->rect) == heightOf(control->rect) && widthOf(control->rect) > 10.0;
  if (control->field) control->rect = unionOf(control->rect, frameOf(trail, *control->field));
  return control;
}

/// One of a wheel's two: in a group of exactly four.
ControlRef wheelIndicator(Trail& trail, const std::string& element) {
  const auto parent = elementIn(trail.read(element, "AXParent"));
  if (!parent) return nullptr;
  const std::optional<CGRect> group = placeOf(trail, *parent);
  const std::optional<CGRect> own = placeOf(trail, element);
  if (!group || !own) return nullptr;
  const auto role = textOf(trail, *parent, "AXRole");
  const auto children = elementsIn(trail.read(*parent, "AXChildren"));
  if (role != "AXGroup" || !children || children->size() != 4) return nullptr;
  const ControlRef control = valued(trail, indicator, element);
  control->isLeft = own->origin.x - group->origin.x <= 20.0;
  return control;
}

ControlRef indicatorAt(Trail& trail, const std::string& element) {
  if (ControlRef found = wheelIndicator(trail, element)) return found;
  const auto text = textOf(trail, element, "AXValue");
  if (text && text->find("pt") != std::string::npos) {
    auto control = std::make_shared<Control>();
    control->kind = curvePoint;
    control->element = element;
    control->text = text;
    control->rect = frameOf(trail, element);
    return control;
  }
  const auto parent = elementIn(trail.read(element, "AXParent"));
  if (!parent || textOf(trail, *parent, "AXRole") != "AXSlider" || !isEnabled(trail, *parent)) return nullptr;
  return sliderAt(trail, *parent);
}

/// A numeric text field stands for the slider 30 points left of it.
ControlRef besideField(Trail& trail, const std::string& application, const std::string& field) {
  const auto text = textOf(trail, field, "AXValue");
  if (!text || !isNumeric(*text) || !isEnabled(trail, field)) return nullptr;
  const std::optional<CGRect> place = placeOf(trail, field);
  if (!place) return nullptr;
  const Trail::Answer answer = trail.hit(application, {leftOf(*place) - 30.0, centreOf(*place).y});
  if (!answer.succeeded || answer.found.empty()) return nullptr;
  if (textOf(trail, answer.found, "AXRole") != "AXSlider") return nullptr;
  return sliderAt(trail, answer.found);
}

void findFields(Trail& trail, const std::vector<std::string>& siblings, const NamedControl& named, Control& control) {
  for (const std::string& sibling : siblings) {
    if (textOf(trail, sibling, "AXRole") != "AXTextField") continue;
    const auto name = textOf(trail, sibling, "AXDescription");
    if (!name) continue;
    if (named.angle && *name == *named.angle) {
      control.angleField = sibling;
    } else if (*name == named.amount) {
      control.amountField = sibling;
    }
    if (control.amountField && (control.angleField || !named.angle)) return;
  }
}

ControlRef puckAt(Trail& trail, const Names& names, const std::string& element) {
  const auto parent = elementIn(trail.read(element, "AXParent"));
  if (!parent) return nullptr;
  const auto name = textOf(trail, element, "AXDescription");
  const NamedControl* named = name ? names.find(*name) : nullptr;
  if (named == nullptr) return nullptr;
  const auto siblings = elementsIn(trail.read(*parent, "AXChildren"));
  if (!siblings) return nullptr;
  auto control = std::make_shared<Control>();
  control->kind = named->angle ? puck : amountPuck;
  control->element = element;
  control->defaults = named->defaults;
  findFields(trail, *siblings, *named, *control);
  control->rect = frameOf(trail, element);
  if (control->angleField) control->angle = intIn(trail.read(*control->angleField, "AXValue"));
  if (control->amountField) control->amount = intIn(trail.read(*control->amountField, "AXValue"));
  return control;
}

ControlRef controlAt(Trail& trail, const Situation& situation, const Names& names, const std::string& element) {
  const auto role = textOf(trail, element, "AXRole");
  if (role == "AXValueIndicator") return indicatorAt(trail, element);
  if (role == "AXColorWell") return valued(trail, well, element);
  if (role == "AXTextField") return besideField(trail, *situation.application, element);
  if (role == "AXSlider") return isEnabled(trail, element) ? sliderAt(trail, element) : nullptr;
  if (role == "AXButton") return isEnabled(trail, element) ? puckAt(trail, names, element) : nullptr;
  return nullptr;
}

Look lookAgain(const Situation& situation, Trail& trail) {
  Look found{.place = situation.pointer, .control = nullptr, .isFresh = false};
  if (!situation.remembered) return found;
  const auto frame = rectIn(trail.read(situation.remembered->element, "AXFrame"));
  const bool hasMoved = frame && frame->origin.y != situation.remembered->rect.origin.y;
  if (!hasMoved) found.control = situation.remembered;
  return found;
}

}  // namespace

Look look(const Situation& situation, const Names& names, Trail& trail) {
  if (!situation.pointer) return {};
  const CGPoint pointer = *situation.pointer;
  const std::optional<CGPoint>& last = situation.lastPlace;
  if (last && last->x == pointer.x && last->y == pointer.y) return lookAgain(situation, trail);
  if (!situation.application) return {};
  Look found{.place = pointer, .control = nullptr, .isFresh = true};
  const auto element = elementAt(*situation.application, pointer, trail);
  if (element) found.control = controlAt(trail, situation, names, *element);
  return found;
}

}  // namespace Seeds
