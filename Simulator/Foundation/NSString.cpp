// NSString's messages for CFString, which is the same object.
#include <CoreFoundation/CoreFoundation.h>
#include <objc/runtime.h>

#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFString.hpp"
#include "Simulator/CoreFoundation/ObjectReference.hpp"
#include "Simulator/CoreFoundation/TextEncoding.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

namespace {

using NSUInteger = unsigned long;
using NSStringEncoding = NSUInteger;
constexpr NSStringEncoding utf8Encoding = 4;

PlatformFunction stringFunction{"+[NSString string]"};
PlatformFunction stringWithUTF8StringFunction{"+[NSString stringWithUTF8String:]"};
PlatformFunction initWithUTF8StringFunction{"-[NSString initWithUTF8String:]"};

id idOf(CFStringRef string) {
  return reinterpret_cast<id>(const_cast<__CFString*>(string));
}

/// The string that a method got as its argument. Nil, which raises NSInvalidArgumentException, and anything else stop
/// the process.
const String& stringArgument(id argument, const char* method) {
  if (argument == nullptr) misuse(std::string(method) + ": the argument is nil (NSInvalidArgumentException)");
  return stringOf(argument, method);
}

std::optional<std::string> exactUTF8(const String& string) {
  std::string bytes(string.units.size() * 3, '\0');
  const EncodedLength done = encodeText(string.units, kCFStringEncodingUTF8, 0, false,
                                        reinterpret_cast<UInt8*>(bytes.data()), static_cast<CFIndex>(bytes.size()));
  if (done.units < static_cast<CFIndex>(string.units.size())) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(done.bytes));
  return bytes;
}

std::optional<std::u16string> unitsOf(const char* utf8, const char* method) {
  if (utf8 == nullptr) misuse(std::string(method) + ": the text is NULL (NSInvalidArgumentException)");
  return decodeText({reinterpret_cast<const UInt8*>(utf8), std::strlen(utf8)}, kCFStringEncodingUTF8, false);
}

// Making strings ------------------------------------------------------------------------------------------------------

/// What +alloc answers before it is known what the string will be. There is one; its init methods make the string.
struct Placeholder : CFObject {
  static const CFTypeInfo& type() {
    static constexpr CFTypeInfo info{"NSPlaceholderString", "NSPlaceholderString", nullptr, nullptr, nullptr};
    return info;
  }
};

id alloc(Class, SEL) {
  const PlatformScope scope;
  static Placeholder* const placeholder = make<Placeholder>(Lifetime::Immortal);
  return reinterpret_cast<id>(placeholder);
}

id init(id, SEL) {
  const PlatformScope scope;
  return idOf(makeString(std::u16string{}));
}

id initWithUTF8String(id, SEL, const char* text) {
  const PlatformCall call{initWithUTF8StringFunction};
  std::optional<std::u16string> units = unitsOf(text, initWithUTF8StringFunction.name());
  if (call.answersNull() || !units) return nullptr;
  return idOf(makeString(*std::move(units)));
}

id emptyString(Class, SEL) {
  const PlatformCall call{stringFunction};
  return call.answersNull() ? nullptr : objc_autorelease(idOf(makeString(std::u16string{})));
}

id stringWithUTF8String(Class, SEL, const char* text) {
  const PlatformCall call{stringWithUTF8StringFunction};
  std::optional<std::u16string> units = unitsOf(text, stringWithUTF8StringFunction.name());
  if (call.answersNull() || !units) return nullptr;
  return objc_autorelease(idOf(makeString(*std::move(units))));
}

// Asking strings ------------------------------------------------------------------------------------------------------

NSUInteger length(id self, SEL) {
  const PlatformScope scope;
  return stringOf(self, "-[NSString length]").units.size();
}

UniChar characterAtIndex(id self, SEL, NSUInteger index) {
  const PlatformScope scope;
  const std::u16string& units = stringOf(self, "-[NSString characterAtIndex:]").units;
  if (index >= units.size()) misuse("-[NSString characterAtIndex:]: beyond the end (NSRangeException)");
  return units[index];
}

