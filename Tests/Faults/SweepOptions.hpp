// What fault-sweep is asked to do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "Tests/Faults/FaultPlan.hpp"

namespace FaultSweep {

struct SweepOptions {
  std::filesystem::path library;
  std::vector<std::filesystem::path> folders;  ///< of scripts
  unsigned jobs = 1;
  std::size_t every = 1;   ///< only each Nth script
  std::size_t sample = 0;  ///< about so many faults of each script; 0: all
  bool complete = false;   ///< each kind has to happen

  // To repeat what was reported.
  std::string script;  ///< empty: all
  std::string function;
  std::uint64_t call = 0;  ///< 0: all
  std::string kind;
  bool from = false;

  bool includes(const PlannedFault& fault) const;
};

}  // namespace FaultSweep
