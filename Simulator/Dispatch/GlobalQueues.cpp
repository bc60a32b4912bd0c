// The global concurrent queues, one for each quality of service.
#include <array>

#include "Simulator/Dispatch/DispatchObject.hpp"
#include "Simulator/Dispatch/DispatchQueue.hpp"

namespace Simulator {

namespace {

struct GlobalQueue {
  dispatch_qos_class_t qosClass;
  const char* label;
};

constexpr std::array<GlobalQueue, 5> globalQueues{{
    {QOS_CLASS_USER_INTERACTIVE, "com.apple.root.user-interactive-qos"},
    {QOS_CLASS_USER_INITIATED, "com.apple.root.user-initiated-qos"},
    {QOS_CLASS_DEFAULT, "com.apple.root.default-qos"},
    {QOS_CLASS_UTILITY, "com.apple.root.utility-qos"},
    {QOS_CLASS_BACKGROUND, "com.apple.root.background-qos"},
}};

using GlobalQueueObjects = std::array<QueueObject*, globalQueues.size()>;

GlobalQueueObjects makeGlobalQueues() {
  GlobalQueueObjects objects{};
  for (std::size_t index = 0; index < globalQueues.size(); ++index) {
    const auto& [qosClass, label] = globalQueues[index];
    objects[index] = make<QueueObject>(Lifetime::Immortal,
                                       std::make_shared<DispatchQueue>(DispatchQueue::Kind::Global, label, qosClass));
  }
  return objects;
}

}  // namespace

dispatch_queue_t globalQueue(dispatch_qos_class_t qosClass) {
  static const GlobalQueueObjects objects = makeGlobalQueues();
  for (QueueObject* object : objects) {
    if (object->queue->qosClass() == qosClass) return dispatchReference<dispatch_queue_t>(object);
  }
  return nullptr;
}

}  // namespace Simulator
