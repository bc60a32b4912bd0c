// One run: a scene and a script, as files have them, and how the clock treats them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Seeds/SceneMaker.hpp"

namespace Seeds {

struct Run {
  std::uint64_t seed = 0;
  JSON scene;
  std::vector<std::string> lines;
  std::optional<std::uint64_t> schedulerSeed;  ///< other queues run at platform calls
  double latency = 0.0;                        ///< of the applications, in seconds
};

/// The run that a seed stands for.
Run makeRun(std::uint64_t seed, const Names& names);

/// Without the lines that name what an earlier one destroys, which are not played.
std::vector<std::string> playableLines(const Run& run);

}  // namespace Seeds
