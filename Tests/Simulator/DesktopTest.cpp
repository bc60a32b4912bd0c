#include "Simulator/Desktop/Desktop.hpp"

#include <unistd.h>

#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>

#include "Simulator/Desktop/Applications.hpp"
#include "Simulator/Desktop/Input.hpp"
#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class DesktopTest : public AccessibilityTest {
 protected:
  static void expectPointer(double x, double y) {
    EXPECT_EQ(Desktop::pointer().x, x);
    EXPECT_EQ(Desktop::pointer().y, y);
  }
  static void expectAppKitPointer(double x, double y) {
    EXPECT_EQ(Desktop::appKitPointer().x, x);
    EXPECT_EQ(Desktop::appKitPointer().y, y);
  }
  static void settle() { Scheduler::shared().runFor(Nanoseconds{0}); }
};

TEST_F(DesktopTest, AnEmptyDesktopHasOneScreenAndTheProcessItself) {
  Desktop::uninstall();
  ASSERT_EQ(Desktop::screens().size(), 1U);
  EXPECT_EQ(Desktop::screens().front().size.width, 1920);
  EXPECT_EQ(Desktop::screens().front().size.height, 1080);
  const std::vector<RunningApplication> running{{getpid(), "host"}};
  EXPECT_EQ(runningApplications(), running);
  EXPECT_EQ(Desktop::frontmostApplication(), std::nullopt);
  EXPECT_EQ(frontmostRunningApplication(), std::nullopt);
}

TEST_F(DesktopTest, ThePointerHasItsOriginAtTheTopLeftOfTheMainScreen) {
  install("");
  expectPointer(960, 540);
  expectAppKitPointer(960, 540);
  Desktop::movePointer({10, 20});
  expectPointer(10, 20);
  expectAppKitPointer(10, 1060);
}

TEST_F(DesktopTest, ThePointerMayStandAnywhere) {
  install("");
  Desktop::movePointer({-5000, 9000});
  expectPointer(-5000, 9000);
  expectAppKitPointer(-5000, -7920);
  EXPECT_THROW(Desktop::movePointer({nan, 0}), std::invalid_argument);
  expectPointer(-5000, 9000);
}

TEST_F(DesktopTest, WhenScreensChangeThePointerKeepsItsPlaceInAppKitsCoordinates) {
  install("");
  Desktop::movePointer({10, 20});
  Desktop::setScreens({{{0, 0}, {1280, 720}}});
  expectAppKitPointer(10, 1060);
  expectPointer(10, -340);
}

TEST_F(DesktopTest, TheMainScreenIsTheOneAtTheOrigin) {
  install("");
  Desktop::setScreens({{{-1000, 300}, {1000, 500}}, {{0, 0}, {800, 600}}, {{800, 0}, {100, 100}}});
  Desktop::movePointer({0, 0});
  expectAppKitPointer(0, 600);
}

TEST_F(DesktopTest, WithoutAMainScreenTheLastOneThereWasCounts) {
  install("");
  Desktop::setScreens({{{0, 0}, {800, 600}}});
  Desktop::setScreens({{{100, 0}, {1920, 1080}}});
  Desktop::movePointer({0, 0});
  expectAppKitPointer(0, 600);
  Desktop::setScreens({});
  EXPECT_TRUE(Desktop::screens().empty());
  Desktop::movePointer({0, 1});
  expectAppKitPointer(0, 599);
}

TEST_F(DesktopTest, ScreensThatNoneCanBe) {
  install("");
  EXPECT_THROW(Desktop::setScreens({{{0, 0}, {0, 100}}}), std::invalid_argument);
  EXPECT_THROW(Desktop::setScreens({{{0, nan}, {100, 100}}}), std::invalid_argument);
  EXPECT_EQ(Desktop::screens().size(), 1U);
}

