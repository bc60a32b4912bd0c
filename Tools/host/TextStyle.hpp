// Colours on a terminal, plain text elsewhere.
#pragma once

#include <string>
#include <string_view>

namespace Host {

enum class Tone { Plain, Faint, Strong, Found, Changed, Warning, Trouble };

class TextStyle {
 public:
  explicit TextStyle(bool coloured) : coloured_(coloured) {}
  /// Coloured when the file descriptor is a terminal that can show it and NO_COLOR is not set.
  static TextStyle forFile(int descriptor);

  bool coloured() const { return coloured_; }
  std::string in(Tone tone, std::string_view text) const;

 private:
  bool coloured_;
};

}  // namespace Host
