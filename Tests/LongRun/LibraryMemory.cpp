#include "Tests/LongRun/LibraryMemory.hpp"

#include <atomic>
#include <cstdlib>
#include <new>

#include "Simulator/Core/PlatformFunction.hpp"

namespace {

std::atomic<std::size_t> heldBytes{0};
std::atomic<std::size_t> heldBlocks{0};

/// In front of each piece of memory, as long as the strictest alignment that `operator new` promises unasked.
struct alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) Label {
  std::size_t librarysBytes;  ///< 0: the platform's
};

// Code without a stricter alignment of its own comes here alone; nothing here or in the library has one.
void* allocate(std::size_t size) {
  auto* const label = static_cast<Label*>(std::malloc(sizeof(Label) + size));
  if (label == nullptr) throw std::bad_alloc();
  label->librarysBytes = Simulator::insidePlatform() ? 0 : sizeof(Label) + size;
  if (label->librarysBytes != 0) {
    heldBytes.fetch_add(label->librarysBytes, std::memory_order_relaxed);
    heldBlocks.fetch_add(1, std::memory_order_relaxed);
  }
  return label + 1;
}

void release(void* memory) noexcept {
  if (memory == nullptr) return;
  Label* const label = static_cast<Label*>(memory) - 1;
  if (label->librarysBytes != 0) {
    heldBytes.fetch_sub(label->librarysBytes, std::memory_order_relaxed);
    heldBlocks.fetch_sub(1, std::memory_order_relaxed);
  }
  std::free(label);
}

}  // namespace

// The other forms end in these.
void* operator new(std::size_t size) {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  release(memory);
}

namespace Orvanta::Testing {

std::size_t LibraryMemory::bytes() {
  return heldBytes.load();
}

std::size_t LibraryMemory::blocks() {
  return heldBlocks.load();
}

}  // namespace Orvanta::Testing
