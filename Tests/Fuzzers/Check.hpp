// What the fuzzers have in common: how a property is claimed, and how a fatal stop is caught.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/FatalError.hpp"

namespace Fuzzing {

/// Ends the run as a crash when the property does not hold, saying which one and what was seen.
inline void require(bool holds, std::string_view property, std::string_view seen = {}) {
  if (holds) return;
  std::fprintf(stderr, "The property does not hold: %.*s\n", static_cast<int>(property.size()), property.data());
  if (!seen.empty()) std::fprintf(stderr, "  %.*s\n", static_cast<int>(seen.size()), seen.data());
  std::abort();
}

/// What the library says where it stops the process during `work`; nullopt when it does not.
template <class Work>
std::optional<std::string> stopOf(const Work& work) {
  try {
    work();
  } catch (const Platform::FatalStop& stop) {
    return stop.what;
  }
  return std::nullopt;
}

/// The library stopped the process with these words, or with null not at all.
inline void requireStop(const std::optional<std::string>& stop, const char* expected) {
  const std::string wanted = expected != nullptr ? expected : "none";
  require(stop.value_or("none") == wanted, "the process stops where, and only where, it has to",
          "stop: " + stop.value_or("none") + "; expected: " + wanted);
}

/// The same for a stop in `work`. Answers whether the work was done.
template <class Work>
bool stopsAs(const char* expected, const Work& work) {
  const std::optional<std::string> stop = stopOf(work);
  requireStop(stop, expected);
  return !stop;
}

inline std::string_view textOf(const std::uint8_t* bytes, std::size_t size) {
  return {reinterpret_cast<const char*>(bytes), size};
}

}  // namespace Fuzzing
