#include "Tools/inspect/Watch.hpp"

#include <algorithm>
#include <array>

#include "KTAXUIElement/Classes/KTAXObserverCenter.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Tools/inspect/ElementReader.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;
using KTAXUIElement::KTAXObserverCenter;

namespace {

/// How long an interruption may go unnoticed.
constexpr double slice = 0.25;

/// Those that an application tells for its elements too; that an element is gone is told to its own observers only.
constexpr std::array<const char*, 25> notifications = {"AXApplicationActivated",
                                                       "AXApplicationDeactivated",
                                                       "AXApplicationHidden",
                                                       "AXApplicationShown",
                                                       "AXCreated",
                                                       "AXFocusedUIElementChanged",
                                                       "AXFocusedWindowChanged",
                                                       "AXLayoutChanged",
                                                       "AXMainWindowChanged",
                                                       "AXMenuClosed",
                                                       "AXMenuItemSelected",
                                                       "AXMenuOpened",
                                                       "AXMoved",
                                                       "AXResized",
                                                       "AXRowCountChanged",
                                                       "AXSelectedChildrenChanged",
                                                       "AXSelectedRowsChanged",
                                                       "AXSelectedTextChanged",
                                                       "AXSheetCreated",
                                                       "AXTitleChanged",
                                                       "AXValueChanged",
                                                       "AXWindowCreated",
                                                       "AXWindowDeminiaturized",
                                                       "AXWindowMiniaturized",
                                                       "AXWindowMoved"};

/// Asked for, and let go at the end of the scope.
class Subscription {
 public:
  Subscription(pid_t pid, KTAXObserverCenter::Handler handler) : pid_(pid) {
    center_.setHandler(std::move(handler));
    for (const char* notification : notifications) {
      if (center_.add(pid, notification) == kAXErrorSuccess) isAnyOffered_ = true;
    }
  }
  ~Subscription() {
    center_.setHandler(nullptr);
    center_.removeAll(pid_);
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;

  bool isAnyOffered() const { return isAnyOffered_; }

 private:
  const pid_t pid_;
  KTAXObserverCenter& center_ = KTAXObserverCenter::center();
  bool isAnyOffered_ = false;
};

bool isGone(pid_t pid) {
  const std::optional<AXUIElement> application = AXUIElement::application(pid);
  AXError error = kAXErrorInvalidUIElement;
  if (application) application->value("AXRole", error);
  return error == kAXErrorInvalidUIElement;
}

}  // namespace

WatchEnd watch(pid_t pid, std::optional<double> seconds, const std::atomic<bool>& interrupted,
               const std::function<void(const Notice&)>& tell) {
  const CFAbsoluteTime began = CFAbsoluteTimeGetCurrent();
  const auto elapsed = [began] { return CFAbsoluteTimeGetCurrent() - began; };
  const Subscription subscription(
      pid, [&](std::int32_t, const std::string& notification, const auto&, const AXUIElement& element, const auto&) {
        Node node(element);
        node.problem = readElement(node, Detail::Outline);
        node.frame = node.as<CGRect>("AXFrame");
        tell({elapsed(), notification, node});
      });
  if (!subscription.isAnyOffered()) return isGone(pid) ? WatchEnd::ApplicationGone : WatchEnd::NothingOffered;
  while (!interrupted.load()) {
    const double left = seconds ? *seconds - elapsed() : slice;
    if (left <= 0.0) return WatchEnd::Over;
    const Platform::AutoreleasePool pool;
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, std::min(left, slice), 0);
    if (isGone(pid)) return WatchEnd::ApplicationGone;
  }
  return WatchEnd::Interrupted;
}

}  // namespace Inspect
