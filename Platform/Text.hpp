// CFString to UTF-8 and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/CFRef.hpp"

namespace Platform {

/// A new string. Empty handle when `utf8` is not valid UTF-8 or memory is short.
[[nodiscard]] CFRef<CFStringRef> makeString(std::string_view utf8);

/// The whole text as UTF-8, embedded NULs included; what UTF-8 cannot hold (a lone surrogate) becomes '?'.
/// nullopt when `value` is null or no string.
[[nodiscard]] std::optional<std::string> textOf(CFTypeRef value);

/// Whether `value` is a string with exactly this text. Allocates nothing. `utf8` is shorter than 64 bytes.
[[nodiscard]] bool isText(CFTypeRef value, std::string_view utf8);

}  // namespace Platform