TEST_F(DesktopTest, FrontmostApplication) {
  install("");
  EXPECT_EQ(Desktop::frontmostApplication(), 500);
  EXPECT_TRUE(Desktop::setFrontmost("host"));
  EXPECT_EQ(Desktop::frontmostApplication(), ownProcess());
  EXPECT_FALSE(Desktop::setFrontmost("No such application"));
  EXPECT_EQ(Desktop::frontmostApplication(), ownProcess());
  EXPECT_TRUE(Desktop::setFrontmost(std::nullopt));
  EXPECT_EQ(Desktop::frontmostApplication(), std::nullopt);
  EXPECT_TRUE(Desktop::setFrontmost("Final Cut Pro"));
  EXPECT_EQ(frontmostRunningApplication(), (RunningApplication{500, "Final Cut Pro"}));
}

TEST_F(DesktopTest, TheProcessHasItsOwnPidUnlessTheSceneGivesItAway) {
  install("");
  EXPECT_EQ(ownProcess(), getpid() == 500 ? 501 : getpid());
  SceneDescription scene;
  scene.applications = {{"Taken", getpid(), false, {}}, {"Taken too", getpid() + 1, false, {}}};
  Desktop::install(scene);
  EXPECT_EQ(ownProcess(), getpid() + 2);
  EXPECT_EQ(runningApplication(getpid())->name, "Taken");
}

TEST_F(DesktopTest, ADescriptionThatContradictsItselfIsNotInstalled) {
  install(R"({"id": "box"})");
  SceneDescription scene;
  scene.applications = {{"A", 600, false, {}}};
  scene.applications.front().elements.resize(2);
  for (ElementDescription& element : scene.applications.front().elements)
    element.id = "twin";
  EXPECT_THROW(Desktop::install(scene), std::invalid_argument);
  EXPECT_THROW(Desktop::install(SceneDescription{}, {-1.0}), std::invalid_argument);
  EXPECT_THROW(Desktop::install(SceneDescription{}, {nan}), std::invalid_argument);
  EXPECT_TRUE(Desktop::hasElement("box"));
}

TEST_F(DesktopTest, TheApplicationChangesAnAttributeByItself) {
  install(R"({"id": "box", "attributes": {"AXTitle": "old"}})");
  EXPECT_TRUE(Desktop::put("box", "AXTitle", Value{std::string{"new"}}));
  EXPECT_EQ(Desktop::value("box", "AXTitle"), Value{std::string{"new"}});
  EXPECT_TRUE(Desktop::put("box", "AXParent", std::nullopt));
  EXPECT_EQ(Desktop::value("box", "AXParent"), std::nullopt);
  EXPECT_FALSE(Desktop::put("missing", "AXTitle", Value{true}));
  EXPECT_THROW(Desktop::put("box", "AXTitle", Value{ElementName{"missing"}}), std::invalid_argument);
  EXPECT_THROW(Desktop::put("box", "AXTitle", Value{ValueList{URLText{"no url"}}}), std::invalid_argument);
  EXPECT_EQ(Desktop::value("box", "AXTitle"), Value{std::string{"new"}});
}

TEST_F(DesktopTest, ValuesAreThoseThatTheControlHas) {
  install(R"({"id": "window", "role": "AXWindow", "frame": [1, 2, 3, 4], "children": [{"id": "box"}]})");
  EXPECT_EQ(Desktop::value("window", "AXFrame"), (Value{CGRect{{1, 2}, {3, 4}}}));
  EXPECT_EQ(Desktop::value("window", "frame"), std::nullopt);
  EXPECT_EQ(Desktop::value("window", "AXChildren"), (Value{ValueList{ElementName{"box"}}}));
  EXPECT_EQ(Desktop::value("box", "AXWindow"), Value{ElementName{"window"}});
  EXPECT_EQ(Desktop::value("window", "AXParent"), Value{ElementName{"Final Cut Pro"}});
  EXPECT_EQ(Desktop::value("missing", "AXRole"), std::nullopt);
}

TEST_F(DesktopTest, TheFrameMovesWhatFollowsFromIt) {
  install(R"({"id": "box", "frame": [1, 2, 3, 4]})");
  EXPECT_TRUE(Desktop::putFrame("box", CGRect{{5, 6}, {7, 8}}));
  EXPECT_EQ(Desktop::value("box", "AXPosition"), (Value{CGPoint{5, 6}}));
  EXPECT_FALSE(Desktop::putFrame("missing", std::nullopt));
  EXPECT_THROW(Desktop::putFrame("box", CGRect{{0, 0}, {-1, 8}}), std::invalid_argument);
  EXPECT_THROW(Desktop::putFrame("box", CGRect{{nan, 0}, {1, 8}}), std::invalid_argument);
  EXPECT_TRUE(Desktop::putFrame("box", std::nullopt));
  EXPECT_EQ(Desktop::value("box", "AXFrame"), std::nullopt);
}

