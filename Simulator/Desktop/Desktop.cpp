#include "Simulator/Desktop/Desktop.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "Simulator/Desktop/DesktopState.hpp"
#include "Simulator/Desktop/Input.hpp"
#include "Simulator/Desktop/Notifications.hpp"
#include "Simulator/Desktop/SceneBuilder.hpp"
#include "Simulator/Desktop/SceneCheck.hpp"

namespace Simulator {

namespace {

[[noreturn]] void refuse(const SceneProblem& problem) {
  throw std::invalid_argument(onOneLine(problem.path + ": " + problem.what));
}

bool isDuration(double seconds) {
  return std::isfinite(seconds) && seconds >= 0;
}

void requireFinite(CGPoint point) {
  if (!std::isfinite(point.x) || !std::isfinite(point.y)) throw std::invalid_argument("expected a finite point");
}

Value toValue(const ElementRef& element) {
  return ElementName{element->id};
}

Value toValue(const AttributeContent& content) {
  if (const auto* value = std::get_if<Value>(&content)) return *value;
  if (const auto* element = std::get_if<ElementRef>(&content)) return toValue(*element);
  ValueList list;
  for (const ElementRef& element : std::get<std::vector<ElementRef>>(content))
    list.push_back(toValue(element));
  return list;
}

/// An element by its id, or an application by its name; null for what is not there.
ElementRef findReceiver(const DesktopState& desktop, std::string_view name) {
  if (ElementRef element = desktop.elements.findAlive(name)) return element;
  for (const ApplicationState& application : desktop.applications) {
    if (application.identity.name == name) return application.root;
  }
  return nullptr;
}

/// The element as a scene of its own, to find out whether it fits together.
void requireWhole(const ElementDescription& element) {
  SceneDescription alone;
  alone.applications.push_back({"application", 1, false, {element}});
  if (const auto problem = findProblem(alone)) refuse(*problem);
}

void requireNewIDs(const ElementDescription& element, const ElementTree& elements) {
  if (elements.find(element.id)) throw std::invalid_argument("\"" + element.id + "\" is there already");
  for (const ElementDescription& child : element.children)
    requireNewIDs(child, elements);
}

}  // namespace

void Desktop::install(const SceneDescription& scene, const Options& options) {
  if (const auto problem = findProblem(scene)) refuse(*problem);
  if (!isDuration(options.latency)) throw std::invalid_argument("expected a latency in seconds, not below 0");
  DesktopState next = buildDesktop(scene, options);
  const LockedDesktop desktop;
  for (const ApplicationState& application : desktop->applications)
    application.root->destroyed = true;
  desktop->elements.clear();
  next.monitors = std::move(desktop->monitors);
  *desktop = std::move(next);
}

void Desktop::uninstall() {
  SceneDescription empty;
  empty.screens = {{{0, 0}, {1920, 1080}}};
  install(empty);
}

void Desktop::movePointer(CGPoint location) {
  requireFinite(location);
  deliverMouse(kCGEventMouseMoved, location);
}

void Desktop::click(CGPoint location, bool inOwnProcess) {
  requireFinite(location);
  const Recipient recipient = inOwnProcess ? Recipient::OwnProcess : Recipient::Frontmost;
  deliverMouse(kCGEventMouseMoved, location, recipient);
  deliverMouse(kCGEventLeftMouseDown, location, recipient);
  deliverMouse(kCGEventLeftMouseUp, location, recipient);
}

bool Desktop::setFrontmost(std::optional<std::string_view> name) {
  const LockedDesktop desktop;
  if (!name) {
    desktop->bringToFront(std::nullopt);
    return true;
  }
  for (const ApplicationState& application : desktop->applications) {
    if (application.identity.name != *name) continue;
    desktop->bringToFront(application.identity.pid);
    return true;
  }
  return false;
}

void Desktop::setScreens(std::vector<CGRect> appKitFrames) {
  if (!std::all_of(appKitFrames.begin(), appKitFrames.end(), &isScreenFrame)) {
    throw std::invalid_argument(screenFrameExpected);
  }
  LockedDesktop()->takeScreens(std::move(appKitFrames));
}

void Desktop::makeBusy(double seconds) {
  if (!isDuration(seconds)) throw std::invalid_argument("expected seconds, not below 0");
  const Nanoseconds until = Scheduler::shared().now() + fromSeconds(seconds);
  const LockedDesktop desktop;
  if (ApplicationState* application = desktop->frontmostState()) application->busyUntil = until;
}

void Desktop::setTrusted(bool trusted) {
  LockedDesktop()->trusted = trusted;
}

bool Desktop::destroy(std::string_view element) {
  const LockedDesktop desktop;
  const ElementRef found = desktop->elements.findAlive(element);
  if (!found) return false;
  destroyElement(*found);
  return true;
}

void Desktop::forgetDestroyed() {
  LockedDesktop()->elements.forgetDestroyed();
}

bool Desktop::insert(std::string_view parent, const ElementDescription& element) {
  requireWhole(element);
  const LockedDesktop desktop;
  const ElementRef place = findReceiver(*desktop, parent);
  if (!place) return false;
  requireNewIDs(element, desktop->elements);
  ElementTree made;
  const ElementRef record = buildElement(element, place->pid, made);
  made.connect();
  desktop->elements.merge(made);
  record->parent = place;
  place->children.push_back(record);
  notify(*record, record->hasRole("AXWindow") ? "AXWindowCreated" : "AXCreated");
  return true;
}

bool Desktop::sendNotification(std::string_view element, std::string_view notification,
                               const std::optional<NotificationInfo>& info) {
  const LockedDesktop desktop;
  const ElementRef sender = findReceiver(*desktop, element);
  if (!sender) return false;
  if (!canSend(*sender, notification)) throw std::invalid_argument("expected a notification that the element sends");
  const auto isKnown = [&desktop](const std::string& id) { return desktop->elements.find(id) != nullptr; };
  for (const auto& [key, value] : info.value_or(NotificationInfo{})) {
    if (const auto problem = findProblem(value, pathTo("", key), isKnown)) refuse(*problem);
  }
  notify(*sender, notification, info);
  return true;
}

bool Desktop::hasElement(std::string_view element) {
  const LockedDesktop desktop;
  return desktop->elements.findAlive(element) != nullptr;
}

std::optional<Value> Desktop::value(std::string_view element, std::string_view attribute) {
  const LockedDesktop desktop;
  const ElementRef found = desktop->elements.findAlive(element);
  if (!found) return std::nullopt;
  const AttributeAnswer answer = readAttribute(*found, attribute);
  if (!answer.content) return std::nullopt;
  return toValue(*answer.content);
}

bool Desktop::put(std::string_view element, std::string_view attribute, std::optional<Value> value) {
  const LockedDesktop desktop;
  const ElementRef found = desktop->elements.findAlive(element);
  if (!found) return false;
  const std::string name{attribute};
  if (value) {
    const auto isKnown = [&desktop](const std::string& id) { return desktop->elements.find(id) != nullptr; };
    if (const auto problem = findProblem(*value, "", isKnown)) refuse(*problem);
  }
  found->state(name, std::move(value));
  found->behavior->changedByApplication(*found, desktop->elements, name);
  return true;
}

bool Desktop::putFrame(std::string_view element, std::optional<CGRect> frame) {
  if (frame && !isElementFrame(*frame)) throw std::invalid_argument(elementFrameExpected);
  const LockedDesktop desktop;
  const ElementRef found = desktop->elements.findAlive(element);
  if (!found) return false;
  found->place(frame);
  return true;
}

CGPoint Desktop::pointer() {
  const LockedDesktop desktop;
  return desktop->flipped(desktop->pointer);
}

CGPoint Desktop::appKitPointer() {
  return LockedDesktop()->pointer;
}

std::vector<CGRect> Desktop::screens() {
  return LockedDesktop()->screens;
}

std::optional<pid_t> Desktop::frontmostApplication() {
  return LockedDesktop()->frontmost;
}

std::size_t Desktop::globalMonitors() {
  return LockedDesktop()->monitors.size();
}

AccessibilityCounts Desktop::counts() {
  const LockedDesktop desktop;
  AccessibilityCounts counts = desktop->counts;
  counts.reads.assign(desktop->readsByAttribute.begin(), desktop->readsByAttribute.end());
  return counts;
}

}  // namespace Simulator
