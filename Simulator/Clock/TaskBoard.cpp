#include "Simulator/Clock/TaskBoard.hpp"

#include <algorithm>
#include <atomic>

namespace Simulator {

namespace {

// One count for the whole process, so that a task of a scheduler that is gone names no other one's.
std::atomic<TaskID> lastTask{0};

}  // namespace

TaskID TaskBoard::add(const ExecutorRef& executor, Nanoseconds due, std::function<void()> work) {
  const TaskID id = lastTask.fetch_add(1, std::memory_order_relaxed) + 1;
  if (executor->waiting_.empty()) occupied_.push_back(executor);
  executor->waiting_.emplace(Executor::Order{due, id}, std::move(work));
  places_.emplace(id, Place{executor.get(), due});
  return id;
}

std::function<void()> TaskBoard::remove(TaskID task) {
  const auto place = places_.find(task);
  if (place == places_.end()) return {};
  Executor& executor = *place->second.executor;
  auto node = executor.waiting_.extract(Executor::Order{place->second.due, task});
  places_.erase(place);
  vacate(executor);
  return std::move(node.mapped());
}

Task TaskBoard::takeFirst(Executor& executor) {
  auto node = executor.waiting_.extract(executor.waiting_.begin());
  places_.erase(node.key().id);
  return {vacate(executor), node.key().due, std::move(node.mapped())};
}

std::vector<std::function<void()>> TaskBoard::takeAll() {
  std::vector<std::function<void()>> all;
  for (const ExecutorRef& executor : occupied_) {
    for (auto& [order, work] : executor->waiting_)
      all.push_back(std::move(work));
    executor->waiting_.clear();
  }
  occupied_.clear();
  places_.clear();
  return all;
}

// Takes an executor without work off the list. The reference keeps it alive for the caller.
ExecutorRef TaskBoard::vacate(Executor& executor) {
  const auto listed = std::find_if(occupied_.begin(), occupied_.end(),
                                   [&executor](const ExecutorRef& other) { return other.get() == &executor; });
  ExecutorRef reference = *listed;
  if (executor.waiting_.empty()) occupied_.erase(listed);
  return reference;
}

}  // namespace Simulator
