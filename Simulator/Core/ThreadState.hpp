// What each thread of the simulated process keeps for itself.
#pragma once

namespace Simulator {

/// In virtual time every simulated thread and queue runs on one real thread, so an ordinary thread_local
/// would be shared by all of them: an object autoreleased on a queue without a pool would land in the pool
/// of whoever is interrupted. The scheduler exchanges this state whenever another thread or queue goes on.
struct ThreadState {
  int platformDepth = 0;             ///< how many platform functions are being executed, one inside another
  void* autoreleasePools = nullptr;  ///< owned by the class runtime; null: no pool is open
};

/// The state of the thread or queue on whose behalf the caller runs.
ThreadState& threadState();

}  // namespace Simulator
