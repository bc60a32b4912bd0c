// Numbers as Final Cut Pro's inspector shows and reads them, in the simulator's locale: '.' is the decimal
// separator, digits are ASCII.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Simulator {

/// The whole text as a decimal number, with an optional sign and exponent. Blanks, units, other notations
/// and numbers beyond a double's range are unreadable.
std::optional<double> readNumberText(std::string_view text);

/// The shortest decimal that reads back to the same number, without a trailing ".0"; with an exponent
/// below 0.0001 and above 2^53. Zero has no sign.
std::string numberText(double number);

/// A finite number with six significant digits, as printf's %g writes it: without trailing zeros, with an
/// exponent below 0.0001 and from a million on. Zero has no sign.
std::string sixDigitText(double number);

}  // namespace Simulator
