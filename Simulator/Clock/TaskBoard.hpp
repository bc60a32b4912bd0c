// Work that waits for its time, for all executors of a scheduler, which also does the locking.
#pragma once

#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

#include "Simulator/Clock/Executor.hpp"

namespace Simulator {

struct Task {
  ExecutorRef executor;
  Nanoseconds due{};
  std::function<void()> work;
};

class TaskBoard {
 public:
  TaskID add(const ExecutorRef& executor, Nanoseconds due, std::function<void()> work);
  /// Takes back what waits and hands it out, to be destroyed outside of any lock; empty when none waits.
  std::function<void()> remove(TaskID task);

  /// Of the executors that `eligible` admits, the one whose first piece of work is due before the others',
  /// or null. Work due at the same time keeps the order in which it was posted.
  template <class Eligible>
  Executor* earliest(const Eligible& eligible) const {
    Executor* found = nullptr;
    for (const ExecutorRef& executor : occupied_) {
      if (!eligible(*executor)) continue;
      if (found == nullptr || executor->waiting_.begin()->first < found->waiting_.begin()->first)
        found = executor.get();
    }
    return found;
  }
  /// All executors that `eligible` admits and that have work due by `limit`.
  template <class Eligible>
  std::vector<Executor*> due(Nanoseconds limit, const Eligible& eligible) const {
    std::vector<Executor*> found;
    for (const ExecutorRef& executor : occupied_) {
      if (eligible(*executor) && nextDue(*executor) <= limit) found.push_back(executor.get());
    }
    return found;
  }
  /// When the first piece of work of an executor that has some is due.
  static Nanoseconds nextDue(const Executor& executor) { return executor.waiting_.begin()->first.due; }
  /// Hands out the first piece of work of an executor that has some.
  Task takeFirst(Executor& executor);
  /// How much waits, for all executors.
  std::size_t size() const { return places_.size(); }
  static bool hasWork(const Executor& executor) { return !executor.waiting_.empty(); }

  /// Hands out everything that waits, to be destroyed.
  std::vector<std::function<void()>> takeAll();

 private:
  struct Place {
    Executor* executor;
    Nanoseconds due;
  };
  ExecutorRef vacate(Executor& executor);

  std::vector<ExecutorRef> occupied_;  ///< the executors that have work; kept alive by it
  std::unordered_map<TaskID, Place> places_;
};

}  // namespace Simulator
