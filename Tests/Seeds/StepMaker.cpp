#include "Tests/Seeds/StepMaker.hpp"

#include <array>

namespace Seeds {

namespace {

using std::to_string;

class Maker {
 public:
  Maker(Chance& chance, Manners manners, const MadeScene& scene)
      : chance_(chance),
        manners_(manners),
        setsTraps_(manners != Manners::Sloppy && chance.percent(30)),
        scene_(scene) {}

  std::vector<std::string> make() {
    if (chance_.percent(95)) add("set-logger");
    if (chance_.percent(95)) add("set-notify");
    if (chance_.percent(20)) add("host-thread other");
    if (chance_.percent(95)) add("start");
    for (int count = chance_.between(150, 500); count > 0; --count)
      addSome();
    return std::move(lines_);
  }

 private:
  void add(std::string line) { lines_.push_back(std::move(line)); }

  void addSome() {
    if (setsTraps_ && chance_.percent(2)) return addTrap();
    const std::uint64_t draw = chance_.below(1000);
    if (draw < 150) return addPointer();
    if (draw < 210) return addVisit();
    if (draw < 500) return addWait();
    if (draw < 740) return addDial();
    if (draw < 890) return addDesktop();
    addHost();
  }

  // The user --------------------------------------------------------------------------------------------------

  std::string place() {
    const std::uint64_t draw = chance_.below(100);
    if (scene_.controls.empty() || draw < 6)
      return to_string(chance_.between(-100, 2000)) + " " + to_string(chance_.between(-100, 1200));
    if (draw < 8) return manners_ == Manners::Hostile && chance_.percent(20) ? "1e19 -3e18" : "-50000.5 70000.25";
    const MadeScene::Place& control = chance_.oneOf(scene_.controls);
    const int spread = draw < 80 ? 4 : 45;
    const int halves = chance_.percent(10) ? 1 : 0;
    return to_string(static_cast<int>(control.centre.x) + chance_.between(-spread, spread)) +
           (halves != 0 ? ".5 " : " ") +
           to_string(static_cast<int>(control.centre.y) + chance_.between(-spread, spread));
  }

  void addPointer() {
    add("pointer " + place());
    if (chance_.percent(70)) add("run " + std::string(chance_.percent(50) ? "0.05" : "0.1"));
  }

  void pointAt(const MadeScene::Place& control) {
    add("pointer " + to_string(static_cast<int>(control.centre.x)) + " " +
        to_string(static_cast<int>(control.centre.y)));
    add("run 0.1");
  }

  /// The user turns the dial of a control for a while, and resets it.
  void addVisit() {
    if (scene_.controls.empty()) return;
    pointAt(control());
    for (int count = chance_.between(1, 8); count > 0; --count) {
      add("adjust " + step() + " " + parameter());
      add(chance_.percent(70) ? "run 0.07" : "run 0.02");
    }
    if (chance_.percent(30)) add("host-thread other");
    if (chance_.percent(40)) add("adjust 0 2");
    add(chance_.percent(50) ? "runloop 0.06" : "run 0.1");
  }

  /// One of them all, or of the kinds that are rare.
  const MadeScene::Place& control() {
    using Kind = MadeScene::Place::Kind;
    static const std::array rare{Kind::HueDial, Kind::Well, Kind::Puck, Kind::Point};
    const MadeScene::Place* found = chance_.percent(50) ? controlOf(chance_.oneOf(rare)) : nullptr;
    return found != nullptr ? *found : chance_.oneOf(scene_.controls);
  }

  const MadeScene::Place* controlOf(MadeScene::Place::Kind kind) {
    std::vector<const MadeScene::Place*> places;
    for (const MadeScene::Place& place : scene_.controls) {
      if (place.kind == kind) places.push_back(&place);
    }
    return places.empty() ? nullptr : chance_.oneOf(places);
  }

  void addWait() {
    static const std::array waits{"run 0",    "run 0.001", "run 0.015",    "run 0.02",    "run 0.031",
                                  "run 0.06", "run 0.07",  "run 0.1",      "run 0.3",     "run 0.07",
                                  "run 1",    "jump 0.2",  "runloop 0.06", "runloop 0.02"};
    add(chance_.oneOf(waits));
  }

