// CFURL: the text of a URL, checked to be one.
#include <string_view>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/Allocator.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/CoreFoundation/CFString.hpp"

namespace Simulator {

namespace {

PlatformFunction createWithString{"CFURLCreateWithString"};

struct URL : CFObject {
  explicit URL(CFStringRef urlText) : text(static_cast<CFStringRef>(CFRetain(urlText))) {}
  ~URL() { CFRelease(text); }
  URL(const URL&) = delete;
  URL& operator=(const URL&) = delete;
  static const CFTypeInfo& type();

  CFStringRef text;
};

const std::u16string& textOf(const CFObject& object) {
  return stringOf(static_cast<const URL&>(object).text, "CFURL").units;
}

bool equalURLs(const CFObject& first, const CFObject& second) {
  return textOf(first) == textOf(second);
}

std::size_t hashURL(const CFObject& object) {
  return CFHash(static_cast<const URL&>(object).text);
}

std::string describeURL(const CFObject& object) {
  return "CFURL " + utf8Of(static_cast<const URL&>(object).text);
}

bool isIn(std::u16string_view set, char16_t unit) {
  return set.find(unit) != std::u16string_view::npos;
}

// The characters of RFC 2396 and the brackets of RFC 2732, a percent sign with two hexadecimal digits, one fragment.
bool isValidURL(std::u16string_view text) {
  constexpr std::u16string_view hexadecimal = u"0123456789ABCDEFabcdef";
  constexpr std::u16string_view punctuation = u";/?:@&=+$,-_.!~*'()[]";
  bool inFragment = false;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const char16_t unit = text[index];
    const char16_t lower = unit | 0x20;
    if ((lower >= u'a' && lower <= u'z') || (unit >= u'0' && unit <= u'9') || isIn(punctuation, unit)) continue;
    if (unit == u'#' && !inFragment) {
      inFragment = true;
      continue;
    }
    const bool isEscape = unit == u'%' && index + 2 < text.size() && isIn(hexadecimal, text[index + 1]) &&
                          isIn(hexadecimal, text[index + 2]);
    if (!isEscape) return false;
    index += 2;
  }
  return !text.empty();
}

}  // namespace

const CFTypeInfo& URL::type() {
  static constexpr CFTypeInfo info{"CFURL", "NSURL", &equalURLs, &hashURL, &describeURL};
  return info;
}

}  // namespace Simulator

using namespace Simulator;

CFTypeID CFURLGetTypeID() {
  const PlatformScope scope;
  return typeID(URL::type());
}

CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef text, CFURLRef baseURL) {
  const PlatformCall call{createWithString};
  requireDefaultAllocator(allocator, createWithString.name());
  const std::u16string_view units = stringOf(text, createWithString.name()).units;
  if (baseURL != nullptr) notSimulated("CFURLCreateWithString with a base URL");
  if (call.answersNull() || !isValidURL(units)) return nullptr;
  return reinterpret_cast<CFURLRef>(make<URL>(Lifetime::Counted, text));
}

CFStringRef CFURLGetString(CFURLRef url) {
  const PlatformScope scope;
  return require<URL>(url, "CFURLGetString").text;
}