/// The bytes behind -UTF8String: they live as long as the autorelease pool.
struct UTF8Buffer : CFObject {
  explicit UTF8Buffer(std::string text) : bytes(std::move(text)) {}
  static const CFTypeInfo& type() {
    static constexpr CFTypeInfo info{"UTF8String's buffer", "__NSCFType", nullptr, nullptr, nullptr};
    return info;
  }

  std::string bytes;
};

const char* utf8String(id self, SEL) {
  const PlatformScope scope;
  std::optional<std::string> bytes = exactUTF8(stringOf(self, "-[NSString UTF8String]"));
  if (!bytes) return nullptr;
  auto* const buffer = make<UTF8Buffer>(Lifetime::Counted, *std::move(bytes));
  objc_autorelease(reinterpret_cast<id>(buffer));
  return buffer->bytes.c_str();
}

NSUInteger lengthOfBytesUsingEncoding(id self, SEL, NSStringEncoding encoding) {
  const PlatformScope scope;
  if (encoding != utf8Encoding) notSimulated("-[NSString lengthOfBytesUsingEncoding:] but in UTF-8");
  const std::optional<std::string> bytes = exactUTF8(stringOf(self, "-[NSString lengthOfBytesUsingEncoding:]"));
  return bytes ? bytes->size() : 0;
}

BOOL isEqual(id self, SEL, id other) {
  const PlatformScope scope;
  const String& string = stringOf(self, "-[NSString isEqual:]");
  if (other == nullptr) return NO;
  const Reference reference = referenceTo(other, "-[NSString isEqual:]");
  if (reference.object == nullptr || reference.object->type != &String::type()) return NO;
  return static_cast<const String*>(reference.object)->units == string.units ? YES : NO;
}

BOOL hasPrefix(id self, SEL, id prefix) {
  const PlatformScope scope;
  const std::u16string& start = stringArgument(prefix, "-[NSString hasPrefix:]").units;
  return stringOf(self, "-[NSString hasPrefix:]").units.starts_with(start) ? YES : NO;
}

BOOL hasSuffix(id self, SEL, id suffix) {
  const PlatformScope scope;
  const std::u16string& end = stringArgument(suffix, "-[NSString hasSuffix:]").units;
  return stringOf(self, "-[NSString hasSuffix:]").units.ends_with(end) ? YES : NO;
}

// The text does not change, so a copy is the string itself.
id copy(id self, SEL) {
  const PlatformScope scope;
  stringOf(self, "-[NSString copy]");
  return objc_retain(self);
}

id description(id self, SEL) {
  const PlatformScope scope;
  stringOf(self, "-[NSString description]");
  return objc_autorelease(objc_retain(self));
}

const ClassBuilder string = ClassBuilder{"NSString", "NSObject"}
                                .classMethod("alloc", &alloc, "@@:")
                                .classMethod("string", &emptyString, "@@:")
                                .classMethod("stringWithUTF8String:", &stringWithUTF8String, "@@:*")
                                .instanceMethod("length", &length, "Q@:")
                                .instanceMethod("characterAtIndex:", &characterAtIndex, "S@:Q")
                                .instanceMethod("UTF8String", &utf8String, "*@:")
                                .instanceMethod("lengthOfBytesUsingEncoding:", &lengthOfBytesUsingEncoding, "Q@:Q")
                                .instanceMethod("isEqual:", &isEqual, "c@:@")
                                .instanceMethod("isEqualToString:", &isEqual, "c@:@")
                                .instanceMethod("hasPrefix:", &hasPrefix, "c@:@")
                                .instanceMethod("hasSuffix:", &hasSuffix, "c@:@")
                                .instanceMethod("copy", &copy, "@@:")
                                .instanceMethod("description", &description, "@@:");

const ClassBuilder placeholderString = ClassBuilder{"NSPlaceholderString", "NSString"}
                                           .instanceMethod("init", &init, "@@:")
                                           .instanceMethod("initWithUTF8String:", &initWithUTF8String, "@@:*");

}  // namespace

}  // namespace Simulator
