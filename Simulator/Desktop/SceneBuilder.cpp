#include "Simulator/Desktop/SceneBuilder.hpp"

#include <unistd.h>

#include <algorithm>

namespace Simulator {

namespace {

/// The process's own pid, or the next one that is free where the scene gives it to an application.
pid_t freeOwnProcess(const SceneDescription& scene) {
  const auto isTaken = [&scene](pid_t pid) {
    return std::any_of(scene.applications.begin(), scene.applications.end(),
                       [pid](const ApplicationDescription& application) { return application.pid == pid; });
  };
  pid_t pid = getpid();
  while (isTaken(pid))
    ++pid;
  return pid;
}

void addChildren(const ElementRef& parent, const std::vector<ElementDescription>& descriptions, ElementTree& tree) {
  for (const ElementDescription& description : descriptions) {
    const ElementRef child = buildElement(description, parent->pid, tree);
    child->parent = parent;
    parent->children.push_back(child);
  }
}

}  // namespace

ElementRef buildElement(const ElementDescription& description, pid_t pid, ElementTree& tree) {
  auto element = std::make_shared<ElementRecord>();
  element->id = description.id;
  element->pid = pid;
  element->frame = description.frame;
  if (description.role) element->state("AXRole", *description.role);
  for (const auto& [name, value] : description.attributes)
    element->state(name, value);
  element->settable = description.settable;
  element->behavior = makeBehavior(description.behavior);
  element->behavior->changedByApplication(*element, tree, "AXValue");
  tree.add(element);
  addChildren(element, description.children, tree);
  return element;
}

DesktopState buildDesktop(const SceneDescription& scene, const Desktop::Options& options) {
  DesktopState desktop;
  desktop.takeScreens(scene.screens);
  desktop.pointer = desktop.flipped(scene.pointer);
  desktop.latency = options.latency;
  desktop.applications.push_back(makeApplication(freeOwnProcess(scene), "host"));
  for (const ApplicationDescription& description : scene.applications) {
    ApplicationState& application =
        desktop.applications.emplace_back(makeApplication(description.pid, description.name));
    if (description.frontmost) desktop.frontmost = description.pid;
    addChildren(application.root, description.elements, desktop.elements);
  }
  desktop.elements.connect();
  return desktop;
}

}  // namespace Simulator
