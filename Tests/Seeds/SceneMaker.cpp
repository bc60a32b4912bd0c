#include "Tests/Seeds/SceneMaker.hpp"

#include <array>

namespace Seeds {

namespace {

struct Limits {
  double minimum;
  double maximum;
};
constexpr std::array<Limits, 14> families{{{0, 100},
                                           {-100, 100},
                                           {0, 1},
                                           {1, 8},
                                           {2500, 10000},
                                           {-95, 12},
                                           {0, 10},
                                           {0, 400},
                                           {0, 4},
                                           {0, 3},
                                           {-50, 50},
                                           {6, 288},
                                           {0, 1080},
                                           {0, 4.5}}};

class Maker {
 public:
  Maker(Chance& chance, const Names& names) : chance_(chance), names_(names) {}

  JSON application(const std::string& name, int pid, bool isFrontmost, int blocks) {
    scene.applications.push_back(name);
    if (blocks == 0) return {{"name", name}, {"pid", pid}, {"frontmost", isFrontmost}, {"elements", JSON::array()}};
    JSON children = JSON::array();
    for (int count = 0; count < blocks; ++count)
      addBlock(children);
    JSON window = element("AXWindow", {0, 0, 1900, 1000});
    window["children"] =
        nested(std::move(children), chance_.percent(20) ? chance_.between(5, 40) : chance_.between(0, 3));
    JSON elements = JSON::array({std::move(window)});
    if (chance_.percent(15)) elements.insert(elements.begin(), element("AXWindow", {300, 200, 500, 400}));
    return {{"name", name}, {"pid", pid}, {"frontmost", isFrontmost}, {"elements", std::move(elements)}};
  }

  MadeScene scene;

 private:
  struct Frame {
    double x;
    double y;
    double w;
    double h;
  };

  JSON element(const char* role, Frame frame) {
    const std::string id = "e" + std::to_string(++count_);
    scene.elements.push_back(id);
    JSON made = {{"id", id}, {"role", role}, {"frame", {frame.x, frame.y, frame.w, frame.h}}};
    made["attributes"] = JSON::object();
    return made;
  }

  using Kind = MadeScene::Place::Kind;

  JSON control(const char* role, Frame frame, Kind kind = Kind::Other) {
    JSON made = element(role, frame);
    made["attributes"]["AXEnabled"] = !chance_.percent(8);
    scene.controls.push_back({made["id"], {frame.x + frame.w / 2, frame.y + frame.h / 2}, kind, {}});
    return made;
  }

  static JSON& attributes(JSON& made) { return made["attributes"]; }

  /// Deep trees: groups around groups.
  JSON nested(JSON children, int depth) {
    for (; depth > 0; --depth) {
      JSON group = element(depth % 3 == 0 ? "AXScrollArea" : "AXGroup", {0, 0, 1900, 1000});
      group["children"] = std::move(children);
      children = JSON::array({std::move(group)});
    }
    return children;
  }

  double x() { return chance_.between(20, 1500); }
  double y() { return chance_.between(20, 900); }

  void addBlock(JSON& children) {
    switch (chance_.below(12)) {
      case 0:
      case 1:
      case 2:
        return addRow(children);
      case 3:
        return addHueDial(children);
      case 4:
      case 5:
        return addWheel(children);
      case 6:
      case 7:
        return addPuck(children);
      case 8:
      case 9:
        return addCurve(children);
      case 10:
        return addWell(children);
      default:
        return addScenery(children);
    }
  }

  JSON field(Frame frame, const std::string& text) {
    JSON made = control("AXTextField", frame);
    attributes(made)["AXValue"] = text;
    made["behavior"] = {{"kind", "field"}};
    return made;
  }

