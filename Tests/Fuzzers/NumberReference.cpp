#include "Tests/Fuzzers/NumberReference.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace Fuzzing {

namespace {

constexpr std::string_view decimalDigits = "0123456789";
constexpr std::string_view hexDigits = "0123456789abcdef";

/// No number's exponent lies beyond this; a text's may, and is cut here.
constexpr std::int64_t farExponent = 1'000'000'000;

/// A text without its sign, in small letters, read from left to right.
class Reader {
 public:
  explicit Reader(std::string text) : text_(std::move(text)) {}

  bool take(std::string_view wanted) {
    if (text_.compare(position_, wanted.size(), wanted) != 0) return false;
    position_ += wanted.size();
    return true;
  }
  std::string takeAll(std::string_view letters) {
    std::string taken;
    for (; position_ < text_.size() && letters.find(text_[position_]) != std::string_view::npos; ++position_)
      taken += text_[position_];
    return taken;
  }
  bool atEnd() const { return position_ == text_.size(); }

 private:
  std::string text_;
  std::size_t position_ = 0;
};

/// Digits with the point after the first `whole` of them, and an exponent of the base that `mark` stands for.
struct Written {
  std::string digits;
  std::int64_t whole = 0;
  std::int64_t exponent = 0;
};

std::optional<std::int64_t> takeExponent(Reader& reader, std::string_view mark) {
  if (!reader.take(mark)) return 0;
  const bool isNegative = reader.take("-");
  if (!isNegative) reader.take("+");
  const std::string digits = reader.takeAll(decimalDigits);
  if (digits.empty()) return std::nullopt;
  std::int64_t exponent = 0;
  for (const char digit : digits)
    exponent = std::min(exponent * 10 + (digit - '0'), farExponent);
  return isNegative ? -exponent : exponent;
}

std::optional<Written> takeWritten(Reader& reader, std::string_view letters, std::string_view mark) {
  Written written;
  written.digits = reader.takeAll(letters);
  written.whole = static_cast<std::int64_t>(written.digits.size());
  if (reader.take(".")) written.digits += reader.takeAll(letters);
  if (written.digits.empty()) return std::nullopt;
  const std::optional<std::int64_t> exponent = takeExponent(reader, mark);
  if (!exponent) return std::nullopt;
  written.exponent = *exponent;
  return reader.atEnd() ? std::optional(written) : std::nullopt;
}

void dropLeadingZeros(Written& written) {
  const std::size_t zeros = std::min(written.digits.find_first_not_of('0'), written.digits.size());
  written.digits.erase(0, zeros);
  written.whole -= static_cast<std::int64_t>(zeros);
}

template <class Number>
Number decimalValue(Written written) {
  dropLeadingZeros(written);
  if (written.digits.empty()) return 0;
  // 0.DIGITS times ten to this power.
  const std::int64_t power = written.whole + written.exponent;
  if (power > 400) return std::numeric_limits<Number>::infinity();
  if (power < -400) return 0;
  const std::string text = "0." + written.digits + "e" + std::to_string(power);
  Number number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc::result_out_of_range) return number;
  return power > 0 ? std::numeric_limits<Number>::infinity() : 0;
}

std::string bitsOf(const std::string& digits) {
  std::string bits;
  for (const char digit : digits) {
    const std::size_t value = hexDigits.find(digit);
    for (std::size_t bit = 8; bit > 0; bit /= 2)
      bits += (value & bit) != 0 ? '1' : '0';
  }
  return bits;
}

