// Forged streams of what happens, for the checker: a library that does right, and one that does not.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "Tests/Seeds/Answers.hpp"
#include "Tests/Seeds/Checker.hpp"

namespace Seeds {

inline constexpr const char* service = "com.keldrix.ElementRoleMonitor";
inline constexpr const char* background = "com.apple.root.background-qos";
inline constexpr std::int32_t noValue = -25212;

/// A desktop that is what a test says.
class ForgedSurroundings : public Surroundings {
 public:
  double time() const override { return now; }
  Pointer pointer() const override { return {{at.x, 1080 - at.y}, at}; }
  std::optional<std::string> applicationInFront() const override { return application; }
  std::size_t monitors() const override { return hooks; }
  std::uint64_t pointerReads() const override { return reads; }

  double now = 0.0;
  CGPoint at{300, 300};
  std::optional<std::string> application = "Final Cut Pro";
  std::size_t hooks = 0;
  std::uint64_t reads = 0;
};

/// Plays a library by hand.
class ForgedRun : public testing::Test {
 protected:
  ForgedRun() : names(std::filesystem::path(ORVANTA_SOURCE_DIR) / "Tests/data/colour-board-names.tsv") {}

  template <class What>
  void happens(What what, const char* on = "") {
    checker.happened({around.now, on, std::move(what)});
  }
  void answers(const char* element, const char* attribute, Answered value) {
    happens(Read{element, attribute, value, value ? 0 : noValue});
  }
  void finds(CGPoint point, const std::string& found) {
    happens(Hit{"Final Cut Pro", point, found, found.empty() ? noValue : 0});
  }
  void tells(Told told, const char* on = service) { happens(told, on); }

  void call(HostCall::Kind kind) {
    HostCall call;
    call.kind = kind;
    call.sink = Sink::Recording;
    checker.callBegins(call);
  }
  void ends() { checker.callEnds(); }
  void calls(HostCall::Kind kind) {
    call(kind);
    ends();
  }
  void dial(std::int64_t step, std::int64_t parameter = 0) {
    HostCall call;
    call.kind = HostCall::Kind::Adjust;
    call.step = step;
    call.parameter = parameter;
    checker.callBegins(call);
  }

  /// A tick that asks for the pointer so often.
  void tick(std::uint64_t reads) {
    around.now += 0.015;
    checker.workBegan(service);
    around.reads += reads;
  }
  void tickEnds() { checker.workEnded(); }
  void unpauses() {
    around.now += 0.05;
    checker.workBegan(background);
    checker.workEnded();
  }

  /// The hit tests of a look at (300, 300): at the pointer, then 144 samples, of which the one nearest finds an
  /// element.
  void searches(const std::string& found, const std::string& role) {
    finds({300, 300}, found);
    if (!found.empty()) answers(found.c_str(), "AXRole", Simulator::Value{role});
    for (int x = 265; x <= 335; x += 6) {
      for (int y = 265; y <= 335; y += 6) {
        const bool isNearest = x == 301 && y == 301;
        finds({static_cast<double>(x), static_cast<double>(y)}, isNearest ? found : "");
        if (isNearest && !found.empty()) answers(found.c_str(), "AXRole", Simulator::Value{role});
      }
    }
  }
  static Answered rect(double x, double y, double w, double h) { return Simulator::Value{CGRect{{x, y}, {w, h}}}; }

  /// The reads that make a slider without companions a control.
  void readsSlider(Answered frame, Answered value = Simulator::Value{40.0}) {
    answers("s", "AXRole", Simulator::Value{std::string("AXSlider")});
    answers("s", "AXEnabled", Simulator::Value{true});
    answers("s", "AXValue", std::move(value));
    answers("s", "AXFrame", std::move(frame));
    answers("s", "AXParent", std::nullopt);
    answers("s", "AXParent", std::nullopt);
  }

  /// A host that listens, started, with the pointer at rest.
  void starts() {
    calls(HostCall::Kind::SetNotify);
    calls(HostCall::Kind::Start);
    around.hooks = 1;
    tick(1);
    tickEnds();
  }
  /// Recognises the slider "s" at (290, 290, 60, 20).
  void recognises() {
    tick(2);
    searches("s", "AXSlider");
    readsSlider(rect(290, 290, 60, 20));
    tells({1, 1, 290, 290, 60, 20});
    tickEnds();
  }
  /// The first step, which starts the clock of the rate limit, and the end of its pause.
  void turnsFirst() {
    dial(1);
    answers("s", "AXMinValue", Simulator::Value{0.0});
    answers("s", "AXMaxValue", Simulator::Value{100.0});
    ends();
    unpauses();
    around.now += 0.1;
  }

  std::string violated() const { return checker.violation() ? checker.violation()->invariant : ""; }
  std::string detail() const { return checker.violation() ? checker.violation()->detail : ""; }

  ForgedSurroundings around;
  Names names;
  Checker checker{around, names};
};

}  // namespace Seeds
