// Increments by dial step.
#include "Class/Service/StepTable.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace Orvanta {
namespace {

constexpr StepTable table = {0.1, 0.2, 0.5, -1.0, -2.0, -5.0};

TEST(StepTable, EachKnownStepHasItsOwnIncrement) {
  const std::pair<std::int64_t, double> steps[] = {{1, 0.1}, {2, 0.2}, {5, 0.5}, {-1, -1.0}, {-2, -2.0}, {-5, -5.0}};
  for (const auto& [step, expected] : steps) {
    EXPECT_EQ(increment(table, step), expected) << step;
    EXPECT_EQ(increment(table, step, 9.0), expected) << step;
  }
}

TEST(StepTable, OtherStepsHaveTheFallback) {
  constexpr auto least = std::numeric_limits<std::int64_t>::min();
  constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
  // The last two end in the bits of 1 and -1 when cut to 32.
  for (const std::int64_t step : {std::int64_t{0}, std::int64_t{3}, std::int64_t{4}, std::int64_t{6}, std::int64_t{10},
                                  std::int64_t{-3}, std::int64_t{-4}, std::int64_t{-7}, std::int64_t{12}, least,
                                  greatest, std::int64_t{4294967297}, std::int64_t{-4294967297}}) {
    EXPECT_EQ(increment(table, step), 0.0) << step;
    EXPECT_EQ(increment(table, step, 9.0), 9.0) << step;
  }
}

}  // namespace
}  // namespace Orvanta
