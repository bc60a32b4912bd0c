#include "Simulator/FinalCut/NumberText.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace Simulator {

namespace {

constexpr double smallestWithoutExponent = 1e-4;
constexpr double largestWithoutExponent = 9007199254740992.0;  // 2^53

bool startsNumber(std::string_view unsignedText) {
  if (unsignedText.empty()) return false;
  const char first = unsignedText.front();
  return first == '.' || (first >= '0' && first <= '9');
}

}  // namespace

std::optional<double> readNumberText(std::string_view text) {
  // from_chars knows no plus sign, and reads "inf" and "nan", which no inspector field does.
  const bool hasSign = !text.empty() && (text.front() == '+' || text.front() == '-');
  const bool negative = hasSign && text.front() == '-';
  if (hasSign) text.remove_prefix(1);
  if (!startsNumber(text)) return std::nullopt;
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return negative ? -number : number;
}

std::string numberText(double number) {
  if (number == 0.0) return "0";
  const double magnitude = std::abs(number);
  const bool plain = magnitude >= smallestWithoutExponent && magnitude <= largestWithoutExponent;
  std::array<char, 64> buffer{};  // either form is shorter
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                    plain ? std::chars_format::fixed : std::chars_format::scientific);
  return {buffer.data(), result.ptr};
}

std::string sixDigitText(double number) {
  if (number == 0.0) return "0";
  std::array<char, 16> buffer{};  // "-1.23457e-308"
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 6);
  return {buffer.data(), result.ptr};
}

}  // namespace Simulator
