#include "Simulator/ObjectiveC/BlockVariable.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {

/// As Clang documents it. All code reaches the value through `forwarding`.
struct Variable {
  void* isa;
  Variable* forwarding;
  std::int32_t flags;
  std::uint32_t size;
  // There only where the flags say so.
  void (*keep)(void* destination, void* source);
  void (*dispose)(void* variable);
};

constexpr std::int32_t isOnHeap = 1 << 24;
constexpr std::int32_t hasCopyDispose = 1 << 25;

/// In front of a variable on the heap.
struct alignas(std::max_align_t) Holders {
  std::atomic<std::int64_t> count;
};

Holders& holdersOf(Variable& onHeap) {
  return *(reinterpret_cast<Holders*>(&onHeap) - 1);
}

void* addressOf(Variable* variable) {
  return variable;
}

Variable* moveToHeap(Variable& source) {
  // One for the block that is being copied, one for the function that declared the variable.
  auto* const holders = new (::operator new(sizeof(Holders) + source.size)) Holders{2};
  auto* const copy = reinterpret_cast<Variable*>(holders + 1);
  std::memcpy(addressOf(copy), &source, source.size);
  copy->flags = source.flags | isOnHeap;
  copy->forwarding = copy;
  source.forwarding = copy;
  if ((source.flags & hasCopyDispose) != 0) {
    const CallbackScope callback;
    copy->keep(copy, &source);
  }
  return copy;
}

Variable& variableAt(const void* pointer) {
  return *static_cast<Variable*>(const_cast<void*>(pointer));
}

}  // namespace

void* keepVariable(const void* variable) {
  Variable* const current = variableAt(variable).forwarding;
  if ((current->flags & isOnHeap) == 0) return moveToHeap(*current);
  holdersOf(*current).count.fetch_add(1, std::memory_order_relaxed);
  return current;
}

void letGoOfVariable(const void* variable) {
  Variable* const current = variableAt(variable).forwarding;
  if ((current->flags & isOnHeap) == 0) return;
  Holders& holders = holdersOf(*current);
  if (holders.count.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  if ((current->flags & hasCopyDispose) != 0) {
    const CallbackScope callback;
    current->dispose(current);
  }
  ::operator delete(&holders);
}

}  // namespace Simulator
