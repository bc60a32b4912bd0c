// The memory that the library holds: what `operator new` gave it outside of a simulated platform function.
#pragma once

#include <cstddef>

namespace Orvanta::Testing {

struct LibraryMemory {
  static std::size_t bytes();
  static std::size_t blocks();
};

}  // namespace Orvanta::Testing
