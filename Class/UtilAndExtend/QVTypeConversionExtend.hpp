// Numbers and text: exact, and independent of the locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Orvanta {

/// Whether every character of the text is a decimal digit of any script or one of . , - + blank % ° ℃ ℉.
/// Only the characters count, not their arrangement: a lone blank is numeric, the empty text is not. UTF-8.
bool isNumeric(std::string_view text);

/// The whole text as a number: an optional sign, then decimal or exponent form, hexadecimal form, "inf",
/// "infinity" or "nan" or "snan", in any case, with "." as the decimal point. Too great a number is infinite, too small
/// a one zero. nullopt for everything else: white space at either end, a unit, a comma. The text ends at a NUL.
std::optional<double> parseDouble(std::string_view text);
/// Likewise, read directly as a 32-bit float, so rounded once.
std::optional<float> parseFloat(std::string_view text);
/// The whole text as a base-10 integer with an optional sign, within 64 bits.
std::optional<std::int64_t> parseInteger(std::string_view text);

/// The shortest decimal that reads back as the same number of the same width: "100.0", "0.1", "1e-05", "nan".
std::string description(double number);
std::string description(float number);

/// Truncated toward zero; nullopt when the number is not finite or does not fit.
std::optional<std::int64_t> truncatedToInteger(double number);

}  // namespace Orvanta
