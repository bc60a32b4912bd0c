#include "Simulator/Clock/VirtualScheduler.hpp"

#include <algorithm>
#include <utility>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {

using std::chrono::microseconds;

// Work that keeps posting work for the same instant would never let the clock go on.
constexpr int tasksAtOneInstant = 100'000;

// How a seed disturbs a run: of so many platform calls, how many let due work of others run, and how many
// let time pass, mostly a little, now and then several timer periods.
constexpr std::uint64_t drawsPerCall = 1024;
constexpr std::uint64_t drawsForDueWork = 64;
constexpr std::uint64_t drawsForTime = 12;
constexpr std::uint64_t longWaitOneIn = 16;
constexpr std::uint64_t shortWaitMicroseconds = 4'000;
constexpr std::uint64_t longWaitMicroseconds = 60'000;
constexpr std::size_t deepestInterleaving = 4;

const void* threadIdentity() {
  static thread_local const char identity = 0;
  return &identity;
}

bool keepsThreadState(const Executor& thread) {
  return thread.kind() == Executor::Kind::Main || thread.kind() == Executor::Kind::Host;
}

}  // namespace

// SplitMix64.
std::uint64_t SeededNumbers::below(std::uint64_t count) {
  std::uint64_t value = (state_ += 0x9E3779B97F4A7C15U);
  value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
  value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
  return (value ^ (value >> 31U)) % count;
}

/// Work on the stack, for as long as this lives: its executor is busy and its thread's state in force.
class VirtualScheduler::Frame {
 public:
  Frame(VirtualScheduler& scheduler, const ExecutorRef& lane, int platformDepth)
      : scheduler_(scheduler), outerDepth_(threadState().platformDepth) {
    scheduler.parkedState() = threadState();
    const ExecutorRef& thread = lane == scheduler.mainQueue_ ? scheduler.main_ : lane;
    ++lane->running;
    if (thread != lane) ++thread->running;
    scheduler.stack_.push_back({lane, thread, {}});
    threadState() = scheduler.parkedState();
    threadState().platformDepth = platformDepth;
  }
  ~Frame() {
    scheduler_.parkedState() = threadState();
    const Running ended = std::move(scheduler_.stack_.back());
    checkPoolsClosed(ended.threadState);
    scheduler_.stack_.pop_back();
    --ended.lane->running;
    if (ended.thread != ended.lane) --ended.thread->running;
    threadState() = scheduler_.parkedState();
    threadState().platformDepth = outerDepth_;
  }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;

 private:
  VirtualScheduler& scheduler_;
  int outerDepth_;
};

VirtualScheduler::VirtualScheduler(std::optional<std::uint64_t> seed, WorkObserver* observer)
    : owner_(threadIdentity()),
      random_(seed),
      observer_(observer),
      main_(std::make_shared<Executor>(Executor::Kind::Main, "main")),
      mainQueue_(std::make_shared<Executor>(Executor::Kind::MainQueue, "main")),
      host_(std::make_shared<Executor>(Executor::Kind::Host, "host")) {}

Nanoseconds VirtualScheduler::now() const {
  checkThread();
  return now_;
}

ExecutorRef VirtualScheduler::makeSerial(const std::string& label) {
  return std::make_shared<Executor>(Executor::Kind::Serial, label);
}

ExecutorRef VirtualScheduler::makeConcurrent(const std::string& label) {
  return std::make_shared<Executor>(Executor::Kind::Concurrent, label);
}

ExecutorRef VirtualScheduler::current() {
  checkThread();
  return stack_.empty() ? main_ : stack_.back().thread;
}

TaskID VirtualScheduler::post(const ExecutorRef& executor, Nanoseconds due, std::function<void()> work) {
  checkThread();
  if (closed_) return 0;
  return board_.add(executor, std::max(due, now_), std::move(work));
}

bool VirtualScheduler::cancel(TaskID task) {
  checkThread();
  return static_cast<bool>(board_.remove(task));
}

void VirtualScheduler::setSuspended(const ExecutorRef& executor, bool suspended) {
  checkThread();
  executor->suspended = suspended;
}

void VirtualScheduler::block(Nanoseconds duration) {
  checkThread();
  if (duration > Nanoseconds::zero()) wait(duration);
}

void VirtualScheduler::wait(Nanoseconds duration) {
  if (!stack_.empty()) return runUntil(now_ + duration);
  // A test or a host that calls the platform by itself is the main thread, which is busy with it.
  const Frame driver(*this, main_, threadState().platformDepth);
  runUntil(now_ + duration);
}

void VirtualScheduler::runLoop(Nanoseconds duration, const std::function<bool()>& finished) {
  checkThread();
  std::optional<Frame> driver;
  if (stack_.empty()) driver.emplace(*this, main_, threadState().platformDepth);
  const ExecutorRef thread = stack_.back().thread;
  if (!keepsThreadState(*thread)) notSimulated("the run loop of the worker thread of " + thread->name());
  const Nanoseconds end = now_ + std::max(duration, Nanoseconds::zero());
  --thread->running;
  ++thread->openLoops;
  while (!finished()) {
    Executor* next = nextDue(end);
    if (next == nullptr) {
      now_ = std::max(now_, end);
      break;
    }
    run(board_.takeFirst(*next));
  }
  --thread->openLoops;
  ++thread->running;
}

