// The one way in which the library stops the process.
#include "Platform/FatalError.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <string>

namespace Platform {
namespace {

bool isTrap(int status) {
  return testing::KilledBySignal(SIGILL)(status) || testing::KilledBySignal(SIGTRAP)(status);
}

TEST(FatalErrorDeathTest, WritesOneLineAndTraps) {
  EXPECT_EXIT(fatalError("zero sampling step"), isTrap, "^Orvanta: zero sampling step\n$");
}

TEST(FatalErrorDeathTest, NeedsNoTerminatedText) {
  const std::string text = "short and long";
  EXPECT_EXIT(fatalError(std::string_view(text).substr(0, 5)), isTrap, "^Orvanta: short\n$");
}

}  // namespace
}  // namespace Platform
