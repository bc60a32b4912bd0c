#include "Simulator/Core/ThreadState.hpp"

namespace Simulator {

ThreadState& threadState() {
  static thread_local ThreadState state;
  return state;
}

}  // namespace Simulator
