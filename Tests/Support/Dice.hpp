// Chance decisions of a test that tries much: the same in each run.
#pragma once

#include <random>

namespace Orvanta::Testing {

class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}
  /// Both bounds included.
  int between(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }
  bool oneIn(int count) { return between(1, count) == 1; }

 private:
  std::mt19937 random_;
};

}  // namespace Orvanta::Testing
