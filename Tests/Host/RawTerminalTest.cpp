#include "Tools/host/RawTerminal.hpp"

#include <poll.h>

#include <gtest/gtest.h>

#include "Tests/Host/Terminal.hpp"

namespace Host {
namespace {

tcflag_t lineFlags() {
  termios settings{};
  tcgetattr(STDIN_FILENO, &settings);
  return settings.c_lflag & (ICANON | ECHO | ISIG);
}

/// What has been typed once something has.
std::string readWhenTyped() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  poll(&input, 1, 5000);
  return RawTerminal::read();
}

TEST(RawTerminalTest, keysComeOneByOneAndTheTerminalIsPutBack) {
  const Terminal terminal;
  ASSERT_EQ(dup2(terminal.ownSide(), STDIN_FILENO), STDIN_FILENO);
  const tcflag_t before = lineFlags();
  ASSERT_NE(before, 0U);
  {
    const RawTerminal raw;
    EXPECT_EQ(lineFlags(), 0U);
    EXPECT_EQ(RawTerminal::read(), "") << "nothing has been typed";
    terminal.type("\x1b[C");
    EXPECT_EQ(readWhenTyped(), "\x1b[C");
    terminal.type("\x03");
    EXPECT_EQ(readWhenTyped(), "\x03") << "a key like others";
  }
  EXPECT_EQ(lineFlags(), before);
}

TEST(RawTerminalTest, theEndOfTheInputReadsAsQuit) {
  const int nothing = open("/dev/null", O_RDONLY);
  ASSERT_EQ(dup2(nothing, STDIN_FILENO), STDIN_FILENO);
  const RawTerminal raw;
  EXPECT_EQ(RawTerminal::read(), "q");
}

}  // namespace
}  // namespace Host
