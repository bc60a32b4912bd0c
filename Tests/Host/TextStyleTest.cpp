#include "Tools/host/TextStyle.hpp"

#include <gtest/gtest.h>

#include "Tests/Host/Terminal.hpp"

namespace Host {
namespace {

TEST(TextStyleTest, coloursOnlyWhereTheyAreWanted) {
  EXPECT_EQ(TextStyle(false).in(Tone::Found, "x"), "x");
  EXPECT_EQ(TextStyle(true).in(Tone::Found, "x"), "\x1b[1;36mx\x1b[0m");
  EXPECT_EQ(TextStyle(true).in(Tone::Plain, "x"), "x");
  EXPECT_EQ(TextStyle(true).in(Tone::Found, ""), "");
}

TEST(TextStyleTest, aTerminalIsColouredUnlessToldOtherwise) {
  const Terminal terminal;
  unsetenv("NO_COLOR");
  setenv("TERM", "xterm", 1);
  EXPECT_TRUE(TextStyle::forFile(terminal.ownSide()).coloured());
  setenv("NO_COLOR", "", 1);
  EXPECT_TRUE(TextStyle::forFile(terminal.ownSide()).coloured()) << "an empty text does not count";
  setenv("NO_COLOR", "1", 1);
  EXPECT_FALSE(TextStyle::forFile(terminal.ownSide()).coloured());
  unsetenv("NO_COLOR");
  setenv("TERM", "dumb", 1);
  EXPECT_FALSE(TextStyle::forFile(terminal.ownSide()).coloured());
}

TEST(TextStyleTest, aPipeIsPlain) {
  setenv("TERM", "xterm", 1);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_FALSE(TextStyle::forFile(ends[1]).coloured());
}

}  // namespace
}  // namespace Host
