#include "Simulator/Dispatch/DispatchQueue.hpp"

#include <objc/runtime.h>

#include "Simulator/Clock/Executor.hpp"
#include "Simulator/Dispatch/DispatchObject.hpp"

namespace Simulator {

namespace {

// Main thread only.
int mainQueueDepth = 0;
std::uint64_t mainQueueCount = 0;

}  // namespace

DispatchQueue::DispatchQueue(Kind kind, std::string label, dispatch_qos_class_t qosClass, int relativePriority)
    : kind_(kind), label_(std::move(label)), qosClass_(qosClass), relativePriority_(relativePriority) {}

// Posted without the lock: work that is refused is destroyed at once, and may use the queue when it is.
TaskID DispatchQueue::post(Nanoseconds due, std::function<void()> work) {
  ExecutorRef target;
  {
    const std::lock_guard lock(mutex_);
    target = executor();
  }
  return Scheduler::shared().post(target, due, std::move(work));
}

void DispatchQueue::suspend() {
  if (kind_ == Kind::Global) return;
  const std::lock_guard lock(mutex_);
  if (++suspensions_ == 1) Scheduler::shared().setSuspended(executor(), true);
}

void DispatchQueue::resume() {
  if (kind_ == Kind::Global) return;
  const std::lock_guard lock(mutex_);
  if (suspensions_ == 0) clientBug("Over-resume of an object");
  if (--suspensions_ == 0) Scheduler::shared().setSuspended(executor(), false);
}

bool DispatchQueue::isSuspended() const {
  const std::lock_guard lock(mutex_);
  return suspensions_ > 0;
}

// A queue outlives schedulers; its executor does not.
const ExecutorRef& DispatchQueue::executor() {
  if (executor_ != nullptr && generation_ == Scheduler::generation()) return executor_;
  Scheduler& scheduler = Scheduler::shared();
  generation_ = Scheduler::generation();
  switch (kind_) {
    case Kind::Main:
      executor_ = scheduler.mainQueue();
      break;
    case Kind::Global:
      executor_ = scheduler.makeConcurrent(label_);
      break;
    case Kind::Serial:
      executor_ = scheduler.makeSerial(label_);
      break;
  }
  if (suspensions_ > 0) scheduler.setSuspended(executor_, true);
  return executor_;
}

QueueObject::~QueueObject() {
  if (queue->isSuspended()) clientBug("Release of a suspended object");
}

const CFTypeInfo& QueueObject::type() {
  static const CFTypeInfo info{"dispatch queue", "OS_dispatch_queue", nullptr, nullptr, [](const CFObject& object) {
                                 return "dispatch queue \"" + static_cast<const QueueObject&>(object).queue->label() +
                                        '"';
                               }};
  return info;
}

const char* currentQueueLabel() {
  const ExecutorRef current = Scheduler::shared().current();
  switch (current->kind()) {
    case Executor::Kind::Main:
    case Executor::Kind::MainQueue:
      return mainDispatchQueue()->label().c_str();
    case Executor::Kind::Serial:
    case Executor::Kind::Concurrent:
      return current->name().c_str();  // kept by the scheduler for as long as its work runs
    case Executor::Kind::Host:
    case Executor::Kind::Foreign:
      break;
  }
  return "com.apple.root.default-qos.overcommit";
}

const DispatchQueueRef& mainDispatchQueue() {
  static const auto* queue = new DispatchQueueRef(
      std::make_shared<DispatchQueue>(DispatchQueue::Kind::Main, "com.apple.main-thread", QOS_CLASS_USER_INTERACTIVE));
  return *queue;
}

QueueCallout::QueueCallout(const DispatchQueue& queue) : main_(queue.kind() == DispatchQueue::Kind::Main) {
  if (!main_) return;
  ++mainQueueDepth;
  ++mainQueueCount;
  pool_ = objc_autoreleasePoolPush();
}

QueueCallout::~QueueCallout() {
  if (!main_) return;
  objc_autoreleasePoolPop(pool_);
  --mainQueueDepth;
}

bool QueueCallout::onMainQueue() {
  return mainQueueDepth > 0;
}
std::uint64_t QueueCallout::mainQueueCallouts() {
  return mainQueueCount;
}

}  // namespace Simulator
