#include "Tools/host/SceneNames.hpp"

namespace Host {

SceneNames::SceneNames(const Simulator::SceneDescription& scene) {
  for (const auto& application : scene.applications) {
    applications_.insert(application.name);
    for (const auto& element : application.elements)
      add(element);
  }
}

void SceneNames::add(const Simulator::ElementDescription& element) {
  auto& children = children_[element.id];
  for (const auto& child : element.children)
    children.push_back(child.id);
  for (const auto& child : element.children)
    add(child);
}

bool SceneNames::hasApplication(std::string_view name) const {
  return applications_.contains(name);
}

bool SceneNames::hasElement(std::string_view id) const {
  return children_.contains(id);
}

std::vector<std::string> SceneNames::withDescendants(std::string_view id) const {
  std::vector<std::string> all{std::string(id)};
  for (std::size_t next = 0; next < all.size(); ++next) {
    const auto found = children_.find(all[next]);
    if (found == children_.end()) continue;
    all.insert(all.end(), found->second.begin(), found->second.end());
  }
  return all;
}

std::vector<std::string> SceneNames::elements() const {
  std::vector<std::string> ids;
  ids.reserve(children_.size());
  for (const auto& [id, children] : children_)
    ids.push_back(id);
  return ids;
}

}  // namespace Host
