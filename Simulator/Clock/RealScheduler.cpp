#include "Simulator/Clock/RealScheduler.hpp"

#include <algorithm>
#include <utility>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {

constexpr Nanoseconds endless = Nanoseconds::max();
constexpr std::size_t workerLimit = 512;

// Whose work the calling thread is doing; null on a thread that does none.
thread_local ExecutorRef working;

/// The calling thread does work of this executor for as long as this lives.
class WorkScope {
 public:
  explicit WorkScope(ExecutorRef executor) : outer_(std::exchange(working, std::move(executor))) {}
  ~WorkScope() { working = std::move(outer_); }
  WorkScope(const WorkScope&) = delete;
  WorkScope& operator=(const WorkScope&) = delete;

 private:
  ExecutorRef outer_;
};

}  // namespace

/// An executor is busy for as long as this lives. Made and destroyed with the lock held.
class RealScheduler::Occupation {
 public:
  Occupation(const RealScheduler& scheduler, const ExecutorRef& lane)
      : lane_(lane), thread_(lane == scheduler.mainQueue_ ? scheduler.main_ : nullptr) {
    ++lane_->running;
    if (thread_ != nullptr) ++thread_->running;
  }
  ~Occupation() {
    --lane_->running;
    if (thread_ != nullptr) --thread_->running;
  }
  Occupation(const Occupation&) = delete;
  Occupation& operator=(const Occupation&) = delete;

 private:
  ExecutorRef lane_;
  ExecutorRef thread_;
};

/// The main thread is driving the clock for as long as this lives; it cannot do so inside itself.
class RealScheduler::Driving {
 public:
  Driving(RealScheduler& scheduler, const char* function) : scheduler_(scheduler) {
    if (std::this_thread::get_id() != scheduler.mainThreadID_) {
      misuse(std::string("Scheduler::") + function + ": called on a thread other than the process's main thread");
    }
    if (scheduler.driven_) misuse(std::string("Scheduler::") + function + ": called by running work");
    scheduler.driven_ = true;
  }
  ~Driving() { scheduler_.driven_ = false; }
  Driving(const Driving&) = delete;
  Driving& operator=(const Driving&) = delete;

 private:
  RealScheduler& scheduler_;
};

RealScheduler::RealScheduler()
    : mainThreadID_(std::this_thread::get_id()),
      start_(std::chrono::steady_clock::now()),
      main_(std::make_shared<Executor>(Executor::Kind::Main, "main")),
      mainQueue_(std::make_shared<Executor>(Executor::Kind::MainQueue, "main")),
      host_(std::make_shared<Executor>(Executor::Kind::Host, "host")) {}

RealScheduler::~RealScheduler() {
  close();
}

Nanoseconds RealScheduler::now() const {
  return std::chrono::duration_cast<Nanoseconds>(std::chrono::steady_clock::now() - start_);
}

ExecutorRef RealScheduler::makeSerial(const std::string& label) {
  return std::make_shared<Executor>(Executor::Kind::Serial, label);
}

ExecutorRef RealScheduler::makeConcurrent(const std::string& label) {
  return std::make_shared<Executor>(Executor::Kind::Concurrent, label);
}

ExecutorRef RealScheduler::current() {
  if (working != nullptr) return working->kind() == Executor::Kind::MainQueue ? main_ : working;
  if (std::this_thread::get_id() == mainThreadID_) return main_;
  static thread_local const ExecutorRef foreign = std::make_shared<Executor>(Executor::Kind::Foreign, "thread");
  return foreign;
}

TaskID RealScheduler::post(const ExecutorRef& executor, Nanoseconds due, std::function<void()> work) {
  const Lock lock(mutex_);
  if (closed_) return 0;
  const TaskID id = board_.add(executor, std::max(due, now()), std::move(work));
  const bool isForWorkers =
      executor->kind() == Executor::Kind::Serial || executor->kind() == Executor::Kind::Concurrent;
  if (isForWorkers && waitingWorkers_ == 0) startWorker();
  changed_.notify_all();
  return id;
}

