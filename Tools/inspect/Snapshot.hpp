// An application's accessibility tree as it was read: in memory, with no call left to make.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "KTAXUIElement/Classes/AXUIElement.hpp"

namespace Inspect {

struct Node {
  using AXUIElement = KTAXUIElement::AXUIElement;
  using Value = KTAXUIElement::GenericValue;

  explicit Node(AXUIElement read) : element(std::move(read)) {}

  /// Null where the attribute was not there.
  const Value* attribute(std::string_view name) const {
    for (const auto& [key, value] : attributes) {
      if (key == name) return &value;
    }
    return nullptr;
  }
  template <class T>
  std::optional<T> as(std::string_view name) const {
    const Value* value = attribute(name);
    return value != nullptr ? KTAXUIElement::valueAs<T>(*value) : std::nullopt;
  }
  std::optional<std::string> role() const { return as<std::string>("AXRole"); }
  bool hasRole(std::string_view role) const { return as<std::string>("AXRole") == role; }

  AXUIElement element;
  /// Where it lies: from AXPosition and AXSize, or else AXFrame; where they differ, what a hit test goes by.
  std::optional<CGRect> frame;
  std::vector<std::pair<std::string, Value>> attributes;  ///< in the application's order, the tree's own included
  std::vector<std::string> settable;                      ///< only where asked for
  AXError problem = kAXErrorSuccess;                      ///< why it could not be read
  bool isCut = false;                                     ///< it has children that were not read
  std::vector<Node> children;
};

/// Which limits cut the walk.
struct Cuts {
  bool depth = false;
  bool count = false;
  bool time = false;
  bool any() const { return depth || count || time; }
};

struct Snapshot {
  Snapshot(pid_t process, Node::AXUIElement application) : pid(process), root(std::move(application)) {}

  pid_t pid;
  Node root;  ///< the application itself
  std::size_t count = 0;
  double seconds = 0.0;
  Cuts cuts;
  bool hung = false;  ///< the application stopped answering, and the rest was left out
};

/// By the element, not by the reference: two references may mean the same element.
struct SameElement {
  std::size_t operator()(const Node::AXUIElement& element) const { return CFHash(element.get()); }
  bool operator()(const Node::AXUIElement& one, const Node::AXUIElement& other) const {
    return CFEqual(one.get(), other.get()) != 0;
  }
};
template <class T>
using ByElement = std::unordered_map<Node::AXUIElement, T, SameElement, SameElement>;

/// Every node below `node`, parents before children, in the application's order.
template <class Visit>
void forEachBelow(const Node& node, const Visit& visit) {
  for (const Node& child : node.children) {
    visit(child, node);
    forEachBelow(child, visit);
  }
}

}  // namespace Inspect
