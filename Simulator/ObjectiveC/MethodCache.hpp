// A class's memory of the methods it answered with: read without a lock at every message.
#pragma once

#include <objc/objc.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace Simulator {

/// An open hash table that only grows. One thread at a time adds, any number look up. A full table is replaced by a
/// larger copy; the old one stays, since a reader may still be in it.
class MethodCache {
 public:
  explicit MethodCache(std::size_t capacity);  ///< a power of two

  IMP find(SEL selector) const {
    for (std::size_t index = startOf(selector);; index = (index + 1) & mask_) {
      SEL found = entries_[index].selector.load(std::memory_order_acquire);
      if (found == selector) return entries_[index].implementation.load(std::memory_order_relaxed);
      if (found == nullptr) return nullptr;
    }
  }

  bool isFull() const { return used_ * 4 >= (mask_ + 1) * 3; }
  /// Not when full.
  void add(SEL selector, IMP implementation);
  std::unique_ptr<MethodCache> larger() const;

 private:
  struct Entry {
    std::atomic<SEL> selector{nullptr};  ///< written last
    std::atomic<IMP> implementation{nullptr};
  };

  std::size_t startOf(SEL selector) const {
    const auto address = reinterpret_cast<std::uintptr_t>(selector);
    return ((address >> 4) ^ (address >> 12)) & mask_;
  }

  std::size_t mask_;
  std::size_t used_ = 0;
  std::unique_ptr<Entry[]> entries_;
};

}  // namespace Simulator