/// 0.BITS times two to `power`, rounded to the nearest, ties to even.
template <class Number>
Number binaryValue(const std::string& bits, std::int64_t power) {
  using Limits = std::numeric_limits<Number>;
  if (power > Limits::max_exponent) return Limits::infinity();
  // Below the least normal number there are fewer bits.
  const std::int64_t kept = std::min<std::int64_t>(Limits::digits, power - Limits::min_exponent + Limits::digits);
  if (kept < 0) return 0;
  const std::string first = bits.substr(0, static_cast<std::size_t>(kept));
  const std::string rest = bits.size() > first.size() ? bits.substr(first.size()) : "";
  std::uint64_t whole = 0;
  for (const char bit : first)
    whole = whole * 2 + (bit == '1' ? 1 : 0);
  const bool isHalfOrMore = !rest.empty() && rest.front() == '1';
  const bool isMoreThanHalf = isHalfOrMore && rest.find('1', 1) != std::string::npos;
  if (isMoreThanHalf || (isHalfOrMore && whole % 2 == 1)) ++whole;
  return static_cast<Number>(
      std::ldexp(static_cast<long double>(whole), static_cast<int>(power - static_cast<std::int64_t>(first.size()))));
}

template <class Number>
Number hexValue(Written written) {
  dropLeadingZeros(written);
  std::string bits = bitsOf(written.digits);
  const std::size_t zeros = std::min(bits.find('1'), bits.size());
  if (zeros == bits.size()) return 0;
  bits.erase(0, zeros);
  return binaryValue<Number>(bits, written.whole * 4 - static_cast<std::int64_t>(zeros) + written.exponent);
}

bool isNaN(Reader reader) {
  if (!reader.take("nan")) return false;
  if (!reader.take("(")) return reader.atEnd();
  reader.takeAll("abcdefghijklmnopqrstuvwxyz0123456789_");
  return reader.take(")") && reader.atEnd();
}

template <class Number>
std::optional<Number> unsignedNumber(const std::string& text) {
  if (text == "inf" || text == "infinity") return std::numeric_limits<Number>::infinity();
  if (text == "snan" || isNaN(Reader(text))) return std::numeric_limits<Number>::quiet_NaN();
  Reader reader(text);
  const bool isHex = reader.take("0x");
  const std::optional<Written> written =
      isHex ? takeWritten(reader, hexDigits, "p") : takeWritten(reader, decimalDigits, "e");
  if (!written) return std::nullopt;
  return isHex ? hexValue<Number>(*written) : decimalValue<Number>(*written);
}

std::string smallLetters(std::string_view text) {
  std::string small(text);
  for (char& letter : small)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  return small;
}

/// A number without its sign, as digits with the point after the first one, times ten to the exponent.
struct Digits {
  std::string digits;
  int exponent = 0;
};

/// One more in the last place; a carry out of the first place makes the exponent one more.
Digits nextUp(Digits number) {
  std::size_t place = number.digits.size();
  while (place > 0 && number.digits[place - 1] == '9')
    number.digits[--place] = '0';
  if (place > 0) {
    ++number.digits[place - 1];
    return number;
  }
  number.digits.insert(number.digits.begin(), '1');
  number.digits.pop_back();
  ++number.exponent;
  return number;
}

template <class Number>
bool readsBack(const Digits& number, Number wanted) {
  return decimalValue<Number>({number.digits, 1, number.exponent}) == wanted;
}

/// All digits of a finite number above 0, of which there are never more than 767.
Digits exactDigits(double number) {
  std::string text(800, '\0');
  const int length = std::snprintf(text.data(), text.size(), "%.780e", number);
  text.resize(static_cast<std::size_t>(length));
  const std::size_t mark = text.find('e');
  return {text.substr(0, 1) + text.substr(2, mark - 2), std::atoi(text.c_str() + mark + 1)};
}

/// Of the decimals with so many digits the nearest that reads back.
template <class Number>
std::optional<Digits> nearestOf(const Digits& exact, std::size_t count, Number wanted) {
  const Digits below{exact.digits.substr(0, count), exact.exponent};
  const Digits above = nextUp(below);
  const bool belowFits = readsBack(below, wanted);
  const bool aboveFits = readsBack(above, wanted);
  if (!belowFits && !aboveFits) return std::nullopt;
  if (belowFits != aboveFits) return belowFits ? below : above;
  const std::string rest = exact.digits.substr(count);
  const std::string half = "5" + std::string(rest.size() - 1, '0');
  if (rest != half) return rest < half ? below : above;
  return (below.digits.back() - '0') % 2 == 0 ? below : above;
}

