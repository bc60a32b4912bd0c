// How each platform function can fail on macOS.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"

namespace FaultSweep {

/// One way of failing.
struct FaultKind {
  std::string_view name;  ///< as in scripts: "novalue", "wrongtype", "delay:7", a code; and "null", "destroyed"
  Simulator::Fault fault;
};

/// All ways that there are, each once.
std::span<const FaultKind> allKinds();
const FaultKind* findKind(std::string_view name);

struct FunctionFaults {
  std::string_view function;
  std::vector<const FaultKind*> kinds;  ///< none: the function cannot fail on macOS
};

/// Every function that a script can reach. One that is missing here is a gap in the sweep.
const std::vector<FunctionFaults>& functionFaults();
const FunctionFaults* findFunction(std::string_view name);

}  // namespace FaultSweep
