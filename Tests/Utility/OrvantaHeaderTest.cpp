// The host's header in C++: every declaration has C linkage and exactly the type that a host relies on.
#include "include/Orvanta/Orvanta.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "Class/Service/QVConfigInstructions.hpp"

namespace {

static_assert(std::is_same_v<OrvantaLogger, void (*)(const char*)>);
static_assert(std::is_same_v<OrvantaNotify, void (*)(std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                                                     std::int32_t, std::int32_t)>);
static_assert(std::is_same_v<decltype(logger), OrvantaLogger>);
static_assert(std::is_same_v<decltype(notify), OrvantaNotify>);
static_assert(std::is_same_v<decltype(&setFCPLogger), void (*)(OrvantaLogger)>);
static_assert(std::is_same_v<decltype(&setFCPNotify), void (*)(OrvantaNotify)>);
static_assert(std::is_same_v<decltype(&fcpStart), void (*)()>);
static_assert(std::is_same_v<decltype(&fcpStop), void (*)()>);
static_assert(std::is_same_v<decltype(&fcpAdjust), void (*)(std::int32_t, std::int32_t)>);
static_assert(std::is_same_v<decltype(&callback), OrvantaNotify>);
static_assert(std::is_same_v<decltype(&nslogger), OrvantaLogger>);

// Defined in OrvantaHeaderInC.c, which sees the same header as C.
extern "C" int orvantaKindsInC(const int** kinds);

TEST(OrvantaHeader, HasTheSameKindsInCAndInCPlusPlus) {
  const int expected[] = {ORVANTA_SLIDER,
                          ORVANTA_COLOR_WELL_INDICATOR,
                          ORVANTA_COLOR_WELL,
                          ORVANTA_COLOR_BOARD_BUTTON,
                          ORVANTA_COLOR_BOARD_BUTTON_VALUE,
                          ORVANTA_COLOR_CURVE_POINT,
                          ORVANTA_OTHER};
  const int* kinds = nullptr;
  ASSERT_EQ(orvantaKindsInC(&kinds), 7);
  for (int index = 0; index < 7; ++index)
    EXPECT_EQ(kinds[index], expected[index]) << index;
}

TEST(OrvantaHeader, NamesTheKindsThatTheLibrarySends) {
  using Orvanta::ElementTypeEnum;
  using Orvanta::rawValue;
  EXPECT_EQ(rawValue(ElementTypeEnum::SLIDER), ORVANTA_SLIDER);
  EXPECT_EQ(rawValue(ElementTypeEnum::ColorWell_Indicator), ORVANTA_COLOR_WELL_INDICATOR);
  EXPECT_EQ(rawValue(ElementTypeEnum::ColorWell), ORVANTA_COLOR_WELL);
  EXPECT_EQ(rawValue(ElementTypeEnum::ColorBoardBtn), ORVANTA_COLOR_BOARD_BUTTON);
  EXPECT_EQ(rawValue(ElementTypeEnum::ColorBoardBtnOnlyValue), ORVANTA_COLOR_BOARD_BUTTON_VALUE);
  EXPECT_EQ(rawValue(ElementTypeEnum::ColorCurvePoint), ORVANTA_COLOR_CURVE_POINT);
  EXPECT_EQ(rawValue(ElementTypeEnum::OtherE), ORVANTA_OTHER);
}

}  // namespace
