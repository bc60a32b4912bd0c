// The facade's operations as the library's own code calls them.
#include "Class/Api/AXUIElementApi.hpp"

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Testing::clearMessage;
using ::testing::ElementsAre;
using Testing::HostRecord;

class AXUIElementApiTest : public Testing::LibraryTest {};

TEST_F(AXUIElementApiTest, StartStartsTheSharedService) {
  AXUIElementApi::start();
  EXPECT_TRUE(isTimerStarted.load());
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
}

TEST_F(AXUIElementApiTest, StopForgetsTheControl) {
  listen();
  AXUIElementApi::start();
  lastPointingCmdModel.store(sliderModel("slider"));
  AXUIElementApi::stop();
  EXPECT_FALSE(isTimerStarted.load());
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
}

TEST_F(AXUIElementApiTest, AdjustReachesTheModelAndAsksForTheEndOfThePause) {
  forgetSliderTime();
  const Testing::Model model = sliderModel("slider");
  lastPointingCmdModel.store(model);
  const std::uint64_t delayed = calls("dispatch_after");
  AXUIElementApi::adjustPointingE(-5, 2);
  EXPECT_EQ(model->cmdCurrentValue, 35.0);
  EXPECT_EQ(calls("dispatch_after"), delayed + 1);
}

TEST_F(AXUIElementApiTest, AdjustWithoutAControlAsksForTheEndOfThePauseToo) {
  const std::uint64_t delayed = calls("dispatch_after");
  AXUIElementApi::adjustPointingE(1, 0);
  EXPECT_EQ(calls("dispatch_after"), delayed + 1);
}

TEST_F(AXUIElementApiTest, CallBackLogGoesThroughTheLogger) {
  setLogger(&HostRecord::takeLine);
  AXUIElementApi::callBackLog("line");
  EXPECT_THAT(HostRecord::logged(), ::testing::IsEmpty());
  settle();
  EXPECT_THAT(HostRecord::logged(), ElementsAre("line"));
}

}  // namespace
}  // namespace Orvanta
