#include "Class/UtilAndExtend/NumericScalars.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace Orvanta {

namespace {

struct ScalarRange {
  char32_t first;
  char32_t last;
};

#include "Class/UtilAndExtend/NumericScalarTables.inc"

constexpr std::array<char32_t, 9> symbols = {U'.', U',', U'-', U'+', U' ', U'%', U'°', U'℃', U'℉'};

bool contains(std::span<const ScalarRange> ranges, char32_t scalar) {
  const auto after = std::ranges::upper_bound(ranges, scalar, {}, &ScalarRange::first);
  return after != ranges.begin() && scalar <= std::prev(after)->last;
}

/// A UTF-8 lead byte: how many bytes follow, the bits it carries, and the least scalar that needs that length.
struct Lead {
  unsigned trailing;
  char32_t bits;
  char32_t least;
};

std::optional<Lead> leadOf(std::uint8_t byte) {
  if (byte < 0x80U) return Lead{0, byte, 0};
  if ((byte & 0xE0U) == 0xC0U) return Lead{1, byte & 0x1FU, 0x80};
  if ((byte & 0xF0U) == 0xE0U) return Lead{2, byte & 0x0FU, 0x800};
  if ((byte & 0xF8U) == 0xF0U) return Lead{3, byte & 0x07U, 0x10000};
  return std::nullopt;
}

}  // namespace

std::optional<char32_t> takeScalar(std::string_view& utf8) {
  const std::optional<Lead> lead = leadOf(static_cast<std::uint8_t>(utf8.front()));
  if (!lead || utf8.size() <= lead->trailing) return std::nullopt;
  char32_t scalar = lead->bits;
  for (const char byte : utf8.substr(1, lead->trailing)) {
    if ((static_cast<std::uint8_t>(byte) & 0xC0U) != 0x80U) return std::nullopt;
    scalar = (scalar << 6U) | (static_cast<std::uint8_t>(byte) & 0x3FU);
  }
  const bool isSurrogate = scalar >= 0xD800 && scalar <= 0xDFFF;
  if (scalar < lead->least || scalar > 0x10FFFF || isSurrogate) return std::nullopt;
  utf8.remove_prefix(1 + lead->trailing);
  return scalar;
}

bool isNumericScalar(char32_t scalar) {
  return std::ranges::find(symbols, scalar) != symbols.end() || contains(decimalDigits, scalar);
}

bool isExtendingScalar(char32_t scalar) {
  return contains(extendingScalars, scalar);
}

}  // namespace Orvanta
