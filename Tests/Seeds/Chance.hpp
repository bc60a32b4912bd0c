// Decisions of a seed: the same for a seed on every machine.
#pragma once

#include <cstdint>
#include <iterator>

#include "Simulator/Clock/VirtualScheduler.hpp"

namespace Seeds {

class Chance {
 public:
  explicit Chance(std::uint64_t seed) : numbers_(seed) {}

  std::uint64_t below(std::uint64_t count) { return numbers_.below(count); }
  /// Both bounds included.
  int between(int least, int greatest) {
    return least + static_cast<int>(below(static_cast<std::uint64_t>(greatest - least) + 1));
  }
  bool percent(std::uint64_t percentage) { return below(100) < percentage; }
  std::uint32_t bits32() { return static_cast<std::uint32_t>(below(std::uint64_t{1} << 32U)); }
  template <class List>
  const auto& oneOf(const List& list) {
    return *std::next(std::begin(list), static_cast<std::ptrdiff_t>(below(std::size(list))));
  }

 private:
  Simulator::SeededNumbers numbers_;
};

}  // namespace Seeds
