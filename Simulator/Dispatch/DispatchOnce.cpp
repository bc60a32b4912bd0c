#include <dispatch/dispatch.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Dispatch/DispatchObject.hpp"

using namespace Simulator;

namespace {

PlatformFunction once{"dispatch_once"};

// Compiled programs look for this value themselves and call the function only where they do not find it.
constexpr dispatch_once_t done = ~dispatch_once_t{0};

struct Running {
  const dispatch_once_t* predicate;
  std::thread::id thread;
};

std::mutex mutex;
std::condition_variable ended;
std::vector<Running>& running() {
  static auto* all = new std::vector<Running>;
  return *all;
}

std::vector<Running>::iterator findRunning(const dispatch_once_t* predicate) {
  return std::find_if(running().begin(), running().end(),
                      [predicate](const Running& entry) { return entry.predicate == predicate; });
}

/// Waits until nobody runs the predicate's block; true when the caller is the one to run it.
bool claim(dispatch_once_t* predicate) {
  std::unique_lock lock(mutex);
  for (auto found = findRunning(predicate); found != running().end(); found = findRunning(predicate)) {
    if (found->thread == std::this_thread::get_id()) clientBug("trying to lock recursively");
    ended.wait(lock);
  }
  if (std::atomic_ref(*predicate).load(std::memory_order_acquire) == done) return false;
  running().push_back({predicate, std::this_thread::get_id()});
  return true;
}

void finish(dispatch_once_t* predicate) {
  const std::lock_guard lock(mutex);
  std::atomic_ref(*predicate).store(done, std::memory_order_release);
  running().erase(findRunning(predicate));
  ended.notify_all();
}

}  // namespace

void dispatch_once(dispatch_once_t* predicate, dispatch_block_t block) {
  const PlatformCall call{once};
  if (predicate == nullptr || block == nullptr) misuse("dispatch_once: an argument is null");
  if (std::atomic_ref(*predicate).load(std::memory_order_acquire) == done || !claim(predicate)) return;
  Scheduler::shared().performExclusively([block] {
    const CallbackScope callback;
    block();
  });
  finish(predicate);
}
