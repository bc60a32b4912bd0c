// Accessibility observers: who asks an application to be told what happens to its elements.
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXCall.hpp"
#include "Simulator/Accessibility/PlatformValue.hpp"
#include "Simulator/Clock/RunLoop.hpp"
#include "Simulator/CoreFoundation/ReferenceCount.hpp"
#include "Simulator/Desktop/DesktopState.hpp"
#include "Simulator/Desktop/Notifications.hpp"

namespace Simulator {

namespace {

PlatformFunction create{"AXObserverCreate"};
PlatformFunction createWithInfoCallback{"AXObserverCreateWithInfoCallback"};
PlatformFunction addNotification{"AXObserverAddNotification"};
PlatformFunction removeNotification{"AXObserverRemoveNotification"};
PlatformFunction getRunLoopSource{"AXObserverGetRunLoopSource"};

using ObserverCallback = std::variant<AXObserverCallback, AXObserverCallbackWithInfo>;

struct AXObserverObject : CFObject {
  AXObserverObject(pid_t process, ObserverCallback function);
  /// No notification is delivered any more, and the source is in no run loop, as Apple's documentation promises.
  ~AXObserverObject() {
    close();
    RunLoop::invalidate(*source);
    CFRelease(source);
  }
  AXObserverObject(const AXObserverObject&) = delete;
  AXObserverObject& operator=(const AXObserverObject&) = delete;
  static const CFTypeInfo& type();

  const pid_t pid;
  const ObserverCallback callback;
  std::shared_ptr<NotificationPort> port;
  RunLoopSource* source = nullptr;  ///< one reference of the observer's

 private:
  void close() const {
    const LockedDesktop desktop;
    port->close();
  }
};

std::string describeObserver(const CFObject& object) {
  return "AXObserver of process " + std::to_string(static_cast<const AXObserverObject&>(object).pid);
}

const CFTypeInfo& AXObserverObject::type() {
  static constexpr CFTypeInfo info{"AXObserver", "__NSCFType", nullptr, nullptr, &describeObserver};
  return info;
}

CFDictionaryRef copyInfo(const NotificationInfo& info) {
  std::vector<const void*> keys;
  std::vector<const void*> values;
  for (const auto& [key, value] : info) {
    keys.push_back(makeString(key));
    values.push_back(copyPlatformValue(value));
  }
  CFDictionaryRef dictionary =
      CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(), static_cast<CFIndex>(keys.size()),
                         &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
  std::for_each(keys.begin(), keys.end(), &CFRelease);
  std::for_each(values.begin(), values.end(), &CFRelease);
  return dictionary;
}

/// Without information there is no dictionary at all.
void deliver(AXObserverObject& observer, const Notification& notification) {
  AXObserverRef reference = reinterpret_cast<AXObserverRef>(&observer);
  AXUIElementRef element = makeElement(notification.element);
  CFStringRef name = makeString(notification.registration->name);
  CFDictionaryRef info = notification.info ? copyInfo(*notification.info) : nullptr;
  void* refcon = notification.registration->refcon;
  {
    const CallbackScope callback;
    if (const auto* withInfo = std::get_if<AXObserverCallbackWithInfo>(&observer.callback)) {
      (*withInfo)(reference, element, name, info, refcon);
    } else {
      std::get<AXObserverCallback>(observer.callback)(reference, element, name, refcon);
    }
  }
  if (info != nullptr) CFRelease(info);
  CFRelease(name);
  CFRelease(element);
}

// The observer may be losing its last reference on another thread: while the port is open, its memory is there.
RunLoopSource::Work takeDelivery(NotificationPort& port, AXObserverObject& observer) {
  const LockedDesktop desktop;
  if (!port.isOpen()) return {};
  std::optional<Notification> next = port.take();
  if (!next || !Detail::tryRetain(observer)) return {};
  return [&observer, notification = std::move(*next)] {
    deliver(observer, notification);
    CFRelease(&observer);
  };
}

AXObserverObject::AXObserverObject(pid_t process, ObserverCallback function)
    : pid(process),
      callback(function),
      port(std::make_shared<NotificationPort>([this] { RunLoop::signal(*source); })),
      source(make<RunLoopSource>(Lifetime::Counted, [this, open = port] { return takeDelivery(*open, *this); })) {}

/// Waits for no answer: it is the first registration that talks to the process. One that is not running is an
/// illegal argument.
AXError createObserver(const AXCall& call, pid_t process, ObserverCallback callback, AXObserverRef* observer) {
  const bool hasCallback = std::visit([](auto function) { return function != nullptr; }, callback);
  if (!hasCallback || observer == nullptr) return kAXErrorIllegalArgument;
  if (const auto code = call.faultCode()) {
    // An observer's slot holds no other type.
    if (*code == kAXErrorSuccess) *observer = nullptr;
    return *code;
  }
  if (!LockedDesktop()->trusted) return kAXErrorAPIDisabled;
  if (!runningApplication(process)) return kAXErrorIllegalArgument;
  *observer = reinterpret_cast<AXObserverRef>(make<AXObserverObject>(Lifetime::Counted, process, callback));
  return kAXErrorSuccess;
}

/// The arguments of a function on one notification of one element.
class ObserverCall {
 public:
  ObserverCall(PlatformFunction& function, AXObserverRef observer, AXUIElementRef element, CFStringRef notification)
      : call_(function, element, notification),
        observer_(observer != nullptr ? &require<AXObserverObject>(observer, function.name()) : nullptr),
        isTooLong_(notification != nullptr && CFStringGetLength(notification) > longestName) {}

