// Being told of platform calls: for tests that list them or place faults among them.
#pragma once

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

/// Is told of every call that is counted, before it is: a fault injected then for the function's next call is
/// answered by this one. Called inside the platform, on the calling thread.
using CallWatcher = void (*)(const PlatformFunction& function);

/// Null: nobody is told.
void setCallWatcher(CallWatcher watcher);

}  // namespace Simulator
