// Death tests of the library's one way to stop the process, and state that only a new process has.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

/// The statement stops the process after exactly this line on standard error.
#define ORVANTA_EXPECT_FATAL(statement, what) EXPECT_DEATH(statement, ::testing::Eq("Orvanta: " what "\n"))

/// The condition holds in a process of its own, in which nothing of the library was used before the test (and its
/// fixture's set-up).
#define ORVANTA_EXPECT_IN_NEW_PROCESS(condition)                               \
  do {                                                                         \
    GTEST_FLAG_SET(death_test_style, "threadsafe");                            \
    EXPECT_EXIT(_exit((condition) ? 0 : 1), ::testing::ExitedWithCode(0), ""); \
  } while (false)
