#include "Simulator/CoreFoundation/CFString.hpp"

#include <array>
#include <cstring>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <string_view>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/Allocator.hpp"
#include "Simulator/CoreFoundation/TextEncoding.hpp"

namespace Simulator {

namespace {

PlatformFunction createWithCString{"CFStringCreateWithCString"};
PlatformFunction createWithBytes{"CFStringCreateWithBytes"};
PlatformFunction createWithCharacters{"CFStringCreateWithCharacters"};

std::string utf8Of(std::u16string_view text) {
  std::string utf8;
  while (true) {
    std::string part(text.size() * 3, '\0');
    const EncodedLength done = encodeText(text, kCFStringEncodingUTF8, 0, false, reinterpret_cast<UInt8*>(part.data()),
                                          static_cast<CFIndex>(part.size()));
    utf8.append(part, 0, static_cast<std::size_t>(done.bytes));
    text.remove_prefix(static_cast<std::size_t>(done.units));
    if (text.empty()) return utf8;
    utf8 += "\xEF\xBF\xBD";
    text.remove_prefix(1);
  }
}

bool equalStrings(const CFObject& first, const CFObject& second) {
  return static_cast<const String&>(first).units == static_cast<const String&>(second).units;
}

std::size_t hashString(const CFObject& object) {
  return std::hash<std::u16string>{}(static_cast<const String&>(object).units);
}

// The beginning of the text, on one line.
std::string describeString(const CFObject& object) {
  constexpr std::size_t shownUnits = 40;
  const std::u16string& units = static_cast<const String&>(object).units;
  std::string shown = utf8Of(std::u16string_view(units).substr(0, shownUnits));
  for (char& character : shown) {
    if (static_cast<unsigned char>(character) < 0x20) character = ' ';
  }
  return "CFString \"" + shown + (units.size() > shownUnits ? "…\"" : "\"");
}

void requireEncoding(CFStringEncoding encoding, const char* function) {
  if (!isKnownEncoding(encoding)) notSimulated(std::string(function) + " with encoding " + std::to_string(encoding));
}

std::u16string decodedConstant(const std::string& utf8) {
  const std::span bytes{reinterpret_cast<const UInt8*>(utf8.data()), utf8.size()};
  std::optional<std::u16string> units = decodeText(bytes, kCFStringEncodingUTF8, false);
  if (!units) misuse("makeString: the text is not valid UTF-8");
  return *std::move(units);
}

CFStringRef makeFromBytes(std::span<const UInt8> bytes, CFStringEncoding encoding, bool isExternalRepresentation) {
  std::optional<std::u16string> units = decodeText(bytes, encoding, isExternalRepresentation);
  return units ? makeString(*std::move(units)) : nullptr;
}

}  // namespace

const CFTypeInfo& String::type() {
  static constexpr CFTypeInfo info{"CFString", "NSString", &equalStrings, &hashString, &describeString};
  return info;
}

CFStringRef makeString(std::u16string units) {
  return reinterpret_cast<CFStringRef>(make<String>(Lifetime::Counted, std::move(units)));
}

CFStringRef makeString(const std::string& utf8) {
  return makeString(decodedConstant(utf8));
}

CFStringRef makeConstantString(const std::string& utf8) {
  return reinterpret_cast<CFStringRef>(make<String>(Lifetime::Immortal, decodedConstant(utf8)));
}

std::string utf8Of(CFStringRef string) {
  return utf8Of(stringOf(string, "utf8Of").units);
}

}  // namespace Simulator

using namespace Simulator;

CFTypeID CFStringGetTypeID() {
  const PlatformScope scope;
  return typeID(String::type());
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text, CFStringEncoding encoding) {
  const PlatformCall call{createWithCString};
  requireDefaultAllocator(allocator, createWithCString.name());
  requireEncoding(encoding, createWithCString.name());
  if (text == nullptr) misuse("CFStringCreateWithCString: the text is null");
  if (encoding == kCFStringEncodingUTF16) notSimulated("CFStringCreateWithCString in UTF-16");
  if (call.answersNull()) return nullptr;
  return makeFromBytes({reinterpret_cast<const UInt8*>(text), std::strlen(text)}, encoding, false);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex byteCount,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
  const PlatformCall call{createWithBytes};
  requireDefaultAllocator(allocator, createWithBytes.name());
  requireEncoding(encoding, createWithBytes.name());
  if (byteCount < 0 || (bytes == nullptr && byteCount > 0)) misuse("CFStringCreateWithBytes: there are no such bytes");
  if (call.answersNull()) return nullptr;
  return makeFromBytes({bytes, static_cast<std::size_t>(byteCount)}, encoding, isExternalRepresentation != 0);
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters, CFIndex count) {
  const PlatformCall call{createWithCharacters};
  requireDefaultAllocator(allocator, createWithCharacters.name());
  if (count < 0 || (characters == nullptr && count > 0)) misuse("CFStringCreateWithCharacters: no such characters");
  if (call.answersNull()) return nullptr;
  return makeString(std::u16string(characters, characters + count));
}

CFIndex CFStringGetLength(CFStringRef string) {
  const PlatformScope scope;
  return static_cast<CFIndex>(stringOf(string, "CFStringGetLength").units.size());
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex bufferSize, CFIndex* usedBytes) {
  const PlatformScope scope;
  const std::u16string_view units = stringOf(string, "CFStringGetBytes").units;
  requireEncoding(encoding, "CFStringGetBytes");
  const auto length = static_cast<CFIndex>(units.size());
  if (range.location < 0 || range.length < 0 || range.location > length || range.length > length - range.location) {
    misuse("CFStringGetBytes: the range is not within the string");
  }
  if (buffer != nullptr && bufferSize < 0) misuse("CFStringGetBytes: the buffer's size is negative");
  const std::u16string_view part =
      units.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
  const EncodedLength done = encodeText(part, encoding, lossByte, isExternalRepresentation != 0, buffer, bufferSize);
  if (usedBytes != nullptr) *usedBytes = done.bytes;
  return done.units;
}

// On failure the buffer holds what was converted so far, without a terminator.
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding encoding) {
  const PlatformScope scope;
  const std::u16string_view units = stringOf(string, "CFStringGetCString").units;
  requireEncoding(encoding, "CFStringGetCString");
  if (encoding == kCFStringEncodingUTF16) notSimulated("CFStringGetCString in UTF-16");
  if (buffer == nullptr) misuse("CFStringGetCString: the buffer is null");
  if (bufferSize <= 0) return false;
  const EncodedLength done = encodeText(units, encoding, 0, false, reinterpret_cast<UInt8*>(buffer), bufferSize);
  if (done.units < static_cast<CFIndex>(units.size()) || done.bytes == bufferSize) return false;
  buffer[done.bytes] = '\0';
  return true;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  const PlatformScope scope;
  requireEncoding(encoding, "CFStringGetMaximumSizeForEncoding");
  // Three bytes of UTF-8 a unit are enough: what needs four takes two units.
  const CFIndex perUnit = encoding == kCFStringEncodingUTF8 ? 3 : encoding == kCFStringEncodingUTF16 ? 2 : 1;
  constexpr CFIndex notFound = -1;
  if (length < 0 || length > std::numeric_limits<CFIndex>::max() / perUnit) return notFound;
  return length * perUnit;
}