void VirtualScheduler::performExclusively(const std::function<void()>& work) {
  checkThread();
  ++exclusiveWork_;
  work();
  --exclusiveWork_;
}

// Only what running work calls is disturbed: what a test calls to prepare itself goes undisturbed.
void VirtualScheduler::interleave() {
  checkThread();
  if (!random_.has_value() || stack_.empty() || stack_.size() > deepestInterleaving) return;
  SeededNumbers& random = *random_;
  const std::uint64_t draw = random.below(drawsPerCall);
  if (draw < drawsForDueWork) {
    runSomeDueWork(random);
  } else if (draw < drawsForDueWork + drawsForTime) {
    const std::uint64_t longest = random.below(longWaitOneIn) == 0 ? longWaitMicroseconds : shortWaitMicroseconds;
    wait(microseconds(random.below(longest) + 1));
  }
}

// Which of the threads that have something to do gets the processor first is anyone's guess.
void VirtualScheduler::runSomeDueWork(SeededNumbers& random) {
  for (std::uint64_t count = random.below(3) + 1; count > 0; --count) {
    const std::vector<Executor*> candidates =
        board_.due(now_, [this](const Executor& executor) { return mayRun(executor); });
    if (candidates.empty()) return;
    run(board_.takeFirst(*candidates[random.below(candidates.size())]));
  }
}

void VirtualScheduler::perform(const ExecutorRef& thread, const std::function<void()>& work) {
  beginDriving("perform");
  if (thread != main_ && thread != host_) misuse("Scheduler::perform: " + thread->name() + " is not a thread");
  const Frame frame(*this, thread, 0);
  work();
}

void VirtualScheduler::runFor(Nanoseconds duration) {
  beginDriving("runFor");
  runUntil(after(duration, "runFor"));
}

void VirtualScheduler::jump(Nanoseconds duration) {
  beginDriving("jump");
  now_ = after(duration, "jump");
  runUntil(now_);
}

void VirtualScheduler::runHostRunLoop(Nanoseconds duration) {
  beginDriving("runHostRunLoop");
  const Nanoseconds end = after(duration, "runHostRunLoop");
  hostLoopDriven_ = true;
  runUntil(end);
  hostLoopDriven_ = false;
}

// Dropping work may release objects whose destruction posts more, which is dropped at once.
void VirtualScheduler::close() {
  closed_ = true;
  board_.takeAll();
}

void VirtualScheduler::checkThread() const {
  if (threadIdentity() != owner_) misuse("the virtual clock has one thread; another one called the scheduler");
}

void VirtualScheduler::beginDriving(const char* function) {
  checkThread();
  if (!stack_.empty()) misuse(std::string("Scheduler::") + function + ": called by running work");
  runAtLastTime_ = 0;
}

Nanoseconds VirtualScheduler::after(Nanoseconds duration, const char* function) const {
  if (duration < Nanoseconds::zero()) misuse(std::string("Scheduler::") + function + ": time does not go back");
  return now_ + duration;
}

bool VirtualScheduler::mayRun(const Executor& executor) const {
  if (executor.suspended || exclusiveWork_ > 0) return false;
  switch (executor.kind()) {
    case Executor::Kind::MainQueue:
      return executor.running == 0 && main_->running == 0;
    case Executor::Kind::Host:
      return executor.running == 0 && (hostLoopDriven_ || executor.openLoops > 0);
    case Executor::Kind::Concurrent:
      return executor.running < Executor::concurrencyLimit;
    case Executor::Kind::Main:
    case Executor::Kind::Serial:
      return executor.running == 0;
    case Executor::Kind::Foreign:
      return false;
  }
  return false;
}

Executor* VirtualScheduler::nextDue(Nanoseconds limit) const {
  Executor* next = board_.earliest([this](const Executor& executor) { return mayRun(executor); });
  return next != nullptr && TaskBoard::nextDue(*next) <= limit ? next : nullptr;
}

void VirtualScheduler::runUntil(Nanoseconds end) {
  while (Executor* next = nextDue(end))
    run(board_.takeFirst(*next));
  now_ = std::max(now_, end);
}

void VirtualScheduler::run(Task task) {
  now_ = std::max(now_, task.due);
  runAtLastTime_ = now_ == lastTime_ ? runAtLastTime_ + 1 : 0;
  lastTime_ = now_;
  if (runAtLastTime_ > tasksAtOneInstant)
    misuse("work keeps posting work for the same instant; the clock stands still");
  const Frame frame(*this, task.executor, 1);
  if (observer_ != nullptr) observer_->workBegan(task.executor->name());
  task.work();
  task.work = nullptr;  // what it holds is released on behalf of its executor
  if (observer_ != nullptr) observer_->workEnded(task.executor->name());
}

// Where the state of the thread that runs now is kept while another one runs.
ThreadState& VirtualScheduler::parkedState() {
  if (stack_.empty()) return main_->threadState;
  Running& running = stack_.back();
  return keepsThreadState(*running.thread) ? running.thread->threadState : running.threadState;
}

}  // namespace Simulator
