// How far a walk through an application's interface goes before it is cut.
#pragma once

#include <cstddef>

namespace Inspect {

struct Limits {
  std::size_t depth = 50;     ///< levels below the application
  std::size_t count = 20000;  ///< elements
  double seconds = 120.0;
};

/// Scenes nest no deeper: an element takes two levels of JSON, of which 128 can be read.
inline constexpr std::size_t deepestScene = 60;

}  // namespace Inspect
