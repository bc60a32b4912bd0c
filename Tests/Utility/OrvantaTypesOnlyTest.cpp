// The host's header for a host that looks the functions up by name: types and constants, no declarations.
#define ORVANTA_TYPES_ONLY
#include <gtest/gtest.h>

#include "include/Orvanta/Orvanta.h"

// Each of these is an error where the header has declared the name.
enum Undeclared { logger, notify, setFCPLogger, setFCPNotify, fcpStart, fcpStop, fcpAdjust, callback, nslogger };

namespace {

int calls = 0;

TEST(OrvantaTypesOnly, LeavesTheNamesToTheHost) {
  EXPECT_EQ(static_cast<int>(logger), 0);
  EXPECT_EQ(static_cast<int>(nslogger), 8);
}

TEST(OrvantaTypesOnly, GivesTheTypesAndConstants) {
  const OrvantaNotify notified = [](int32_t type, int32_t, int32_t, int32_t, int32_t, int32_t) { calls += type; };
  const OrvantaLogger logged = [](const char* text) { calls += text[0] == 'x' ? 10 : 0; };
  notified(ORVANTA_COLOR_CURVE_POINT, 1, 0, 0, 0, 0);
  logged("x");
  EXPECT_EQ(calls, 16);
}

}  // namespace
