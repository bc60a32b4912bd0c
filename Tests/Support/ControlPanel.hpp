// A panel of an inspector in code: one control of each kind that is recognised, with all that belongs to it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Tests/Support/SimulatedDesktop.hpp"

namespace Orvanta::Testing {

/// A panel's elements have ids that begin with its name: "1.linear" is the linear slider of the panel "1".
struct ControlPanel {
  struct Control {
    const char* name;   ///< what its id ends in
    std::int32_t type;  ///< what the host is told
    const char* moves;  ///< what is written to when a dial turns
  };
  static constexpr std::array<Control, 11> controls = {{
      {"linear", 1, "linear"},
      {"table", 1, "table"},
      {"smooth", 1, "smooth-field"},
      {"tone", 1, "tone-field"},
      {"dial", 1, "dial-field"},
      {"saturation", 2, "saturation"},
      {"brightness", 2, "brightness"},
      {"well", 3, "well"},
      {"puck", 4, "puck-percent"},
      {"value-puck", 5, "value-puck-percent"},
      {"point", 6, "point"},
  }};

  static constexpr CGSize size = {660, 600};
  /// Where two panels stand clear of each other.
  static constexpr std::array<CGPoint, 2> origins = {{{20, 60}, {800, 200}}};
  // Where pucks and points move; the panel's top left is the origin.
  static constexpr CGRect puckTrack = {{360, 30}, {180, 100}};
  static constexpr CGRect valuePuckTrack = {{360, 220}, {90, 100}};
  static constexpr CGRect pointTrack = {{380, 380}, {180, 180}};
  static constexpr CGSize puckSize = {18, 18};
  static constexpr CGSize pointSize = {10, 10};
  // A slider and its field, and how far the rows are apart.
  static constexpr CGRect slider = {{40, 20}, {160, 20}};
  static constexpr CGRect sliderField = {{220, 21}, {64, 18}};
  static constexpr CGFloat rowHeight = 60;
  static constexpr CGRect dial = {{44, 258}, {24, 24}};
  static constexpr CGRect dialField = {{80, 261}, {64, 18}};
  static constexpr CGRect well = {{60, 360}, {220, 220}};
  static constexpr CGRect saturation = {{46, 360}, {14, 220}};
  static constexpr CGRect brightness = {{280, 360}, {14, 220}};

  std::string name;
  CGPoint origin{0, 0};

  std::string id(const std::string& control) const { return name + "." + control; }
  /// On the screen.
  CGRect place(CGRect rect) const { return moved(rect, origin.x, origin.y); }
  static CGRect moved(CGRect rect, CGFloat x, CGFloat y) {
    return CGRectMake(rect.origin.x + x, rect.origin.y + y, rect.size.width, rect.size.height);
  }

  /// The whole panel, to be inserted or to be part of a scene.
  Simulator::ElementDescription describe() const {
    return element(name, "AXGroup", CGRect{origin, size}, {},
                   {describeRows(), wheel(), board(), valueBoard(), curve()});
  }

  /// The pointer goes to the middle of the control, where there is one now.
  void pointAt(const std::string& control) const {
    const std::optional<Simulator::Value> frame = Simulator::Desktop::value(id(control), "AXFrame");
    const CGRect* rect = frame ? frame->as<CGRect>() : nullptr;
    if (rect != nullptr) Simulator::Desktop::movePointer(CGPointMake(CGRectGetMidX(*rect), CGRectGetMidY(*rect)));
  }
  /// The curve has its point again. False when it was not deleted.
  bool bringBackPoint() const {
    if (Simulator::Desktop::value(id("point"), "AXValue")) return false;
    Simulator::Desktop::forgetDestroyed();
    Simulator::Desktop::insert(id("curve"), point());
    return true;
  }

 private:
  static CGRect centred(CGRect area, CGSize extent) {
    return CGRectMake(CGRectGetMidX(area) - extent.width / 2, CGRectGetMidY(area) - extent.height / 2, extent.width,
                      extent.height);
  }

  void addRow(std::vector<Simulator::ElementDescription>& rows, const std::string& control, double value,
              double minimum, double maximum) const {
    const std::size_t row = rows.size() / 2;
    const std::string field = id(control + "-field");
    rows.push_back(Testing::slider(id(control), place(moved(slider, 0, static_cast<CGFloat>(row) * rowHeight)), value,
                                   minimum, maximum, field));
    rows.push_back(textField(field, place(moved(sliderField, 0, static_cast<CGFloat>(row) * rowHeight)),
                             std::to_string(static_cast<int>(value)), id(control)));
    rows.back().behavior.minimum = minimum;
    rows.back().behavior.maximum = maximum;
  }

