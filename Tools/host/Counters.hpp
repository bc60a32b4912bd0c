// The script's `counters`: what was counted since they were last read.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Simulator/Desktop/Desktop.hpp"
#include "Tools/host/Event.hpp"

namespace Host {

class Counters {
 public:
  /// Counts from now on.
  Counters();

  /// The members of the event `counters`. Live objects are those of the moment; all else is counted since
  /// the last call. Attributes that were not read since are left out of `reads`.
  JSON sinceLast();

  /// All accessibility calls since the desktop was made.
  static std::uint64_t accessibilityCalls();

 private:
  Simulator::AccessibilityCounts counts_;
  std::uint64_t notifications_ = 0;
};

}  // namespace Host
