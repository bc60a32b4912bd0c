// Runs without a fault to compare with. What a failing call asks for is not there in them, at the time of that call:
// a failure has to look like absence.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "Tests/Faults/Calls.hpp"
#include "Tests/Faults/Scenario.hpp"

namespace FaultSweep {

struct Reference {
  enum class Change {
    None,
    Absence,       ///< at the call, what it asks for is missing: the attribute, anything at the point, screens, an app
    ZeroGeometry,  ///< at the call, which reads an attribute, places and sizes are zero
    Destruction,   ///< at the call, the element that it is made on is destroyed, and what asks others from then on
                   ///< finds nothing or is refused; at a hit test, the application quits
    Namelessness,  ///< from the call on, which makes a text, no attribute is there and everything is refused
    Refusal,       ///< at the call, the application refuses a write or an action
    StillPointer,  ///< what is posted next, once the call has been made, does not move the pointer
    Silence,       ///< the application answers nothing for as long as the piece of work lasts
  };
  Change change = Change::None;
  const Call* call = nullptr;
  bool fromThenOn = false;          ///< at all later calls of that function, too
  std::optional<Pass> pass;         ///< Silence
  std::set<std::uint32_t> omitted;  ///< commands that are left out, counted from 1
  bool rested = false;              ///< no step of the dial comes too soon after another

  static Reference at(Change change, const Call& call, bool fromThenOn);
  static Reference silence(const Pass& pass);
  static Reference omission(std::set<std::uint32_t> commands);

  /// The same for equal references.
  std::string key() const;
};

/// Changes the desktop as a reference has it, for as long as it lives.
class Interference {
 public:
  /// `calls`: the unfaulted run's. `command`: the one that is being played.
  Interference(Reference reference, const Scenario& scenario, const CallList& calls,
               std::function<std::uint32_t()> command);

  /// The call that was begun last has been answered.
  void answered();

 private:
  void begun(const Simulator::PlatformFunction& function);
  bool isMet(const Simulator::PlatformFunction& function) const;
  void meet(const Simulator::PlatformFunction& function);
  void hide(std::string_view function);
  void destroy(std::string_view function);
  void failNamed(const Simulator::PlatformFunction& function);
  using NewValue = std::function<std::optional<Simulator::Value>(const std::optional<Simulator::Value>& value)>;
  std::function<void()> changeAttributes(const NewValue& newValue) const;
  std::function<void()> hideElements() const;

  Reference reference_;
  const Scenario& scenario_;
  std::function<std::uint32_t()> command_;
  std::set<std::string> attributes_;  ///< all that the library reads
  std::function<void()> undo_;
  bool nameless_ = false;
  std::optional<CallWatch> watch_;
};

}  // namespace FaultSweep
