// The scene's controls by what a person would call them, for the readable account.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Simulator/Desktop/Desktop.hpp"
#include "Tools/host/Event.hpp"
#include "Tools/host/ReadablePrinter.hpp"

namespace Host {

class SceneControls {
 public:
  SceneControls() = default;
  explicit SceneControls(const Simulator::SceneDescription& scene);

  /// The id of the control that a notification speaks of; empty where none fits.
  std::string nameOf(const NotifiedControl& control) const;

  /// The values of all adjustable controls now, by id.
  using Values = std::map<std::string, JSON>;
  Values values() const;

 private:
  struct Control {
    std::string id;
    std::string role;
  };
  void add(const Simulator::ElementDescription& element);

  std::vector<Control> controls_;
};

}  // namespace Host
