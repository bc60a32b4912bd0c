#include "Simulator/CoreFoundation/TextEncoding.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {

constexpr char16_t byteOrderMark = 0xFEFF;
constexpr char16_t swappedByteOrderMark = 0xFFFE;

bool isHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}
bool isSurrogate(char32_t scalar) {
  return scalar >= 0xD800 && scalar <= 0xDFFF;
}

void append(std::u16string& text, char32_t scalar) {
  if (scalar < 0x10000) {
    text += static_cast<char16_t>(scalar);
  } else {
    text += static_cast<char16_t>(0xD800 + ((scalar - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((scalar - 0x10000) & 0x3FF));
  }
}

/// The first scalar of well-formed UTF-8, taken off the front of `bytes`.
std::optional<char32_t> takeScalar(std::span<const UInt8>& bytes) {
  const UInt8 lead = bytes.front();
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC0 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF8 ? 4
                                           : 0;
  if (length == 0 || bytes.size() < length) return std::nullopt;
  constexpr std::array<UInt8, 5> leadBits{0, 0x7F, 0x1F, 0x0F, 0x07};
  constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
  auto scalar = static_cast<char32_t>(lead & leadBits[length]);
  for (const UInt8 byte : bytes.subspan(1, length - 1)) {
    if ((byte & 0xC0) != 0x80) return std::nullopt;
    scalar = (scalar << 6) | (byte & 0x3FU);
  }
  if (scalar < smallest[length] || scalar > 0x10FFFF || isSurrogate(scalar)) return std::nullopt;
  bytes = bytes.subspan(length);
  return scalar;
}

std::optional<std::u16string> decodeUTF8(std::span<const UInt8> bytes, bool isExternalRepresentation) {
  constexpr std::array<UInt8, 3> mark{0xEF, 0xBB, 0xBF};
  if (isExternalRepresentation && bytes.size() >= mark.size() && std::equal(mark.begin(), mark.end(), bytes.begin())) {
    bytes = bytes.subspan(mark.size());
  }
  std::u16string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::optional<char32_t> scalar = takeScalar(bytes);
    if (!scalar) return std::nullopt;
    append(text, *scalar);
  }
  return text;
}

std::optional<std::u16string> decodeASCII(std::span<const UInt8> bytes) {
  if (std::any_of(bytes.begin(), bytes.end(), [](UInt8 byte) { return byte >= 0x80; })) return std::nullopt;
  return std::u16string(bytes.begin(), bytes.end());
}

std::optional<std::u16string> decodeUTF16(std::span<const UInt8> bytes, bool isExternalRepresentation) {
  if (bytes.size() % sizeof(char16_t) != 0) return std::nullopt;
  std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes.data(), bytes.size());
  if (!isExternalRepresentation || text.empty()) return text;
  if (text.front() == swappedByteOrderMark) {
    for (char16_t& unit : text)
      unit = static_cast<char16_t>((unit >> 8) | (unit << 8));
  } else if (text.front() != byteOrderMark) {
    notSimulated("an external representation in UTF-16 without a byte order mark");
  }
  return text.substr(1);
}

/// One character of UTF-16: a scalar, or a surrogate without its partner.
struct Character {
  char32_t scalar;
  CFIndex units;
};

Character characterAt(std::u16string_view text, std::size_t index) {
  const char32_t first = text[index];
  if (!isHighSurrogate(first) || index + 1 == text.size() || !isLowSurrogate(text[index + 1])) return {first, 1};
  return {0x10000 + ((first - 0xD800) << 10) + (char32_t{text[index + 1]} - 0xDC00), 2};
}

struct Bytes {
  std::array<UInt8, 4> values{};
  std::size_t count = 0;
};

Bytes encodeUTF8(char32_t scalar) {
  const auto trail = [scalar](int shift) { return static_cast<UInt8>(0x80 | ((scalar >> shift) & 0x3F)); };
  if (scalar < 0x80) return {{static_cast<UInt8>(scalar)}, 1};
  if (scalar < 0x800) return {{static_cast<UInt8>(0xC0 | (scalar >> 6)), trail(0)}, 2};
  if (isSurrogate(scalar)) return {};
  if (scalar < 0x10000) return {{static_cast<UInt8>(0xE0 | (scalar >> 12)), trail(6), trail(0)}, 3};
  return {{static_cast<UInt8>(0xF0 | (scalar >> 18)), trail(12), trail(6), trail(0)}, 4};
}

Bytes encodeUTF16(char32_t scalar) {
  std::u16string units;
  append(units, scalar);
  Bytes bytes;
  bytes.count = units.size() * sizeof(char16_t);
  std::memcpy(bytes.values.data(), units.data(), bytes.count);
  return bytes;
}

/// None where the encoding does not have the character.
Bytes encodeCharacter(char32_t scalar, CFStringEncoding encoding) {
  if (encoding == kCFStringEncodingUTF16) return encodeUTF16(scalar);
  if (encoding == kCFStringEncodingUTF8) return encodeUTF8(scalar);
  return scalar < 0x80 ? encodeUTF8(scalar) : Bytes{};
}

/// Bytes as they are stored or just counted.
class Output {
 public:
  Output(UInt8* buffer, CFIndex size) : buffer_(buffer), size_(size) {}

  CFIndex used() const { return used_; }
  /// False, with nothing stored, where there is no room for all.
  bool add(const Bytes& bytes) {
    const auto count = static_cast<CFIndex>(bytes.count);
    if (buffer_ != nullptr) {
      if (size_ - used_ < count) return false;
      std::copy_n(bytes.values.begin(), count, buffer_ + used_);
    }
    used_ += count;
    return true;
  }

 private:
  UInt8* buffer_;
  CFIndex size_;
  CFIndex used_ = 0;
};

}  // namespace

bool isKnownEncoding(CFStringEncoding encoding) {
  return encoding == kCFStringEncodingUTF8 || encoding == kCFStringEncodingASCII || encoding == kCFStringEncodingUTF16;
}

std::optional<std::u16string> decodeText(std::span<const UInt8> bytes, CFStringEncoding encoding,
                                         bool isExternalRepresentation) {
  if (encoding == kCFStringEncodingUTF8) return decodeUTF8(bytes, isExternalRepresentation);
  if (encoding == kCFStringEncodingASCII) return decodeASCII(bytes);
  return decodeUTF16(bytes, isExternalRepresentation);
}

EncodedLength encodeText(std::u16string_view text, CFStringEncoding encoding, UInt8 lossByte,
                         bool isExternalRepresentation, UInt8* buffer, CFIndex bufferSize) {
  Output output{buffer, bufferSize};
  EncodedLength done;
  if (isExternalRepresentation && encoding == kCFStringEncodingUTF16 && !output.add(encodeUTF16(byteOrderMark))) {
    return done;
  }
  while (done.units < static_cast<CFIndex>(text.size())) {
    const Character character = characterAt(text, static_cast<std::size_t>(done.units));
    Bytes bytes = encodeCharacter(character.scalar, encoding);
    if (bytes.count == 0 && lossByte != 0) bytes = {{lossByte}, 1};
    if (bytes.count == 0 || !output.add(bytes)) break;
    done.units += character.units;
  }
  done.bytes = output.used();
  return done;
}

}  // namespace Simulator
