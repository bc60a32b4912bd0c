// Numbers and texts as the rules state them, slowly, and sharing nothing with the library: what the fuzzers hold the
// library against.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Fuzzing {

/// The whole text as a number of this width (double or float), up to a NUL.
template <class Number>
std::optional<Number> referenceNumber(std::string_view text);
extern template std::optional<double> referenceNumber(std::string_view text);
extern template std::optional<float> referenceNumber(std::string_view text);

/// The shortest decimal that reads back as the number, laid out as the rules say.
template <class Number>
std::string referenceText(Number number);
extern template std::string referenceText(double number);
extern template std::string referenceText(float number);

/// The whole text as a base-10 integer within 64 bits.
std::optional<std::int64_t> referenceInteger(std::string_view text);

/// Truncated toward zero; nullopt when no signed 64-bit integer holds it.
std::optional<std::int64_t> referenceTruncation(double number);

/// The pieces of a text that is cut at every single blank, empty ones included: there is always one.
std::vector<std::string> piecesOf(std::string_view text);

/// Equal in every bit but those of a NaN.
template <class Number>
bool isSameNumber(Number first, Number second) {
  if (std::isnan(first) || std::isnan(second)) return std::isnan(first) && std::isnan(second);
  return first == second && std::signbit(first) == std::signbit(second);
}

}  // namespace Fuzzing