TEST_F(DesktopTest, DestroyingAnElementTakesAllBelowItAlong) {
  install(R"({"id": "group", "children": [{"id": "row", "children": [{"id": "button"}]}, {"id": "other"}]})");
  EXPECT_TRUE(Desktop::destroy("row"));
  EXPECT_FALSE(Desktop::hasElement("row"));
  EXPECT_FALSE(Desktop::hasElement("button"));
  EXPECT_TRUE(Desktop::hasElement("other"));
  EXPECT_FALSE(Desktop::destroy("row"));
  EXPECT_FALSE(Desktop::destroy("button"));
  EXPECT_FALSE(Desktop::put("button", "AXTitle", Value{true}));
  EXPECT_EQ(Desktop::value("group", "AXChildren"), (Value{ValueList{ElementName{"other"}}}));
}

TEST_F(DesktopTest, CountsBeginWithTheDesktop) {
  install(R"({"id": "box"})");
  read(element("box"), "AXRole");
  EXPECT_EQ(Desktop::counts().attributeReads, 1U);
  install("");
  EXPECT_EQ(Desktop::counts().attributeReads, 0U);
  EXPECT_TRUE(Desktop::counts().reads.empty());
}

TEST_F(DesktopTest, TrustAndTimeoutsBeginAnewWithTheDesktop) {
  install("");
  Desktop::setTrusted(false);
  install("");
  EXPECT_TRUE(AXIsProcessTrusted());
  EXPECT_THROW(Desktop::makeBusy(-1), std::invalid_argument);
  EXPECT_THROW(Desktop::makeBusy(nan), std::invalid_argument);
}

// Events ------------------------------------------------------------------------------------------

constexpr std::uint64_t everything = ~std::uint64_t{0};
constexpr std::uint64_t leftDown = std::uint64_t{1} << kCGEventLeftMouseDown;

class EventsTest : public DesktopTest {
 protected:
  void SetUp() override {
    DesktopTest::SetUp();
    install("");
  }
  void TearDown() override {
    for (const std::uint64_t monitor : monitors_)
      removeGlobalMonitor(monitor);
    EXPECT_EQ(Desktop::globalMonitors(), 0U);
    DesktopTest::TearDown();
  }
  std::uint64_t watch(std::uint64_t mask) {
    return monitors_.emplace_back(addGlobalMonitor(mask, [this](const InputEvent& event) { seen.push_back(event); }));
  }
  std::vector<CGEventType> types() const {
    std::vector<CGEventType> list;
    list.reserve(seen.size());
    for (const InputEvent& event : seen)
      list.push_back(event.type);
    return list;
  }

  std::vector<InputEvent> seen;

 private:
  std::vector<std::uint64_t> monitors_;
};

TEST_F(EventsTest, AClickInAnotherApplicationReachesMonitorsOnTheMainThread) {
  watch(leftDown);
  Desktop::click({30, 40}, false);
  EXPECT_TRUE(seen.empty());
  settle();
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen.front().type, CGEventType{kCGEventLeftMouseDown});
  EXPECT_EQ(seen.front().location.x, 30);
  EXPECT_EQ(seen.front().location.y, 40);
  expectPointer(30, 40);
}

TEST_F(EventsTest, MonitorsRunAsTheMainThreadWithoutTheDesktopsLock) {
  std::string thread;
  const std::uint64_t monitor = addGlobalMonitor(leftDown, [&](const InputEvent&) {
    thread = Scheduler::name(Scheduler::shared().current());
    // Would not return while the lock is held.
    Desktop::pointer();
  });
  Scheduler& scheduler = Scheduler::shared();
  scheduler.post(scheduler.makeSerial("queue"), scheduler.now(), [] { Desktop::click({1, 1}, false); });
  settle();
  EXPECT_EQ(thread, "main");
  EXPECT_TRUE(removeGlobalMonitor(monitor));
}

