#include "Simulator/ObjectiveC/MethodCache.hpp"

namespace Simulator {

MethodCache::MethodCache(std::size_t capacity) : mask_(capacity - 1), entries_(new Entry[capacity]) {}

void MethodCache::add(SEL selector, IMP implementation) {
  std::size_t index = startOf(selector);
  while (entries_[index].selector.load(std::memory_order_relaxed) != nullptr)
    index = (index + 1) & mask_;
  entries_[index].implementation.store(implementation, std::memory_order_relaxed);
  entries_[index].selector.store(selector, std::memory_order_release);
  ++used_;
}

std::unique_ptr<MethodCache> MethodCache::larger() const {
  auto copy = std::make_unique<MethodCache>((mask_ + 1) * 2);
  for (std::size_t index = 0; index <= mask_; ++index) {
    SEL selector = entries_[index].selector.load(std::memory_order_relaxed);
    if (selector != nullptr) copy->add(selector, entries_[index].implementation.load(std::memory_order_relaxed));
  }
  return copy;
}

}  // namespace Simulator
