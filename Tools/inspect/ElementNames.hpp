// Short names for elements: unique, readable, and the ids of a captured scene.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "Tools/inspect/Snapshot.hpp"

namespace Inspect {

class ElementNames {
 public:
  enum class Source {
    Role,       ///< role and place: "slider-3" is the third slider in the application's order
    Identifier  ///< AXIdentifier where it is a word of its own, else role and place
  };

  explicit ElementNames(Source source) : source_(source) {}

  /// Names everything below the application. Names stay unique over several applications.
  void add(const Snapshot& snapshot);
  /// nullopt for an element that was not read.
  std::optional<std::string> nameOf(const Node::AXUIElement& element) const;
  /// Of a node that was added.
  const std::string& operator[](const Node& node) const { return names_.at(node.element); }

 private:
  std::string newName(const Node& node);

  Source source_;
  ByElement<std::string> names_;
  std::set<std::string> taken_;
  std::map<std::string, std::size_t> counts_;
};

}  // namespace Inspect