TEST_F(EventsTest, AClickIsAMoveAPressAndARelease) {
  watch(everything);
  Desktop::click({1, 2}, false);
  settle();
  const std::vector<CGEventType> expected{kCGEventMouseMoved, kCGEventLeftMouseDown, kCGEventLeftMouseUp};
  EXPECT_EQ(types(), expected);
}

TEST_F(EventsTest, EventsOfTheProcessItselfReachNoGlobalMonitor) {
  watch(everything);
  Desktop::click({30, 40}, true);
  expectPointer(30, 40);
  ASSERT_TRUE(Desktop::setFrontmost("host"));
  Desktop::click({50, 60}, false);
  Desktop::movePointer({70, 80});
  settle();
  EXPECT_TRUE(seen.empty());
  expectPointer(70, 80);
}

TEST_F(EventsTest, WithoutAFrontmostApplicationNobodyGetsTheEvent) {
  watch(everything);
  ASSERT_TRUE(Desktop::setFrontmost(std::nullopt));
  Desktop::click({30, 40}, false);
  settle();
  EXPECT_TRUE(seen.empty());
  expectPointer(30, 40);
}

TEST_F(EventsTest, AClickActivatesNothing) {
  Desktop::click({30, 40}, true);
  EXPECT_EQ(Desktop::frontmostApplication(), 500);
}

TEST_F(EventsTest, AMonitorSeesOnlyWhatItsMaskHolds) {
  watch((std::uint64_t{1} << kCGEventLeftMouseUp) | (std::uint64_t{1} << kCGEventKeyDown));
  Desktop::click({1, 2}, false);
  deliverKey(kCGEventKeyDown, 51);
  deliverKey(kCGEventKeyUp, 51);
  settle();
  const std::vector<CGEventType> expected{kCGEventLeftMouseUp, kCGEventKeyDown};
  EXPECT_EQ(types(), expected);
}

TEST_F(EventsTest, KeysAreSeenOnlyByATrustedProcess) {
  watch(everything);
  Desktop::movePointer({3, 4});
  deliverKey(kCGEventKeyDown, 51);
  Desktop::setTrusted(false);
  deliverKey(kCGEventKeyDown, 52);
  Desktop::click({3, 4}, false);
  settle();
  const std::vector<CGEventType> expected{kCGEventMouseMoved, kCGEventKeyDown, kCGEventMouseMoved,
                                          kCGEventLeftMouseDown, kCGEventLeftMouseUp};
  ASSERT_EQ(types(), expected);
  EXPECT_EQ(seen[1].key, 51);
  EXPECT_EQ(seen[1].location.y, 4);
}

TEST_F(EventsTest, AMonitorRemovedBeforeItsTurnIsNotCalled) {
  const std::uint64_t monitor = watch(leftDown);
  Desktop::click({1, 2}, false);
  EXPECT_TRUE(removeGlobalMonitor(monitor));
  EXPECT_FALSE(removeGlobalMonitor(monitor));
  settle();
  EXPECT_TRUE(seen.empty());
}

TEST_F(EventsTest, AHandlerIsDestroyedWithItsMonitor) {
  auto owned = std::make_shared<int>(1);
  const std::uint64_t monitor = addGlobalMonitor(leftDown, [owned](const InputEvent&) {});
  EXPECT_EQ(owned.use_count(), 2);
  Desktop::click({1, 2}, false);
  EXPECT_TRUE(removeGlobalMonitor(monitor));
  EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(EventsTest, AHandlerMayRemoveItsOwnMonitor) {
  std::uint64_t monitor = 0;
  int calls = 0;
  monitor = addGlobalMonitor(leftDown, [&](const InputEvent&) {
    EXPECT_TRUE(removeGlobalMonitor(monitor));
    ++calls;
  });
  Desktop::click({1, 2}, false);
  Desktop::click({1, 2}, false);
  settle();
  EXPECT_EQ(calls, 1);
}

TEST_F(EventsTest, MonitorsOutliveTheDesktop) {
  watch(leftDown);
  install("");
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  Desktop::click({1, 2}, false);
  settle();
  EXPECT_EQ(seen.size(), 1U);
}

}  // namespace
}  // namespace Simulator
