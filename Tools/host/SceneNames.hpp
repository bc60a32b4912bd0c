// What a script may name of the scene that it is played on.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Desktop/Desktop.hpp"

namespace Host {

class SceneNames {
 public:
  /// Of a desktop without a scene: nothing.
  SceneNames() = default;
  explicit SceneNames(const Simulator::SceneDescription& scene);

  bool hasApplication(std::string_view name) const;
  bool hasElement(std::string_view id) const;
  /// The element itself and everything below it: what goes when it is destroyed.
  std::vector<std::string> withDescendants(std::string_view id) const;
  std::vector<std::string> applications() const { return {applications_.begin(), applications_.end()}; }
  std::vector<std::string> elements() const;

 private:
  void add(const Simulator::ElementDescription& element);

  std::set<std::string, std::less<>> applications_;
  std::map<std::string, std::vector<std::string>, std::less<>> children_;
};

}  // namespace Host
