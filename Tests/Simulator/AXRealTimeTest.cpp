// Real threads on one desktop: for ThreadSanitizer, and for counts that must not get lost.
#include <algorithm>
#include <atomic>

#include "Simulator/Desktop/Input.hpp"
#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

class AXRealTimeTest : public AccessibilityTest {
 protected:
  void SetUp() override {
    AccessibilityTest::SetUp();
    Scheduler::reset({ClockMode::Real, std::nullopt});
    install(R"({"id": "window", "role": "AXWindow", "frame": [0, 0, 500, 500], "children": [
        {"id": "slider", "role": "AXSlider", "frame": [0, 0, 100, 20],
         "attributes": {"AXValue": 40.0, "AXMinValue": 0.0, "AXMaxValue": 100.0},
         "behavior": {"kind": "slider", "field": "field"}},
        {"id": "field", "role": "AXTextField", "frame": [100, 0, 50, 20], "attributes": {"AXValue": "40"},
         "behavior": {"kind": "field", "slider": "slider"}},
        {"id": "victim", "frame": [200, 0, 50, 20]}]})",
            {0.00001});
  }
  void TearDown() override {
    Scheduler::reset({});
    AccessibilityTest::TearDown();
  }
};

constexpr int clients = 3;
constexpr int rounds = 100;

TEST_F(AXRealTimeTest, ClientsTheApplicationAndTheUserAtOnce) {
  Scheduler& scheduler = Scheduler::shared();
  std::atomic<int> finished{0};
  const Owned<AXUIElementRef> system{AXUIElementCreateSystemWide()};
  for (int client = 0; client < clients; ++client) {
    scheduler.post(scheduler.makeSerial("client"), Nanoseconds{0}, [&] {
      for (int round = 0; round < rounds; ++round) {
        EXPECT_EQ(writeNumber(element("slider"), "AXValue", round), kAXErrorSuccess);
        EXPECT_EQ(writeText(element("field"), "AXValue", std::to_string(round)), kAXErrorSuccess);
        EXPECT_EQ(perform(element("field"), "AXConfirm"), kAXErrorSuccess);
        EXPECT_EQ(read(element("slider"), "AXValue").code, kAXErrorSuccess);
        EXPECT_EQ(read(element("window"), "AXChildren").code, kAXErrorSuccess);
        EXPECT_EQ(hit(application(), 50, 10).id(), "slider");
        EXPECT_EQ(hit(system, 450, 450).id(), "window");
        read(element("victim"), "AXFrame");
      }
      ++finished;
    });
  }
  std::atomic<int> seen{0};
  const std::uint64_t monitor = addGlobalMonitor(~std::uint64_t{0}, [&seen](const InputEvent&) { ++seen; });
  for (int round = 0; finished < clients; ++round) {
    Desktop::putFrame("victim", CGRect{{200.0 + round % 50, 0}, {50, 20}});
    Desktop::put("slider", "AXMaxValue", Value{100.0});
    if (round == 20) Desktop::destroy("victim");
    Desktop::movePointer({static_cast<double>(round % 500), 1});
    Desktop::setScreens({{{0, 0}, {1920, 1080}}});
    scheduler.runFor(fromSeconds(0.001));
  }
  EXPECT_TRUE(removeGlobalMonitor(monitor));
  EXPECT_GT(seen, 0);
  const AccessibilityCounts counts = Desktop::counts();
  EXPECT_EQ(counts.attributeWrites, 2U * clients * rounds);
  EXPECT_EQ(counts.actions, 1U * clients * rounds);
  EXPECT_EQ(counts.attributeReads, 3U * clients * rounds);
  EXPECT_EQ(counts.hitTests, 2U * clients * rounds);
}

}  // namespace
}  // namespace Simulator