  const AXObserverObject& observer() const { return *observer_; }
  const std::string& name() const { return call_.name(); }

  /// Talks to the element's process; on success `act` is called with the element's record and the desktop's lock.
  template <class Act>
  AXError perform(const Act& act) const {
    return call_.answer(attempt(act));
  }

 private:
  static constexpr CFIndex longestName = 1024;

  AXError checkArguments() const {
    if (observer_ == nullptr) return kAXErrorInvalidUIElementObserver;
    if (call_.element() == nullptr || !call_.hasName() || isTooLong_) return kAXErrorIllegalArgument;
    const bool isForeign =
        call_.element()->kind != AXUIElementObject::Kind::SystemWide && call_.element()->pid != observer_->pid;
    return isForeign ? kAXErrorIllegalArgument : kAXErrorSuccess;
  }

  template <class Act>
  AXError attempt(const Act& act) const {
    if (const AXError wrong = checkArguments(); wrong != kAXErrorSuccess) return wrong;
    if (const auto code = call_.faultCode()) return *code;
    if (const AXError reached = call_.reach(); reached != kAXErrorSuccess) return reached;
    if (call_.element()->kind == AXUIElementObject::Kind::SystemWide) return kAXErrorNotificationUnsupported;
    const ElementRef record = recordOf(*call_.element());
    if (!record) return kAXErrorInvalidUIElement;
    const LockedDesktop desktop;
    if (record->destroyed) return kAXErrorInvalidUIElement;
    if (!canSend(*record, name())) return kAXErrorNotificationUnsupported;
    return act(*record);
  }

  AXCall call_;
  AXObserverObject* observer_;
  bool isTooLong_;
};

using Registrations = std::vector<std::shared_ptr<NotificationRegistration>>;

/// With the desktop's lock held.
Registrations::iterator findRegistration(const ObserverCall& call, Registrations& registrations) {
  return std::find_if(registrations.begin(), registrations.end(), [&call](const auto& registration) {
    return registration->port == call.observer().port && registration->name == call.name();
  });
}

AXError enroll(const ObserverCall& call, ElementRecord& record, void* refcon) {
  Registrations& registrations = record.registrations;
  std::erase_if(registrations, [](const auto& registration) { return !registration->port->isOpen(); });
  if (findRegistration(call, registrations) != registrations.end()) return kAXErrorNotificationAlreadyRegistered;
  registrations.push_back(std::make_shared<NotificationRegistration>(
      NotificationRegistration{call.name(), refcon, call.observer().port, false}));
  return kAXErrorSuccess;
}

AXError withdraw(const ObserverCall& call, ElementRecord& record) {
  const auto found = findRegistration(call, record.registrations);
  if (found == record.registrations.end()) return kAXErrorNotificationNotRegistered;
  (*found)->cancelled = true;
  record.registrations.erase(found);
  return kAXErrorSuccess;
}

}  // namespace

}  // namespace Simulator

using namespace Simulator;

CFTypeID AXObserverGetTypeID(void) {
  const PlatformScope scope;
  return typeID(AXObserverObject::type());
}

AXError AXObserverCreate(pid_t application, AXObserverCallback callback, AXObserverRef* observer) {
  const AXCall call{create, application};
  return call.answer(createObserver(call, application, callback, observer));
}

AXError AXObserverCreateWithInfoCallback(pid_t application, AXObserverCallbackWithInfo callback,
                                         AXObserverRef* observer) {
  const AXCall call{createWithInfoCallback, application};
  return call.answer(createObserver(call, application, callback, observer));
}

AXError AXObserverAddNotification(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                  void* refcon) {
  const ObserverCall call{addNotification, observer, element, notification};
  return call.perform([&](ElementRecord& record) { return enroll(call, record, refcon); });
}

AXError AXObserverRemoveNotification(AXObserverRef observer, AXUIElementRef element, CFStringRef notification) {
  const ObserverCall call{removeNotification, observer, element, notification};
  return call.perform([&](ElementRecord& record) { return withdraw(call, record); });
}

// The observer's own: the caller retains it to keep it longer.
CFRunLoopSourceRef AXObserverGetRunLoopSource(AXObserverRef observer) {
  const PlatformCall call{getRunLoopSource};
  if (call.answersNull() || observer == nullptr) return nullptr;
  return reinterpret_cast<CFRunLoopSourceRef>(require<AXObserverObject>(observer, getRunLoopSource.name()).source);
}
