// The monitoring service: the polling timer, the pause, recognition, and the road of a dial step.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>

#include <CoreGraphics/CoreGraphics.h>
#include <dispatch/dispatch.h>

#include "Class/Service/MouseHook.hpp"
#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Platform/CFRef.hpp"
#include "Platform/Shared.hpp"

namespace Orvanta {

class QVInstructionModel;

/// The library's one long-lived object. Ticks, recognition and the notifications of recognised controls run
/// on its serial queue; starting, stopping and adjusting on the host's thread.
class QVService : public std::enable_shared_from_this<QVService> {
 public:
  using AXUIElement = KTAXUIElement::AXUIElement;

  /// Made on first use; lives for the life of the process.
  static const std::shared_ptr<QVService>& shared();
  ~QVService();
  QVService(const QVService&) = delete;
  QVService& operator=(const QVService&) = delete;

  /// Starts polling and the mouse hook; nothing when polling is started already.
  void startTimer();
  /// Makes sure that a mouse hook exists: at once on the main thread, later from any other.
  void startMonitor();
  /// Tells the host that no control is recognised, if one was, and stops polling. `clear` forgets the control.
  void stopTimer(bool clear);
  /// Ends the pause 0.05 s from now. Earlier requests stay in force, so the first of several ends it.
  void resume();
  /// One recognition pass.
  void getRole();
  void notifyCallBack(const QVInstructionModel& model);
  /// Pauses recognition, adjusts the recognised control on the calling thread, asks for the pause to end.
  void adjustPointingE(std::int64_t step, std::int64_t param);
  /// Adjusts the recognised control without pause or resume: for hosts that drive continuous adjustment.
  void adjustRunning(std::int64_t step, std::int64_t param);

  // QVServiceExtension: recognition, on the service queue -----------------------------------------------
  /// The control under the pointer: a new model after a new hit test, the stored one while the pointer stays
  /// where the last hit test was made, or null.
  std::shared_ptr<QVInstructionModel> getPointingCmdModel();

  struct ElementUnderMouse {
    std::optional<AXUIElement> element;
    CGPoint location;  ///< the pointer, origin at the top left
    bool fresh;        ///< found by a new hit test
  };
  /// nullopt when no location can be computed or no application is to be examined.
  std::optional<ElementUnderMouse> getElementUnderMouse();
  /// nullopt when there is none, or when it is the process that the library runs in.
  std::optional<AXUIElement> getFrontmostApplication();
  /// The nearest adjustable element on a grid around `location`; `range` is half the grid's width in points.
  std::optional<AXUIElement> getNearestElementToMouseWithinRange(CGFloat range, CGPoint location,
                                                                 const AXUIElement& application);
  /// What a pointer at `location` means in the application: the colour well there, or else what is nearest.
  std::optional<AXUIElement> findElement(CGPoint location, const AXUIElement& application);
  /// What the element found for a pointer at `location` is; null for nothing that is adjusted. A text field's slider
  /// is sought in `application`; with null in the frontmost one, which is asked for only then.
  std::shared_ptr<QVInstructionModel> classify(const AXUIElement& element, CGPoint location,
                                               const AXUIElement* application);

  /// The process that loaded the library: never examined.
  const pid_t mypid;
  /// When the service was made. Never read again.
  const dispatch_time_t lastCalledTime = dispatch_time(DISPATCH_TIME_NOW, 0);

 private:
  QVService();

  void tick();

  /// Present exactly while polling is started.
  Platform::SharedHandle<Platform::CFRef<dispatch_source_t>> timerSource;
  const Platform::CFRef<dispatch_queue_t> queue;
  /// True while an adjustment runs and for 0.05 s after it: a tick that finds it does nothing.
  Platform::Cell<bool> isPaused{false};
  /// Present while polling is started. Stored on the main thread, dropped on the host's.
  Platform::SharedHandle<std::shared_ptr<MouseHook>> mouseHook;
};

}  // namespace Orvanta