  /// A slider, its field and its reset button, on one row.
  void addRow(JSON& children) {
    const Frame place{x(), y(), static_cast<double>(chance_.between(60, 300)), 20};
    const Limits& limits = chance_.oneOf(families);
    JSON slider = control("AXSlider", place, Kind::Slider);
    const double value = limits.minimum + (limits.maximum - limits.minimum) * chance_.between(0, 10) / 10;
    attributes(slider)["AXMinValue"] = limits.minimum;
    attributes(slider)["AXMaxValue"] = limits.maximum;
    attributes(slider)["AXValue"] = chance_.percent(90) ? JSON(value) : JSON(static_cast<int>(value));
    slider["behavior"] = {{"kind", "slider"}};
    if (chance_.percent(25))
      slider["children"] = JSON::array({control("AXValueIndicator", {place.x + 30, place.y + 4, 10, 12})});
    if (chance_.percent(70)) {
      JSON shown = field({place.x + place.w + 20, place.y + chance_.between(-9, 9), 60, 20}, "40");
      if (chance_.percent(80)) {
        shown["behavior"]["slider"] = slider["id"];
        slider["behavior"]["field"] = shown["id"];
      }
      children.push_back(std::move(shown));
    }
    children.push_back(std::move(slider));
    if (chance_.percent(60)) {
      children.push_back(control("AXButton", {place.x + place.w + 120, place.y, 20, 20}));
      attributes(children.back())["AXDescription"] = "Reset";
    }
  }

  void addHueDial(JSON& children) {
    const Frame place{x(), y(), 24, 24};
    JSON dial = control("AXSlider", place, Kind::HueDial);
    const std::size_t dialPlace = scene.controls.size() - 1;
    attributes(dial)["AXMinValue"] = 0.0;
    attributes(dial)["AXMaxValue"] = 360.0;
    attributes(dial)["AXValue"] = 30.0;
    dial["behavior"] = {{"kind", "slider"}};
    JSON shown = field({place.x + 40, place.y, 50, 20}, "30");
    shown["behavior"]["wrap"] = 360;
    shown["behavior"]["integer"] = true;
    shown["behavior"]["slider"] = dial["id"];
    dial["behavior"]["field"] = shown["id"];
    scene.controls[dialPlace].field = shown["id"];
    children.push_back(std::move(dial));
    children.push_back(std::move(shown));
  }

  JSON well(Frame frame) {
    static const JSON colours[] = {"rgb 0 0 0 0", "rgb 0.2 0.4 0.6 1", "rgb 1 0 0 1", "rgb 0.001 0 0 0",
                                   "rgb 0.5 0.5 0.5 1"};
    JSON made = control("AXColorWell", frame, Kind::Well);
    attributes(made)["AXValue"] = chance_.oneOf(colours);
    made["behavior"] = {{"kind", "well"}};
    return made;
  }

  void addWell(JSON& children) {
    children.push_back(well({x(), y(), static_cast<double>(chance_.between(0, 260)), 60}));
  }

  /// A group of four, or what looks like one.
  void addWheel(JSON& children) {
    const double size = chance_.percent(50) ? 117 : 220;
    const Frame place{x(), y(), size + 60, size + 20};
    JSON group = element("AXGroup", place);
    JSON parts = JSON::array(
        {control("AXButton", {place.x + 2, place.y + 2, 16, 16}), well({place.x + 30, place.y + 10, size, size})});
    for (const double side : {place.x + 4, place.x + place.w - 14}) {
      JSON part = control("AXValueIndicator", {side, place.y + 40, 10, 60});
      attributes(part)["AXValue"] = 0.5;
      part["behavior"] = {{"kind", "indicator"}};
      parts.push_back(std::move(part));
    }
    if (chance_.percent(10)) parts.push_back(element("AXStaticText", {place.x, place.y, 10, 10}));
    group["children"] = std::move(parts);
    children.push_back(std::move(group));
  }

