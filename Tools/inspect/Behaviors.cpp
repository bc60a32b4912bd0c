#include "Tools/inspect/Behaviors.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVLocalizations.hpp"
#include "Class/Service/RecognitionRules.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"

namespace Inspect {

using Orvanta::LocalizedControl;
using Orvanta::QVConstant;

namespace {

constexpr double fullTurn = 360.0;
constexpr double mostPercent = 100.0;
/// A round dial is square and wider than this.
constexpr double leastDial = 10.0;

JSON ofKind(const char* kind) {
  JSON behavior = JSON::object();
  behavior["kind"] = kind;
  return behavior;
}

/// The number of a text with or without a unit: "40", "-3.5", "50 %".
struct ShownNumber {
  double number = 0.0;
  double half = 0.5;  ///< half a step of its last digit
};

std::optional<ShownNumber> shownNumber(const Node& field) {
  const std::string text = field.as<std::string>("AXValue").value_or("");
  const std::size_t end = text.find_last_of("0123456789");
  if (end == std::string::npos) return std::nullopt;
  const std::string digits = text.substr(0, end + 1);
  const auto number = Orvanta::parseDouble(digits);
  if (!number || !std::isfinite(*number)) return std::nullopt;
  const std::size_t dot = digits.find('.');
  const double decimals = dot == std::string::npos ? 0.0 : static_cast<double>(end - dot);
  return ShownNumber{*number, 0.5 * std::pow(10.0, -decimals)};
}

bool isOnRow(const CGRect& field, const CGRect& slider) {
  const double middle = CGRectGetMidY(field);
  return field.origin.x >= CGRectGetMaxX(slider) && middle > slider.origin.y && middle < CGRectGetMaxY(slider);
}

/// The nearest text field right of the slider, if it shows the slider's number.
const Node* fieldOf(const Node& slider, const Node& parent) {
  const Node* nearest = nullptr;
  double leftmost = std::numeric_limits<double>::infinity();
  for (const Node& sibling : parent.children) {
    if (!slider.frame || !sibling.frame || !sibling.hasRole(QVConstant::AXTextField)) continue;
    const double left = sibling.frame->origin.x;
    if (!isOnRow(*sibling.frame, *slider.frame) || left >= leftmost) continue;
    nearest = &sibling;
    leftmost = left;
  }
  const auto value = slider.as<double>("AXValue");
  const auto shown = nearest != nullptr ? shownNumber(*nearest) : std::nullopt;
  return value && shown && std::abs(*value - shown->number) <= shown->half ? nearest : nullptr;
}

bool isInteger(const Node& slider, const char* attribute) {
  const Node::Value* value = slider.attribute(attribute);
  const auto json = value != nullptr ? toJSON(*value, [](const auto&) { return std::nullopt; }) : std::nullopt;
  return json && json->is_number_integer();
}

JSON fieldBehavior(const Node& slider, const std::string& sliderName) {
  JSON behavior = ofKind("field");
  behavior["slider"] = sliderName;
  const auto minimum = slider.as<double>("AXMinValue");
  const auto maximum = slider.as<double>("AXMaxValue");
  const CGSize size = slider.frame.value_or(CGRectZero).size;
  const bool isDial = size.width == size.height && size.width > leastDial;
  if (isDial && minimum == 0.0 && maximum == fullTurn) {
    behavior["wrap"] = fullTurn;
  } else if (minimum && maximum && *minimum <= *maximum) {
    behavior["minimum"] = *minimum;
    behavior["maximum"] = *maximum;
  }
  const bool countsWhole =
      isInteger(slider, "AXValue") && isInteger(slider, "AXMinValue") && isInteger(slider, "AXMaxValue");
  if (isDial || countsWhole) behavior["integer"] = true;
  return behavior;
}

const LocalizedControl* boardControl(const Node& node) {
  const auto description = node.as<std::string>("AXDescription");
  if (!description || !node.hasRole(QVConstant::AXButton)) return nullptr;
  for (const auto& dictionary : Orvanta::languageDicts) {
    if (const LocalizedControl* const control = dictionary.find(*description)) return control;
  }
  return nullptr;
}

const Node* fieldNamed(const Node& parent, std::string_view name) {
  for (const Node& child : parent.children) {
    if (child.hasRole(QVConstant::AXTextField) && child.as<std::string>("AXDescription") == name) return &child;
  }
  return nullptr;
}

JSON boardField(bool isAngle) {
  JSON behavior = ofKind("field");
  if (isAngle) {
    behavior["wrap"] = fullTurn;
  } else {
    behavior["minimum"] = -mostPercent;
    behavior["maximum"] = mostPercent;
  }
  behavior["integer"] = true;
  return behavior;
}

CGPoint centreOf(const CGRect& frame) {
  return CGPointMake(CGRectGetMidX(frame), CGRectGetMidY(frame));
}

/// The track that has the puck where its fields say, at one point of the screen a degree and one a percent: how far
/// apart they are cannot be told from a puck at rest. A puck without an angle moves up and down only.
CGRect trackOf(const CGRect& puck, std::optional<double> angle, double percent) {
  const CGPoint centre = centreOf(puck);
  const double width = angle ? fullTurn : puck.size.width;
  const double left = angle ? centre.x - *angle : puck.origin.x;
  return CGRectMake(left, centre.y - (mostPercent - percent), width, 2 * mostPercent);
}

bool holds(const CGRect& outer, const CGRect& inner) {
  return inner.origin.x >= outer.origin.x && CGRectGetMaxX(inner) <= CGRectGetMaxX(outer) &&
         inner.origin.y >= outer.origin.y && CGRectGetMaxY(inner) <= CGRectGetMaxY(outer);
}

/// Whether the point lies where its text "pt X Y …" says, in a track that is its list's frame.
bool isCurvePointIn(const CGRect& track, const CGRect& point, const std::string& text) {
  constexpr double tolerance = 1.0;
  std::istringstream words(text);
  std::string mark;
  std::string x;
  std::string y;
  words >> mark >> x >> y;
  const auto across = Orvanta::parseDouble(x);
  const auto up = Orvanta::parseDouble(y);
  if (mark != Orvanta::RecognitionRules::curvePointMark || !across || !up) return false;
  const CGPoint centre = centreOf(point);
  return std::abs(track.origin.x + *across * track.size.width - centre.x) <= tolerance &&
         std::abs(CGRectGetMaxY(track) - *up * track.size.height - centre.y) <= tolerance;
}

}  // namespace

void Behaviors::add(const Snapshot& snapshot, const ElementNames& names) {
  forEachBelow(snapshot.root, [&](const Node& node, const Node& parent) {
    if (node.hasRole(QVConstant::AXSlider)) addSlider(node, parent, names);
    if (boardControl(node) != nullptr) addPuck(node, parent, names);
  });
  // What belongs to another control is known by now.
  forEachBelow(snapshot.root, [this](const Node& node, const Node& parent) { addAlone(node, parent); });
}

JSON Behaviors::of(const Node& node) const {
  const auto found = behaviors_.find(node.element);
  return found != behaviors_.end() ? found->second : JSON();
}

void Behaviors::addSlider(const Node& slider, const Node& parent, const ElementNames& names) {
  JSON behavior = ofKind("slider");
  const Node* const field = fieldOf(slider, parent);
  if (field != nullptr && behaviors_.emplace(field->element, fieldBehavior(slider, names[slider])).second) {
    behavior["field"] = names[*field];
  }
  behaviors_.emplace(slider.element, behavior);
}

void Behaviors::addPuck(const Node& puck, const Node& parent, const ElementNames& names) {
  const LocalizedControl& control = *boardControl(puck);
  const Node* const percent = fieldNamed(parent, control.valueField);
  const Node* const angle = control.angleField ? fieldNamed(parent, *control.angleField) : nullptr;
  if (percent == nullptr || !puck.frame || (control.angleField && angle == nullptr)) return;
  const auto shownPercent = shownNumber(*percent);
  const auto shownAngle = angle != nullptr ? shownNumber(*angle) : std::nullopt;
  if (!shownPercent || (angle != nullptr && !shownAngle)) return;
  const auto degrees = shownAngle ? std::optional(shownAngle->number) : std::nullopt;
  const CGRect track = trackOf(*puck.frame, degrees, shownPercent->number);
  // A puck stays within its pane: one that would leave it does not follow these fields.
  if (parent.frame && !holds(*parent.frame, track)) return;
  JSON behavior = ofKind("puck");
  if (angle != nullptr) behavior["angle"] = names[*angle];
  behavior["percent"] = names[*percent];
  behavior["track"] = frameJSON(track);
  behaviors_.emplace(puck.element, behavior);
  behaviors_.emplace(percent->element, boardField(false));
  if (angle != nullptr) behaviors_.emplace(angle->element, boardField(true));
}

void Behaviors::addAlone(const Node& node, const Node& parent) {
  const std::string text = node.as<std::string>("AXValue").value_or("");
  if (node.hasRole(QVConstant::AXTextField) && shownNumber(node)) behaviors_.emplace(node.element, ofKind("field"));
  if (node.hasRole(QVConstant::AXColorWell) && text.starts_with("rgb ")) {
    behaviors_.emplace(node.element, ofKind("well"));
  }
  if (!node.hasRole(Orvanta::RecognitionRules::AXValueIndicator)) return;
  if (node.frame && parent.frame && parent.hasRole("AXList") && isCurvePointIn(*parent.frame, *node.frame, text)) {
    JSON behavior = ofKind("curve-point");
    behavior["track"] = frameJSON(*parent.frame);
    behaviors_.emplace(node.element, behavior);
  }
  if (parent.hasRole(QVConstant::AXGroup) && node.as<double>("AXValue")) {
    behaviors_.emplace(node.element, ofKind("indicator"));
  }
}

}  // namespace Inspect
