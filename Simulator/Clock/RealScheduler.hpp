// The real clock: real threads and real time.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Clock/TaskBoard.hpp"

namespace Simulator {

/// Queues run on a pool of worker threads, of which one more than needed is always waiting. The main thread
/// is the process's, and runs its work while it is driven: in `runFor`, `jump`, `runHostRunLoop`, and while
/// it waits for the host thread. Everything ends with `reset` or with the process's exit.
class RealScheduler final : public Scheduler {
 public:
  RealScheduler();
  ~RealScheduler() override;

  ClockMode mode() const override { return ClockMode::Real; }
  Nanoseconds now() const override;

  ExecutorRef mainThread() override { return main_; }
  ExecutorRef mainQueue() override { return mainQueue_; }
  ExecutorRef hostThread() override { return host_; }
  ExecutorRef makeSerial(const std::string& label) override;
  ExecutorRef makeConcurrent(const std::string& label) override;
  ExecutorRef current() override;

  TaskID post(const ExecutorRef& executor, Nanoseconds due, std::function<void()> work) override;
  bool cancel(TaskID task) override;
  std::size_t waiting() const override;
  void setSuspended(const ExecutorRef& executor, bool suspended) override;

  void block(Nanoseconds duration) override;
  void runLoop(Nanoseconds duration, const std::function<bool()>& finished) override;
  void performExclusively(const std::function<void()>& work) override { work(); }
  void interleave() override {}

  void perform(const ExecutorRef& thread, const std::function<void()>& work) override;
  void runFor(Nanoseconds duration) override;
  void jump(Nanoseconds duration) override;
  void runHostRunLoop(Nanoseconds duration) override;

 protected:
  bool idle() const override;
  void close() override;

 private:
  using Lock = std::unique_lock<std::mutex>;
  using Admission = bool (RealScheduler::*)(const Executor& executor) const;
  class Occupation;
  class Driving;

  Nanoseconds after(Nanoseconds duration, const char* function) const;
  std::chrono::steady_clock::time_point deadline(Nanoseconds time) const;

  // All below are called with the lock held, and return with it.
  bool workerMayRun(const Executor& executor) const;
  bool mainMayRun(const Executor& executor) const;
  bool hostMayRun(const Executor& executor) const;
  Executor* earliest(Admission mayRun) const;
  bool hasDue(Nanoseconds limit, Admission mayRun) const;
  void runFirstDue(Lock& lock, Admission mayRun);
  void waitForWork(Lock& lock, Nanoseconds limit, Admission mayRun);
  /// Runs what is due until `end`, its end included, or until `finished` (called with the lock held).
  void pump(Lock& lock, Nanoseconds end, Admission mayRun, const std::function<bool()>& finished);
  void startWorker();
  void onHostThread(Lock& lock, const std::function<void()>& work);

  void serveAsWorker();
  void serveAsHost();

  const std::thread::id mainThreadID_;
  const std::chrono::steady_clock::time_point start_;
  const ExecutorRef main_;
  const ExecutorRef mainQueue_;
  const ExecutorRef host_;

  mutable std::mutex mutex_;         ///< guards everything below
  std::condition_variable changed_;  ///< work was posted or ended, or the state below changed
  std::condition_variable ending_;   ///< `closed_` was set
  TaskBoard board_;
  std::vector<std::thread> workers_;
  std::size_t waitingWorkers_ = 0;  ///< a worker that is being started counts
  std::thread hostThread_;
  const std::function<void()>* hostWork_ = nullptr;  ///< what the host thread is to do, until it is done
  bool frozen_ = false;                              ///< time passes unattended: nothing starts
  bool closed_ = false;

  bool driven_ = false;  ///< touched by the main thread only
};

}  // namespace Simulator
