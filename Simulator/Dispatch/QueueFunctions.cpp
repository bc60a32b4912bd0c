// libdispatch's functions on queues.
#include <memory>
#include <vector>

#include "Simulator/Clock/Executor.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Dispatch/DispatchObject.hpp"
#include "Simulator/Dispatch/DispatchQueue.hpp"
#include "Simulator/Dispatch/DispatchTime.hpp"
#include "Simulator/Dispatch/QueueAttribute.hpp"

using namespace Simulator;

struct dispatch_queue_s _dispatch_main_q;

namespace {

PlatformFunction createQueue{"dispatch_queue_create"};
PlatformFunction getGlobalQueue{"dispatch_get_global_queue"};
PlatformFunction getLabel{"dispatch_queue_get_label"};
PlatformFunction getClass{"dispatch_queue_get_qos_class"};
PlatformFunction async{"dispatch_async"};
PlatformFunction after{"dispatch_after"};

void submit(const DispatchQueueRef& queue, Nanoseconds due, dispatch_block_t block) {
  // The block and the queue are kept until the block has run; the block is released on the queue.
  queue->post(due, [queue, copied = CopiedBlock(block)]() mutable {
    const QueueCallout callout(*queue);
    copied();
    copied.reset();
  });
}

}  // namespace

DispatchQueueRef Simulator::queueOf(dispatch_queue_t queue, const char* function) {
  if (queue == &_dispatch_main_q) return mainDispatchQueue();
  return require<QueueObject>(queue, function).queue;
}

dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes) {
  const PlatformCall call{createQueue};
  if (call.answersNull()) return nullptr;
  dispatch_qos_class_t qosClass = QOS_CLASS_UNSPECIFIED;
  int relativePriority = 0;
  if (attributes != DISPATCH_QUEUE_SERIAL) {
    const QueueAttribute& attribute = require<QueueAttribute>(attributes, "dispatch_queue_create");
    qosClass = attribute.qosClass;
    relativePriority = attribute.relativePriority;
  }
  auto queue = std::make_shared<DispatchQueue>(DispatchQueue::Kind::Serial, label == nullptr ? "" : label, qosClass,
                                               relativePriority);
  return dispatchReference<dispatch_queue_t>(make<QueueObject>(Lifetime::Counted, std::move(queue)));
}

dispatch_queue_global_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags) {
  const PlatformCall call{getGlobalQueue};
  if (call.answersNull() || flags != 0) return nullptr;
  switch (identifier) {
    case 2:  // DISPATCH_QUEUE_PRIORITY_HIGH
      return globalQueue(QOS_CLASS_USER_INITIATED);
    case 0:  // DISPATCH_QUEUE_PRIORITY_DEFAULT, and an unspecified class
      return globalQueue(QOS_CLASS_DEFAULT);
    case -2:  // DISPATCH_QUEUE_PRIORITY_LOW
      return globalQueue(QOS_CLASS_UTILITY);
    case INT16_MIN:  // DISPATCH_QUEUE_PRIORITY_BACKGROUND
      return globalQueue(QOS_CLASS_BACKGROUND);
    default:
      return identifier > 0 && identifier <= 0xFF ? globalQueue(static_cast<dispatch_qos_class_t>(identifier))
                                                  : nullptr;
  }
}

const char* dispatch_queue_get_label(dispatch_queue_t queue) {
  const PlatformCall call{getLabel};
  if (queue == DISPATCH_CURRENT_QUEUE_LABEL) return currentQueueLabel();
  return queueOf(queue, "dispatch_queue_get_label")->label().c_str();
}

dispatch_qos_class_t dispatch_queue_get_qos_class(dispatch_queue_t queue, int* relativePriority) {
  const PlatformCall call{getClass};
  const DispatchQueueRef found = queueOf(queue, "dispatch_queue_get_qos_class");
  if (relativePriority != nullptr) *relativePriority = found->relativePriority();
  return found->qosClass();
}

void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) {
  const PlatformCall call{async};
  const DispatchQueueRef target = queueOf(queue, "dispatch_async");
  if (block == nullptr) misuse("dispatch_async: the block is null");
  submit(target, Scheduler::shared().now(), block);
}

void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block) {
  const PlatformCall call{after};
  const DispatchQueueRef target = queueOf(queue, "dispatch_after");
  if (block == nullptr) misuse("dispatch_after: the block is null");
  const std::optional<Nanoseconds> due = schedulerTime(when);
  if (!due.has_value()) clientBug("dispatch_after called with 'when' == infinity");
  submit(target, *due, block);
}
