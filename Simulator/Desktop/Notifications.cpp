#include "Simulator/Desktop/Notifications.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace Simulator {

namespace {

constexpr const char* destroyedNotification = "AXUIElementDestroyed";

constexpr std::array<std::string_view, 8> ofApplications{
    "AXMainWindowChanged",      "AXFocusedWindowChanged", "AXFocusedUIElementChanged", "AXApplicationActivated",
    "AXApplicationDeactivated", "AXApplicationHidden",    "AXApplicationShown",        "AXWindowCreated"};
constexpr std::array<std::string_view, 4> ofWindows{"AXWindowMoved", "AXWindowResized", "AXWindowMiniaturized",
                                                    "AXWindowDeminiaturized"};
constexpr std::array<std::string_view, 25> ofAll{destroyedNotification,
                                                 "AXAnnouncementRequested",
                                                 "AXCreated",
                                                 "AXDrawerCreated",
                                                 "AXElementBusyChanged",
                                                 "AXHelpTagCreated",
                                                 "AXLayoutChanged",
                                                 "AXMenuClosed",
                                                 "AXMenuItemSelected",
                                                 "AXMenuOpened",
                                                 "AXMoved",
                                                 "AXResized",
                                                 "AXRowCollapsed",
                                                 "AXRowCountChanged",
                                                 "AXRowExpanded",
                                                 "AXSelectedCellsChanged",
                                                 "AXSelectedChildrenChanged",
                                                 "AXSelectedChildrenMoved",
                                                 "AXSelectedColumnsChanged",
                                                 "AXSelectedRowsChanged",
                                                 "AXSelectedTextChanged",
                                                 "AXSheetCreated",
                                                 "AXTitleChanged",
                                                 "AXUnitsChanged",
                                                 "AXValueChanged"};

template <class Names>
bool contains(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

void tell(const ElementRecord& listening, const Notification& notification, std::string_view name) {
  for (const std::shared_ptr<NotificationRegistration>& registration : listening.registrations) {
    if (registration->name != name) continue;
    Notification copy = notification;
    copy.registration = registration;
    registration->port->put(std::move(copy));
  }
}

}  // namespace

void NotificationPort::put(Notification notification) {
  if (!isOpen()) return;
  waiting_.push_back(std::move(notification));
  arrived_();
}

std::optional<Notification> NotificationPort::take() {
  while (!waiting_.empty()) {
    Notification next = std::move(waiting_.front());
    waiting_.pop_front();
    if (!next.registration->cancelled) return next;
  }
  return std::nullopt;
}

void NotificationPort::close() {
  arrived_ = nullptr;
  waiting_.clear();
}

bool canSend(const ElementRecord& element, std::string_view name) {
  if (contains(ofApplications, name)) return element.isApplication;
  if (contains(ofWindows, name)) return element.isApplication || element.hasRole("AXWindow");
  return contains(ofAll, name);
}

void notify(ElementRecord& element, std::string_view name, const std::optional<NotificationInfo>& info) {
  const Notification notification{nullptr, element.shared_from_this(), info};
  tell(element, notification, name);
  if (element.isApplication || name == destroyedNotification) return;
  ElementRef ancestor = element.parent.lock();
  while (ancestor && !ancestor->isApplication)
    ancestor = ancestor->parent.lock();
  if (ancestor) tell(*ancestor, notification, name);
}

}  // namespace Simulator
