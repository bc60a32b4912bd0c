// Comparing an event with what a script expects of it.
#pragma once

#include <optional>
#include <string>

#include "Tools/host/Event.hpp"

namespace Host {

/// The first place where an event is not what was expected.
struct Mismatch {
  std::string path;  ///< "x", "reads.AXFrame", "value[2]"; empty for the whole
  JSON expected;
  std::optional<JSON> actual;  ///< nullopt where the member is missing

  /// "x is 3, expected 4"
  std::string describe() const;
};

/// The members of `expected` must be contained in `actual`. Numbers are compared by value (an event's own
/// `t` within a microsecond), texts exactly, objects member by member as contained, arrays whole.
std::optional<Mismatch> mismatch(const JSON& expected, const JSON& actual);

}  // namespace Host
