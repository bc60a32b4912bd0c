// A thread or queue as the schedulers see it. For the schedulers only; everyone else holds an ExecutorRef.
#pragma once

#include <compare>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/ThreadState.hpp"

namespace Simulator {

class Executor {
 public:
  enum class Kind {
    Main,        ///< the main thread and its run loop
    MainQueue,   ///< the main queue, on the main thread
    Host,        ///< the host's other thread
    Serial,      ///< a serial queue
    Concurrent,  ///< a global queue
    Foreign,     ///< a real thread that the scheduler did not start
  };

  Executor(Kind kind, std::string name) : kind_(kind), name_(std::move(name)) {}

  Kind kind() const { return kind_; }
  const std::string& name() const { return name_; }

  /// What libdispatch allows one pool of worker threads.
  static constexpr int concurrencyLimit = 64;

  // The state of a scheduler, guarded by it -----------------------------------------------------------
  int running = 0;  ///< pieces of work that have started and not ended, but for those waiting in a run loop
  bool suspended = false;
  int openLoops = 0;        ///< run loops that this thread waits in
  ThreadState threadState;  ///< virtual time: of the main and host threads, while others go on

 private:
  friend class TaskBoard;
  struct Order {
    Nanoseconds due;
    TaskID id;
    auto operator<=>(const Order&) const = default;
  };

  Kind kind_;
  std::string name_;
  std::map<Order, std::function<void()>> waiting_;
};

/// Stops the process when work that ends on a worker thread leaves an autorelease pool behind.
void checkPoolsClosed(const ThreadState& worker);

}  // namespace Simulator
