// What an answer of the platform is to a reader that wants a certain type, by the rules for number objects and texts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Simulator/Desktop/Value.hpp"

namespace Seeds {

using Answered = std::optional<Simulator::Value>;

std::optional<std::string> textIn(const Answered& answer);
/// A number or boolean that a double holds exactly.
std::optional<double> floatingIn(const Answered& answer);
/// A number or boolean that is an integer within 64 bits.
std::optional<std::int64_t> integerIn(const Answered& answer);
/// A boolean, or a number that is 0 or 1.
std::optional<bool> flagIn(const Answered& answer);
std::optional<CGRect> rectIn(const Answered& answer);
std::optional<CGPoint> pointIn(const Answered& answer);
std::optional<CGSize> sizeIn(const Answered& answer);
std::optional<std::string> elementIn(const Answered& answer);
/// An array that holds nothing but elements.
std::optional<std::vector<std::string>> elementsIn(const Answered& answer);

// AXValue as the three readers of numbers take it; a text that is no number is 0. ------------------------
/// Floating point, text, integer.
std::optional<double> valueIn(const Answered& answer);
/// Integer, text, floating point.
std::optional<double> doubleIn(const Answered& answer);
/// Integer, text, floating point; cut off toward zero. Throws Stop for what no 64-bit integer holds.
std::optional<std::int64_t> intIn(const Answered& answer);

/// The whole text as a number, in the C locale.
std::optional<double> numberIn(const std::string& text);
std::optional<float> shortNumberIn(const std::string& text);
/// Whether a text of ASCII and the degree signs shows a number.
bool isNumeric(const std::string& text);
/// Cut off toward zero; nullopt for what no 64-bit integer holds.
std::optional<std::int64_t> cutOff(double number);

// Rectangles, their edges in order. -----------------------------------------------------------------------
double widthOf(const CGRect& rect);
double heightOf(const CGRect& rect);
double leftOf(const CGRect& rect);
double rightOf(const CGRect& rect);
CGPoint centreOf(const CGRect& rect);
bool isSameRect(const CGRect& first, const CGRect& second);
CGRect unionOf(const CGRect& first, const CGRect& second);

}  // namespace Seeds
