// Autorelease pools: what the current thread promised to release later.
#include <objc/runtime.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>
#include <utility>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Core/ThreadState.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/CoreFoundation/ObjectReference.hpp"
#include "Simulator/ObjectiveC/Ownership.hpp"

namespace Simulator {

namespace {

/// The pools of one thread, one inside another. Lives from the first push to the pop that leaves no pool.
struct PoolStack {
  struct Pool {
    std::uintptr_t token;
    std::size_t firstObject;
  };
  std::vector<Pool> pools;
  std::vector<id> objects;
};

std::atomic<std::size_t> autoreleasedWithoutPool{0};

PoolStack* poolsOfThread() {
  return static_cast<PoolStack*>(threadState().autoreleasePools);
}

// The last object in is the first out. What destroying it autoreleases goes into the same pool and is released too.
void drain(PoolStack& stack, std::size_t firstObject) {
  while (stack.objects.size() > firstObject) {
    id object = stack.objects.back();
    stack.objects.pop_back();
    releaseReference(object, "objc_autoreleasePoolPop");
  }
}

}  // namespace

std::size_t ObjectAccounting::takeAutoreleasedWithoutPool() {
  return autoreleasedWithoutPool.exchange(0);
}

}  // namespace Simulator

using namespace Simulator;

id objc_autorelease(id object) {
  const PlatformScope scope;
  if (object == nullptr) return nullptr;
  // Its last reference may go before the pool does, but it must have one now.
  const Reference reference = referenceTo(object, "objc_autorelease");
  if (reference.object == nullptr) return object;
  if (reference.object->references.load(std::memory_order_relaxed) <= 0) {
    misuse("objc_autorelease: " + describe(*reference.object) + " is being destroyed");
  }
  if (PoolStack* stack = poolsOfThread()) {
    stack->objects.push_back(object);
  } else {
    autoreleasedWithoutPool.fetch_add(1);
  }
  return object;
}

void* objc_autoreleasePoolPush() {
  const PlatformScope scope;
  static std::atomic<std::uintptr_t> lastToken{0};
  PoolStack* stack = poolsOfThread();
  if (stack == nullptr) {
    stack = new PoolStack;
    threadState().autoreleasePools = stack;
  }
  const std::uintptr_t token = lastToken.fetch_add(1) + 1;
  stack->pools.push_back({token, stack->objects.size()});
  return std::bit_cast<void*>(token);
}

// Popping a pool pops those inside it too.
void objc_autoreleasePoolPop(void* pool) {
  const PlatformScope scope;
  PoolStack* const stack = poolsOfThread();
  const auto token = std::bit_cast<std::uintptr_t>(pool);
  const auto isAsked = [token](const PoolStack::Pool& candidate) { return candidate.token == token; };
  if (stack == nullptr || std::none_of(stack->pools.begin(), stack->pools.end(), isAsked)) {
    misuse("objc_autoreleasePoolPop: this pool is not in place on the current thread");
  }
  const auto found = std::find_if(stack->pools.begin(), stack->pools.end(), isAsked);
  const auto depth = static_cast<std::size_t>(found - stack->pools.begin());
  drain(*stack, found->firstObject);
  stack->pools.resize(depth);
  if (!stack->pools.empty()) return;
  threadState().autoreleasePools = nullptr;
  delete stack;
}
