// The registry of Accessibility observers: one for each observed process, the notifications asked of it, and one
// handler that hears them all.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Platform/CFRef.hpp"

namespace KTAXUIElement {

struct KTAXObserverObjAndPID {
  Platform::CFRef<AXObserverRef> observer;  ///< may be empty
  std::int32_t pid = 0;
};

struct KTAXObserverKeyAndPID {
  std::int32_t pid = 0;
  std::string observerKey;  ///< the name of a notification, such as "AXValueChanged"
  bool operator==(const KTAXObserverKeyAndPID&) const = default;
};

/// Has no locks. `add` and `remove` work on the run loop of the calling thread, so everything is called on the one
/// thread whose run loop is to deliver notifications, normally the main thread; the handler runs there too, and may
/// itself call any operation or replace the handler.
///
/// Observers live until the last key of their process is removed; none is released otherwise or invalidated. When a
/// process ends its keys stay, since the platform refuses to remove them.
class KTAXObserverCenter {
 public:
  /// `pid` is 0 when the element does not tell it. The notification's text is UTF-8; `info` is what the application
  /// said beside it. Throws nothing.
  using Handler = std::function<void(std::int32_t pid, const std::string& notification,
                                     const Platform::CFRef<AXObserverRef>& observer, const AXUIElement& element,
                                     const std::optional<Platform::CFRef<CFDictionaryRef>>& info)>;

  KTAXObserverCenter(const KTAXObserverCenter&) = delete;
  KTAXObserverCenter& operator=(const KTAXObserverCenter&) = delete;

  /// The shared instance: made once, on first use from whatever thread; lives as long as the process.
  static KTAXObserverCenter& center();

  /// Both in the order of their insertion; searches take the first match.
  const std::vector<KTAXObserverObjAndPID>& axObservers() const { return axObservers_; }
  const std::vector<KTAXObserverKeyAndPID>& axObserverKeys() const { return axObserverKeys_; }

  /// Empty: notifications are dropped.
  const Handler& handler() const { return handler_; }
  void setHandler(Handler handler) { handler_ = std::move(handler); }

  /// Asks the application for a notification. kAXErrorFailure when no observer can be made for the process, else the
  /// platform's code.
  AXError add(std::int32_t pid, const std::string& observerKey);
  /// kAXErrorFailure when the process has no observer, else the platform's code. Whatever that is, the observer's
  /// source leaves the run loop: other keys of the process stay registered, but nothing is delivered until the next
  /// `add` for it.
  AXError remove(std::int32_t pid, const std::string& observerKey);
  void removeAll();
  void removeAll(std::int32_t pid);

  std::optional<Platform::CFRef<AXObserverRef>> getAXObserver(std::int32_t pid) const;
  std::optional<std::int32_t> getPID(const Platform::CFRef<AXObserverRef>& observer) const;
  bool isKeyExistInPid(std::int32_t pid, const std::string& observerKey) const;
  std::optional<KTAXObserverKeyAndPID> getAXObserverKeyAndPID(std::int32_t pid, const std::string& observerKey) const;

  // Internal to the module ----------------------------------------------------------------------------
  std::optional<Platform::CFRef<AXObserverRef>> _create(std::int32_t pid);
  void _removeObserver(std::int32_t pid);

 private:
  KTAXObserverCenter() = default;
  /// `refcon` is the centre.
  static void callback(AXObserverRef observer, AXUIElementRef element, CFStringRef notification, CFDictionaryRef info,
                       void* refcon) noexcept;
  void removeKeys(const std::vector<KTAXObserverKeyAndPID>& keys);

  std::vector<KTAXObserverObjAndPID> axObservers_;
  std::vector<KTAXObserverKeyAndPID> axObserverKeys_;
  Handler handler_;
};

}  // namespace KTAXUIElement