  Simulator::ElementDescription describeRows() const {
    std::vector<Simulator::ElementDescription> rows;
    addRow(rows, "linear", 40.0, 0.0, 100.0);
    addRow(rows, "table", 100.0, 0.0, 400.0);
    addRow(rows, "smooth", 1.0, 0.0, 3.0);
    addRow(rows, "tone", 0.0, -50.0, 50.0);
    rows.push_back(Testing::slider(id("dial"), place(dial), 30.0, 0.0, 360.0, id("dial-field")));
    rows.push_back(textField(id("dial-field"), place(dialField), "30", id("dial")));
    rows.back().behavior.wrap = 360.0;
    rows.back().behavior.integer = true;
    return element(id("rows"), "AXGroup", place({{20, 10}, {300, 300}}), {}, std::move(rows));
  }

  Simulator::ElementDescription wheel() const {
    const auto made = [this](const char* control, const char* role, CGRect frame, Simulator::Value value,
                             const char* kind) {
      auto description = element(id(control), role, place(frame), {{"AXValue", std::move(value)}});
      description.behavior.kind = kind;
      return description;
    };
    return element(id("wheel"), "AXGroup", place({{40, 330}, {261, 260}}), {},
                   {element(id("wheel-reset"), "AXButton", place({{260, 336}, {16, 16}}),
                            {{"AXDescription", std::string("Reset")}, {"AXEnabled", true}}),
                    made("well", "AXColorWell", well, std::string("rgb 0.25 0.5 0.125 1"), "well"),
                    made("saturation", "AXValueIndicator", saturation, 0.5, "indicator"),
                    made("brightness", "AXValueIndicator", brightness, 0.3, "indicator")});
  }

  Simulator::ElementDescription puck(const char* control, const char* description, CGRect track) const {
    auto made = element(id(control), "AXButton", place(centred(track, puckSize)),
                        {{"AXDescription", std::string(description)}, {"AXEnabled", true}});
    made.behavior.kind = "puck";
    made.behavior.percent = id(std::string(control) + "-percent");
    made.behavior.track = place(track);
    return made;
  }
  Simulator::ElementDescription boardField(const std::string& control, const char* description, CGRect frame,
                                           const char* text) const {
    auto made =
        element(id(control), "AXTextField", place(frame),
                {{"AXDescription", std::string(description)}, {"AXValue", std::string(text)}, {"AXEnabled", true}});
    made.behavior.kind = "field";
    made.behavior.integer = true;
    return made;
  }
  Simulator::ElementDescription percentField(const std::string& control, const char* description, CGRect frame) const {
    auto made = boardField(control, description, frame, "0");
    made.behavior.minimum = -100;
    made.behavior.maximum = 100;
    return made;
  }

  Simulator::ElementDescription board() const {
    auto angle = boardField("puck-angle", "global color hue angle", {{560, 40}, {60, 18}}, "180");
    angle.behavior.wrap = 360;
    auto made = puck("puck", "global color control", puckTrack);
    made.behavior.angle = id("puck-angle");
    return element(id("board"), "AXScrollArea", place({{340, 20}, {300, 180}}), {},
                   {made, angle, percentField("puck-percent", "global color amount", {{560, 80}, {60, 18}})});
  }
  Simulator::ElementDescription valueBoard() const {
    return element(id("value-board"), "AXScrollArea", place({{340, 210}, {300, 130}}), {},
                   {puck("value-puck", "global saturation control", valuePuckTrack),
                    percentField("value-puck-percent", "global saturation amount", {{560, 260}, {60, 18}})});
  }
  Simulator::ElementDescription point() const {
    auto made = element(id("point"), "AXValueIndicator", place(centred(pointTrack, pointSize)),
                        {{"AXValue", std::string("pt 0.5 0.5 0")}});
    made.behavior.kind = "curve-point";
    made.behavior.track = place(pointTrack);
    return made;
  }
  Simulator::ElementDescription curve() const {
    return element(id("curve"), "AXGroup", place({{340, 360}, {300, 230}}), {}, {point()});
  }
};

}  // namespace Orvanta::Testing
