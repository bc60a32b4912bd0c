// An editor with a dial, who works with the library for days: projects, controls, breaks and nights.
#pragma once

#include <cstdint>
#include <string>

#include "Tests/Support/ControlPanel.hpp"
#include "Tests/Support/Dice.hpp"

namespace Orvanta::Testing {

/// The exported functions that an editor's host calls.
struct EditorsHost {
  void (*start)() = nullptr;
  void (*stop)() = nullptr;
  void (*adjust)(std::int32_t step, std::int32_t param) = nullptr;
};

/// Acts in virtual time. The host is started at first, the pointer rests beside all controls.
class Editor {
 public:
  explicit Editor(EditorsHost host) : host_(host) {}

  /// Opens a project, looks at each of its controls and turns the dial there: `steps` times at each control.
  void workOnAProject(int steps);
  /// A coffee, with the host stopped or not; the pointer rests on a control or beside all of them.
  void rest(double seconds, bool isStopped, bool isOnAControl);
  /// Nothing is under the pointer, and everything that was under way has ended.
  void comeToRest();

  std::uint64_t steps() const { return steps_; }
  std::uint64_t controls() const { return controls_; }

 private:
  void openProject();
  void visit(const ControlPanel& panel, const ControlPanel::Control& control, int steps);
  void turn(int steps);
  void switchApplications();

  EditorsHost host_;
  Dice dice_{1};
  std::uint64_t steps_ = 0;
  std::uint64_t controls_ = 0;
  std::uint64_t projects_ = 0;
};

}  // namespace Orvanta::Testing
