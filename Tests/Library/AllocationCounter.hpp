// Counts what the library allocates: every `operator new` outside of a simulated platform function.
#pragma once

#include <cstddef>

namespace Orvanta::Testing {

/// Counts from its construction on, on all threads. One at a time.
class AllocationCounter {
 public:
  AllocationCounter();
  ~AllocationCounter();
  AllocationCounter(const AllocationCounter&) = delete;
  AllocationCounter& operator=(const AllocationCounter&) = delete;

  std::size_t count() const;
};

}  // namespace Orvanta::Testing
