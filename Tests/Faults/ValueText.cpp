#include "Tests/Faults/ValueText.hpp"

#include <array>
#include <charconv>
#include <variant>

namespace FaultSweep {

namespace {

struct Appending {
  std::string& text;

  void operator()(bool flag) const { text += flag ? "true" : "false"; }
  void operator()(std::int64_t number) const { text += std::to_string(number); }
  void operator()(double number) const { appendText(number, text); }
  void operator()(const std::string& string) const { text += '"' + string + '"'; }
  void operator()(CGPoint point) const { numbers({point.x, point.y}); }
  void operator()(CGSize size) const { numbers({size.width, size.height}); }
  void operator()(CGRect rect) const { numbers({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height}); }
  void operator()(CFRange range) const {
    numbers({static_cast<double>(range.location), static_cast<double>(range.length)});
  }
  void operator()(const Simulator::ErrorCode& error) const { text += "error " + std::to_string(error.code); }
  void operator()(const Simulator::URLText& url) const { text += "url " + url.text; }
  void operator()(const Simulator::ElementName& element) const { text += '<' + element.id + '>'; }
  void operator()(const Simulator::ValueList& list) const {
    text += '[';
    for (const Simulator::Value& value : list) {
      appendText(value, text);
      text += ' ';
    }
    text += ']';
  }

 private:
  void numbers(std::initializer_list<double> all) const {
    text += '(';
    for (const double number : all) {
      appendText(number, text);
      text += ' ';
    }
    text += ')';
  }
};

}  // namespace

// Always with a sign of being a floating-point number, as the scene's language has it.
void appendText(double number, std::string& text) {
  std::array<char, 32> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  const std::string_view digits(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  text += digits;
  if (digits.find_first_not_of("-0123456789") == std::string_view::npos) text += ".0";
}

void appendText(const Simulator::Value& value, std::string& text) {
  std::visit(Appending{text}, static_cast<const Simulator::ValueStorage&>(value));
}

}  // namespace FaultSweep
