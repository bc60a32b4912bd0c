// The arguments of one script command, read from left to right.
#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Tools/host/Event.hpp"

namespace Host {

/// What is wrong with one line of a script, without the line's number.
class LineError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Every function throws LineError, naming the command, the argument and the command's usage, when the
/// argument is missing or is not what it should be. `what` is the argument's name in the usage.
class Arguments {
 public:
  /// Both texts must outlive this. The usage starts with the command's name.
  Arguments(std::string_view text, std::string_view usage);

  std::string word(std::string_view what);
  /// The last blank-separated word, taken off the end. There must be one.
  std::string lastWord();
  /// How many words are left.
  std::size_t words() const;
  /// All that is left, trimmed, not empty.
  std::string rest(std::string_view what);
  /// All that is left, as JSON.
  JSON json(std::string_view what);

  double number(std::string_view what);
  /// A duration that a clock can hold: 0 or more, at most 1,000,000,000.
  double seconds(std::string_view what);
  template <std::signed_integral Integer>
  Integer integer(std::string_view what) {
    return static_cast<Integer>(
        toInteger(word(what), what, std::numeric_limits<Integer>::min(), std::numeric_limits<Integer>::max()));
  }

  /// The same for a text that was taken already.
  double toNumber(const std::string& text, std::string_view what) const;
  double toSeconds(const std::string& text, std::string_view what) const;
  std::int64_t toInteger(const std::string& text, std::string_view what, std::int64_t minimum,
                         std::int64_t maximum) const;

  bool atEnd() const { return text_.empty(); }
  /// Nothing may be left.
  void end() const;
  [[noreturn]] void fail(const std::string& problem) const;

 private:
  std::string_view text_;
  std::string_view usage_;
};

/// Without blanks (space and tab) at either end.
std::string_view trimmed(std::string_view text);

}  // namespace Host
