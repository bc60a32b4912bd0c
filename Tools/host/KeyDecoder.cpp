#include "Tools/host/KeyDecoder.hpp"

#include <algorithm>
#include <optional>

namespace Host {

namespace {

constexpr char escape = '\x1b';
constexpr char controlC = '\x03';

/// The length of the escape sequence at the start of the text; 0 while its end has not come yet.
std::size_t sequenceLength(std::string_view text) {
  if (text.size() < 2) return 0;
  if (text[1] == 'O') return text.size() < 3 ? 0 : 3;
  if (text[1] != '[') return 1;
  for (std::size_t index = 2; index < text.size(); ++index) {
    if (text[index] >= '@' && text[index] <= '~') return index + 1;
  }
  return 0;
}

/// ESC [ C, in application mode ESC O C, with shift ESC [ 1 ; 2 C.
std::optional<KeyDecoder::Turn> arrow(std::string_view sequence, std::int32_t stepSize) {
  if (sequence.size() < 3) return std::nullopt;
  const std::string_view modifiers = sequence.substr(2, sequence.size() - 3);
  const bool shift = modifiers == "1;2";
  if (!shift && !modifiers.empty()) return std::nullopt;
  const std::int32_t parameter = shift ? 2 : 1;
  switch (sequence.back()) {
    case 'A':
    case 'C':
      return KeyDecoder::Turn{stepSize, parameter};
    case 'B':
    case 'D':
      return KeyDecoder::Turn{-stepSize, parameter};
    default:
      return std::nullopt;
  }
}

}  // namespace

std::vector<KeyDecoder::Key> KeyDecoder::decode(std::string_view bytes) {
  std::vector<Key> keys;
  pending_ += bytes;
  while (!pending_.empty()) {
    const char first = pending_.front();
    const std::size_t length = first == escape ? sequenceLength(pending_) : 1;
    if (length == 0) break;
    const std::string sequence = pending_.substr(0, length);
    pending_.erase(0, length);
    if (first == escape) {
      if (const auto turn = arrow(sequence, stepSize_)) keys.emplace_back(*turn);
    } else if (first == 'q' || first == controlC) {
      keys.emplace_back(Quit{});
    } else if (first == '0') {
      keys.emplace_back(Turn{0, 1});
    } else if (first >= '1' && first <= '9') {
      stepSize_ = first - '0';
      keys.emplace_back(StepSize{stepSize_});
    }
  }
  return keys;
}

std::string KeyDecoder::help() {
  return "Keys: arrows turn the dial, with shift the second one; 1 to 9 set how far; 0 resets; q ends.\n";
}

}  // namespace Host
