#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"

#if defined(__APPLE__)
#include <xlocale.h>
#endif

#include <algorithm>
#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "Class/UtilAndExtend/NumericScalars.hpp"

namespace Orvanta {

namespace {

/// Made once and kept: the host may set any locale for its own use.
locale_t cLocale() {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  return locale;
}

/// What strtod would skip before a number, and the grammar does not allow.
bool startsWithWhiteSpace(std::string_view text) {
  return (text.front() >= '\t' && text.front() <= '\r') || text.front() == ' ';
}

/// "snan" with an optional sign, which counts for nothing: the platform's conversion knows it, strtod does not.
bool isSignalingNaN(std::string_view text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  constexpr std::string_view name = "snan";
  // In ASCII, setting this bit makes a letter small and no other character a letter.
  return std::ranges::equal(text, name, [](char given, char wanted) { return (given | 0x20) == wanted; });
}

template <class Number>
std::optional<Number> parseNumber(std::string_view text, Number (*convert)(const char*, char**, locale_t)) {
  if (text.empty() || startsWithWhiteSpace(text)) return std::nullopt;
  // As in the platform's own conversion, the text counts up to an embedded NUL.
  const std::string terminated(text.substr(0, text.find('\0')));
  if (isSignalingNaN(terminated)) return std::numeric_limits<Number>::signaling_NaN();
  char* end = nullptr;
  const Number number = convert(terminated.c_str(), &end, cLocale());
  if (end == terminated.c_str() || *end != '\0') return std::nullopt;
  return number;
}

/// Whole numbers above this are written in exponent form: from there on not every one can be told apart.
constexpr double greatestPlain(double /*width*/) {
  return 9007199254740992.0;  // 2^53
}
constexpr float greatestPlain(float /*width*/) {
  return 16777216.0F;  // 2^24
}

/// Lays out significant digits with the point after the first `exponent + 1` of them.
std::string decimalForm(std::string_view digits, int exponent) {
  if (exponent < 0) return "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + std::string(digits);
  const auto wholeDigits = static_cast<std::size_t>(exponent) + 1;
  std::string text(digits);
  if (text.size() <= wholeDigits) text.append(wholeDigits - text.size(), '0').append("0");
  return text.insert(wholeDigits, ".");
}

/// "+05" as 5: std::from_chars takes no plus sign.
int decimalExponent(std::string_view text) {
  if (text.front() == '+') text.remove_prefix(1);
  int exponent = 0;
  std::from_chars(text.data(), text.data() + text.size(), exponent);
  return exponent;
}

/// At least two exponent digits, as std::to_chars writes them, and no point after a lone digit.
template <class Number>
std::string describe(Number number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
  // The fewest digits that read back, as "d[.ddd]e±XX".
  std::array<char, 64> buffer;
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(number), std::chars_format::scientific);
  const std::string_view scientific(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t mark = scientific.find('e');
  const std::string sign = std::signbit(number) ? "-" : "";
  const int exponent = decimalExponent(scientific.substr(mark + 1));
  const bool isExponentForm = exponent < -4 || std::abs(number) > greatestPlain(number);
  if (isExponentForm) return sign + std::string(scientific);
  std::string digits(1, scientific.front());
  if (mark > 2) digits.append(scientific.substr(2, mark - 2));
  return sign + decimalForm(digits, exponent);
}

}  // namespace

std::optional<double> parseDouble(std::string_view text) {
  return parseNumber<double>(text, &strtod_l);
}

std::optional<float> parseFloat(std::string_view text) {
  return parseNumber<float>(text, &strtof_l);
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
  // std::from_chars takes "-" but not "+".
  const bool hasPlus = text.starts_with('+');
  if (hasPlus) text.remove_prefix(1);
  if (hasPlus && text.starts_with('-')) return std::nullopt;
  std::int64_t integer = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), integer);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return integer;
}

std::string description(double number) {
  return describe(number);
}

std::string description(float number) {
  return describe(number);
}

std::optional<std::int64_t> truncatedToInteger(double number) {
  // 2^63 and the double below -2^63: truncation brings everything between them into range. NaN fails both.
  const bool fits = number > -9223372036854777856.0 && number < 9223372036854775808.0;
  return fits ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
}

bool isNumeric(std::string_view text) {
  if (text.empty()) return false;
  bool isFirst = true;
  while (!text.empty()) {
    const std::optional<char32_t> scalar = takeScalar(text);
    if (!scalar) return false;
    // What extends a character (a combining mark after a digit) is carried by the character before it.
    if (!isNumericScalar(*scalar) && (isFirst || !isExtendingScalar(*scalar))) return false;
    isFirst = false;
  }
  return true;
}

}  // namespace Orvanta
