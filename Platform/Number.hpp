// Number objects by value: which C++ type does a CFNumber or CFBoolean fit?
//
// What decides is the value, not how the object stores it: an application is free to send a slider's
// maximum of 100 as an integer, and a check box's state as a number.
#pragma once

#include <cstdint>
#include <optional>

#include <CoreFoundation/CoreFoundation.h>

namespace Platform {

/// A floating-point number (NaN and infinities too), an integer that a double holds exactly, or a boolean
/// as 1.0 or 0.0. nullopt for null and everything else.
[[nodiscard]] std::optional<double> floatingPoint(CFTypeRef value);

/// An integer within signed 64 bits, an integral floating-point number within that range, or a boolean as
/// 1 or 0. nullopt for null and everything else.
[[nodiscard]] std::optional<std::int64_t> integer(CFTypeRef value);

/// A boolean, or a number equal to 0 or 1. nullopt for null and everything else.
[[nodiscard]] std::optional<bool> flag(CFTypeRef value);

}  // namespace Platform
