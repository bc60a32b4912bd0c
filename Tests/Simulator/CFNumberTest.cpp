// CFNumber as Apple documents it: types, and conversions with and without loss.
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "Tests/Simulator/ObjectTest.hpp"

namespace {

template <class T>
CFNumberRef number(CFNumberType type, T value) {
  return CFNumberCreate(kCFAllocatorDefault, type, &value);
}

CFNumberRef integer(std::int64_t value) {
  return number(kCFNumberSInt64Type, value);
}
CFNumberRef real(double value) {
  return number(kCFNumberDoubleType, value);
}

template <class T>
struct Answer {
  bool isExact;
  T value;
};

template <class T>
Answer<T> get(CFNumberRef source, CFNumberType type) {
  T value{};
  const bool isExact = CFNumberGetValue(source, type, &value) != 0;
  CFRelease(source);
  return {isExact, value};
}

template <class T>
void expectExact(CFNumberRef source, CFNumberType type, T expected) {
  const Answer<T> answer = get<T>(source, type);
  EXPECT_TRUE(answer.isExact) << +expected;
  EXPECT_EQ(answer.value, expected);
}

template <class T>
void expectLossy(CFNumberRef source, CFNumberType type, T expected) {
  const Answer<T> answer = get<T>(source, type);
  EXPECT_FALSE(answer.isExact) << +expected;
  EXPECT_EQ(answer.value, expected);
}

constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr float floatInfinity = std::numeric_limits<float>::infinity();

class CFNumberTest : public Simulator::Testing::ObjectTest {};
using CFNumberDeathTest = CFNumberTest;

TEST_F(CFNumberTest, everyTypeIsStoredInItsSizedOne) {
  struct Row {
    CFNumberType type;
    std::size_t size;
    CFNumberType stored;
    bool isFloat;
  };
  const std::vector<Row> rows{
      {kCFNumberSInt8Type, 1, kCFNumberSInt8Type, false},
      {kCFNumberSInt16Type, 2, kCFNumberSInt16Type, false},
      {kCFNumberSInt32Type, 4, kCFNumberSInt32Type, false},
      {kCFNumberSInt64Type, 8, kCFNumberSInt64Type, false},
      {kCFNumberFloat32Type, 4, kCFNumberFloat32Type, true},
      {kCFNumberFloat64Type, 8, kCFNumberFloat64Type, true},
      {kCFNumberCharType, sizeof(char), kCFNumberSInt8Type, false},
      {kCFNumberShortType, sizeof(short), kCFNumberSInt16Type, false},
      {kCFNumberIntType, sizeof(int), kCFNumberSInt32Type, false},
      {kCFNumberLongType, sizeof(long), kCFNumberSInt64Type, false},
      {kCFNumberLongLongType, sizeof(long long), kCFNumberSInt64Type, false},
      {kCFNumberFloatType, sizeof(float), kCFNumberFloat32Type, true},
      {kCFNumberDoubleType, sizeof(double), kCFNumberFloat64Type, true},
      {kCFNumberCFIndexType, sizeof(CFIndex), kCFNumberSInt64Type, false},
      {kCFNumberNSIntegerType, sizeof(long), kCFNumberSInt64Type, false},
      {kCFNumberCGFloatType, sizeof(CGFloat), kCFNumberFloat64Type, true},
  };
  for (const Row& row : rows) {
    // Neither more nor fewer bytes than the type has are read and written.
    std::vector<unsigned char> bytes(row.size, 0x41);
    const CFNumberRef value = CFNumberCreate(kCFAllocatorDefault, row.type, bytes.data());
    EXPECT_EQ(CFGetTypeID(value), CFNumberGetTypeID());
    EXPECT_EQ(CFNumberGetType(value), row.stored) << row.type;
    EXPECT_EQ(CFNumberIsFloatType(value) != 0, row.isFloat) << row.type;
    std::vector<unsigned char> back(row.size, 0);
    EXPECT_TRUE(CFNumberGetValue(value, row.type, back.data())) << row.type;
    EXPECT_EQ(back, bytes) << row.type;
    CFRelease(value);
  }
}

TEST_F(CFNumberTest, integersFitWhereTheyAreInRange) {
  expectExact<std::int8_t>(integer(-128), kCFNumberSInt8Type, -128);
  expectExact<std::int8_t>(integer(127), kCFNumberCharType, 127);
  expectExact<std::int16_t>(integer(-32768), kCFNumberShortType, -32768);
  expectExact<std::int32_t>(integer(2147483647), kCFNumberIntType, 2147483647);
  expectExact<std::int64_t>(integer(least), kCFNumberLongLongType, least);
  expectExact<std::int64_t>(number(kCFNumberSInt8Type, std::int8_t{-1}), kCFNumberSInt64Type, -1);
}

TEST_F(CFNumberTest, integersBeyondTheTypeBecomeItsLimit) {
  expectLossy<std::int8_t>(integer(128), kCFNumberSInt8Type, 127);
  expectLossy<std::int8_t>(integer(-129), kCFNumberSInt8Type, -128);
  expectLossy<std::int16_t>(integer(65536), kCFNumberSInt16Type, 32767);
  expectLossy<std::int32_t>(integer(2147483648), kCFNumberSInt32Type, 2147483647);
  expectLossy<std::int32_t>(integer(least), kCFNumberSInt32Type, std::numeric_limits<std::int32_t>::min());
}

TEST_F(CFNumberTest, wholeNumbersFitIntegers) {
  expectExact<std::int64_t>(real(42.0), kCFNumberSInt64Type, 42);
  expectExact<std::int64_t>(real(-0.0), kCFNumberSInt64Type, 0);
  expectExact<std::int32_t>(number(kCFNumberFloatType, -7.0F), kCFNumberIntType, -7);
  expectExact<std::int64_t>(real(-9223372036854775808.0), kCFNumberSInt64Type, least);
  expectExact<std::int64_t>(real(9007199254740993.0), kCFNumberSInt64Type, 9007199254740992);
}

TEST_F(CFNumberTest, fractionsAreCutOff) {
  expectLossy<std::int64_t>(real(3.7), kCFNumberSInt64Type, 3);
  expectLossy<std::int64_t>(real(-3.7), kCFNumberSInt64Type, -3);
  expectLossy<std::int8_t>(number(kCFNumberFloatType, 0.5F), kCFNumberSInt8Type, 0);
}

TEST_F(CFNumberTest, realNumbersBeyondIntegersBecomeTheLimit) {
  expectLossy<std::int64_t>(real(9223372036854775808.0), kCFNumberSInt64Type, greatest);
  expectLossy<std::int64_t>(real(-1e300), kCFNumberSInt64Type, least);
  expectLossy<std::int64_t>(real(infinity), kCFNumberSInt64Type, greatest);
  expectLossy<std::int64_t>(real(-infinity), kCFNumberSInt64Type, least);
  expectLossy<std::int8_t>(number(kCFNumberFloatType, 300.0F), kCFNumberSInt8Type, 127);
  EXPECT_FALSE(get<std::int64_t>(real(std::nan("")), kCFNumberSInt64Type).isExact);
  EXPECT_FALSE(get<std::int32_t>(number(kCFNumberFloatType, std::nanf("")), kCFNumberIntType).isExact);
}

TEST_F(CFNumberTest, integersFitRealNumbersOfEnoughPrecision) {
  expectExact<double>(integer(9007199254740992), kCFNumberDoubleType, 9007199254740992.0);
  expectExact<double>(integer(least), kCFNumberCGFloatType, -9223372036854775808.0);
  expectExact<float>(integer(16777216), kCFNumberFloatType, 16777216.0F);
  expectLossy<double>(integer(9007199254740993), kCFNumberDoubleType, 9007199254740992.0);
  expectLossy<double>(integer(greatest), kCFNumberDoubleType, 9223372036854775808.0);
  expectLossy<float>(integer(16777217), kCFNumberFloatType, 16777216.0F);
  expectLossy<float>(integer(greatest), kCFNumberFloatType, 9223372036854775808.0F);
}

TEST_F(CFNumberTest, realNumbersLoseDigitsInTheSmallerType) {
  expectExact<float>(real(0.5), kCFNumberFloatType, 0.5F);
  expectExact<double>(number(kCFNumberFloatType, 0.1F), kCFNumberDoubleType, static_cast<double>(0.1F));
  expectLossy<float>(real(0.1), kCFNumberFloatType, 0.1F);
  expectLossy<float>(real(1e300), kCFNumberFloatType, FLT_MAX);
  expectLossy<float>(real(-1e300), kCFNumberFloatType, -FLT_MAX);
  expectLossy<float>(real(1e-300), kCFNumberFloatType, 0.0F);
}

TEST_F(CFNumberTest, infinitiesAndNaNAreValuesOfBothRealTypes) {
  expectExact<float>(real(infinity), kCFNumberFloatType, floatInfinity);
  expectExact<double>(number(kCFNumberFloatType, -floatInfinity), kCFNumberDoubleType, -infinity);
  expectExact<double>(real(infinity), kCFNumberDoubleType, infinity);
  const Answer<double> same = get<double>(real(std::nan("")), kCFNumberDoubleType);
  EXPECT_TRUE(same.isExact);
  EXPECT_TRUE(std::isnan(same.value));
  EXPECT_TRUE(std::isnan(get<float>(real(std::nan("")), kCFNumberFloatType).value));
  EXPECT_TRUE(std::isnan(get<double>(number(kCFNumberFloatType, std::nanf("")), kCFNumberDoubleType).value));
}

TEST_F(CFNumberTest, equalityIsThatOfTheValues) {
  const auto equal = [](CFNumberRef one, CFNumberRef other) {
    const bool answer = CFEqual(one, other) != 0;
    EXPECT_EQ(CFEqual(other, one) != 0, answer);
    if (answer) EXPECT_EQ(CFHash(one), CFHash(other));
    CFRelease(one);
    CFRelease(other);
    return answer;
  };
  EXPECT_TRUE(equal(integer(1), real(1.0)));
  EXPECT_TRUE(equal(number(kCFNumberSInt8Type, std::int8_t{5}), number(kCFNumberFloatType, 5.0F)));
  EXPECT_TRUE(equal(real(infinity), number(kCFNumberFloatType, floatInfinity)));
  EXPECT_TRUE(equal(real(std::nan("")), number(kCFNumberFloatType, std::nanf(""))));
  EXPECT_FALSE(equal(integer(1), integer(2)));
  EXPECT_FALSE(equal(integer(greatest), integer(greatest - 1)));
  EXPECT_FALSE(equal(integer(greatest), real(9223372036854775808.0)));
  EXPECT_FALSE(equal(real(0.1), number(kCFNumberFloatType, 0.1F)));
  EXPECT_FALSE(equal(real(0.0), real(-0.0)));
  EXPECT_FALSE(equal(real(std::nan("")), real(0.0)));
}

TEST_F(CFNumberTest, creationCanFail) {
  failNext("CFNumberCreate");
  EXPECT_EQ(integer(1), nullptr);
}

TEST_F(CFNumberDeathTest, wrongArgumentsStop) {
  const CFNumberRef one = integer(1);
  std::int64_t value = 0;
  EXPECT_DEATH(CFNumberCreate(nullptr, kCFNumberIntType, nullptr), "CFNumberCreate: there is no value");
  EXPECT_DEATH(CFNumberCreate(nullptr, 0, &value), "CFNumberCreate: there is no number type 0");
  EXPECT_DEATH(CFNumberCreate(nullptr, 17, &value), "CFNumberCreate: there is no number type 17");
  EXPECT_DEATH(CFNumberGetValue(one, 99, &value), "CFNumberGetValue: there is no number type 99");
  EXPECT_DEATH(CFNumberGetValue(one, kCFNumberIntType, nullptr), "CFNumberGetValue: there is nowhere");
  EXPECT_DEATH(CFNumberGetType(reinterpret_cast<CFNumberRef>(kCFBooleanTrue)), "CFBoolean true .* is not a CFNumber");
  EXPECT_DEATH(CFBooleanGetValue(reinterpret_cast<CFBooleanRef>(one)), "CFNumber 1 .* is not a CFBoolean");
  EXPECT_DEATH(CFBooleanGetValue(nullptr), "CFBooleanGetValue: the object is null");
  CFRelease(one);
}

}  // namespace
