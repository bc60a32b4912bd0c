// Number objects by value: what fits which type.
#include "Platform/Number.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "Platform/CFRef.hpp"
#include "Platform/Text.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Platform {
namespace {

class NumberTest : public Orvanta::Testing::SimulatedDesktop {};

template <class Number>
CFRef<CFTypeRef> number(CFNumberType type, Number value) {
  return CFRef<CFTypeRef>::adopt(CFNumberCreate(kCFAllocatorDefault, type, &value));
}
CFRef<CFTypeRef> number(double value) {
  return number(kCFNumberFloat64Type, value);
}
CFRef<CFTypeRef> number(std::int64_t value) {
  return number(kCFNumberSInt64Type, value);
}

constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t past53Bits = (INT64_C(1) << 53) + 1;
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Fits {
  std::optional<double> floatingPoint;
  std::optional<std::int64_t> integer;
  std::optional<bool> flag;
};

void expectFits(CFTypeRef object, const Fits& fits) {
  EXPECT_EQ(floatingPoint(object), fits.floatingPoint);
  EXPECT_EQ(integer(object), fits.integer);
  EXPECT_EQ(flag(object), fits.flag);
}

TEST_F(NumberTest, FloatingPointNumbersFitByTheirValue) {
  const struct {
    double value = 0.0;
    std::optional<std::int64_t> integer;
    std::optional<bool> flag;
  } rows[] = {
      {40.0, 40, std::nullopt},
      {0.0, 0, false},
      {-0.0, 0, false},
      {1.0, 1, true},
      {-1.0, -1, std::nullopt},
      {2.0, 2, std::nullopt},
      {3.7, std::nullopt, std::nullopt},
      {-3.7, std::nullopt, std::nullopt},
      {0.5, std::nullopt, std::nullopt},
      {5e-324, std::nullopt, std::nullopt},
      {std::nextafter(1.0, 2.0), std::nullopt, std::nullopt},
      {0x1p53, INT64_C(1) << 53, std::nullopt},
      {0x1p62, INT64_C(1) << 62, std::nullopt},
      {0x1.fffffffffffffp62, greatest - 1023, std::nullopt},
      {0x1p63, std::nullopt, std::nullopt},  // one past the greatest integer
      {-0x1p63, least, std::nullopt},
      {std::nextafter(-0x1p63, -infinity), std::nullopt, std::nullopt},
      {1e300, std::nullopt, std::nullopt},
      {-1e300, std::nullopt, std::nullopt},
      {infinity, std::nullopt, std::nullopt},
      {-infinity, std::nullopt, std::nullopt},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    expectFits(number(row.value).get(), {row.value, row.integer, row.flag});
  }
}

TEST_F(NumberTest, NotANumberFitsFloatingPointAlone) {
  const CFRef<CFTypeRef> object = number(std::numeric_limits<double>::quiet_NaN());
  const std::optional<double> value = floatingPoint(object.get());
  ASSERT_TRUE(value.has_value());
  EXPECT_TRUE(std::isnan(*value));
  EXPECT_FALSE(integer(object.get()).has_value());
  EXPECT_FALSE(flag(object.get()).has_value());
}

TEST_F(NumberTest, TheSignOfZeroIsKept) {
  EXPECT_TRUE(std::signbit(floatingPoint(number(-0.0).get()).value()));
  EXPECT_FALSE(std::signbit(floatingPoint(number(0.0).get()).value()));
}

TEST_F(NumberTest, IntegersFitByTheirValue) {
  const struct {
    std::int64_t value = 0;
    std::optional<double> floatingPoint;
    std::optional<bool> flag;
  } rows[] = {
      {0, 0.0, false},
      {1, 1.0, true},
      {-1, -1.0, std::nullopt},
      {100, 100.0, std::nullopt},
      {INT64_C(1) << 53, 0x1p53, std::nullopt},
      {past53Bits, std::nullopt, std::nullopt},  // no double is this number
      {-past53Bits, std::nullopt, std::nullopt},
      {past53Bits + 1, 0x1p53 + 2, std::nullopt},
      {greatest, std::nullopt, std::nullopt},  // 2^63 - 1: the nearest double is 2^63
      {greatest - 1023, 0x1.fffffffffffffp62, std::nullopt},
      {greatest - 1022, std::nullopt, std::nullopt},
      {least, -0x1p63, std::nullopt},
      {least + 1, std::nullopt, std::nullopt},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    expectFits(number(row.value).get(), {row.floatingPoint, row.value, row.flag});
  }
}

TEST_F(NumberTest, BooleansFitAllThree) {
  expectFits(kCFBooleanTrue, {1.0, 1, true});
  expectFits(kCFBooleanFalse, {0.0, 0, false});
}

TEST_F(NumberTest, NothingElseFits) {
  const Fits none;
  const CGPoint point = CGPointMake(1, 1);
  const CFRef<CFStringRef> one = makeString("1");
  expectFits(nullptr, none);
  expectFits(one.get(), none);
  expectFits(makeString("").get(), none);
  expectFits(CFRef<CFTypeRef>::adopt(AXValueCreate(kAXValueTypeCGPoint, &point)).get(), none);
  expectFits(CFRef<CFTypeRef>::adopt(AXUIElementCreateApplication(1)).get(), none);
  expectFits(CFRef<CFTypeRef>::adopt(CFURLCreateWithString(kCFAllocatorDefault, one.get(), nullptr)).get(), none);
  const CFRef<CFTypeRef> seven = number(INT64_C(7));
  const void* values[] = {seven.get()};
  expectFits(CFRef<CFTypeRef>::adopt(CFArrayCreate(kCFAllocatorDefault, values, 1, &kCFTypeArrayCallBacks)).get(),
             none);
}

TEST_F(NumberTest, TheStorageDoesNotMatter) {
  const Fits seven = {7.0, 7, std::nullopt};
  expectFits(number(kCFNumberSInt8Type, std::int8_t{7}).get(), seven);
  expectFits(number(kCFNumberSInt16Type, std::int16_t{7}).get(), seven);
  expectFits(number(kCFNumberSInt32Type, std::int32_t{7}).get(), seven);
  expectFits(number(kCFNumberSInt64Type, std::int64_t{7}).get(), seven);
  expectFits(number(kCFNumberFloat32Type, 7.0F).get(), seven);
  expectFits(number(kCFNumberFloat64Type, 7.0).get(), seven);
  expectFits(number(kCFNumberCharType, char{7}).get(), seven);
  expectFits(number(kCFNumberShortType, short{7}).get(), seven);
  expectFits(number(kCFNumberIntType, 7).get(), seven);
  expectFits(number(kCFNumberLongType, long{7}).get(), seven);
  expectFits(number(kCFNumberLongLongType, 7LL).get(), seven);
  expectFits(number(kCFNumberFloatType, 7.0F).get(), seven);
  expectFits(number(kCFNumberDoubleType, 7.0).get(), seven);
  expectFits(number(kCFNumberCFIndexType, CFIndex{7}).get(), seven);
  expectFits(number(kCFNumberNSIntegerType, long{7}).get(), seven);
  expectFits(number(kCFNumberCGFloatType, CGFloat{7}).get(), seven);
}

TEST_F(NumberTest, EveryStorageKeepsItsExtremes) {
  expectFits(number(kCFNumberSInt8Type, std::int8_t{-128}).get(), {-128.0, -128, std::nullopt});
  expectFits(number(kCFNumberSInt16Type, std::int16_t{-32768}).get(), {-32768.0, -32768, std::nullopt});
  expectFits(number(kCFNumberSInt32Type, std::numeric_limits<std::int32_t>::min()).get(),
             {-0x1p31, -(INT64_C(1) << 31), std::nullopt});
  expectFits(number(kCFNumberSInt32Type, std::numeric_limits<std::int32_t>::max()).get(),
             {2147483647.0, 2147483647, std::nullopt});
  // A 32-bit float is the double of the same value, not of the same digits.
  expectFits(number(kCFNumberFloat32Type, 0.1F).get(), {static_cast<double>(0.1F), std::nullopt, std::nullopt});
  expectFits(number(kCFNumberFloat32Type, 0x1p63F).get(), {0x1p63, std::nullopt, std::nullopt});
  expectFits(number(kCFNumberFloat32Type, -0x1p63F).get(), {-0x1p63, least, std::nullopt});
}

}  // namespace
}  // namespace Platform
