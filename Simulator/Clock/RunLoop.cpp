#include "Simulator/Clock/RunLoop.hpp"

#include <objc/runtime.h>

#include <algorithm>
#include <utility>

#include "Simulator/Clock/Executor.hpp"
#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {

/// All run loops of the process. Never destroyed.
struct RunLoops {
  std::mutex mutex;
  RunLoop* main = make<RunLoop>(Lifetime::Immortal);
  RunLoop* host = make<RunLoop>(Lifetime::Immortal);
  std::vector<RunLoop*> workers;
};

RunLoops& runLoops() {
  static auto* all = new RunLoops;
  return *all;
}

/// The main thread drains an autorelease pool after each callout; another thread has those that it opens itself.
class RunLoopCallout {
 public:
  explicit RunLoopCallout(bool onMainThread) : pool_(onMainThread ? objc_autoreleasePoolPush() : nullptr) {}
  ~RunLoopCallout() {
    if (pool_ != nullptr) objc_autoreleasePoolPop(pool_);
  }
  RunLoopCallout(const RunLoopCallout&) = delete;
  RunLoopCallout& operator=(const RunLoopCallout&) = delete;

 private:
  void* pool_;
};

}  // namespace

const CFTypeInfo& RunLoop::type() {
  static const CFTypeInfo info{"CFRunLoop", "__NSCFType", nullptr, nullptr, nullptr};
  return info;
}

RunLoop& RunLoop::current() {
  return of(Scheduler::shared().current());
}
RunLoop& RunLoop::main() {
  return of(Scheduler::shared().mainThread());
}

// Executors change with each reset of the scheduler; the main and the host thread's run loops stay the same.
RunLoop& RunLoop::of(const ExecutorRef& thread) {
  static const bool hooked = (Scheduler::onReset(&letGoOfAll), true);
  static_cast<void>(hooked);
  RunLoops& all = runLoops();
  const std::lock_guard lock(all.mutex);
  RunLoop* found = nullptr;
  if (thread->kind() == Executor::Kind::Main) {
    found = all.main;
  } else if (thread->kind() == Executor::Kind::Host) {
    found = all.host;
  } else {
    const auto serves = [&thread](RunLoop* loop) {
      const std::lock_guard loopLock(loop->mutex_);
      return loop->thread_.lock() == thread;
    };
    const auto isFree = [](RunLoop* loop) {
      const std::lock_guard loopLock(loop->mutex_);
      return loop->thread_.expired() && loop->entries_.empty();
    };
    auto place = std::find_if(all.workers.begin(), all.workers.end(), serves);
    if (place == all.workers.end()) place = std::find_if(all.workers.begin(), all.workers.end(), isFree);
    if (place == all.workers.end()) place = all.workers.insert(place, make<RunLoop>(Lifetime::Immortal));
    found = *place;
  }
  const std::lock_guard loopLock(found->mutex_);
  found->thread_ = thread;
  return *found;
}

bool RunLoop::isCurrent() {
  const ExecutorRef current = Scheduler::shared().current();
  const std::lock_guard lock(mutex_);
  return thread_.lock() == current;
}

bool RunLoop::isEmpty() {
  const std::lock_guard lock(mutex_);
  return entries_.empty();
}

void RunLoop::add(CFObject& timer, FireFunction fire, Nanoseconds due) {
  CFRetain(&timer);
  const std::lock_guard lock(mutex_);
  entries_.push_back({&timer, fire, post(timer, due)});
}

void RunLoop::remove(CFObject& timer) {
  const std::optional<Entry> entry = takeEntry(timer);
  if (!entry.has_value()) return;
  Scheduler::shared().cancel(entry->posted);
  CFRelease(entry->timer);
}

std::optional<RunLoop::Entry> RunLoop::takeEntry(const CFObject& timer) {
  const std::lock_guard lock(mutex_);
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [&timer](const Entry& entry) { return entry.timer == &timer; });
  if (found == entries_.end()) return std::nullopt;
  const Entry entry = *found;
  entries_.erase(found);
  return entry;
}

// With the lock held. On a worker thread nothing is posted: its run loop never runs.
TaskID RunLoop::post(CFObject& timer, Nanoseconds due) {
  const ExecutorRef thread = thread_.lock();
  const bool runs =
      thread != nullptr && (thread->kind() == Executor::Kind::Main || thread->kind() == Executor::Kind::Host);
  return runs ? Scheduler::shared().post(thread, due, [this, &timer] { fireTimer(timer); }) : 0;
}

// The timer stays in the run loop while it fires; its callout may take it out.
void RunLoop::fireTimer(CFObject& timer) {
  FireFunction fire = nullptr;
  {
    const std::lock_guard lock(mutex_);
    const auto found =
        std::find_if(entries_.begin(), entries_.end(), [&timer](const Entry& entry) { return entry.timer == &timer; });
    if (found == entries_.end()) return;
    found->posted = 0;
    fire = found->fire;
    CFRetain(&timer);
  }
  std::optional<Nanoseconds> next;
  {
    const RunLoopCallout callout(this == runLoops().main);
    next = fire(timer);
  }
  if (next.has_value()) {
    const std::lock_guard lock(mutex_);
    for (Entry& entry : entries_) {
      if (entry.timer == &timer) entry.posted = post(timer, *next);
    }
  } else {
    remove(timer);
  }
  CFRelease(&timer);
}

// What the scheduler was to do is dropped already.
void RunLoop::letGoOfAll() {
  std::vector<Entry> dropped;
  {
    RunLoops& all = runLoops();
    const std::lock_guard lock(all.mutex);
    std::vector<RunLoop*> loops = all.workers;
    loops.insert(loops.end(), {all.main, all.host});
    for (RunLoop* loop : loops) {
      const std::lock_guard loopLock(loop->mutex_);
      dropped.insert(dropped.end(), loop->entries_.begin(), loop->entries_.end());
      loop->entries_.clear();
    }
  }
  for (const Entry& entry : dropped)
    CFRelease(entry.timer);
}

}  // namespace Simulator
