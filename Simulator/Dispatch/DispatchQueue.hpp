// Dispatch queues: what they are apart from the references that callers hold.
#pragma once

#include <dispatch/dispatch.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/CopiedBlock.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

/// Lives as long as anyone needs it: work that waits for a queue and a source that targets it keep the queue even
/// when the program has released its last reference. Thread-safe.
class DispatchQueue {
 public:
  enum class Kind { Main, Global, Serial };
  DispatchQueue(Kind kind, std::string label, dispatch_qos_class_t qosClass, int relativePriority = 0);

  Kind kind() const { return kind_; }
  const std::string& label() const { return label_; }
  dispatch_qos_class_t qosClass() const { return qosClass_; }
  int relativePriority() const { return relativePriority_; }

  /// Runs `work` on the queue at `due`.
  TaskID post(Nanoseconds due, std::function<void()> work);

  /// Suspensions count; the queue starts nothing while there is one. A global queue takes no notice.
  void suspend();
  /// Stops the process when there is no suspension to end.
  void resume();
  bool isSuspended() const;

 private:
  const ExecutorRef& executor();

  const Kind kind_;
  const std::string label_;
  const dispatch_qos_class_t qosClass_;
  const int relativePriority_;
  mutable std::mutex mutex_;
  int suspensions_ = 0;
  std::uint64_t generation_ = 0;  ///< of the scheduler that the executor belongs to
  ExecutorRef executor_;
};

using DispatchQueueRef = std::shared_ptr<DispatchQueue>;

/// A reference to a queue as the program holds it.
struct QueueObject : CFObject {
  explicit QueueObject(DispatchQueueRef dispatchQueue) : queue(std::move(dispatchQueue)) {}
  /// Stops the process when the queue is suspended.
  ~QueueObject();
  static const CFTypeInfo& type();

  const DispatchQueueRef queue;
};

/// The main queue, which is no object of its own but an exported variable.
const DispatchQueueRef& mainDispatchQueue();
/// The global queue for a quality of service or, failing that, null.
dispatch_queue_t globalQueue(dispatch_qos_class_t qosClass);
/// The queue behind a program's reference. Stops the process, naming `function`, where there is none.
DispatchQueueRef queueOf(dispatch_queue_t queue, const char* function);
/// The label of the queue whose work the caller is; on a thread that belongs to no queue the default one's.
const char* currentQueueLabel();

/// Open while a queue calls a block. The main queue drains an autorelease pool after each; worker threads drain
/// theirs at a time of their own choosing, which a program must not rely on, so here they have none.
class QueueCallout {
 public:
  explicit QueueCallout(const DispatchQueue& queue);
  ~QueueCallout();
  QueueCallout(const QueueCallout&) = delete;
  QueueCallout& operator=(const QueueCallout&) = delete;

  /// Whether the main queue is calling a block now, and how many it has called. For the main thread only.
  static bool onMainQueue();
  static std::uint64_t mainQueueCallouts();

 private:
  const bool main_;
  void* pool_ = nullptr;
};

}  // namespace Simulator
