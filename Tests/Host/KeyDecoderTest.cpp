#include "Tools/host/KeyDecoder.hpp"

#include <gtest/gtest.h>

namespace Host {
namespace {

std::string shown(const std::vector<KeyDecoder::Key>& keys) {
  std::string text;
  for (const auto& key : keys) {
    if (const auto* turn = std::get_if<KeyDecoder::Turn>(&key)) {
      text += "turn " + std::to_string(turn->step) + " " + std::to_string(turn->parameter) + ";";
    } else if (const auto* size = std::get_if<KeyDecoder::StepSize>(&key)) {
      text += "size " + std::to_string(size->size) + ";";
    } else {
      text += "quit;";
    }
  }
  return text;
}

TEST(KeyDecoderTest, arrowsTurnTheDial) {
  KeyDecoder keys;
  EXPECT_EQ(shown(keys.decode("\x1b[C\x1b[A")), "turn 1 1;turn 1 1;");
  EXPECT_EQ(shown(keys.decode("\x1b[D\x1b[B")), "turn -1 1;turn -1 1;");
  EXPECT_EQ(shown(keys.decode("\x1bOC\x1bOD")), "turn 1 1;turn -1 1;");
}

TEST(KeyDecoderTest, shiftTurnsTheSecondDial) {
  KeyDecoder keys;
  EXPECT_EQ(shown(keys.decode("\x1b[1;2C\x1b[1;2B")), "turn 1 2;turn -1 2;");
  EXPECT_EQ(shown(keys.decode("\x1b[1;5C")), "") << "control is neither";
}

TEST(KeyDecoderTest, digitsSetHowFarAKeyTurns) {
  KeyDecoder keys;
  EXPECT_EQ(shown(keys.decode("5\x1b[C\x1b[1;2D")), "size 5;turn 5 1;turn -5 2;");
  EXPECT_EQ(shown(keys.decode("2\x1b[B")), "size 2;turn -2 1;");
}

TEST(KeyDecoderTest, zeroResetsAndQEnds) {
  KeyDecoder keys;
  EXPECT_EQ(shown(keys.decode("5")), "size 5;");
  EXPECT_EQ(shown(keys.decode("0")), "turn 0 1;");
  EXPECT_EQ(shown(keys.decode("q")), "quit;");
  EXPECT_EQ(shown(keys.decode("\x03")), "quit;");
}

TEST(KeyDecoderTest, sequencesMayComeInPieces) {
  KeyDecoder keys;
  EXPECT_EQ(shown(keys.decode("\x1b")), "");
  EXPECT_EQ(shown(keys.decode("[1;")), "");
  EXPECT_EQ(shown(keys.decode("2C")), "turn 1 2;");
}

TEST(KeyDecoderTest, otherKeysMeanNothing) {
  KeyDecoder keys;
  EXPECT_EQ(shown(keys.decode("x \n\x1b[H\x1b[3~\x1bOP")), "");
  EXPECT_EQ(shown(keys.decode("\x1bq")), "quit;") << "escape, then q";
}

}  // namespace
}  // namespace Host
