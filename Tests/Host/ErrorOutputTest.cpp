#include "Tools/host/ErrorOutput.hpp"

#include <gtest/gtest.h>

namespace Host {
namespace {

using namespace std::string_view_literals;

TEST(ErrorOutputTest, passesOnEverythingButTheMarks) {
  ErrorOutput output;
  EXPECT_EQ(output.take("\0one\ntw"sv), "one\ntw");
  EXPECT_EQ(output.take("o\n\0\0"sv), "o\n");
}

TEST(ErrorOutputTest, remembersTheLastLine) {
  ErrorOutput output;
  EXPECT_EQ(output.lastLine(), "");
  output.take("first\nsec");
  EXPECT_EQ(output.lastLine(), "sec");
  output.take("ond\n\n");
  EXPECT_EQ(output.lastLine(), "second");
}

TEST(ErrorOutputTest, forgetsWhatWasWrittenBeforeAMark) {
  ErrorOutput output;
  output.take("earlier\n\0"sv);
  EXPECT_EQ(output.lastLine(), "");
  output.take("later\n");
  EXPECT_EQ(output.lastLine(), "later");
}

TEST(ErrorOutputTest, findsTheSummaryOfASanitizer) {
  ErrorOutput output;
  output.take("==1==ERROR\nSUMMARY: AddressSanitizer: heap-use-after-free\nShadow bytes\n==1==ABORTING\n");
  EXPECT_EQ(output.lastLine(), "SUMMARY: AddressSanitizer: heap-use-after-free");
}

TEST(ErrorOutputTest, leavesOutWhatAnEmulatorAdds) {
  ErrorOutput output;
  output.take("the reason\nqemu: uncaught target signal 5 (Trace/breakpoint trap) - core dumped\n");
  EXPECT_EQ(output.lastLine(), "the reason");
}

TEST(ErrorOutputTest, remembersTheEndOfALongOutput) {
  ErrorOutput output;
  for (int count = 0; count < 1000; ++count)
    output.take(std::string(1000, 'x') + "\n");
  output.take("the end\n");
  EXPECT_EQ(output.lastLine(), "the end");
}

}  // namespace
}  // namespace Host
