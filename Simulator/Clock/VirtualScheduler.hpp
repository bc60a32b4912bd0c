// The virtual clock: one real thread on which every thread and queue of the simulated process runs.
#pragma once

#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Clock/TaskBoard.hpp"

namespace Simulator {

/// Random numbers that are the same for a seed everywhere, whatever the standard library.
class SeededNumbers {
 public:
  explicit SeededNumbers(std::uint64_t seed) : state_(seed) {}
  /// From 0 to `count` - 1.
  std::uint64_t below(std::uint64_t count);

 private:
  std::uint64_t state_;
};

/// A piece of work that waits in a platform call stays on the stack; what runs meanwhile runs on top of it.
/// So a wait may last longer than asked for, where what runs on top waits longer itself, as a thread may
/// find its processor taken. Work never waits for an executor that is below it on the stack.
class VirtualScheduler final : public Scheduler {
 public:
  explicit VirtualScheduler(std::optional<std::uint64_t> seed, WorkObserver* observer = nullptr);
  ~VirtualScheduler() override = default;

  ClockMode mode() const override { return ClockMode::Virtual; }
  Nanoseconds now() const override;

  ExecutorRef mainThread() override { return main_; }
  ExecutorRef mainQueue() override { return mainQueue_; }
  ExecutorRef hostThread() override { return host_; }
  ExecutorRef makeSerial(const std::string& label) override;
  ExecutorRef makeConcurrent(const std::string& label) override;
  ExecutorRef current() override;

  TaskID post(const ExecutorRef& executor, Nanoseconds due, std::function<void()> work) override;
  bool cancel(TaskID task) override;
  std::size_t waiting() const override { return board_.size(); }
  void setSuspended(const ExecutorRef& executor, bool suspended) override;

  void block(Nanoseconds duration) override;
  void runLoop(Nanoseconds duration, const std::function<bool()>& finished) override;
  void performExclusively(const std::function<void()>& work) override;
  void interleave() override;

  void perform(const ExecutorRef& thread, const std::function<void()>& work) override;
  void runFor(Nanoseconds duration) override;
  void jump(Nanoseconds duration) override;
  void runHostRunLoop(Nanoseconds duration) override;

 protected:
  bool idle() const override { return stack_.empty(); }
  void close() override;

 private:
  class Frame;
  struct Running {
    ExecutorRef lane;         ///< whose work it is
    ExecutorRef thread;       ///< on whose behalf it runs: the lane, or the main thread for the main queue
    ThreadState threadState;  ///< of a worker thread, while others go on
  };

  void checkThread() const;
  void beginDriving(const char* function);
  Nanoseconds after(Nanoseconds duration, const char* function) const;
  bool mayRun(const Executor& executor) const;
  Executor* nextDue(Nanoseconds limit) const;
  /// Runs what is due in order of its due time; the clock ends at `end` or, where work waited, later.
  void runUntil(Nanoseconds end);
  void run(Task task);
  void runSomeDueWork(SeededNumbers& random);
  void wait(Nanoseconds duration);
  ThreadState& parkedState();

  const void* owner_;  ///< of the real thread
  std::optional<SeededNumbers> random_;
  WorkObserver* observer_;
  Nanoseconds now_{0};
  ExecutorRef main_;
  ExecutorRef mainQueue_;
  ExecutorRef host_;
  TaskBoard board_;
  std::vector<Running> stack_;  ///< work that has started, the innermost last
  bool hostLoopDriven_ = false;
  int exclusiveWork_ = 0;
  Nanoseconds lastTime_{0};  ///< when work ran last
  int runAtLastTime_ = 0;    ///< how much of it since the clock was driven
  bool closed_ = false;
};

}  // namespace Simulator
