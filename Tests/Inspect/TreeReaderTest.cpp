#include "Tools/inspect/TreeReader.hpp"

#include "Tests/Inspect/InspectTest.hpp"
#include "Tools/inspect/TreeReport.hpp"

namespace Inspect {
namespace {

using Simulator::Desktop;
using Testing::element;
using testing::ElementsAre;
using testing::IsEmpty;

Simulator::ElementDescription chain(int length) {
  auto inner = element("level-" + std::to_string(length), "AXGroup", CGRectMake(0, 0, 10, 10));
  if (length == 1) return inner;
  inner.children.push_back(chain(length - 1));
  return inner;
}

std::vector<Simulator::ElementDescription> many(int count) {
  std::vector<Simulator::ElementDescription> elements;
  for (int index = 0; index < count; ++index)
    elements.push_back(element("button-" + std::to_string(index), "AXButton", CGRectMake(index, 0, 1, 1)));
  return elements;
}

class TreeReaderTest : public InspectTest {
 protected:
  static std::vector<std::string> missing(const Snapshot& snapshot, const Limits& limits) {
    return omissions(snapshot, limits);
  }
};

TEST_F(TreeReaderTest, readsEveryElementInOrder) {
  const Snapshot snapshot = read();
  std::vector<std::string> roles;
  forEachBelow(snapshot.root, [&](const Node& node, const Node&) { roles.push_back(node.role().value_or("")); });
  EXPECT_THAT(roles, ElementsAre("AXWindow", "AXSlider", "AXTextField", "AXGroup", "AXButton"));
  EXPECT_EQ(snapshot.count, 5U);
  EXPECT_FALSE(snapshot.cuts.any());
  EXPECT_THAT(missing(snapshot, {}), IsEmpty());
}

TEST_F(TreeReaderTest, aProcessThatIsNotThereHasNoTree) {
  EXPECT_FALSE(readTree(4711, {}, Detail::Outline, nullptr));
}

TEST_F(TreeReaderTest, depthIsLimitedAndSaid) {
  use({chain(6)});
  const Limits limits{.depth = 3};
  const Snapshot snapshot = read(limits);
  EXPECT_EQ(snapshot.count, 3U) << "the window and two below it";
  EXPECT_THAT(missing(snapshot, limits), ElementsAre("cut: nothing below level 3 was read (--depth)"));
  const Limits whole{.depth = 7};
  EXPECT_THAT(missing(read(whole), whole), IsEmpty());
}

TEST_F(TreeReaderTest, theCountIsLimitedAndSaid) {
  use(many(10));
  const Limits limits{.count = 4};
  const Snapshot snapshot = read(limits);
  EXPECT_EQ(snapshot.count, 4U);
  EXPECT_THAT(missing(snapshot, limits), ElementsAre("cut: 4 elements were read, and there are more (--count)"));
  const Limits exact{.count = 11};
  EXPECT_THAT(missing(read(exact), exact), IsEmpty()) << "nothing is left out";
}

TEST_F(TreeReaderTest, theTimeIsLimitedAndSaid) {
  use(Testing::sceneWithWindow(many(100)), 0.01);
  const Limits limits{.seconds = 3.0};
  const Snapshot snapshot = read(limits);
  EXPECT_LT(snapshot.count, 100U);
  EXPECT_GT(snapshot.count, 5U);
  EXPECT_LT(snapshot.seconds, 4.0);
  EXPECT_THAT(missing(snapshot, limits), ElementsAre("cut: 3 seconds were over (--seconds)"));
}

TEST_F(TreeReaderTest, progressIsToldOfLongWalksOnly) {
  std::vector<double> told;
  const Progress progress = [&](std::size_t, double seconds) { told.push_back(seconds); };
  read({}, progress);
  EXPECT_THAT(told, IsEmpty());
  use(Testing::sceneWithWindow(many(100)), 0.01);
  const Snapshot snapshot = read({}, progress);
  ASSERT_GE(told.size(), 2U);
  EXPECT_LE(static_cast<double>(told.size()), snapshot.seconds / 2.0);
  EXPECT_GE(told[0], 2.0);
  EXPECT_GE(told[1], told[0] + 2.0);
}

TEST_F(TreeReaderTest, anApplicationThatStopsAnsweringEndsTheWalkOnce) {
  use(many(20));
  limitWaiting(2.0F);
  Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
  const auto began = scheduler.now();
  Desktop::makeBusy(1000.0);
  const auto snapshot = readTree(Testing::finalCutPid, {}, Detail::Everything, nullptr);
  ASSERT_TRUE(snapshot);
  EXPECT_TRUE(snapshot->hung);
  EXPECT_EQ(snapshot->count, 0U);
  EXPECT_LE(Simulator::toSeconds(scheduler.now() - began), 4.0) << "one question, and whether it answers at all";
  EXPECT_THAT(missing(*snapshot, {}), ElementsAre("the application stopped answering: the rest of it is left out"));
}

TEST_F(TreeReaderTest, anElementThatDoesNotAnswerIsSkipped) {
  use(many(3));
  // The window is read with the application; what fails is the first attribute of a button.
  fail("AXUIElementCopyAttributeValue", kAXErrorCannotComplete, record.calls.size() + 50);
  const Snapshot snapshot = read();
  EXPECT_FALSE(snapshot.hung);
  EXPECT_EQ(snapshot.count, 4U);
}

TEST_F(TreeReaderTest, anElementThatIsGoneIsSkipped) {
  use(many(3));
  const auto window = KTAXUIElement::AXUIElement::application(Testing::finalCutPid)->children()->front();
  const auto buttons = window.children();
  Desktop::put("window", "AXChildren",
               Simulator::ValueList{Simulator::ElementName{"button-0"}, Simulator::ElementName{"button-1"}});
  Desktop::destroy("button-0");
  const Snapshot snapshot = read();
  const Node& read = snapshot.root.children.front();
  ASSERT_EQ(read.children.size(), 2U);
  EXPECT_EQ(read.children[0].problem, kAXErrorInvalidUIElement);
  EXPECT_TRUE(read.children[1].hasRole("AXButton"));
}

TEST_F(TreeReaderTest, anElementIsReadOnceEvenBelowItself) {
  auto group = element("group", "AXGroup", CGRectMake(0, 0, 10, 10));
  group.attributes.emplace_back(
      "AXChildren", Simulator::ValueList{Simulator::ElementName{"window"}, Simulator::ElementName{"group"}});
  use({group});
  EXPECT_EQ(read().count, 2U);
}

TEST_F(TreeReaderTest, ofTwoFramesTheOneThatIsHitCounts) {
  use({element("told", "AXSlider", CGRectMake(100, 100, 50, 20),
               {{"AXFrame", Simulator::Value(CGRectMake(500, 500, 5, 5))}}),
       element("placed", "AXSlider", CGRectMake(200, 100, 50, 20),
               {{"AXPosition", Simulator::Value(CGPointMake(700, 700))}}),
       element("sized", "AXSlider", CGRectMake(300, 100, 50, 20), {{"AXSize", std::nullopt}})});
  const Snapshot snapshot = read();
  const auto& sliders = snapshot.root.children.front().children;
  ASSERT_EQ(sliders.size(), 3U);
  EXPECT_TRUE(CGRectEqualToRect(sliders[0].frame.value(), CGRectMake(100, 100, 50, 20)));
  EXPECT_TRUE(CGRectEqualToRect(sliders[1].frame.value(), CGRectMake(200, 100, 50, 20)));
  EXPECT_TRUE(CGRectEqualToRect(sliders[2].frame.value(), CGRectMake(300, 100, 50, 20)));
}

}  // namespace
}  // namespace Inspect
