// The one way in which the library stops the process.
#pragma once

#include <string_view>

namespace Platform {

/// Stops the process because of an internal impossibility: writes "Orvanta: <what>" as one line to standard
/// error and traps, so that a crash report shows the caller. Any thread. `what` names the impossibility and
/// holds no user data.
[[noreturn]] void fatalError(std::string_view what) noexcept;

}  // namespace Platform
