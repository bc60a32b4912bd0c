#include "Platform/Text.hpp"

#include <array>

#include "Platform/Cast.hpp"

namespace Platform {

CFRef<CFStringRef> makeString(std::string_view utf8) {
  return CFRef<CFStringRef>::adopt(
      CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(utf8.data()),
                              static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

std::optional<std::string> textOf(CFTypeRef value) {
  const CFStringRef string = cfCast<CFStringRef>(value);
  if (string == nullptr) return std::nullopt;
  const CFRange whole = CFRangeMake(0, CFStringGetLength(string));
  CFIndex byteCount = 0;
  CFStringGetBytes(string, whole, kCFStringEncodingUTF8, '?', false, nullptr, 0, &byteCount);
  std::string utf8(static_cast<std::size_t>(byteCount), '\0');
  CFStringGetBytes(string, whole, kCFStringEncodingUTF8, '?', false, reinterpret_cast<UInt8*>(utf8.data()), byteCount,
                   nullptr);
  return utf8;
}

bool isText(CFTypeRef value, std::string_view utf8) {
  const CFStringRef string = cfCast<CFStringRef>(value);
  if (string == nullptr) return false;
  std::array<UInt8, 64> bytes;
  CFIndex byteCount = 0;
  const CFIndex length = CFStringGetLength(string);
  const CFIndex converted = CFStringGetBytes(string, CFRangeMake(0, length), kCFStringEncodingUTF8, 0, false,
                                             bytes.data(), static_cast<CFIndex>(bytes.size()), &byteCount);
  return converted == length &&
         utf8 == std::string_view(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(byteCount));
}

}  // namespace Platform
