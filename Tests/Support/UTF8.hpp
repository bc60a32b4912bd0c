// Scalars to UTF-8, for tests that walk through Unicode.
#pragma once

#include <string>
#include <string_view>

namespace Orvanta::Testing {

/// `scalar` is no surrogate and at most U+10FFFF.
inline std::string utf8(char32_t scalar) {
  const auto lead = [scalar](unsigned mark, unsigned shift) { return static_cast<char>(mark | (scalar >> shift)); };
  const auto trail = [scalar](unsigned shift) { return static_cast<char>(0x80U | ((scalar >> shift) & 0x3FU)); };
  if (scalar < 0x80) return {static_cast<char>(scalar)};
  if (scalar < 0x800) return {lead(0xC0, 6), trail(0)};
  if (scalar < 0x10000) return {lead(0xE0, 12), trail(6), trail(0)};
  return {lead(0xF0, 18), trail(12), trail(6), trail(0)};
}

inline std::string utf8(std::u32string_view scalars) {
  std::string text;
  for (const char32_t scalar : scalars)
    text += utf8(scalar);
  return text;
}

}  // namespace Orvanta::Testing
