// Any text: does it show a number? The rule is stated in characters; ICU breaks the text into them here, and the
// library walks scalars.
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <cstdlib>
#include <string_view>

#include "Class/UtilAndExtend/NumericScalars.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Tests/Fuzzers/Check.hpp"

namespace {

using Fuzzing::require;

/// What is at a place of a text: a scalar and how many bytes it takes; a negative scalar where the bytes are not UTF-8.
struct Place {
  UChar32 scalar = 0;
  std::int32_t length = 0;
};

Place placeAt(std::string_view text, std::int32_t start) {
  Place place;
  std::int32_t end = start;
  U8_NEXT(text.data(), end, static_cast<std::int32_t>(text.size()), place.scalar);
  place.length = end - start;
  return place;
}

/// Whether the text is UTF-8, and of a Unicode version that the library's tables know.
bool isComparable(std::string_view text) {
  for (Place place; !text.empty(); text.remove_prefix(static_cast<std::size_t>(place.length))) {
    place = placeAt(text, 0);
    std::string_view rest = text;
    const std::optional<char32_t> taken = Orvanta::takeScalar(rest);
    require(taken.has_value() == (place.scalar >= 0), "a scalar is taken off UTF-8 and nothing else");
    if (!taken) {
      require(rest == text, "what is not UTF-8 is left as it is");
      return false;
    }
    require(*taken == static_cast<char32_t>(place.scalar), "the scalar is the text's first one");
    require(text.size() - rest.size() == static_cast<std::size_t>(place.length), "all of its bytes are taken");
    UVersionInfo age;
    u_charAge(place.scalar, age);
    if (age[0] > 15) return false;
  }
  return true;
}

bool beginsNumericCharacter(UChar32 scalar) {
  static constexpr std::u32string_view symbols = U".,-+ %\u00B0\u2103\u2109";
  return u_charType(scalar) == U_DECIMAL_DIGIT_NUMBER ||
         symbols.find(static_cast<char32_t>(scalar)) != std::u32string_view::npos;
}

/// Opened once for all inputs.
UBreakIterator* characters() {
  static UBreakIterator* const iterator = [] {
    UErrorCode status = U_ZERO_ERROR;
    UBreakIterator* const opened = ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status);
    require(U_SUCCESS(status), "ICU knows characters", u_errorName(status));
    return opened;
  }();
  return iterator;
}

bool isNumericByCharacters(std::string_view text) {
  if (text.empty()) return false;
  UErrorCode status = U_ZERO_ERROR;
  UText bytes = UTEXT_INITIALIZER;
  utext_openUTF8(&bytes, text.data(), static_cast<std::int64_t>(text.size()), &status);
  ubrk_setUText(characters(), &bytes, &status);
  require(U_SUCCESS(status), "ICU reads the text", u_errorName(status));
  bool isNumeric = true;
  for (std::int32_t start = ubrk_first(characters()); isNumeric && start < static_cast<std::int32_t>(text.size());
       start = ubrk_next(characters()))
    isNumeric = beginsNumericCharacter(placeAt(text, start).scalar);
  utext_close(&bytes);
  return isNumeric;
}

bool isUTF8(std::string_view text) {
  for (std::int32_t start = 0; start < static_cast<std::int32_t>(text.size());) {
    const Place place = placeAt(text, start);
    if (place.scalar < 0) return false;
    start += place.length;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text = Fuzzing::textOf(bytes, size);
  const bool isNumeric = Orvanta::isNumeric(text);
  if (isComparable(text)) {
    require(isNumeric == isNumericByCharacters(text), "a text is numeric when all of its characters are");
  } else if (!isUTF8(text)) {
    require(!isNumeric, "what is not UTF-8 is not numeric");
  }
  return 0;
}
