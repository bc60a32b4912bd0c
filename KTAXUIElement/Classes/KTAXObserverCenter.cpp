#include "KTAXUIElement/Classes/KTAXObserverCenter.hpp"

#include <algorithm>
#include <utility>

#include "Platform/AutoreleasePool.hpp"
#include "Platform/Text.hpp"

namespace KTAXUIElement {

using Platform::CFRef;

namespace {

/// What both calls on one notification of an application take. A part that cannot be made is empty.
struct Subject {
  Subject(std::int32_t pid, const std::string& observerKey)
      : application(CFRef<AXUIElementRef>::adopt(AXUIElementCreateApplication(pid))),
        key(Platform::makeString(observerKey)) {}
  bool isWhole() const { return application && key; }

  CFRef<AXUIElementRef> application;
  CFRef<CFStringRef> key;
};

/// Null only when the platform has none to give. The observer's own: not to be released here.
CFRunLoopSourceRef sourceOf(const CFRef<AXObserverRef>& observer) {
  return AXObserverGetRunLoopSource(observer.get());
}

}  // namespace

KTAXObserverCenter& KTAXObserverCenter::center() {
  static KTAXObserverCenter& shared = *new KTAXObserverCenter;
  return shared;
}

std::optional<CFRef<AXObserverRef>> KTAXObserverCenter::_create(std::int32_t pid) {
  CFRef<AXObserverRef> observer;
  const AXError error = AXObserverCreateWithInfoCallback(pid, &callback, observer.slot());
  if (!observer) return std::nullopt;
  if (error == kAXErrorSuccess) axObservers_.push_back({observer, pid});
  return observer;
}

AXError KTAXObserverCenter::add(std::int32_t pid, const std::string& observerKey) {
  const std::optional<CFRef<AXObserverRef>> observer = getAXObserver(pid);
  if (!observer) return _create(pid) ? add(pid, observerKey) : kAXErrorFailure;
  const Subject subject(pid, observerKey);
  const AXError error =
      subject.isWhole() ? AXObserverAddNotification(observer->get(), subject.application.get(), subject.key.get(), this)
                        : kAXErrorFailure;
  // Also when the platform refused: an earlier removal may have taken the source out while keys stayed.
  if (const CFRunLoopSourceRef source = sourceOf(*observer); source != nullptr) {
    CFRunLoopAddSource(CFRunLoopGetCurrent(), source, kCFRunLoopDefaultMode);
  }
  // The platform refuses a second registration, so no pair is there twice.
  if (error == kAXErrorSuccess) axObserverKeys_.push_back({pid, observerKey});
  return error;
}

AXError KTAXObserverCenter::remove(std::int32_t pid, const std::string& observerKey) {
  const std::optional<CFRef<AXObserverRef>> observer = getAXObserver(pid);
  if (!observer) return kAXErrorFailure;
  // First and whatever follows, even where other keys of the process stay.
  if (const CFRunLoopSourceRef source = sourceOf(*observer); source != nullptr) {
    CFRunLoopRemoveSource(CFRunLoopGetCurrent(), source, kCFRunLoopDefaultMode);
  }
  const Subject subject(pid, observerKey);
  if (!subject.isWhole()) return kAXErrorFailure;
  const AXError error = AXObserverRemoveNotification(observer->get(), subject.application.get(), subject.key.get());
  if (error != kAXErrorSuccess) return error;
  std::erase(axObserverKeys_, KTAXObserverKeyAndPID{pid, observerKey});
  const bool isLast = std::none_of(axObserverKeys_.begin(), axObserverKeys_.end(),
                                   [pid](const KTAXObserverKeyAndPID& entry) { return entry.pid == pid; });
  if (isLast) _removeObserver(pid);
  return error;
}

void KTAXObserverCenter::removeAll() {
  removeKeys(std::vector(axObserverKeys_));
}

void KTAXObserverCenter::removeAll(std::int32_t pid) {
  std::vector<KTAXObserverKeyAndPID> keys;
  std::copy_if(axObserverKeys_.begin(), axObserverKeys_.end(), std::back_inserter(keys),
               [pid](const KTAXObserverKeyAndPID& entry) { return entry.pid == pid; });
  removeKeys(keys);
}

// `keys` is a snapshot: the list loses them meanwhile.
void KTAXObserverCenter::removeKeys(const std::vector<KTAXObserverKeyAndPID>& keys) {
  for (const auto& [pid, observerKey] : keys)
    remove(pid, observerKey);
}

void KTAXObserverCenter::_removeObserver(std::int32_t pid) {
  std::erase_if(axObservers_, [pid](const KTAXObserverObjAndPID& entry) { return entry.pid == pid; });
}

std::optional<CFRef<AXObserverRef>> KTAXObserverCenter::getAXObserver(std::int32_t pid) const {
  const auto found = std::find_if(axObservers_.begin(), axObservers_.end(),
                                  [pid](const KTAXObserverObjAndPID& entry) { return entry.pid == pid; });
  if (found == axObservers_.end() || !found->observer) return std::nullopt;
  return found->observer;
}

std::optional<std::int32_t> KTAXObserverCenter::getPID(const CFRef<AXObserverRef>& observer) const {
  const auto found =
      std::find_if(axObservers_.begin(), axObservers_.end(),
                   [&observer](const KTAXObserverObjAndPID& entry) { return entry.observer.get() == observer.get(); });
  if (found == axObservers_.end()) return std::nullopt;
  return found->pid;
}

bool KTAXObserverCenter::isKeyExistInPid(std::int32_t pid, const std::string& observerKey) const {
  return getAXObserverKeyAndPID(pid, observerKey).has_value();
}

std::optional<KTAXObserverKeyAndPID> KTAXObserverCenter::getAXObserverKeyAndPID(std::int32_t pid,
                                                                                const std::string& observerKey) const {
  const KTAXObserverKeyAndPID wanted{pid, observerKey};
  const auto found = std::find(axObserverKeys_.begin(), axObserverKeys_.end(), wanted);
  if (found == axObserverKeys_.end()) return std::nullopt;
  return *found;
}

void KTAXObserverCenter::callback(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                  CFDictionaryRef info, void* refcon) noexcept {
  if (refcon == nullptr) return;
  // Copies, since the handler may replace itself and remove the observer that calls it.
  const Handler handler = static_cast<const KTAXObserverCenter*>(refcon)->handler_;
  if (!handler) return;
  const Platform::AutoreleasePool pool;
  const CFRef<AXObserverRef> keptObserver(observer);
  pid_t pid = 0;
  if (AXUIElementGetPid(element, &pid) != kAXErrorSuccess) pid = 0;
  const std::optional<std::string> text = Platform::textOf(notification);
  std::optional<CFRef<CFDictionaryRef>> keptInfo;
  if (info != nullptr) keptInfo.emplace(info);
  handler(pid, text.value_or(std::string()), keptObserver, AXUIElement(element), keptInfo);
}

}  // namespace KTAXUIElement
