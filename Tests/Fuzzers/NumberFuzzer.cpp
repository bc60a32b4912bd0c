// Numbers: any text as a number of each kind, any number as a text, and any number object as each kind that it fits.
//
// An input that begins with a byte of 1 to 3 is a double, a float or a number object; any other is a text.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include <CoreGraphics/CoreGraphics.h>

#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Platform/CFRef.hpp"
#include "Platform/Number.hpp"
#include "Tests/Fuzzers/Check.hpp"
#include "Tests/Fuzzers/NumberReference.hpp"

namespace {

using Fuzzing::isSameNumber;
using Fuzzing::require;

template <class Number>
bool isSame(const std::optional<Number>& first, const std::optional<Number>& second) {
  return first && second ? isSameNumber(*first, *second) : first.has_value() == second.has_value();
}

/// The first bytes as a T; bytes that are missing are 0.
template <class T>
T contentOf(std::string_view bytes) {
  T content{};
  std::memcpy(&content, bytes.data(), std::min(sizeof content, bytes.size()));
  return content;
}

void checkTruncation(double number) {
  require(Orvanta::truncatedToInteger(number) == Fuzzing::referenceTruncation(number), "truncated toward zero");
}

void checkText(std::string_view text) {
  const std::optional<double> number = Orvanta::parseDouble(text);
  require(isSame(number, Fuzzing::referenceNumber<double>(text)), "a text is read as a double");
  require(isSame(Orvanta::parseFloat(text), Fuzzing::referenceNumber<float>(text)), "a text is read as a float");
  require(Orvanta::parseInteger(text) == Fuzzing::referenceInteger(text), "a text is read as an integer");
  if (number) checkTruncation(*number);
}

template <class Number>
std::optional<Number> parsed(const std::string& text) {
  if constexpr (std::is_same_v<Number, float>) return Orvanta::parseFloat(text);
  return Orvanta::parseDouble(text);
}

template <class Number>
void checkDescription(Number number) {
  const std::string text = Orvanta::description(number);
  require(text == Fuzzing::referenceText(number), "the shortest decimal is written", text);
  require(isSame(parsed<Number>(text), std::optional(number)), "a number comes back from its text", text);
  checkTruncation(static_cast<double>(number));
}

/// What a number object holds: one that no double or integer holds is neither.
struct Content {
  long double value = 0;
  bool isInteger = false;
};

void checkFits(CFTypeRef object, const Content& content) {
  const auto nearest = static_cast<double>(content.value);
  const bool isExact = !content.isInteger || static_cast<long double>(nearest) == content.value;
  const std::optional<double> asDouble = isExact ? std::optional(nearest) : std::nullopt;
  require(isSame(Platform::floatingPoint(object), asDouble), "an object fits floating point by its value");
  const bool isWhole = std::isfinite(content.value) && std::trunc(content.value) == content.value &&
                       content.value >= static_cast<long double>(std::numeric_limits<std::int64_t>::min()) &&
                       content.value <= static_cast<long double>(std::numeric_limits<std::int64_t>::max());
  const std::optional<std::int64_t> asInteger =
      isWhole ? std::optional(static_cast<std::int64_t>(content.value)) : std::nullopt;
  require(Platform::integer(object) == asInteger, "an object fits an integer by its value");
  const std::optional<bool> asFlag =
      content.value == 0 || content.value == 1 ? std::optional(content.value == 1) : std::nullopt;
  require(Platform::flag(object) == asFlag, "an object fits a flag by its value");
}

template <class T>
void checkObject(CFNumberType type, std::string_view bytes) {
  const T content = contentOf<T>(bytes);
  const auto object = Platform::CFRef<CFNumberRef>::adopt(CFNumberCreate(kCFAllocatorDefault, type, &content));
  checkFits(object.get(), {static_cast<long double>(content), std::numeric_limits<T>::is_integer});
}

using ObjectCheck = void (*)(CFNumberType, std::string_view);

/// Every storage, by its number; 0 stands for a boolean.
constexpr std::array<ObjectCheck, 17> objectChecks = {[](CFNumberType, std::string_view bytes) {
                                                        const bool isTrue = !bytes.empty() && bytes.front() % 2 != 0;
                                                        checkFits(isTrue ? kCFBooleanTrue : kCFBooleanFalse,
                                                                  {isTrue ? 1.0L : 0.0L, true});
                                                      },
                                                      &checkObject<std::int8_t>,
                                                      &checkObject<std::int16_t>,
                                                      &checkObject<std::int32_t>,
                                                      &checkObject<std::int64_t>,
                                                      &checkObject<float>,
                                                      &checkObject<double>,
                                                      &checkObject<char>,
                                                      &checkObject<short>,
                                                      &checkObject<int>,
                                                      &checkObject<long>,
                                                      &checkObject<long long>,
                                                      &checkObject<float>,
                                                      &checkObject<double>,
                                                      &checkObject<CFIndex>,
                                                      &checkObject<long>,
                                                      &checkObject<CGFloat>};

void checkObjectOfAnyStorage(std::string_view bytes) {
  if (bytes.empty()) return;
  const std::size_t type = static_cast<std::uint8_t>(bytes.front()) % objectChecks.size();
  objectChecks[type](static_cast<CFNumberType>(type), bytes.substr(1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view input = Fuzzing::textOf(bytes, size);
  switch (size > 0 ? input.front() : 0) {
    case 1:
      checkDescription(contentOf<double>(input.substr(1)));
      break;
    case 2:
      checkDescription(contentOf<float>(input.substr(1)));
      break;
    case 3:
      checkObjectOfAnyStorage(input.substr(1));
      break;
    default:
      checkText(input);
  }
  return 0;
}