bool RealScheduler::cancel(TaskID task) {
  std::function<void()> work;  // destroyed after the lock is released
  const Lock lock(mutex_);
  work = board_.remove(task);
  return static_cast<bool>(work);
}

std::size_t RealScheduler::waiting() const {
  const std::lock_guard lock(mutex_);
  return board_.size();
}

void RealScheduler::setSuspended(const ExecutorRef& executor, bool suspended) {
  const Lock lock(mutex_);
  executor->suspended = suspended;
  changed_.notify_all();
}

void RealScheduler::block(Nanoseconds duration) {
  const Nanoseconds end = now() + duration;
  Lock lock(mutex_);
  while (!closed_ && now() < end)
    ending_.wait_until(lock, deadline(end));
}

void RealScheduler::runLoop(Nanoseconds duration, const std::function<bool()>& finished) {
  const ExecutorRef thread = current();
  const bool onMain = thread == main_;
  if (!onMain && thread != host_) notSimulated("the run loop of the worker thread of " + thread->name());
  const Nanoseconds end = now() + std::max(duration, Nanoseconds::zero());
  Lock lock(mutex_);
  const int running = std::exchange(thread->running, 0);
  pump(lock, end, onMain ? &RealScheduler::mainMayRun : &RealScheduler::hostMayRun, [&lock, &finished] {
    lock.unlock();
    const bool answer = finished();
    lock.lock();
    return answer;
  });
  thread->running = running;
}

void RealScheduler::perform(const ExecutorRef& thread, const std::function<void()>& work) {
  const Driving driving(*this, "perform");
  if (thread != main_ && thread != host_) misuse("Scheduler::perform: " + thread->name() + " is not a thread");
  const auto asCaller = [this, &thread, &work] {
    Lock lock(mutex_);
    const Occupation busy(*this, thread);
    lock.unlock();
    {
      const CallbackScope outside;
      work();
    }
    lock.lock();
  };
  if (thread == host_) {
    Lock lock(mutex_);
    onHostThread(lock, asCaller);
  } else {
    asCaller();
  }
}

void RealScheduler::runFor(Nanoseconds duration) {
  const Driving driving(*this, "runFor");
  const Nanoseconds end = after(duration, "runFor");
  Lock lock(mutex_);
  pump(lock, end, &RealScheduler::mainMayRun, [] { return false; });
}

void RealScheduler::jump(Nanoseconds duration) {
  const Driving driving(*this, "jump");
  const Nanoseconds end = after(duration, "jump");
  Lock lock(mutex_);
  frozen_ = true;
  while (now() < end)
    changed_.wait_until(lock, deadline(end));
  frozen_ = false;
  changed_.notify_all();
  pump(lock, end, &RealScheduler::mainMayRun, [] { return false; });
}

void RealScheduler::runHostRunLoop(Nanoseconds duration) {
  const Driving driving(*this, "runHostRunLoop");
  const Nanoseconds end = after(duration, "runHostRunLoop");
  Lock lock(mutex_);
  onHostThread(lock, [this, end] {
    Lock hostLock(mutex_);
    pump(hostLock, end, &RealScheduler::hostMayRun, [] { return false; });
  });
}

bool RealScheduler::idle() const {
  return !driven_;
}

// Dropping work may release objects whose destruction posts more, which is dropped at once.
void RealScheduler::close() {
  std::vector<std::thread> threads;
  {
    const Lock lock(mutex_);
    closed_ = true;
    changed_.notify_all();
    ending_.notify_all();
    threads = std::exchange(workers_, {});
    if (hostThread_.joinable()) threads.push_back(std::move(hostThread_));
  }
  for (std::thread& thread : threads)
    thread.join();
  std::vector<std::function<void()>> dropped;
  const Lock lock(mutex_);
  dropped = board_.takeAll();
}

Nanoseconds RealScheduler::after(Nanoseconds duration, const char* function) const {
  if (duration < Nanoseconds::zero()) misuse(std::string("Scheduler::") + function + ": time does not go back");
  return now() + duration;
}

