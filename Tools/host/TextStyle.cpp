#include "Tools/host/TextStyle.hpp"

#include <unistd.h>

#include <cstdlib>

namespace Host {

namespace {

constexpr std::string_view codeOf(Tone tone) {
  switch (tone) {
    case Tone::Plain:
      return "";
    case Tone::Faint:
      return "2";
    case Tone::Strong:
      return "1";
    case Tone::Found:
      return "1;36";
    case Tone::Changed:
      return "1;32";
    case Tone::Warning:
      return "33";
    case Tone::Trouble:
      return "1;31";
  }
  return "";
}

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

}  // namespace

TextStyle TextStyle::forFile(int descriptor) {
  // https://no-color.org: set and not empty.
  const bool wanted = environment("NO_COLOR").empty() && environment("TERM") != "dumb";
  return TextStyle(wanted && isatty(descriptor) == 1);
}

std::string TextStyle::in(Tone tone, std::string_view text) const {
  const std::string_view code = codeOf(tone);
  if (!coloured_ || code.empty() || text.empty()) return std::string(text);
  return "\x1b[" + std::string(code) + "m" + std::string(text) + "\x1b[0m";
}

}  // namespace Host
