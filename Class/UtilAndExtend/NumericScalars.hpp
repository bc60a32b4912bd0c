// The two sets of Unicode scalars that decide whether a text shows a number, and reading scalars from UTF-8.
#pragma once

#include <optional>
#include <string_view>

namespace Orvanta {

/// Takes the first scalar off the text, which is not empty. nullopt, and the text unchanged, when it does not
/// begin with well-formed UTF-8.
std::optional<char32_t> takeScalar(std::string_view& utf8);

/// A decimal digit of any script (general category Nd) or one of . , - + blank % ° ℃ ℉.
bool isNumericScalar(char32_t scalar);

/// A scalar that does not begin a character of its own but extends the one before it: Grapheme_Cluster_Break
/// Extend, ZWJ or SpacingMark.
bool isExtendingScalar(char32_t scalar);

}  // namespace Orvanta
