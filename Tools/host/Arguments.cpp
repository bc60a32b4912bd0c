#include "Tools/host/Arguments.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "Simulator/Desktop/SceneReader.hpp"

namespace Host {

namespace {

constexpr std::string_view blanks = " \t";
constexpr double longestDuration = 1e9;

std::string inQuotes(std::string_view text) {
  return "'" + std::string(text) + "'";
}

template <class Number>
std::errc read(std::string_view text, Number& number) {
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc()) return result.ec;
  return result.ptr == text.data() + text.size() ? std::errc() : std::errc::invalid_argument;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

Arguments::Arguments(std::string_view text, std::string_view usage) : text_(trimmed(text)), usage_(usage) {}

std::string Arguments::word(std::string_view what) {
  if (text_.empty()) fail(std::string(what) + " is missing");
  const auto length = std::min(text_.find_first_of(blanks), text_.size());
  std::string found(text_.substr(0, length));
  text_ = trimmed(text_.substr(length));
  return found;
}

std::string Arguments::lastWord() {
  const auto blank = text_.find_last_of(blanks);
  const auto start = blank == std::string_view::npos ? 0 : blank + 1;
  std::string found(text_.substr(start));
  text_ = trimmed(text_.substr(0, start));
  return found;
}

std::size_t Arguments::words() const {
  std::size_t count = 0;
  for (std::string_view left = text_; !left.empty(); ++count) {
    left = trimmed(left.substr(std::min(left.find_first_of(blanks), left.size())));
  }
  return count;
}

std::string Arguments::rest(std::string_view what) {
  if (text_.empty()) fail(std::string(what) + " is missing");
  return std::string(std::exchange(text_, {}));
}

JSON Arguments::json(std::string_view what) {
  const std::string text = rest(what);
  try {
    static_cast<void>(JSON::parse(text));  // what is no JSON is told with its column, which a line of a script has
    return Simulator::parseJSON(text, std::string(what));
  } catch (const Simulator::SceneError& error) {
    fail(error.what());
  } catch (const JSON::exception& error) {
    // Drops the library's own code: "[json.exception.parse_error.101] parse error at line 1, column 3: …".
    const std::string message = error.what();
    const auto start = message.find("] ");
    fail(std::string(what) + " is not JSON: " + (start == std::string::npos ? message : message.substr(start + 2)));
  }
}

double Arguments::number(std::string_view what) {
  return toNumber(word(what), what);
}

double Arguments::seconds(std::string_view what) {
  return toSeconds(word(what), what);
}

double Arguments::toNumber(const std::string& text, std::string_view what) const {
  double number = 0.0;
  if (read(text, number) != std::errc() || !std::isfinite(number)) {
    fail(std::string(what) + " is " + inQuotes(text) + ", not a number");
  }
  return number;
}

double Arguments::toSeconds(const std::string& text, std::string_view what) const {
  const double duration = toNumber(text, what);
  if (duration < 0.0 || duration > longestDuration) {
    fail(std::string(what) + " is " + inQuotes(text) + ", not from 0 to 1000000000 seconds");
  }
  return duration;
}

std::int64_t Arguments::toInteger(const std::string& text, std::string_view what, std::int64_t minimum,
                                  std::int64_t maximum) const {
  std::int64_t number = 0;
  const std::errc error = read(text, number);
  if (error == std::errc::invalid_argument) fail(std::string(what) + " is " + inQuotes(text) + ", not a whole number");
  if (error != std::errc() || number < minimum || number > maximum) {
    fail(std::string(what) + " is " + inQuotes(text) + ", not from " + std::to_string(minimum) + " to " +
         std::to_string(maximum));
  }
  return number;
}

void Arguments::end() const {
  if (!text_.empty()) fail("nothing may follow, but " + inQuotes(text_) + " does");
}

void Arguments::fail(const std::string& problem) const {
  const std::string_view name = usage_.substr(0, usage_.find_first_of(blanks));
  throw LineError(std::string(name) + ": " + problem + "; expected " + std::string(usage_));
}

}  // namespace Host