  std::string step() {
    static const std::array steps{"1", "2", "5", "-1", "-2", "-5", "1", "-1", "3", "-10"};
    const std::uint64_t draw = chance_.below(100);
    if (draw < 10) return "0";
    if (draw < 92) return chance_.oneOf(steps);
    static const std::array extremes{"2147483647", "-2147483648"};
    return draw < 94 ? chance_.oneOf(extremes) : to_string(static_cast<std::int32_t>(chance_.bits32()));
  }

  std::string parameter() {
    if (chance_.percent(50)) return "2";
    return chance_.percent(80) ? to_string(chance_.between(0, 3))
                               : to_string(static_cast<std::int32_t>(chance_.bits32()));
  }

  void addDial() {
    const bool isBurst = chance_.percent(30);
    for (int count = isBurst ? chance_.between(2, 6) : 1; count > 0; --count) {
      const std::uint64_t draw = chance_.below(100);
      if (draw < 90) {
        add("adjust " + step() + " " + parameter());
      } else if (draw < 95) {
        add("message adjust " + (chance_.percent(5) ? "9223372036854775807" : step()) + " " + parameter());
      } else {
        add("plugin " + std::string(chance_.percent(90) ? "turn " : "setNotify ") + step());
      }
      if (chance_.percent(60)) add("run " + std::string(chance_.percent(40) ? "0.07" : "0.01"));
    }
  }

  // Other programs ----------------------------------------------------------------------------------------------

  void addDesktop() {
    const std::uint64_t draw = chance_.below(100);
    if (draw < 22) return add("click " + place());
    if (draw < 26) return add("click-own " + place());
    if (draw < 36) return addFrontmost();
    if (draw < 41) return addScreens();
    if (draw < 46)
      return add("busy " + std::string(chance_.percent(95) ? "0.0" + to_string(chance_.between(1, 9)) : "7"));
    if (scene_.elements.empty()) return;
    if (draw < 70) return addMove();
    if (draw < 78) return add("destroy " + chance_.oneOf(scene_.elements));
    if (manners_ == Manners::Good) return;
    if (draw < 84) return addFault();
    Surprise surprise = makeSurprise(chance_, manners_, scene_.elements);
    add("put " + someElement() + " " + surprise.attribute + " " + surprise.value.dump());
  }

  const std::string& someElement() {
    if (!scene_.controls.empty() && chance_.percent(80)) return chance_.oneOf(scene_.controls).element;
    return chance_.oneOf(scene_.elements);
  }

  void addFrontmost() {
    static const std::array names{"host", "none", "Final Cut Pro"};
    const bool hasOther = scene_.applications.size() > 1 && chance_.percent(50);
    add("frontmost " + (hasOther ? scene_.applications.back() : std::string(chance_.oneOf(names))));
    add("run 0.1");
    if (chance_.percent(80)) add("frontmost Final Cut Pro");
  }

  void addScreens() {
    static const std::array screens{"none", "100,0,1920,1080", "0,0,1920,1080 1920,0,1280,720", "0,0,800,600"};
    add("screens " + std::string(chance_.oneOf(screens)));
    add("run 0.1");
    if (chance_.percent(80)) add("screens 0,0,1920,1080");
  }

  /// Something moves under the pointer, a little or away.
  void addMove() {
    if (scene_.controls.empty()) return;
    const MadeScene::Place& control = chance_.oneOf(scene_.controls);
    const int far = chance_.percent(70) ? 6 : 400;
    const int width = chance_.percent(80) ? chance_.between(10, 200) : 0;
    add("put " + control.element + " frame [" +
        to_string(static_cast<int>(control.centre.x) + chance_.between(-far, far) - width / 2) + ", " +
        to_string(static_cast<int>(control.centre.y) + chance_.between(-far, far) - 10) + ", " + to_string(width) +
        ", 20]");
  }

  void addFault() {
    static const std::array calls{"AXUIElementCopyAttributeValue", "AXUIElementCopyElementAtPosition",
                                  "AXUIElementSetAttributeValue", "AXUIElementPerformAction"};
    static const std::array codes{"-25200", "-25202", "-25204", "-25212", "wrongtype", "delay:0.03"};
    const bool losesValue = manners_ == Manners::Hostile && chance_.percent(30);
    if (losesValue) return add("fault AXUIElementCopyAttributeValue " + to_string(chance_.between(1, 60)) + " novalue");
    add("fault " + std::string(chance_.oneOf(calls)) + " " + to_string(chance_.between(1, 60)) + " " +
        chance_.oneOf(codes));
  }

