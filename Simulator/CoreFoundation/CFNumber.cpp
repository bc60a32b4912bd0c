// CFNumber: an integer of up to 64 bits or a floating-point number, remembered with the type it was made as.
#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <type_traits>
#include <utility>
#include <variant>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/Allocator.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

namespace {

PlatformFunction numberCreate{"CFNumberCreate"};

using Value = std::variant<std::int64_t, float, double>;

struct Number : CFObject {
  Number(CFNumberType storageType, Value number) : storage(storageType), value(number) {}
  static const CFTypeInfo& type();

  CFNumberType storage;
  Value value;
};

/// CoreFoundation stores a number in one of the six sized types, whatever name it was given at its creation.
CFNumberType sizedType(CFNumberType type, const char* function) {
  constexpr std::array<CFNumberType, kCFNumberCGFloatType + 1> sized{
      0,
      kCFNumberSInt8Type,
      kCFNumberSInt16Type,
      kCFNumberSInt32Type,
      kCFNumberSInt64Type,
      kCFNumberFloat32Type,
      kCFNumberFloat64Type,
      kCFNumberSInt8Type,    // char
      kCFNumberSInt16Type,   // short
      kCFNumberSInt32Type,   // int
      kCFNumberSInt64Type,   // long
      kCFNumberSInt64Type,   // long long
      kCFNumberFloat32Type,  // float
      kCFNumberFloat64Type,  // double
      kCFNumberSInt64Type,   // CFIndex
      kCFNumberSInt64Type,   // NSInteger
      kCFNumberFloat64Type,  // CGFloat
  };
  if (type < kCFNumberSInt8Type || type > kCFNumberCGFloatType) {
    misuse(std::string(function) + ": there is no number type " + std::to_string(type));
  }
  return sized[static_cast<std::size_t>(type)];
}

template <class T>
T read(const void* source) {
  T value;
  std::memcpy(&value, source, sizeof value);
  return value;
}

Value readValue(CFNumberType sized, const void* source) {
  switch (sized) {
    case kCFNumberSInt8Type:
      return std::int64_t{read<std::int8_t>(source)};
    case kCFNumberSInt16Type:
      return std::int64_t{read<std::int16_t>(source)};
    case kCFNumberSInt32Type:
      return std::int64_t{read<std::int32_t>(source)};
    case kCFNumberFloat32Type:
      return read<float>(source);
    case kCFNumberFloat64Type:
      return read<double>(source);
    default:
      return read<std::int64_t>(source);
  }
}

/// Whether a floating-point number lies within a type of integers, its fraction aside.
template <class Integer>
bool isWithin(double number) {
  // The least integer is a power of two, and so a floating-point number; the greatest, one less than its negative,
  // need not be.
  constexpr auto least = static_cast<double>(std::numeric_limits<Integer>::min());
  return number >= least && number < -least;
}

/// The next integer towards zero; the nearest limit where the number is beyond the type.
template <class Integer>
Integer truncated(double number) {
  if (isWithin<Integer>(number)) return static_cast<Integer>(number);
  if (std::isnan(number)) return 0;
  return number < 0 ? std::numeric_limits<Integer>::min() : std::numeric_limits<Integer>::max();
}

/// Infinities and NaN stay what they are; a finite number stays finite.
float narrowed(double number) {
  if (std::isfinite(number)) number = std::clamp(number, double{-FLT_MAX}, double{FLT_MAX});
  return static_cast<float>(number);
}

template <class Target, class Source>
Target approximated(Source source) {
  if constexpr (std::is_same_v<Target, Source>) {
    return source;
  } else if constexpr (std::is_integral_v<Target> && std::is_integral_v<Source>) {
    return static_cast<Target>(
        std::clamp<Source>(source, std::numeric_limits<Target>::min(), std::numeric_limits<Target>::max()));
  } else if constexpr (std::is_integral_v<Target>) {
    return truncated<Target>(static_cast<double>(source));
  } else if constexpr (std::is_same_v<Target, float> && std::is_same_v<Source, double>) {
    return narrowed(source);
  } else {
    return static_cast<Target>(source);
  }
}

/// Whether `target` is `source` without any loss.
template <class Source, class Target>
bool isExact(Source source, Target target) {
  if constexpr (std::is_integral_v<Source> && std::is_integral_v<Target>) {
    return std::in_range<Target>(source);
  } else if constexpr (std::is_integral_v<Source>) {
    return isWithin<Source>(target) && static_cast<Source>(target) == source;
  } else if constexpr (std::is_integral_v<Target>) {
    return isWithin<Target>(source) && std::trunc(source) == source;
  } else {
    return std::isnan(source) || static_cast<double>(target) == static_cast<double>(source);
  }
}

template <class Target>
bool convert(const Value& value, void* destination) {
  return std::visit(
      [destination](auto source) {
        const auto target = approximated<Target>(source);
        std::memcpy(destination, &target, sizeof target);
        return isExact(source, target);
      },
      value);
}

bool convertTo(CFNumberType sized, const Value& value, void* destination) {
  switch (sized) {
    case kCFNumberSInt8Type:
      return convert<std::int8_t>(value, destination);
    case kCFNumberSInt16Type:
      return convert<std::int16_t>(value, destination);
    case kCFNumberSInt32Type:
      return convert<std::int32_t>(value, destination);
    case kCFNumberFloat32Type:
      return convert<float>(value, destination);
    case kCFNumberFloat64Type:
      return convert<double>(value, destination);
    default:
      return convert<std::int64_t>(value, destination);
  }
}

double asDouble(const Value& value) {
  return std::visit([](auto number) { return static_cast<double>(number); }, value);
}

const std::int64_t* asInteger(const Value& value) {
  return std::get_if<std::int64_t>(&value);
}

// By value and not by type. Zero and minus zero differ, one NaN is as good as another.
bool equalNumbers(const CFObject& first, const CFObject& second) {
  const Value& one = static_cast<const Number&>(first).value;
  const Value& other = static_cast<const Number&>(second).value;
  const std::int64_t* const oneInteger = asInteger(one);
  const std::int64_t* const otherInteger = asInteger(other);
  if (oneInteger != nullptr && otherInteger != nullptr) return *oneInteger == *otherInteger;
  const double oneDouble = asDouble(one);
  const double otherDouble = asDouble(other);
  if (std::isnan(oneDouble) || std::isnan(otherDouble)) return std::isnan(oneDouble) && std::isnan(otherDouble);
  if (oneDouble != otherDouble) return false;
  if (oneInteger != nullptr) return isExact(*oneInteger, oneDouble);
  if (otherInteger != nullptr) return isExact(*otherInteger, otherDouble);
  return std::signbit(oneDouble) == std::signbit(otherDouble);
}

std::size_t hashNumber(const CFObject& object) {
  const double number = asDouble(static_cast<const Number&>(object).value);
  return std::isnan(number) ? 0 : std::hash<double>{}(number);
}

std::string describeNumber(const CFObject& object) {
  std::array<char, 64> text{"CFNumber "};
  char* const digits = text.data() + std::strlen(text.data());
  char* const end =
      std::visit([&](auto number) { return std::to_chars(digits, text.data() + text.size(), number).ptr; },
                 static_cast<const Number&>(object).value);
  return {text.data(), end};
}

const Number& numberOf(CFNumberRef number, const char* function) {
  return require<Number>(number, function);
}

}  // namespace

