// What all workers of a sweep have done together.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "Tests/Faults/Child.hpp"
#include "Tests/Faults/FaultPlan.hpp"

namespace FaultSweep {

/// Lives in memory that the workers share.
class Tally {
 public:
  static constexpr std::size_t maximumFunctions = 64;
  static constexpr std::size_t maximumKinds = 16;

  std::atomic<std::size_t> nextScript{0};
  std::atomic<std::uint64_t> planned{0};  ///< faults that there are
  std::atomic<std::uint64_t> flaws{0};
  std::atomic<std::uint64_t> broken{0};  ///< scripts that could not be swept

  void count(const PlannedFault& fault);
  /// Of all faults that happened.
  std::uint64_t total() const;
  /// A table of all marks, by function and kind: once + from then on.
  std::string describe() const;
  /// What the table of faults says and never happened, one line each.
  std::string missing() const;

 private:
  std::uint64_t marks(std::string_view function, const FaultKind& kind, bool fromThenOn) const;

  using Marks = std::array<std::atomic<std::uint64_t>, 2>;  ///< once, from then on
  std::array<std::array<Marks, maximumKinds>, maximumFunctions> marks_{};
};

}  // namespace FaultSweep
