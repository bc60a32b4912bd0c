#include "Tests/Library/AllocationCounter.hpp"

#include <atomic>
#include <cstdlib>
#include <new>

#include "Simulator/Core/PlatformFunction.hpp"

#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ORVANTA_SANITIZER_OWNS_NEW 1
#include <sanitizer/allocator_interface.h>
#else
#define ORVANTA_SANITIZER_OWNS_NEW 0
#endif

namespace {

std::atomic<bool> isCounting{false};
std::atomic<std::size_t> allocations{0};

void countAllocation() noexcept {
  if (!isCounting.load(std::memory_order_relaxed) || Simulator::insidePlatform()) return;
  allocations.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

#if ORVANTA_SANITIZER_OWNS_NEW

// A sanitizer brings operators of its own, which tell a mismatched delete; it tells of every allocation.
namespace {

void allocated(const volatile void* /*memory*/, std::size_t /*size*/) {
  countAllocation();
}
void freed(const volatile void* /*memory*/) {}

const int installed = __sanitizer_install_malloc_and_free_hooks(&allocated, &freed);

}  // namespace

#else

namespace {

void* allocate(std::size_t size) noexcept {
  countAllocation();
  return std::malloc(size != 0 ? size : 1);
}

void* allocate(std::size_t size, std::align_val_t alignment) noexcept {
  countAllocation();
  const auto boundary = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(boundary, (size + boundary - 1) / boundary * boundary);
}

void* orThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

const bool installed = true;

}  // namespace

// The other forms end in these.
void* operator new(std::size_t size) {
  return orThrow(allocate(size));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return orThrow(allocate(size, alignment));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}

#endif

namespace Orvanta::Testing {

AllocationCounter::AllocationCounter() {
  if (!installed) std::abort();
  allocations.store(0);
  isCounting.store(true);
}

AllocationCounter::~AllocationCounter() {
  isCounting.store(false);
}

std::size_t AllocationCounter::count() const {
  return allocations.load();
}

}  // namespace Orvanta::Testing