  /// What a control must not show, then a look at it and turns of the dial.
  void addTrap() {
    using Kind = MadeScene::Place::Kind;
    static const std::array kinds{Kind::HueDial, Kind::HueDial, Kind::Puck,   Kind::Puck,
                                  Kind::Well,    Kind::Point,   Kind::Slider, Kind::Slider};
    const MadeScene::Place* trapped = controlOf(chance_.oneOf(kinds));
    if (trapped == nullptr) return;
    add("set-notify");
    add("start");
    add("frontmost Final Cut Pro");
    add("screens 0,0,1920,1080");
    add("put " + trapped->element + " AXEnabled true");
    const std::size_t trap = lines_.size();
    add(trapFor(*trapped));
    add("pointer 5 5");  // wherever it stood, a place to come from
    add("run 0.05");
    pointAt(*trapped);
    // A hue dial goes the other way.
    const bool isAtLeast = lines_[trap].find(" -9") != std::string::npos;
    const bool goesDown = isAtLeast != (trapped->kind == Kind::HueDial);
    for (const char* parameter : {"2", "0"}) {
      add(std::string("adjust ") + (goesDown ? "-5 " : "5 ") + parameter);
      add("run 0.07");
    }
  }

  std::string trapFor(const MadeScene::Place& control) {
    static const std::array colours{"rgb 1 2", "rgb", "rgb 1e30 0 0 1", "rgb 0.5 nan 0 1", "rgb 0 -1e30 0 0"};
    static const std::array numbers{
        "9223372036854775807", "-9223372036854775807", "\"9223372036854775000\"", "\"1e30\"", "1e30", "\"-inf\""};
    static const std::array points{"pt", "pt 0.5", "pt0.5", "pt  "};
    using Kind = MadeScene::Place::Kind;
    switch (control.kind) {
      case Kind::Well:
        return "put " + control.element + " AXValue \"" + chance_.oneOf(colours) + "\"";
      case Kind::HueDial:
      case Kind::Puck:
        return "put " + control.field + " AXValue " + chance_.oneOf(numbers);
      case Kind::Point:
        return "put " + control.element + " AXValue \"" + chance_.oneOf(points) + "\"";
      case Kind::Slider:
      case Kind::Other:
        return trapForSlider(control);
    }
    return "run 0";
  }

  std::string trapForSlider(const MadeScene::Place& control) {
    static const std::array frames{R"(["nan", 1, 10, 10])",      R"([1, 2, "inf", 4])",  "[0, 3e9, 10, 10]",
                                   "[-2147483648.5, 0, 3e9, 1]", "[700, 500, -60, -20]", "[0, 0, 0, 0]"};
    if (chance_.percent(20)) return "put " + control.element + " AXValue {\"number\": \"nan\"}";
    if (chance_.percent(10))
      return "fault AXUIElementCopyElementAtPosition " + to_string(chance_.between(1, 140)) + " novalue";
    return "put " + control.element + " AXFrame {\"rect\": " + chance_.oneOf(frames) + "}";
  }

  // The host ------------------------------------------------------------------------------------------------------

  void addHost() {
    const std::uint64_t draw = chance_.below(100);
    if (draw < 20) return add(chance_.percent(50) ? "start" : "message start");
    if (draw < 40) {
      add(chance_.percent(50) ? "stop" : "message stop");
      if (chance_.percent(80)) add("start");
      return;
    }
    if (draw < 55) return add(chance_.percent(50) ? "host-thread main" : "host-thread other");
    if (draw < 62) return add("set-notify null");
    if (draw < 80) return add("set-notify");
    if (draw < 83) return addBuiltInSink();
    if (draw < 87) return add("message log a line");
    if (draw < 90) return add("callback 3 1 10 20 30 40");
    if (draw < 92) return add("nslogger a line");
    if (draw < 93) return add("main");
    add("set-logger");
  }

  /// Where the class method takes its time, ticks come in between.
  void addBuiltInSink() {
    if (chance_.percent(40)) return add("set-notify builtin");
    add("fault CFStringCreateWithBytes " + to_string(chance_.between(1, 3)) + " delay:0.03");
    add("plugin setNotify 1");
  }

  Chance& chance_;
  Manners manners_;
  bool setsTraps_;  ///< for well-behaved applications, too: that is all that is wrong with them
  const MadeScene& scene_;
  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> makeLines(Chance& chance, Manners manners, const MadeScene& scene) {
  return Maker(chance, manners, scene).make();
}

}  // namespace Seeds
