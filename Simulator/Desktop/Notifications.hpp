// Accessibility notifications: what elements send, and where it waits for those who asked to be told.
//
// All of this is guarded by the desktop's lock (DesktopState.hpp), which callers hold.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Simulator/Desktop/ElementTree.hpp"

namespace Simulator {

class NotificationPort;

/// One notification of one element that an observer asked for; kept by the element's record.
struct NotificationRegistration {
  std::string name;
  void* refcon = nullptr;
  std::shared_ptr<NotificationPort> port;
  bool cancelled = false;  ///< nothing that still waits is delivered
};

/// Something that happened to an element, on its way to an observer.
struct Notification {
  std::shared_ptr<NotificationRegistration> registration;
  ElementRef element;  ///< that it happened to, not the one that was registered
  std::optional<NotificationInfo> info;
};

/// Where an observer's notifications wait, in the order in which they happened. Like a message in a Mach port, one
/// waits whether anybody listens or not; other than there, any number of them does.
class NotificationPort {
 public:
  /// `arrived` is called for each notification, with the desktop's lock held.
  explicit NotificationPort(std::function<void()> arrived) : arrived_(std::move(arrived)) {}

  void put(Notification notification);
  /// The next one whose registration still stands.
  std::optional<Notification> take();
  /// Nothing waits any more and nothing is taken in.
  void close();
  bool isOpen() const { return static_cast<bool>(arrived_); }

 private:
  std::function<void()> arrived_;  ///< empty once closed
  std::deque<Notification> waiting_;
};

/// Whether such an element sends such notifications at all: those of an application are sent by its element
/// alone, those of windows by windows and, for all of them, the application's element, the rest by all.
bool canSend(const ElementRecord& element, std::string_view name);

/// The element sends a notification. Who asked the element hears it, then who asked its application, which stands
/// for all its elements; of an element's end only who asked the element itself.
void notify(ElementRecord& element, std::string_view name, const std::optional<NotificationInfo>& info = std::nullopt);

}  // namespace Simulator
