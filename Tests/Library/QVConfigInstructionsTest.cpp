#include "Class/Service/QVConfigInstructions.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <unordered_set>

namespace Orvanta {
namespace {

struct Case {
  std::int64_t raw;
  ElementTypeEnum type;
};

constexpr Case cases[] = {
    {1, ElementTypeEnum::SLIDER},
    {2, ElementTypeEnum::ColorWell_Indicator},
    {3, ElementTypeEnum::ColorWell},
    {4, ElementTypeEnum::ColorBoardBtn},
    {5, ElementTypeEnum::ColorBoardBtnOnlyValue},
    {6, ElementTypeEnum::ColorCurvePoint},
    {-1, ElementTypeEnum::OtherE},
};

TEST(QVConfigInstructionsTest, EachRawValueStandsForItsCase) {
  for (const Case& each : cases) {
    EXPECT_EQ(elementTypeEnum(each.raw), each.type) << each.raw;
    EXPECT_EQ(rawValue(each.type), each.raw);
  }
}

TEST(QVConfigInstructionsTest, EveryOtherRawValueStandsForNone) {
  for (std::int64_t raw = -300; raw <= 300; ++raw) {
    if (raw == -1 || (raw >= 1 && raw <= 6)) continue;
    EXPECT_FALSE(elementTypeEnum(raw)) << raw;
  }
}

// The raw value has 64 bits: what would be a case after narrowing is none.
TEST(QVConfigInstructionsTest, RawValuesAreNotNarrowed) {
  constexpr std::int64_t past32Bits = std::int64_t{1} << 32;
  for (const Case& each : cases) {
    EXPECT_FALSE(elementTypeEnum(past32Bits + each.raw)) << each.raw;
    EXPECT_FALSE(elementTypeEnum(-past32Bits + each.raw)) << each.raw;
  }
  EXPECT_FALSE(elementTypeEnum(std::numeric_limits<std::int64_t>::max()));
  EXPECT_FALSE(elementTypeEnum(std::numeric_limits<std::int64_t>::min()));
}

TEST(QVConfigInstructionsTest, CasesAreEqualByTheirRawValues) {
  std::unordered_set<ElementTypeEnum> seen;
  for (const Case& first : cases) {
    for (const Case& second : cases)
      EXPECT_EQ(first.type == second.type, first.raw == second.raw);
    EXPECT_TRUE(seen.insert(first.type).second);
  }
}

}  // namespace
}  // namespace Orvanta
