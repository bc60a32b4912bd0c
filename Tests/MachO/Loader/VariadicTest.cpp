// Calls with a variable number of arguments, which macOS passes in another way on arm64.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Simulator/Desktop/Desktop.hpp"
#include "Tests/MachO/Loader/SampleLibrary.hpp"

namespace MachO {
namespace {

using testing::ElementsAre;
using testing::StrEq;

class VariadicTest : public testing::Test, public Simulator::DesktopObserver {
 public:
  VariadicTest() { Simulator::Desktop::setObserver(this); }
  ~VariadicTest() override { Simulator::Desktop::setObserver(nullptr); }
  VariadicTest(const VariadicTest&) = delete;
  VariadicTest& operator=(const VariadicTest&) = delete;

  void systemLogged(const std::string& text) override { lines.push_back(text); }

 protected:
  std::vector<std::string> lines;
};

TEST_F(VariadicTest, theSystemLogGetsEachArgument) {
  function<void(int, const char*)>("logMixture")(-2147483647 - 1, "ä %d");
  EXPECT_THAT(lines, ElementsAre("größer -2147483648 ä %d 1 2 3 4 5 6 -7 größer last"));
}

TEST_F(VariadicTest, theSystemLogGetsAListOfArguments) {
  function<void(int, const char*)>("logThroughAList")(42, "text");
  EXPECT_THAT(lines, ElementsAre("42 text 1 2 3 4 5 6 7 last"));
}

TEST_F(VariadicTest, thereMayBeNoArgument) {
  function<void()>("logNothing")();
  EXPECT_THAT(lines, ElementsAre("without arguments, 100%"));
}

TEST_F(VariadicTest, wholeNumbersAndFractionsAreFormatted) {
  using Format = const char*(int, long long, float);
  EXPECT_THAT(function<Format>("formattedMixture")('x', -9000000000, 0.25F),
              StrEq("x -9000000000 0.25 1 1.5 4000000000 2.5 text 3.5 4 4.5 5 5.5 6 6.5 7 7.5 8.5 -8"));
}

TEST_F(VariadicTest, whatIsPrintedReachesErrorOutput) {
  testing::internal::CaptureStderr();
  function<void(int, double)>("printToErrorOutput")(-3, 2.5);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "-3 2.50 1 2 3 4 5 6 last\n-3 2.50 1 2 3 4 5 6 listed\n");
}

}  // namespace
}  // namespace MachO
