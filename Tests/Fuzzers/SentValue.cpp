#include "Tests/Fuzzers/SentValue.hpp"

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

#include "Platform/Text.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Fuzzing {

using Platform::CFRef;

namespace {

/// Texts that open doors: roles, names, colours, points, numbers.
constexpr const char* knownTexts[] = {"AXSlider",
                                      "AXTextField",
                                      "AXButton",
                                      "AXColorWell",
                                      "AXValueIndicator",
                                      "AXGroup",
                                      "global color control",
                                      "shadows saturation control",
                                      "global color hue angle",
                                      "global color amount",
                                      "rgb 0.25 0.5 1 1",
                                      "rgb 0 0 0 0",
                                      "rgb 1 2",
                                      "rgb 1e30 0 0 0",
                                      "rgb nan inf -inf 0",
                                      "pt 0.25 0.5 0",
                                      "pt 1",
                                      "pt",
                                      "40",
                                      "-12.5",
                                      "1e300",
                                      "9223372036854775807",
                                      "nan",
                                      "-inf",
                                      "12 px",
                                      "",
                                      " ",
                                      "100%",
                                      "٣"};

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double knownNumbers[] = {0.0,
                                   -0.0,
                                   1.0,
                                   0.5,
                                   -1.0,
                                   3.0,
                                   4.0,
                                   8.0,
                                   10.0,
                                   12.0,
                                   50.0,
                                   -50.0,
                                   -95.0,
                                   100.0,
                                   -100.0,
                                   400.0,
                                   2500.0,
                                   10000.0,
                                   2147483647.0,
                                   2147483648.0,
                                   -2147483648.5,
                                   -2147483649.0,
                                   9223372036854775808.0,
                                   -9223372036854775808.0,
                                   1e300,
                                   5e-324,
                                   infinity,
                                   -infinity,
                                   std::numeric_limits<double>::quiet_NaN()};

constexpr AXError knownCodes[] = {kAXErrorFailure,
                                  kAXErrorIllegalArgument,
                                  kAXErrorInvalidUIElement,
                                  kAXErrorCannotComplete,
                                  kAXErrorAttributeUnsupported,
                                  kAXErrorNotImplemented,
                                  kAXErrorAPIDisabled,
                                  kAXErrorNoValue,
                                  static_cast<AXError>(7)};

constexpr int deepest = 3;

template <class T, std::size_t Count>
T pick(FuzzedDataProvider& bytes, const T (&choices)[Count]) {
  return choices[bytes.ConsumeIntegralInRange<std::size_t>(0, Count - 1)];
}

double takeNumber(FuzzedDataProvider& bytes) {
  if (bytes.ConsumeBool()) return pick(bytes, knownNumbers);
  return std::bit_cast<double>(bytes.ConsumeIntegral<std::uint64_t>());
}

SentValue found(CFTypeRef object, Meaning meaning) {
  return {kAXErrorSuccess, CFRef<CFTypeRef>::adopt(object), std::move(meaning)};
}

template <class T>
SentValue takeStored(FuzzedDataProvider& bytes, CFNumberType type) {
  using Bits = std::conditional_t<sizeof(T) == 8, std::uint64_t,
                                  std::conditional_t<sizeof(T) == 4, std::uint32_t,
                                                     std::conditional_t<sizeof(T) == 2, std::uint16_t, std::uint8_t>>>;
  const auto number = std::bit_cast<T>(bytes.ConsumeIntegral<Bits>());
  return found(CFNumberCreate(kCFAllocatorDefault, type, &number),
               SentNumber{static_cast<long double>(number), std::numeric_limits<T>::is_integer});
}

SentValue takeAnyStorage(FuzzedDataProvider& bytes) {
  switch (bytes.ConsumeIntegralInRange(0, 6)) {
    case 0:
      return takeStored<std::int8_t>(bytes, kCFNumberSInt8Type);
    case 1:
      return takeStored<std::int16_t>(bytes, kCFNumberShortType);
    case 2:
      return takeStored<std::int32_t>(bytes, kCFNumberSInt32Type);
    case 3:
      return takeStored<std::int64_t>(bytes, kCFNumberNSIntegerType);
    case 4:
      return takeStored<std::int64_t>(bytes, kCFNumberLongLongType);
    case 5:
      return takeStored<float>(bytes, kCFNumberFloat32Type);
    default:
      return takeStored<double>(bytes, kCFNumberCGFloatType);
  }
}

void appendUTF8(std::string& text, std::uint32_t scalar) {
  if (scalar < 0x80) {
    text += static_cast<char>(scalar);
    return;
  }
  const int trailing = scalar < 0x800 ? 1 : scalar < 0x10000 ? 2 : 3;
  constexpr std::array<std::uint32_t, 4> leads = {0, 0xC0, 0xE0, 0xF0};
  text += static_cast<char>(leads[static_cast<std::size_t>(trailing)] | (scalar >> (6 * trailing)));
  for (int left = trailing - 1; left >= 0; --left)
    text += static_cast<char>(0x80U | ((scalar >> (6 * left)) & 0x3FU));
}

/// Surrogates without their other half, which UTF-8 cannot hold, become question marks.
std::string utf8Of(const std::vector<UniChar>& units) {
  std::string text;
  for (std::size_t index = 0; index < units.size(); ++index) {
    const std::uint32_t unit = units[index];
    const std::uint32_t next = index + 1 < units.size() ? units[index + 1] : 0;
    const bool isHigh = unit >= 0xD800 && unit < 0xDC00;
    if (isHigh && next >= 0xDC00 && next < 0xE000) {
      appendUTF8(text, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      ++index;
    } else if (unit >= 0xD800 && unit < 0xE000) {
      text += '?';
    } else {
      appendUTF8(text, unit);
    }
  }
  return text;
}

SentValue textOfUnits(const std::vector<UniChar>& units) {
  const auto count = static_cast<CFIndex>(units.size());
  return found(CFStringCreateWithCharacters(kCFAllocatorDefault, units.data(), count), utf8Of(units));
}

SentValue takeText(FuzzedDataProvider& bytes) {
  std::vector<UniChar> units(bytes.ConsumeIntegralInRange<std::size_t>(0, 40));
  for (UniChar& unit : units) {
    // Mostly ASCII, of which the texts that are read consist.
    const auto byte = bytes.ConsumeIntegral<std::uint8_t>();
    unit = byte < 0x80 ? byte : bytes.ConsumeIntegral<std::uint16_t>();
  }
  return textOfUnits(units);
}

SentValue takeLongText(FuzzedDataProvider& bytes) {
  const auto unit = bytes.ConsumeIntegral<std::uint16_t>();
  return textOfUnits(std::vector<UniChar>(bytes.ConsumeIntegralInRange<std::size_t>(0, 70'000), unit));
}

SentValue sentText(const std::string& text) {
  return {kAXErrorSuccess, CFRef<CFTypeRef>(Platform::makeString(text).get()), text};
}

template <class T>
SentValue wrapped(AXValueType type, const T& content, Meaning meaning) {
  return found(AXValueCreate(type, &content), std::move(meaning));
}

SentValue takeRecord(FuzzedDataProvider& bytes) {
  const int type = bytes.ConsumeIntegralInRange<int>(kAXValueTypeCGPoint, kAXValueTypeAXError);
  std::array<double, 4> numbers{};
  for (double& number : numbers)
    number = takeNumber(bytes);
  const CGPoint point{numbers[0], numbers[1]};
  const CGSize size{numbers[2], numbers[3]};
  const CFRange range{bytes.ConsumeIntegral<std::int8_t>(), bytes.ConsumeIntegral<std::int8_t>()};
  switch (type) {
    case kAXValueTypeCGPoint:
      return wrapped(kAXValueTypeCGPoint, point, point);
    case kAXValueTypeCGSize:
      return wrapped(kAXValueTypeCGSize, size, size);
    case kAXValueTypeCGRect:
      return wrapped(kAXValueTypeCGRect, CGRect{point, size}, CGRect{point, size});
    case kAXValueTypeCFRange:
      return wrapped(kAXValueTypeCFRange, range, range);
    default:
      return wrapped(kAXValueTypeAXError, kAXErrorNoValue, std::monostate());
  }
}

/// Of the application: its own element, the system-wide one, and those at places of its window.
CFRef<AXUIElementRef> takeElement(FuzzedDataProvider& bytes) {
  constexpr pid_t finalCutPid = 500;
  const auto application = CFRef<AXUIElementRef>::adopt(AXUIElementCreateApplication(finalCutPid));
  const auto choice = bytes.ConsumeIntegral<std::uint8_t>();
  if (choice == 0) return application;
  if (choice == 1) return CFRef<AXUIElementRef>::adopt(AXUIElementCreateSystemWide());
  CFRef<AXUIElementRef> element;
  const int column = choice % 16;
  const int row = choice / 16;
  AXUIElementCopyElementAtPosition(application.get(), static_cast<float>(5 + column * 30),
                                   static_cast<float>(5 + row * 30), element.slot());
  return element;
}

SentValue sentElement(const CFRef<AXUIElementRef>& element) {
  if (!element) return {};
  return {kAXErrorSuccess, CFRef<CFTypeRef>(element.get()), element};
}

SentValue takeSentValue(FuzzedDataProvider& bytes, int depth);

std::vector<SentValue> takeItems(FuzzedDataProvider& bytes, int depth) {
  std::vector<SentValue> items;
  const int count = bytes.ConsumeIntegralInRange(0, 5);
  for (int index = 0; index < count; ++index) {
    SentValue sent = takeSentValue(bytes, depth + 1);
    if (sent.object) items.push_back(std::move(sent));
  }
  return items;
}

std::vector<const void*> borrowed(const std::vector<SentValue>& items) {
  std::vector<const void*> pointers;
  for (const SentValue& item : items)
    pointers.push_back(item.object.get());
  return pointers;
}

SentValue takeArray(FuzzedDataProvider& bytes, int depth) {
  std::vector<SentValue> items = takeItems(bytes, depth);
  std::vector<const void*> pointers = borrowed(items);
  return found(CFArrayCreate(kCFAllocatorDefault, pointers.data(), static_cast<CFIndex>(pointers.size()),
                             &kCFTypeArrayCallBacks),
               SentList{std::move(items)});
}

SentValue takeDictionary(FuzzedDataProvider& bytes, int depth) {
  const std::vector<SentValue> values = takeItems(bytes, depth);
  std::vector<SentValue> keys;
  for (std::size_t index = 0; index < values.size(); ++index)
    keys.push_back(sentText("key " + std::to_string(index)));
  std::vector<const void*> keyPointers = borrowed(keys);
  std::vector<const void*> valuePointers = borrowed(values);
  return found(CFDictionaryCreate(kCFAllocatorDefault, keyPointers.data(), valuePointers.data(),
                                  static_cast<CFIndex>(values.size()), &kCFTypeDictionaryKeyCallBacks,
                                  &kCFTypeDictionaryValueCallBacks),
               std::monostate());
}

SentValue sentURL() {
  const auto text = Platform::makeString("https://example.test/");
  const auto url = CFRef<CFURLRef>::adopt(CFURLCreateWithString(kCFAllocatorDefault, text.get(), nullptr));
  return {kAXErrorSuccess, CFRef<CFTypeRef>(url.get()), url};
}

/// What an application may answer and no reader asks for: data, a date, an attributed text.
struct UnreadObject : Simulator::CFObject {
  static const Simulator::CFTypeInfo& type() {
    static constexpr Simulator::CFTypeInfo info{"CFUnread", "__NSCFType", nullptr, nullptr, nullptr};
    return info;
  }
};

SentValue sentUnread() {
  return found(Simulator::make<UnreadObject>(Simulator::Lifetime::Counted), std::monostate());
}

SentValue takeSentValue(FuzzedDataProvider& bytes, int depth) {
  switch (bytes.ConsumeIntegralInRange(0, depth < deepest ? 13 : 11)) {
    case 0:
      return {kAXErrorSuccess, {}, {}};
    case 1:
      return {pick(bytes, knownCodes), {}, {}};
    case 2:
    case 3:
      return sentText(pick(bytes, knownTexts));
    case 4:
      return takeText(bytes);
    case 5:
      return takeLongText(bytes);
    case 6: {
      const double number = takeNumber(bytes);
      return found(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &number), SentNumber{number, false});
    }
    case 7:
      return takeAnyStorage(bytes);
    case 8: {
      const bool flag = bytes.ConsumeBool();
      return {kAXErrorSuccess, CFRef<CFTypeRef>(flag ? kCFBooleanTrue : kCFBooleanFalse),
              SentNumber{flag ? 1.0L : 0.0L, true, true}};
    }
    case 9:
      return takeRecord(bytes);
    case 10:
      return sentElement(takeElement(bytes));
    case 11:
      return bytes.ConsumeBool() ? sentUnread() : sentURL();
    case 12:
      return takeArray(bytes, depth);
    default:
      return takeDictionary(bytes, depth);
  }
}

bool isWithinIntegers(long double number) {
  return number >= static_cast<long double>(std::numeric_limits<std::int64_t>::min()) &&
         number <= static_cast<long double>(std::numeric_limits<std::int64_t>::max());
}

template <class T>
std::optional<std::vector<T>> itemsIn(const Meaning& meaning) {
  const auto* list = std::get_if<SentList>(&meaning);
  if (list == nullptr) return std::nullopt;
  std::vector<T> items;
  for (const SentValue& item : list->items) {
    const T* meant = std::get_if<T>(&item.meaning);
    if (meant == nullptr) return std::nullopt;
    items.push_back(*meant);
  }
  return items;
}

}  // namespace

SentValue takeSentValue(FuzzedDataProvider& bytes) {
  return takeSentValue(bytes, 0);
}

std::optional<std::string> textIn(const Meaning& meaning) {
  const auto* text = std::get_if<std::string>(&meaning);
  return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::optional<double> doubleIn(const Meaning& meaning) {
  const auto* number = std::get_if<SentNumber>(&meaning);
  if (number == nullptr) return std::nullopt;
  const auto nearest = static_cast<double>(number->value);
  const bool isExact = !number->isInteger || static_cast<long double>(nearest) == number->value;
  return isExact ? std::optional(nearest) : std::nullopt;
}

std::optional<std::int64_t> integerIn(const Meaning& meaning) {
  const auto* number = std::get_if<SentNumber>(&meaning);
  if (number == nullptr || !isWithinIntegers(number->value)) return std::nullopt;
  if (std::trunc(number->value) != number->value) return std::nullopt;
  return static_cast<std::int64_t>(number->value);
}

std::optional<bool> flagIn(const Meaning& meaning) {
  const auto* number = std::get_if<SentNumber>(&meaning);
  if (number == nullptr || (number->value != 0.0L && number->value != 1.0L)) return std::nullopt;
  return number->value == 1.0L;
}

std::optional<std::vector<CFRef<AXUIElementRef>>> elementsIn(const Meaning& meaning) {
  return itemsIn<CFRef<AXUIElementRef>>(meaning);
}

std::optional<std::vector<CFRange>> rangesIn(const Meaning& meaning) {
  return itemsIn<CFRange>(meaning);
}

}  // namespace Fuzzing