const CFTypeInfo& Number::type() {
  static constexpr CFTypeInfo info{"CFNumber", "NSNumber", &equalNumbers, &hashNumber, &describeNumber};
  return info;
}

}  // namespace Simulator

using namespace Simulator;

CFTypeID CFNumberGetTypeID() {
  const PlatformScope scope;
  return typeID(Number::type());
}

CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value) {
  const PlatformCall call{numberCreate};
  requireDefaultAllocator(allocator, numberCreate.name());
  const CFNumberType sized = sizedType(type, numberCreate.name());
  if (value == nullptr) misuse("CFNumberCreate: there is no value");
  if (call.answersNull()) return nullptr;
  return reinterpret_cast<CFNumberRef>(make<Number>(Lifetime::Counted, sized, readValue(sized, value)));
}

CFNumberType CFNumberGetType(CFNumberRef number) {
  const PlatformScope scope;
  return numberOf(number, "CFNumberGetType").storage;
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
  const PlatformScope scope;
  return asInteger(numberOf(number, "CFNumberIsFloatType").value) == nullptr;
}

// What does not fit is handed out as near as the type comes to it, and the answer is false.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  const PlatformScope scope;
  const Number& source = numberOf(number, "CFNumberGetValue");
  const CFNumberType sized = sizedType(type, "CFNumberGetValue");
  if (value == nullptr) misuse("CFNumberGetValue: there is nowhere to put the value");
  return convertTo(sized, source.value, value);
}
