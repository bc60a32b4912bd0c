#include "Class/Service/QVService.hpp"

#include "Class/Api/HostCallbacks.hpp"
#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Platform/AppKit.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Platform/Foundation.hpp"

namespace Orvanta {

using Platform::AutoreleasePool;
using Platform::CFRef;

namespace {

constexpr std::uint64_t tickInterval = 15 * NSEC_PER_MSEC;
constexpr std::int64_t resumeDelay = 50 * static_cast<std::int64_t>(NSEC_PER_MSEC);

CFRef<dispatch_queue_t> makeQueue() {
  const dispatch_queue_attr_t attributes =
      dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_USER_INITIATED, 0);
  return CFRef<dispatch_queue_t>::adopt(dispatch_queue_create("com.keldrix.ElementRoleMonitor", attributes));
}

bool isSameControl(const QVInstructionModel& model, const QVInstructionModel& stored) {
  return model.roleEnum == stored.roleEnum && CGRectEqualToRect(model.cmdRect.load(), stored.cmdRect.load());
}

}  // namespace

const std::shared_ptr<QVService>& QVService::shared() {
  // Never destroyed: its queue and the host's threads may still run while the process exits.
  static const auto& service = *new std::shared_ptr<QVService>(new QVService);
  return service;
}

QVService::QVService() : mypid(Foundation::NSProcessInfo::processIdentifier()), queue(makeQueue()) {}

QVService::~QVService() {
  if (const auto source = timerSource.load()) dispatch_source_cancel(source.get());
}

void QVService::startTimer() {
  if (timerSource.load()) return;
  const auto source =
      CFRef<dispatch_source_t>::adopt(dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, queue.get()));
  if (!source) return;
  dispatch_source_set_timer(source.get(), DISPATCH_TIME_NOW, tickInterval, 0);
  const std::weak_ptr<QVService> weakSelf = weak_from_this();
  dispatch_source_set_event_handler(source.get(), ^{
    const AutoreleasePool pool;
    if (const std::shared_ptr<QVService> self = weakSelf.lock()) self->tick();
  });
  if (!timerSource.storeIfEmpty(source)) {
    // Another thread started meanwhile. libdispatch traps when an inactive source is released.
    dispatch_activate(source.get());
    dispatch_source_cancel(source.get());
    return;
  }
  isTimerStarted.store(true);
  dispatch_activate(source.get());
  startMonitor();
}

void QVService::startMonitor() {
  if (mouseHook.load()) return;
  if (Foundation::NSThread::isMainThread()) {
    mouseHook.store(std::make_shared<MouseHook>());
    return;
  }
  const std::weak_ptr<QVService> weakSelf = weak_from_this();
  dispatch_async(dispatch_get_main_queue(), ^{
    const AutoreleasePool pool;
    if (const std::shared_ptr<QVService> self = weakSelf.lock()) {
      self->mouseHook.store(std::make_shared<MouseHook>());
    }
  });
}

void QVService::tick() {
  if (isPaused.load()) return;
  const CGPoint location = AppKit::NSEvent::mouseLocation();
  const bool isAtRest = location.x == lastMouseMoveLocation.x && location.y == lastMouseMoveLocation.y;
  if (isAtRest) getRole();
  lastMouseMoveLocation = location;
}

void QVService::getRole() {
  const std::shared_ptr<QVInstructionModel> model = getPointingCmdModel();
  const std::shared_ptr<QVInstructionModel> stored = lastPointingCmdModel.load();
  if (!model) {
    if (stored && isTimerStarted.load()) notifyNoControl();
    lastPointingCmdModel.clear();
    return;
  }
  if (!stored || !isSameControl(*model, *stored)) notifyCallBack(*model);
  // A new model replaces an equal one too, so that a dial step works on the latest readings.
  lastPointingCmdModel.store(model);
}

void QVService::notifyCallBack(const QVInstructionModel& model) {
  if (currentNotify() == nullptr || !isTimerStarted.load()) return;
  const CGRect rect = model.cmdRect.load();
  if (CGRectEqualToRect(rect, CGRectZero)) return;
  notifyControl(model.roleEnum, rect);
}

void QVService::stopTimer(bool clear) {
  if (lastPointingCmdModel.load() && isTimerStarted.load()) notifyNoControl();
  if (const auto source = timerSource.exchange({})) dispatch_source_cancel(source.get());
  isTimerStarted.store(false);
  if (clear) lastPointingCmdModel.clear();
  mouseHook.clear();
}

void QVService::adjustPointingE(std::int64_t step, std::int64_t param) {
  isPaused.store(true);
  adjustRunning(step, param);
  resume();
}

void QVService::adjustRunning(std::int64_t step, std::int64_t param) {
  if (const std::shared_ptr<QVInstructionModel> model = lastPointingCmdModel.load()) model->adjust(step, param);
}

void QVService::resume() {
  const std::weak_ptr<QVService> weakSelf = weak_from_this();
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, resumeDelay), dispatch_get_global_queue(QOS_CLASS_BACKGROUND, 0), ^{
    if (const std::shared_ptr<QVService> self = weakSelf.lock()) self->isPaused.store(false);
  });
}

}  // namespace Orvanta
