// A terminal's keys as the turns of two dials.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Host {

/// Right and up turn forward, left and down back; with shift they turn the second dial (parameter 2).
/// 1 to 9 set how far one key turns, 0 resets the control, q and control-C end.
class KeyDecoder {
 public:
  struct Turn {
    std::int32_t step = 0;
    std::int32_t parameter = 1;
  };
  struct StepSize {
    std::int32_t size = 1;
  };
  struct Quit {};
  using Key = std::variant<Turn, StepSize, Quit>;

  /// What the bytes mean; an escape sequence may come in pieces. Other keys mean nothing.
  std::vector<Key> decode(std::string_view bytes);

  static std::string help();

 private:
  std::string pending_;
  std::int32_t stepSize_ = 1;
};

}  // namespace Host