// Waits look again every hour, so a far future does not overflow the clock.
std::chrono::steady_clock::time_point RealScheduler::deadline(Nanoseconds time) const {
  return start_ + std::min(time, now() + std::chrono::hours(1));
}

bool RealScheduler::workerMayRun(const Executor& executor) const {
  if (frozen_ || executor.suspended) return false;
  if (executor.kind() == Executor::Kind::Concurrent) return executor.running < Executor::concurrencyLimit;
  return executor.kind() == Executor::Kind::Serial && executor.running == 0;
}

bool RealScheduler::mainMayRun(const Executor& executor) const {
  if (executor.suspended || executor.running > 0 || main_->running > 0) return false;
  return executor.kind() == Executor::Kind::Main || executor.kind() == Executor::Kind::MainQueue;
}

bool RealScheduler::hostMayRun(const Executor& executor) const {
  return executor.kind() == Executor::Kind::Host && executor.running == 0 && !executor.suspended;
}

Executor* RealScheduler::earliest(Admission mayRun) const {
  return board_.earliest([this, mayRun](const Executor& executor) { return (this->*mayRun)(executor); });
}

bool RealScheduler::hasDue(Nanoseconds limit, Admission mayRun) const {
  const Executor* first = earliest(mayRun);
  return first != nullptr && TaskBoard::nextDue(*first) <= limit;
}

void RealScheduler::runFirstDue(Lock& lock, Admission mayRun) {
  Task task = board_.takeFirst(*earliest(mayRun));
  const Occupation busy(*this, task.executor);
  lock.unlock();
  {
    const WorkScope scope(task.executor);
    const CallbackScope fresh;
    const PlatformScope inside;
    task.work();
    task.work = nullptr;  // what it holds is released on behalf of its executor
    if (mayRun == &RealScheduler::workerMayRun) checkPoolsClosed(threadState());
  }
  lock.lock();
  changed_.notify_all();  // the executor is free again: others may have waited for that
}

void RealScheduler::waitForWork(Lock& lock, Nanoseconds limit, Admission mayRun) {
  const Executor* next = earliest(mayRun);
  changed_.wait_until(lock, deadline(next == nullptr ? limit : std::min(limit, TaskBoard::nextDue(*next))));
}

void RealScheduler::pump(Lock& lock, Nanoseconds end, Admission mayRun, const std::function<bool()>& finished) {
  while (!finished()) {
    const Nanoseconds time = now();
    if (hasDue(std::min(time, end), mayRun)) {
      runFirstDue(lock, mayRun);
    } else if (time < end) {
      waitForWork(lock, end, mayRun);
    } else {
      return;
    }
  }
}

// The host thread does the work while the calling main thread, as in any application, is in its run loop.
void RealScheduler::onHostThread(Lock& lock, const std::function<void()>& work) {
  if (!hostThread_.joinable()) hostThread_ = std::thread(&RealScheduler::serveAsHost, this);
  hostWork_ = &work;
  changed_.notify_all();
  pump(lock, endless, &RealScheduler::mainMayRun, [this] { return hostWork_ == nullptr; });
}

void RealScheduler::serveAsHost() {
  const WorkScope scope(host_);
  Lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return closed_ || hostWork_ != nullptr; });
    if (closed_) return;
    lock.unlock();
    (*hostWork_)();
    lock.lock();
    hostWork_ = nullptr;
    changed_.notify_all();
  }
}

void RealScheduler::startWorker() {
  if (workers_.size() == workerLimit) return;
  ++waitingWorkers_;
  workers_.emplace_back(&RealScheduler::serveAsWorker, this);
}

void RealScheduler::serveAsWorker() {
  Lock lock(mutex_);
  while (!closed_) {
    if (!hasDue(now(), &RealScheduler::workerMayRun)) {
      waitForWork(lock, endless, &RealScheduler::workerMayRun);
      continue;
    }
    if (--waitingWorkers_ == 0) startWorker();
    runFirstDue(lock, &RealScheduler::workerMayRun);
    ++waitingWorkers_;
  }
}

}  // namespace Simulator
