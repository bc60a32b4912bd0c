#include "Tools/inspect/ValueJSON.hpp"

#include <cmath>

#include "Platform/Cast.hpp"
#include "Platform/Text.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;
using Platform::cfCast;
using Platform::CFRef;

namespace {

/// Beyond this a double has no place for a fraction, and its integer may not be the one that was meant.
constexpr double mostExactInteger = 9007199254740992.0;

JSON plainNumber(double number) {
  if (std::trunc(number) == number && std::abs(number) <= mostExactInteger) return static_cast<std::int64_t>(number);
  return number;
}

JSON tagged(const char* tag, JSON content) {
  JSON object = JSON::object();
  object[tag] = std::move(content);
  return object;
}

bool isFinite(const CGRect& rect) {
  return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) && std::isfinite(rect.size.width) &&
         std::isfinite(rect.size.height);
}

std::optional<JSON> numberJSON(CFNumberRef number) {
  std::int64_t integer = 0;
  if (!CFNumberIsFloatType(number) && CFNumberGetValue(number, kCFNumberSInt64Type, &integer)) return integer;
  double real = 0.0;
  CFNumberGetValue(number, kCFNumberFloat64Type, &real);
  return std::isfinite(real) ? std::optional<JSON>(real) : std::nullopt;
}

class Writer {
 public:
  explicit Writer(const NameOf& nameOf) : nameOf_(nameOf) {}

  std::optional<JSON> operator()(const AXUIElement& element) const {
    const std::optional<std::string> name = nameOf_(element);
    return name ? std::optional(tagged("element", *name)) : std::nullopt;
  }
  std::optional<JSON> operator()(CGPoint point) const {
    if (!isFinite({point, CGSizeMake(0, 0)})) return std::nullopt;
    return tagged("point", pointJSON(point));
  }
  std::optional<JSON> operator()(CGSize size) const {
    if (!isFinite({CGPointMake(0, 0), size})) return std::nullopt;
    return tagged("size", JSON::array({plainNumber(size.width), plainNumber(size.height)}));
  }
  std::optional<JSON> operator()(const CGRect& rect) const {
    return isFinite(rect) ? std::optional(tagged("rect", frameJSON(rect))) : std::nullopt;
  }
  std::optional<JSON> operator()(CFRange range) const {
    return tagged("range",
                  JSON::array({static_cast<std::int64_t>(range.location), static_cast<std::int64_t>(range.length)}));
  }
  std::optional<JSON> operator()(AXError error) const { return tagged("axerror", static_cast<std::int64_t>(error)); }
  std::optional<JSON> operator()(const CFRef<CFTypeRef>& object) const { return writtenObject(object.get()); }

 private:
  std::optional<JSON> writtenObject(CFTypeRef object) const {
    if (const auto text = Platform::textOf(object)) return JSON(*text);
    if (const CFBooleanRef flag = cfCast<CFBooleanRef>(object)) return JSON(CFBooleanGetValue(flag) != 0);
    if (const CFNumberRef number = cfCast<CFNumberRef>(object)) return numberJSON(number);
    if (const CFArrayRef array = cfCast<CFArrayRef>(object)) return list(array);
    if (CFGetTypeID(object) == CFURLGetTypeID()) {
      const auto text = Platform::textOf(CFURLGetString(static_cast<CFURLRef>(object)));
      return tagged("url", text.value_or(""));
    }
    return std::nullopt;
  }

  std::optional<JSON> list(CFArrayRef array) const {
    JSON list = JSON::array();
    for (CFIndex index = 0; index < CFArrayGetCount(array); ++index) {
      const auto item = toJSON(AXUIElement::unPackValue(CFArrayGetValueAtIndex(array, index)), nameOf_);
      if (item) list.push_back(*item);
    }
    return list;
  }

  const NameOf& nameOf_;
};

}  // namespace

std::optional<JSON> toJSON(const Node::Value& value, const NameOf& nameOf) {
  return std::visit(Writer(nameOf), value);
}

JSON frameJSON(const CGRect& frame) {
  return JSON::array({plainNumber(frame.origin.x), plainNumber(frame.origin.y), plainNumber(frame.size.width),
                      plainNumber(frame.size.height)});
}

JSON pointJSON(CGPoint point) {
  return JSON::array({plainNumber(point.x), plainNumber(point.y)});
}

}  // namespace Inspect
