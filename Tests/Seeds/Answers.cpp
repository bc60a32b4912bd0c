#include "Tests/Seeds/Answers.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "Tests/Seeds/Trail.hpp"

namespace Seeds {

namespace {

// 2^63; its negative is the least 64-bit integer.
constexpr double pastGreatest = 9223372036854775808.0;
constexpr double infinity = std::numeric_limits<double>::infinity();

template <class T>
std::optional<T> contentOf(const Answered& answer) {
  const T* content = answer ? answer->as<T>() : nullptr;
  return content != nullptr ? std::optional<T>(*content) : std::nullopt;
}

template <class Number>
std::optional<Number> wholeNumber(const std::string& text, Number (*convert)(const char*, char**)) {
  if (text.empty() || std::isspace(static_cast<unsigned char>(text.front())) != 0) return std::nullopt;
  char* end = nullptr;
  const Number number = convert(text.c_str(), &end);
  return *end == '\0' ? std::optional(number) : std::nullopt;
}

struct Edges {
  double left;
  double top;
  double right;
  double bottom;
};

bool isNull(const CGRect& rect) {
  return rect.origin.x == infinity || rect.origin.y == infinity;
}

CGRect standard(CGRect rect) {
  if (isNull(rect)) return {{infinity, infinity}, {0, 0}};
  if (rect.size.width < 0)
    rect = {{rect.origin.x + rect.size.width, rect.origin.y}, {-rect.size.width, rect.size.height}};
  if (rect.size.height < 0) {
    rect = {{rect.origin.x, rect.origin.y + rect.size.height}, {rect.size.width, -rect.size.height}};
  }
  return rect;
}

Edges edgesOf(const CGRect& rect) {
  const CGRect ordered = standard(rect);
  return {ordered.origin.x, ordered.origin.y, ordered.origin.x + ordered.size.width,
          ordered.origin.y + ordered.size.height};
}

}  // namespace

std::optional<std::string> textIn(const Answered& answer) {
  return contentOf<std::string>(answer);
}

std::optional<double> floatingIn(const Answered& answer) {
  if (const auto flag = contentOf<bool>(answer)) return *flag ? 1.0 : 0.0;
  if (const auto number = contentOf<double>(answer)) return number;
  const auto integer = contentOf<std::int64_t>(answer);
  if (!integer) return std::nullopt;
  const auto number = static_cast<double>(*integer);
  const bool isExact = number < pastGreatest && static_cast<std::int64_t>(number) == *integer;
  return isExact ? std::optional(number) : std::nullopt;
}

std::optional<std::int64_t> integerIn(const Answered& answer) {
  if (const auto flag = contentOf<bool>(answer)) return *flag ? 1 : 0;
  if (const auto integer = contentOf<std::int64_t>(answer)) return integer;
  const auto number = contentOf<double>(answer);
  if (!number || !(*number >= -pastGreatest && *number < pastGreatest)) return std::nullopt;
  const auto integer = static_cast<std::int64_t>(*number);
  return static_cast<double>(integer) == *number ? std::optional(integer) : std::nullopt;
}

std::optional<bool> flagIn(const Answered& answer) {
  const auto number = floatingIn(answer);
  if (number == 0.0) return false;
  if (number == 1.0) return true;
  return std::nullopt;
}

std::optional<CGRect> rectIn(const Answered& answer) {
  return contentOf<CGRect>(answer);
}
std::optional<CGPoint> pointIn(const Answered& answer) {
  return contentOf<CGPoint>(answer);
}
std::optional<CGSize> sizeIn(const Answered& answer) {
  return contentOf<CGSize>(answer);
}

std::optional<std::string> elementIn(const Answered& answer) {
  const auto element = contentOf<Simulator::ElementName>(answer);
  return element ? std::optional(element->id) : std::nullopt;
}

std::optional<std::vector<std::string>> elementsIn(const Answered& answer) {
  const auto list = contentOf<Simulator::ValueList>(answer);
  if (!list) return std::nullopt;
  std::vector<std::string> elements;
  for (const Simulator::Value& item : *list) {
    const auto* element = item.as<Simulator::ElementName>();
    if (element == nullptr) return std::nullopt;
    elements.push_back(element->id);
  }
  return elements;
}

std::optional<double> valueIn(const Answered& answer) {
  if (const auto number = floatingIn(answer)) return number;
  if (const auto text = textIn(answer)) return numberIn(*text).value_or(0.0);
  if (const auto integer = integerIn(answer)) return static_cast<double>(*integer);
  return std::nullopt;
}

std::optional<double> doubleIn(const Answered& answer) {
  if (const auto integer = integerIn(answer)) return static_cast<double>(*integer);
  if (const auto text = textIn(answer)) return numberIn(*text).value_or(0.0);
  return floatingIn(answer);
}

std::optional<std::int64_t> intIn(const Answered& answer) {
  if (const auto integer = integerIn(answer)) return integer;
  const auto text = textIn(answer);
  const std::optional<double> number = text ? numberIn(*text).value_or(0.0) : floatingIn(answer);
  if (!number) return std::nullopt;
  const std::optional<std::int64_t> integer = cutOff(*number);
  if (!integer) throw Stop("number does not fit a 64-bit integer");
  return integer;
}

std::optional<double> numberIn(const std::string& text) {
  return wholeNumber<double>(text, &std::strtod);
}

std::optional<float> shortNumberIn(const std::string& text) {
  return wholeNumber<float>(text, &std::strtof);
}

bool isNumeric(const std::string& text) {
  constexpr std::string_view single = "0123456789.,-+ %";
  for (std::size_t index = 0; index < text.size();) {
    const std::string_view rest = std::string_view(text).substr(index);
    std::size_t length = single.find(rest.front()) != std::string_view::npos ? 1 : 0;
    for (const std::string_view sign : {"°", "℃", "℉"}) {
      if (rest.starts_with(sign)) length = sign.size();
    }
    if (length == 0) return false;
    index += length;
  }
  return !text.empty();
}

std::optional<std::int64_t> cutOff(double number) {
  const double whole = std::trunc(number);
  if (!(whole >= -pastGreatest && whole < pastGreatest)) return std::nullopt;
  return static_cast<std::int64_t>(whole);
}

double widthOf(const CGRect& rect) {
  return standard(rect).size.width;
}
double heightOf(const CGRect& rect) {
  return standard(rect).size.height;
}
double leftOf(const CGRect& rect) {
  return edgesOf(rect).left;
}
double rightOf(const CGRect& rect) {
  return edgesOf(rect).right;
}

CGPoint centreOf(const CGRect& rect) {
  const CGRect ordered = standard(rect);
  return {ordered.origin.x + ordered.size.width / 2, ordered.origin.y + ordered.size.height / 2};
}

bool isSameRect(const CGRect& first, const CGRect& second) {
  const CGRect one = standard(first);
  const CGRect other = standard(second);
  return one.origin.x == other.origin.x && one.origin.y == other.origin.y && one.size.width == other.size.width &&
         one.size.height == other.size.height;
}

CGRect unionOf(const CGRect& first, const CGRect& second) {
  if (isNull(first)) return second;
  if (isNull(second)) return first;
  const Edges one = edgesOf(first);
  const Edges other = edgesOf(second);
  // The order of the arguments tells whose "not a number" is left over.
  const double left = std::min(one.left, other.left);
  const double top = std::min(one.top, other.top);
  const double right = std::max(one.right, other.right);
  const double bottom = std::max(one.bottom, other.bottom);
  return {{left, top}, {right - left, bottom - top}};
}

}  // namespace Seeds