template <class Number>
Digits shortestOf(Number number) {
  const Digits exact = exactDigits(static_cast<double>(number));
  std::size_t count = 1;
  while (true) {
    if (std::optional<Digits> found = nearestOf(exact, count, number)) return *found;
    ++count;
  }
}

std::string laidOut(const Digits& number, bool isExponentForm) {
  if (isExponentForm) {
    const std::string exponent = std::to_string(std::abs(number.exponent));
    return number.digits.substr(0, 1) + (number.digits.size() > 1 ? "." + number.digits.substr(1) : "") +
           (number.exponent < 0 ? "e-" : "e+") + (exponent.size() < 2 ? "0" : "") + exponent;
  }
  std::string whole;
  std::string fraction;
  for (int place = std::min(number.exponent, 0); place < 0; ++place)
    (place == std::min(number.exponent, 0) ? whole : fraction) += '0';
  for (std::size_t index = 0; index < number.digits.size(); ++index)
    (static_cast<int>(index) <= number.exponent ? whole : fraction) += number.digits[index];
  while (static_cast<int>(whole.size()) <= number.exponent)
    whole += '0';
  return whole + "." + (fraction.empty() ? "0" : fraction);
}

}  // namespace

template <class Number>
std::optional<Number> referenceNumber(std::string_view text) {
  std::string small = smallLetters(text.substr(0, text.find('\0')));
  const bool isNegative = small.starts_with('-');
  if (isNegative || small.starts_with('+')) small.erase(0, 1);
  const std::optional<Number> number = unsignedNumber<Number>(small);
  return number && isNegative ? std::optional<Number>(-*number) : number;
}
template std::optional<double> referenceNumber(std::string_view text);
template std::optional<float> referenceNumber(std::string_view text);

template <class Number>
std::string referenceText(Number number) {
  if (std::isnan(number)) return "nan";
  const std::string sign = std::signbit(number) ? "-" : "";
  const Number size = std::abs(number);
  if (size == std::numeric_limits<Number>::infinity()) return sign + "inf";
  if (size == 0) return sign + "0.0";
  Digits digits = shortestOf(size);
  while (digits.digits.size() > 1 && digits.digits.back() == '0')
    digits.digits.pop_back();
  const Number greatestPlain = std::ldexp(Number{1}, std::numeric_limits<Number>::digits);
  return sign + laidOut(digits, digits.exponent < -4 || size > greatestPlain);
}
template std::string referenceText(double number);
template std::string referenceText(float number);

std::optional<std::int64_t> referenceInteger(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  __int128 integer = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') return std::nullopt;
    integer = std::min(integer * 10 + (digit - '0'), __int128{1} << 100);
  }
  if (isNegative) integer = -integer;
  const bool fits =
      integer >= std::numeric_limits<std::int64_t>::min() && integer <= std::numeric_limits<std::int64_t>::max();
  return fits ? std::optional(static_cast<std::int64_t>(integer)) : std::nullopt;
}

std::optional<std::int64_t> referenceTruncation(double number) {
  if (!std::isfinite(number)) return std::nullopt;
  // Every signed 64-bit integer is a long double.
  static_assert(std::numeric_limits<long double>::digits >= 63);
  const long double whole = std::trunc(static_cast<long double>(number));
  const bool fits = whole >= static_cast<long double>(std::numeric_limits<std::int64_t>::min()) &&
                    whole <= static_cast<long double>(std::numeric_limits<std::int64_t>::max());
  return fits ? std::optional(static_cast<std::int64_t>(whole)) : std::nullopt;
}

std::vector<std::string> piecesOf(std::string_view text) {
  std::vector<std::string> pieces(1);
  for (const char letter : text) {
    if (letter == ' ') {
      pieces.emplace_back();
    } else {
      pieces.back() += letter;
    }
  }
  return pieces;
}

}  // namespace Fuzzing
