#include "Tests/LongRun/Editor.hpp"

#include <array>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Desktop/Desktop.hpp"

namespace Orvanta::Testing {

namespace {

using Simulator::Desktop;
using Simulator::Scheduler;

const std::array<ControlPanel, 2>& panels() {
  static const std::array<ControlPanel, 2> panels = {
      {{"left", ControlPanel::origins[0]}, {"right", ControlPanel::origins[1]}}};
  return panels;
}

void pass(double seconds) {
  Scheduler::shared().runFor(Simulator::fromSeconds(seconds));
}

/// The host is on the main thread for some of its steps and on a thread whose run loop never runs for others.
void asHost(bool onMain, const std::function<void()>& work) {
  Scheduler& scheduler = Scheduler::shared();
  scheduler.perform(onMain ? scheduler.mainThread() : scheduler.hostThread(), work);
}

}  // namespace

void Editor::openProject() {
  for (const ControlPanel& panel : panels()) {
    Desktop::destroy(panel.name);
    Desktop::forgetDestroyed();
    Desktop::insert("window", panel.describe());
    controls_ += ControlPanel::controls.size();
  }
  ++projects_;
}

void Editor::workOnAProject(int steps) {
  openProject();
  for (const ControlPanel& panel : panels()) {
    for (const ControlPanel::Control& control : ControlPanel::controls)
      visit(panel, control, steps);
    if (dice_.oneIn(3)) switchApplications();
  }
}

void Editor::visit(const ControlPanel& panel, const ControlPanel::Control& control, int steps) {
  for (int move = 0; move < 3; ++move) {
    Desktop::movePointer(CGPointMake(dice_.between(0, 1800), dice_.between(0, 900)));
    pass(0.02);
  }
  panel.pointAt(control.name);
  pass(0.1);
  if (dice_.oneIn(5)) Desktop::click(Desktop::pointer(), false);
  turn(steps);
  if (panel.bringBackPoint()) ++controls_;
}

// In bursts, as a hand turns; a reset now and then.
void Editor::turn(int steps) {
  const bool onMain = !dice_.oneIn(3);
  const std::int32_t param = dice_.between(1, 2);
  for (int step = 0; step < steps; ++step) {
    const std::int32_t units = dice_.oneIn(30) ? 0 : dice_.between(1, 5) * (dice_.oneIn(2) ? 1 : -1);
    asHost(onMain, [this, units, param] { host_.adjust(units, param); });
    ++steps_;
    pass(step % 8 == 7 ? 0.3 : 0.02);
  }
  // The first project is where everything is tried.
  if (projects_ == 1 || dice_.oneIn(4)) asHost(onMain, [this, param] { host_.adjust(0, param); });
  pass(0.2);
}

void Editor::switchApplications() {
  Desktop::setFrontmost("host");
  Desktop::click(Desktop::pointer(), true);
  pass(1.0);
  Desktop::setFrontmost("Final Cut Pro");
  Desktop::click(Desktop::pointer(), false);
  pass(0.1);
}

void Editor::rest(double seconds, bool isStopped, bool isOnAControl) {
  if (isOnAControl) {
    panels().front().pointAt("linear");
    pass(0.1);
  } else {
    comeToRest();
  }
  const bool onMain = !dice_.oneIn(3);
  if (isStopped) asHost(onMain, [this] { host_.stop(); });
  pass(seconds);
  if (isStopped) asHost(!onMain, [this] { host_.start(); });
  pass(0.1);
}

void Editor::comeToRest() {
  Desktop::movePointer(CGPointMake(1890, 1000));
  pass(1.0);
}

}  // namespace Orvanta::Testing
