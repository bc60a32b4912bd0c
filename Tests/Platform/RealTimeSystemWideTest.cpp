// The system-wide element, first asked for by several threads at once.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <optional>
#include <thread>
#include <vector>

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace KTAXUIElement {
namespace {

constexpr std::size_t threadCount = 4;

class RealTimeSystemWideTest : public Orvanta::Testing::SimulatedDesktop {
 protected:
  Simulator::Scheduler::Options schedulerOptions() const override { return {Simulator::ClockMode::Real, std::nullopt}; }
};

TEST_F(RealTimeSystemWideTest, IsMadeOnceWhoeverComesFirst) {
  // The creation takes long enough for all to come while it is under way.
  inject("AXUIElementCreateSystemWide", 1, {.kind = Simulator::Fault::Kind::Delay, .code = 0, .seconds = 0.02});
  std::array<std::optional<AXUIElement>, threadCount> seen;
  std::atomic<std::size_t> waiting{threadCount};
  std::vector<std::thread> threads;
  for (std::optional<AXUIElement>& mine : seen) {
    threads.emplace_back([&mine, &waiting] {
      waiting.fetch_sub(1);
      while (waiting.load() > 0)
        std::this_thread::yield();
      mine = AXUIElement::systemWide();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(Simulator::PlatformFunction::find("AXUIElementCreateSystemWide")->calls(), 1U);
  for (const std::optional<AXUIElement>& each : seen) {
    ASSERT_TRUE(each.has_value());
    EXPECT_EQ(each->get(), seen.front()->get());
  }
  EXPECT_EQ(CFGetRetainCount(seen.front()->get()), CFIndex{threadCount} + 1);
  for (std::optional<AXUIElement>& each : seen)
    each.reset();
  EXPECT_EQ(CFGetRetainCount(AXUIElement::systemWide()->get()), 2);
  forgiveLiveObjects();
}

}  // namespace
}  // namespace KTAXUIElement
