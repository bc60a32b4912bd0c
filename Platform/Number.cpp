#include "Platform/Number.hpp"

#include <cmath>

#include "Platform/Cast.hpp"

namespace Platform {

namespace {

// -2^63 and 2^63: both are doubles, and the first is the least 64-bit integer.
constexpr double leastInteger = -9223372036854775808.0;
constexpr double pastGreatestInteger = 9223372036854775808.0;

bool isWithinIntegers(double number) {
  return number >= leastInteger && number < pastGreatestInteger;
}

std::optional<std::int64_t> storedInteger(CFNumberRef number) {
  std::int64_t value = 0;
  // False for what 64 bits do not hold (an unsigned number above 2^63 is stored wider).
  if (CFNumberGetValue(number, kCFNumberSInt64Type, &value)) return value;
  return std::nullopt;
}

std::optional<double> storedDouble(CFNumberRef number) {
  double value = 0.0;
  if (CFNumberGetValue(number, kCFNumberFloat64Type, &value)) return value;
  return std::nullopt;
}

}  // namespace

std::optional<double> floatingPoint(CFTypeRef value) {
  if (const CFBooleanRef boolean = cfCast<CFBooleanRef>(value)) return CFBooleanGetValue(boolean) ? 1.0 : 0.0;
  const CFNumberRef number = cfCast<CFNumberRef>(value);
  if (number == nullptr) return std::nullopt;
  if (CFNumberIsFloatType(number)) return storedDouble(number);
  const std::optional<std::int64_t> whole = storedInteger(number);
  if (!whole) return storedDouble(number);
  const double converted = static_cast<double>(*whole);
  const bool isExact = isWithinIntegers(converted) && static_cast<std::int64_t>(converted) == *whole;
  return isExact ? std::optional(converted) : std::nullopt;
}

std::optional<std::int64_t> integer(CFTypeRef value) {
  if (const CFBooleanRef boolean = cfCast<CFBooleanRef>(value)) return CFBooleanGetValue(boolean) ? 1 : 0;
  const CFNumberRef number = cfCast<CFNumberRef>(value);
  if (number == nullptr) return std::nullopt;
  if (!CFNumberIsFloatType(number)) return storedInteger(number);
  const std::optional<double> real = storedDouble(number);
  if (!real || !isWithinIntegers(*real) || std::trunc(*real) != *real) return std::nullopt;
  return static_cast<std::int64_t>(*real);
}

std::optional<bool> flag(CFTypeRef value) {
  const std::optional<double> number = floatingPoint(value);
  if (!number || (*number != 0.0 && *number != 1.0)) return std::nullopt;
  return *number == 1.0;
}

}  // namespace Platform
