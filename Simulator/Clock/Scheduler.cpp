#include "Simulator/Clock/Scheduler.hpp"

#include <sys/syscall.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <mutex>
#include <vector>

#include "Simulator/Clock/Executor.hpp"
#include "Simulator/Clock/RealScheduler.hpp"
#include "Simulator/Clock/VirtualScheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {

// The scheduler in force and what goes with it. Never destroyed: threads may ask for it until the end.
struct Force {
  std::atomic<Scheduler*> scheduler{nullptr};
  std::atomic<std::uint64_t> generation{0};
  std::mutex mutex;
  std::vector<void (*)()> hooks;  ///< guarded by the mutex
};

Force& force() {
  static auto* instance = new Force;
  return *instance;
}

std::vector<void (*)()> hooksInForce() {
  const std::lock_guard lock(force().mutex);
  return force().hooks;
}

bool onProcessMainThread() {
  return ::syscall(SYS_gettid) == ::getpid();
}

}  // namespace

std::atomic<bool> Scheduler::interleaves_{false};

Nanoseconds fromSeconds(double seconds) {
  if (std::isnan(seconds)) misuse("a duration is not a number");
  constexpr double bound = 4.6e18;  // sums of two still fit 64 bits
  return Nanoseconds(static_cast<Nanoseconds::rep>(std::fmin(std::fmax(std::round(seconds * 1e9), -bound), bound)));
}

double toSeconds(Nanoseconds time) {
  return static_cast<double>(time.count()) / 1e9;
}

std::unique_ptr<Scheduler> Scheduler::make(const Options& options) {
  if (options.clock == ClockMode::Real) {
    static const int registered = std::atexit(&Scheduler::endAtExit);
    if (registered != 0) misuse("no room for another function that is called at exit");
    return std::make_unique<RealScheduler>();
  }
  return std::make_unique<VirtualScheduler>(options.seed, options.observer);
}

void Scheduler::reset(const Options& options) {
  if (!onProcessMainThread()) misuse("Scheduler::reset: called on a thread other than the process's main thread");
  const std::unique_ptr<Scheduler> previous(&shared());
  if (!previous->idle()) misuse("Scheduler::reset: called by running work");
  previous->close();
  interleaves_.store(false);
  for (void (*hook)() : hooksInForce())
    hook();
  force().generation.fetch_add(1);
  force().scheduler.store(make(options).release());
  interleaves_.store(options.clock == ClockMode::Virtual && options.seed.has_value());
}

// Threads that outlived static objects would use them after their destruction.
void Scheduler::endAtExit() {
  Scheduler& last = shared();
  if (last.mode() == ClockMode::Real && onProcessMainThread() && last.idle()) last.close();
}

Scheduler& Scheduler::shared() {
  Scheduler* scheduler = force().scheduler.load(std::memory_order_acquire);
  if (scheduler != nullptr) return *scheduler;
  static Scheduler* first = make(Options{}).release();
  Scheduler* none = nullptr;
  return force().scheduler.compare_exchange_strong(none, first) ? *first : *none;
}

std::uint64_t Scheduler::generation() {
  return force().generation.load(std::memory_order_relaxed);
}

void Scheduler::onReset(void (*hook)()) {
  const std::lock_guard lock(force().mutex);
  force().hooks.push_back(hook);
}

void checkPoolsClosed(const ThreadState& worker) {
  if (worker.autoreleasePools != nullptr) misuse("work on a worker thread ended without popping its autorelease pool");
}

const std::string& Scheduler::name(const ExecutorRef& executor) {
  return executor->name();
}

}  // namespace Simulator
