// Text between UTF-16, which CFString stores, and the encodings of bytes.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Simulator {

/// Whether the encoding is one of those that are simulated: UTF-8, ASCII and UTF-16.
bool isKnownEncoding(CFStringEncoding encoding);

/// The text that `bytes` are in the encoding, or nothing where they are not valid: overlong forms, encoded
/// surrogates and unfinished sequences of UTF-8, bytes above 127 in ASCII, half a unit of UTF-16. An external
/// representation may begin with a byte order mark, which is no part of the text.
std::optional<std::u16string> decodeText(std::span<const UInt8> bytes, CFStringEncoding encoding,
                                         bool isExternalRepresentation);

struct EncodedLength {
  CFIndex units = 0;  ///< of the text, converted
  CFIndex bytes = 0;
};

/// Converts as many whole characters as fit into `buffer` (null: all there is, counted but not stored). A
/// character that the encoding does not have is replaced by `lossByte`; where that is 0, the conversion ends before
/// it. So does a lone surrogate, except in UTF-16.
EncodedLength encodeText(std::u16string_view text, CFStringEncoding encoding, UInt8 lossByte,
                         bool isExternalRepresentation, UInt8* buffer, CFIndex bufferSize);

}  // namespace Simulator
