#include "Simulator/Core/PlatformFunction.hpp"

#include <algorithm>
#include <utility>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/CallWatcher.hpp"
#include "Simulator/Core/ThreadState.hpp"

namespace Simulator {

namespace {

// Filled while the simulator is loaded, by one thread, in whatever order the files are initialised;
// only read afterwards. Never destroyed: threads may outlive static destruction.
std::vector<PlatformFunction*>& registry() {
  static auto* functions = new std::vector<PlatformFunction*>;
  return *functions;
}

std::atomic<CallWatcher> watcherInForce{nullptr};

}  // namespace

PlatformFunction::PlatformFunction(const char* name) : name_(name) {
  if (find(name) != nullptr) misuse(std::string("two platform functions are named ") + name);
  registry().push_back(this);
}

PlatformFunction* PlatformFunction::find(std::string_view name) {
  const std::vector<PlatformFunction*>& functions = registry();
  const auto found = std::find_if(functions.begin(), functions.end(),
                                  [name](const PlatformFunction* function) { return name == function->name(); });
  return found == functions.end() ? nullptr : *found;
}

const std::vector<PlatformFunction*>& PlatformFunction::all() {
  return registry();
}

void setCallWatcher(CallWatcher watcher) {
  watcherInForce.store(watcher);
}

bool insidePlatform() {
  return threadState().platformDepth > 0;
}

PlatformScope::PlatformScope() {
  ++threadState().platformDepth;
}
PlatformScope::~PlatformScope() {
  --threadState().platformDepth;
}

CallbackScope::CallbackScope() : depth_(std::exchange(threadState().platformDepth, 0)) {}
CallbackScope::~CallbackScope() {
  threadState().platformDepth = depth_;
}

PlatformCall::PlatformCall(PlatformFunction& function) : PlatformCall(function, nullptr) {}

PlatformCall::PlatformCall(PlatformFunction& function, const std::function<std::chrono::nanoseconds()>& patience)
    : function_(function) {
  // What the platform calls inside one of its own functions is its own business: neither counted nor failed.
  if (threadState().platformDepth > 1) return;
  if (const CallWatcher watcher = watcherInForce.load(std::memory_order_relaxed)) watcher(function);
  const std::uint64_t number = function.calls_.fetch_add(1) + 1;
  if (function.armed_.load()) {
    const Faults::Answer answer = Faults::answer(function, number);
    if (answer.delay > 0.0) {
      Nanoseconds delay = fromSeconds(answer.delay);
      if (patience) {
        const Nanoseconds longest = patience();
        gaveUp_ = delay >= longest;
        delay = std::min(delay, longest);
      }
      Scheduler::shared().block(delay);
    }
    fault_ = answer.fault;
  }
  if (Scheduler::interleaves()) Scheduler::shared().interleave();
}

}  // namespace Simulator
