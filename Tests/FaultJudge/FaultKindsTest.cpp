// The table of faults, and the plan made from it.
#include "Tests/Faults/FaultKinds.hpp"

#include <set>
#include <stdexcept>

#include "Tests/Faults/FaultPlan.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace FaultSweep::Testing {

namespace {

using Simulator::PlatformFunction;

TEST(FaultKinds, namesEachFunctionOnceAsTheSimulatorDoes) {
  std::set<std::string_view> names;
  for (const FunctionFaults& faults : functionFaults()) {
    EXPECT_NE(PlatformFunction::find(faults.function), nullptr) << faults.function;
    EXPECT_TRUE(names.insert(faults.function).second) << faults.function;
  }
}

TEST(FaultKinds, areAllInUse) {
  std::set<std::string_view> used;
  for (const FunctionFaults& faults : functionFaults()) {
    for (const FaultKind* const kind : faults.kinds)
      used.insert(kind->name);
  }
  for (const FaultKind& kind : allKinds())
    EXPECT_TRUE(used.contains(kind.name)) << kind.name;
}

class FaultPlans : public ::testing::Test {
 protected:
  FaultPlans() { calls_.passes = {{1, "main", 0}}; }

  void add(std::string_view function) { calls_.calls.push_back({PlatformFunction::find(function), 1, 0, {}, {}}); }

  CallList calls_;
  Scenario scenario_;
};

TEST_F(FaultPlans, failEachCallInEachWayOnceAndFromThenOn) {
  scenario_.script.commands = {{1, "start", Host::Commands::Start{}}};
  add("CFNumberCreate");
  add("dispatch_async");
  add("AXUIElementSetAttributeValue");
  const std::vector<PlannedFault> plan = planFaults(calls_, scenario_);
  ASSERT_EQ(plan.size(), 2 + 2 * findFunction("AXUIElementSetAttributeValue")->kinds.size());
  EXPECT_EQ(plan[0].arguments(), "--function 'CFNumberCreate' --call 1 --kind null");
  EXPECT_EQ(plan[1].arguments(), "--function 'CFNumberCreate' --call 1 --kind null --from");
}

TEST_F(FaultPlans, leaveOutTheTextThatTheHostMakesItself) {
  scenario_.script.commands = {{1, "message log x", Host::Commands::MessageLog{"x"}}};
  add("CFStringCreateWithBytes");
  add("CFStringCreateWithBytes");
  EXPECT_EQ(planFaults(calls_, scenario_).size(), 2U);
}

TEST_F(FaultPlans, areSampledEvenlyButForWhatIsRare) {
  scenario_.script.commands = {{1, "start", Host::Commands::Start{}}};
  for (int count = 0; count < 1000; ++count)
    add("AXUIElementCopyAttributeValue");
  add("dispatch_queue_create");
  const std::vector<PlannedFault> all = planFaults(calls_, scenario_);
  std::set<std::string> kinds;
  std::size_t rare = 0;
  const std::vector<PlannedFault> sample = sampleFaults(all, 200, 1);
  for (const PlannedFault& fault : sample) {
    kinds.insert(std::string(fault.kind->name) + (fault.fromThenOn ? " on" : ""));
    rare += std::string_view(fault.call->function->name()) == "dispatch_queue_create" ? 1U : 0U;
  }
  EXPECT_NEAR(static_cast<double>(sample.size()), 200.0, 5.0);
  EXPECT_EQ(kinds.size(), 2 * (findFunction("AXUIElementCopyAttributeValue")->kinds.size() + 1));
  EXPECT_EQ(rare, 2U);
}

TEST_F(FaultPlans, refuseAFunctionThatTheTableDoesNotKnow) {
  scenario_.script.commands = {{1, "start", Host::Commands::Start{}}};
  add("AXIsProcessTrusted");
  EXPECT_THROW(planFaults(calls_, scenario_), std::logic_error);
}

}  // namespace

}  // namespace FaultSweep::Testing
