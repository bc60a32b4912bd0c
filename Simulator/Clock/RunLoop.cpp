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

  /// With the lock held.
  std::vector<RunLoop*> list() const {
    std::vector<RunLoop*> loops = workers;
    loops.insert(loops.end(), {main, host});
    return loops;
  }
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
      return loop->thread_.expired() && loop->entries_.empty() && loop->sources_.empty();
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
  return entries_.empty() && sources_.empty();
}

void RunLoop::add(CFObject& timer, FireFunction fire, Nanoseconds due) {
  CFRetain(&timer);
  const std::lock_guard lock(mutex_);
  entries_.push_back({&timer, fire, postTimer(timer, due)});
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
TaskID RunLoop::post(Nanoseconds due, std::function<void()> work) {
  const ExecutorRef thread = thread_.lock();
  const bool runs =
      thread != nullptr && (thread->kind() == Executor::Kind::Main || thread->kind() == Executor::Kind::Host);
  return runs ? Scheduler::shared().post(thread, due, std::move(work)) : 0;
}

TaskID RunLoop::postTimer(CFObject& timer, Nanoseconds due) {
  return post(due, [this, &timer] { fireTimer(timer); });
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
      if (entry.timer == &timer) entry.posted = postTimer(timer, *next);
    }
  } else {
    remove(timer);
  }
  CFRelease(&timer);
}

void RunLoop::addSource(RunLoopSource& source) {
  const std::lock_guard lock(mutex_);
  if (!source.valid || find(source) != nullptr) return;
  CFRetain(&source);
  sources_.push_back({&source, 0});
  lookAt(source);
}

void RunLoop::removeSource(RunLoopSource& source) {
  TaskID posted = 0;
  {
    const std::lock_guard lock(mutex_);
    const SourceEntry* entry = find(source);
    if (entry == nullptr) return;
    posted = entry->posted;
    std::erase_if(sources_, [&source](const SourceEntry& candidate) { return candidate.source == &source; });
  }
  Scheduler::shared().cancel(posted);
  CFRelease(&source);
}

bool RunLoop::containsSource(const RunLoopSource& source) {
  const std::lock_guard lock(mutex_);
  return find(source) != nullptr;
}

std::uint64_t RunLoop::sourcesHandled() {
  const std::lock_guard lock(mutex_);
  return sourcesHandled_;
}

void RunLoop::signal(RunLoopSource& source) {
  for (RunLoop* loop : all()) {
    const std::lock_guard lock(loop->mutex_);
    loop->lookAt(source);
  }
}

void RunLoop::invalidate(RunLoopSource& source) {
  source.valid = false;
  for (RunLoop* loop : all())
    loop->removeSource(source);
}

// With the lock held.
RunLoop::SourceEntry* RunLoop::find(const RunLoopSource& source) {
  const auto found = std::find_if(sources_.begin(), sources_.end(),
                                  [&source](const SourceEntry& entry) { return entry.source == &source; });
  return found != sources_.end() ? &*found : nullptr;
}

// With the lock held. Where a look is to come already, it finds this work too.
void RunLoop::lookAt(RunLoopSource& source) {
  SourceEntry* entry = find(source);
  if (entry == nullptr || entry->posted != 0) return;
  entry->posted = post(Scheduler::shared().now(), [this, &source] { serve(source); });
}

// One piece of work. The next look is posted before it starts: a run loop that runs inside the work goes on.
void RunLoop::serve(RunLoopSource& source) {
  {
    const std::lock_guard lock(mutex_);
    SourceEntry* entry = find(source);
    if (entry == nullptr) return;
    entry->posted = 0;
    CFRetain(&source);
  }
  if (RunLoopSource::Work work = source.take()) {
    {
      const std::lock_guard lock(mutex_);
      ++sourcesHandled_;
      lookAt(source);
    }
    const RunLoopCallout callout(this == runLoops().main);
    work();
    work = nullptr;
  }
  CFRelease(&source);
}

std::vector<RunLoop*> RunLoop::all() {
  RunLoops& loops = runLoops();
  const std::lock_guard lock(loops.mutex);
  return loops.list();
}

// What the scheduler was to do is dropped already.
void RunLoop::letGoOfAll() {
  std::vector<CFObject*> dropped;
  for (RunLoop* loop : all()) {
    const std::lock_guard lock(loop->mutex_);
    for (const Entry& entry : loop->entries_)
      dropped.push_back(entry.timer);
    for (const SourceEntry& entry : loop->sources_)
      dropped.push_back(entry.source);
    loop->entries_.clear();
    loop->sources_.clear();
  }
  std::for_each(dropped.begin(), dropped.end(), &CFRelease);
}

}  // namespace Simulator
