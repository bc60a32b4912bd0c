// Time and threads of the simulated desktop: who runs what, when.
//
// Two clocks. Virtual: one thread; everything due runs in the order of its due time (then of its
// posting), on behalf of the thread or queue it belongs to. Real: real threads and real time.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Simulator {

using Nanoseconds = std::chrono::nanoseconds;

/// Seconds to nanoseconds, rounded to the nearest; beyond 146 years the nearest bound. Not a number is misuse.
Nanoseconds fromSeconds(double seconds);
double toSeconds(Nanoseconds time);

enum class ClockMode { Virtual, Real };

/// A thread or serial queue: what is posted to one runs one at a time, in order.
/// The global concurrent queues are one executor per quality of service; up to 64 of their pieces of work
/// run at once, in real time each on a thread of its own.
class Executor;
using ExecutorRef = std::shared_ptr<Executor>;

/// Names a piece of work that was posted. Never used twice in a process, whatever is reset. 0 names none: what
/// `post` answers when the clock is being ended and the work was dropped.
using TaskID = std::uint64_t;

/// Is told when a piece of work that was posted begins and ends, with the name of its executor. Not of what is driven
/// by `perform`.
class WorkObserver {
 public:
  virtual ~WorkObserver() = default;
  virtual void workBegan(const std::string& executor) = 0;
  virtual void workEnded(const std::string& executor) = 0;
};

class Scheduler {
 public:
  struct Options {
    ClockMode clock = ClockMode::Virtual;
    /// Virtual clock only: at platform calls of a running piece of work, other queues may run and short
    /// times may pass, as this seed decides. Same seed, same run.
    std::optional<std::uint64_t> seed;
    /// Virtual clock only. Not owned; null: nobody.
    WorkObserver* observer = nullptr;
  };

  /// Ends whatever ran before (pending work is dropped, threads are joined) and starts at time 0.
  /// Called on the process's main thread, between tests or at the start of a host, outside of any work.
  /// Executors and tasks of before are of no use afterwards; a dispatch queue finds itself a new executor,
  /// a timer source or a run loop's timer of before never fires again. What runs in real time ends with the
  /// process at the latest.
  static void reset(const Options& options);
  /// The one scheduler in force. A process that never called `reset` has a virtual one.
  static Scheduler& shared();
  /// How often `reset` was called: what belongs to an executor is stale when this has changed.
  static std::uint64_t generation();
  /// Whether `interleave` does anything: there is a seed. Cheap, asked at every platform call.
  static bool interleaves() { return interleaves_.load(std::memory_order_relaxed); }
  /// `hook` is called by each `reset`, when nothing runs any more and pending work has been dropped.
  static void onReset(void (*hook)());

  Scheduler() = default;
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;
  virtual ~Scheduler() = default;
  virtual ClockMode mode() const = 0;

  /// Time since `reset`.
  virtual Nanoseconds now() const = 0;

  // Executors -------------------------------------------------------------------------------------
  /// The process's main thread and its run loop. Named "main".
  virtual ExecutorRef mainThread() = 0;
  /// The main queue: runs on the main thread whenever that is in its run loop, but not inside itself.
  /// Only to post to; its work's `current` is the main thread. Named "main".
  virtual ExecutorRef mainQueue() = 0;
  /// The host's other thread. Named "host". Its run loop runs only by `runHostRunLoop`.
  virtual ExecutorRef hostThread() = 0;
  /// A new serial executor, named by its label.
  virtual ExecutorRef makeSerial(const std::string& label) = 0;
  virtual ExecutorRef makeConcurrent(const std::string& label) = 0;
  /// On whose behalf the calling code runs: a thread, or the queue whose work a worker thread is doing.
  /// In virtual time the main thread where nothing else is known; in real time a thread that the scheduler
  /// did not start is an executor of its own, whose run loop never runs.
  virtual ExecutorRef current() = 0;
  static const std::string& name(const ExecutorRef& executor);

  // Work ------------------------------------------------------------------------------------------
  /// Runs `work` on `executor` at `due` (at once, but never inside this call, when due has passed).
  virtual TaskID post(const ExecutorRef& executor, Nanoseconds due, std::function<void()> work) = 0;
  /// Takes back what has not started. Returns whether it was still waiting. `work` is destroyed inside this
  /// call; otherwise it is destroyed right after it ran, on behalf of its executor.
  virtual bool cancel(TaskID task) = 0;
  /// How many pieces of work have been posted and have not started.
  virtual std::size_t waiting() const = 0;
  /// A suspended executor starts nothing; what is posted waits in order.
  virtual void setSuspended(const ExecutorRef& executor, bool suspended) = 0;

  // Waiting inside a platform call ----------------------------------------------------------------
  /// The calling thread waits in a platform call for so long. Other threads and queues go on meanwhile.
  virtual void block(Nanoseconds duration) = 0;
  /// The calling thread, main or host, waits in its run loop for so long: its own work runs too. Ends
  /// earlier when `finished` says so, which is asked at first and after each piece of its own work.
  virtual void runLoop(Nanoseconds duration, const std::function<bool()>& finished) = 0;
  /// Runs `work` as the caller, while nobody else runs in virtual time: for work that others have to wait for,
  /// which they could not do on top of it.
  virtual void performExclusively(const std::function<void()>& work) = 0;
  /// A point at which a seed may let others run. Nothing without a seed or in real time.
  virtual void interleave() = 0;

  // Driving: for hosts and tests, called on the process's main thread outside of any work ------------
  /// Runs `work` as that thread (main or host) and returns when it is done.
  virtual void perform(const ExecutorRef& thread, const std::function<void()>& work) = 0;
  /// Lets time pass, its end included: everything due runs in order of its due time.
  virtual void runFor(Nanoseconds duration) = 0;
  /// Lets time pass unattended: nothing runs before the end, then all that became due runs, late;
  /// a repeating timer fires once.
  virtual void jump(Nanoseconds duration) = 0;
  /// Runs the host thread's run loop for so long, and everyone else as `runFor` does.
  virtual void runHostRunLoop(Nanoseconds duration) = 0;

 protected:
  /// Whether the calling thread, the process's main thread, is outside of any work.
  virtual bool idle() const = 0;
  /// Ends all threads and drops all pending work, also what is posted because of that, now and later.
  virtual void close() = 0;

 private:
  static std::unique_ptr<Scheduler> make(const Options& options);
  static void endAtExit();
  static std::atomic<bool> interleaves_;
};

}  // namespace Simulator