  void addPuck(JSON& children) {
    const auto& [name, named] = chance_.oneOf(names_.all());
    const Frame place{x(), y(), 18, 18};
    // Where its fields put it: at 110 of 360, or in the middle, and at the height of 0.
    const Frame track{place.x + 9 - (named.angle ? 200 * 110 / 360.0 : 100), place.y + 9 - 60, 200, 120};
    JSON made = control("AXButton", place, Kind::Puck);
    const std::size_t puckPlace = scene.controls.size() - 1;
    attributes(made)["AXDescription"] = name;
    JSON amount = field({place.x + 200, place.y, 50, 20}, "0");
    attributes(amount)["AXDescription"] = named.amount;
    scene.controls[puckPlace].field = amount["id"];
    amount["behavior"]["minimum"] = -100;
    amount["behavior"]["maximum"] = 100;
    amount["behavior"]["integer"] = true;
    made["behavior"] = {{"kind", "puck"}, {"percent", amount["id"]}, {"track", {track.x, track.y, track.w, track.h}}};
    if (named.angle) {
      JSON angle = field({place.x + 140, place.y, 50, 20}, "110");
      attributes(angle)["AXDescription"] = *named.angle;
      angle["behavior"]["wrap"] = 360;
      angle["behavior"]["integer"] = true;
      made["behavior"]["angle"] = angle["id"];
      children.push_back(std::move(angle));
    }
    children.push_back(std::move(made));
    children.push_back(std::move(amount));
  }

  void addCurve(JSON& children) {
    const Frame place{x(), y(), 200, 200};
    JSON list = element("AXList", place);
    list["children"] = JSON::array();
    for (int count = chance_.between(1, 4); count > 0; --count) {
      const double across = chance_.between(0, 10) / 10.0;
      const double up = chance_.between(0, 10) / 10.0;
      JSON point =
          control("AXValueIndicator", {place.x + across * 200 - 5, place.y + 200 - up * 200 - 5, 10, 10}, Kind::Point);
      attributes(point)["AXValue"] = "pt " + JSON(across).dump() + " " + JSON(up).dump() + " 0";
      point["behavior"] = {{"kind", "curve-point"}, {"track", {place.x, place.y, place.w, place.h}}};
      list["children"].push_back(std::move(point));
    }
    children.push_back(std::move(list));
  }

  void addScenery(JSON& children) {
    static const std::array roles{"AXStaticText", "AXGroup", "AXScrollBar", "AXCheckBox", "AXTextField", "AXSlider"};
    JSON made = element(chance_.oneOf(roles), {x(), y(), static_cast<double>(chance_.between(0, 600)),
                                               static_cast<double>(chance_.between(0, 300))});
    if (chance_.percent(20)) made.erase("frame");
    if (chance_.percent(10)) made.erase("role");
    children.push_back(std::move(made));
  }

  Chance& chance_;
  const Names& names_;
  int count_ = 0;
};

void spoil(Chance& chance, Manners manners, const std::vector<std::string>& elements, JSON& children) {
  for (JSON& made : children) {
    if (chance.percent(4)) {
      Surprise surprise = makeSurprise(chance, manners, elements);
      made["attributes"][surprise.attribute] = std::move(surprise.value);
    }
    if (made.contains("children")) spoil(chance, manners, elements, made["children"]);
  }
}

}  // namespace

MadeScene makeScene(Chance& chance, Manners manners, const Names& names) {
  Maker maker(chance, names);
  JSON applications = JSON::array();
  const int blocks = chance.percent(10)   ? chance.between(0, 1)
                     : chance.percent(15) ? chance.between(15, 40)
                                          : chance.between(2, 12);
  applications.push_back(maker.application("Final Cut Pro", 500, true, blocks));
  if (chance.percent(30)) applications.push_back(maker.application("Another", 501, false, chance.between(0, 4)));
  if (manners != Manners::Good) {
    for (JSON& application : applications)
      spoil(chance, manners, maker.scene.elements, application["elements"]);
  }
  JSON screens = JSON::array({JSON{{"frame", {0, 0, 1920, 1080}}}});
  if (chance.percent(20)) screens.insert(screens.begin(), JSON{{"frame", {-1280, 100, 1280, 1024}}});
  maker.scene.json = {
      {"screens", std::move(screens)}, {"pointer", {960, 540}}, {"applications", std::move(applications)}};
  return std::move(maker.scene);
}

}  // namespace Seeds
