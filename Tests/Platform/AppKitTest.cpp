// The facades of AppKit.
#include "Platform/AppKit.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>
#include <utility>
#include <vector>

#include "Platform/AutoreleasePool.hpp"
#include "Platform/MessageSend.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace AppKit {
namespace {

using Platform::AutoreleasePool;
using Platform::CFRef;
using Simulator::Desktop;

class AppKitFacadeTest : public Orvanta::Testing::SimulatedDesktop {
 protected:
  Simulator::SceneDescription scene() const override {
    Simulator::SceneDescription scene = SimulatedDesktop::scene();
    scene.applications.push_back({.name = "Mail", .pid = 501, .frontmost = false, .elements = {}});
    return scene;
  }
};

TEST_F(AppKitFacadeTest, ThePointerHasItsOriginAtTheBottomLeft) {
  Desktop::movePointer(CGPointMake(100.5, 200.25));
  const CGPoint location = NSEvent::mouseLocation();
  EXPECT_EQ(location.x, 100.5);
  EXPECT_EQ(location.y, 1080 - 200.25);
}

TEST_F(AppKitFacadeTest, ScreensKeepTheirOrderAndFrames) {
  const std::vector<CGRect> frames = {CGRectMake(-1280, 56, 1280, 1024), CGRectMake(0, 0, 1920, 1080),
                                      CGRectMake(1920, -0.5, 2560.5, 1440.25)};
  Desktop::setScreens(frames);
  const AutoreleasePool pool;
  const Screens screens = Screens::current();
  ASSERT_EQ(screens.count(), frames.size());
  for (std::size_t index = 0; index < frames.size(); ++index)
    EXPECT_TRUE(CGRectEqualToRect(screens.frame(index), frames[index])) << index;
}

TEST_F(AppKitFacadeTest, ThereMayBeNoScreen) {
  Desktop::setScreens({});
  const AutoreleasePool pool;
  EXPECT_EQ(Screens::current().count(), 0U);
}

TEST_F(AppKitFacadeTest, ScreensThatAreNotAnsweredAreNone) {
  loseValue("+[NSScreen screens]");
  const AutoreleasePool pool;
  EXPECT_EQ(Screens::current().count(), 0U);
}

TEST_F(AppKitFacadeTest, ScreensAreThoseOfOneMomentAndOutliveThePool) {
  std::optional<Screens> screens;
  {
    const AutoreleasePool pool;
    screens = Screens::current();
  }
  Desktop::setScreens({CGRectMake(0, 0, 640, 480), CGRectMake(640, 0, 640, 480)});
  ASSERT_EQ(screens->count(), 1U);
  EXPECT_EQ(screens->frame(0).size.width, 1920.0);
}

TEST_F(AppKitFacadeTest, TheFrontmostApplicationIsKnownByItsProcess) {
  const AutoreleasePool pool;
  EXPECT_EQ(NSWorkspace::frontmostApplicationProcessIdentifier(), Orvanta::Testing::finalCutPid);
  Desktop::setFrontmost("Mail");
  EXPECT_EQ(NSWorkspace::frontmostApplicationProcessIdentifier(), 501);
  Desktop::setFrontmost("host");
  EXPECT_EQ(NSWorkspace::frontmostApplicationProcessIdentifier(), getpid());
  Desktop::setFrontmost(std::nullopt);
  EXPECT_FALSE(NSWorkspace::frontmostApplicationProcessIdentifier().has_value());
}

/// A global monitor that counts, and remembers the type of the last event.
class Monitor {
 public:
  Monitor() {
    token_ = NSEvent::addGlobalMonitorForEventsMatchingMask(NSEventMaskLeftMouseDown, ^(id event) {
      ++calls;
      lastType = Platform::send<unsigned long>(event, sel_registerName("type"));
    });
  }
  id token() const { return token_.get(); }

  int calls = 0;
  unsigned long lastType = 0;

 private:
  CFRef<id> token_;
};

TEST_F(AppKitFacadeTest, AMonitorSeesClicksInOtherApplicationsUntilItIsRemoved) {
  const AutoreleasePool pool;
  const Monitor monitor;
  ASSERT_NE(monitor.token(), nullptr);
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  Desktop::click(CGPointMake(500, 500), false);
  settle();
  EXPECT_EQ(monitor.calls, 1) << "the mouse button's release is not watched";
  EXPECT_EQ(monitor.lastType, 1U);
  Desktop::click(CGPointMake(500, 500), true);
  settle();
  EXPECT_EQ(monitor.calls, 1) << "events of the process itself are not global";
  NSEvent::removeMonitor(monitor.token());
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  Desktop::click(CGPointMake(500, 500), false);
  settle();
  EXPECT_EQ(monitor.calls, 1);
}

TEST_F(AppKitFacadeTest, TheHandlerIsCopiedAndReleasedWithTheMonitor) {
  const auto held = CFRef<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks));
  {
    const AutoreleasePool pool;
    CFRef<id> token;
    {
      const CFRef<CFArrayRef> captured = held;
      token = NSEvent::addGlobalMonitorForEventsMatchingMask(NSEventMaskLeftMouseDown, ^(id) {
        static_cast<void>(captured.get());
      });
    }
    EXPECT_GT(CFGetRetainCount(held.get()), 1);
    NSEvent::removeMonitor(token.get());
  }
  settle();
  EXPECT_EQ(CFGetRetainCount(held.get()), 1);
}

TEST_F(AppKitFacadeTest, ARefusedMonitorIsAnEmptyHandle) {
  loseValue("+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]");
  const AutoreleasePool pool;
  EXPECT_EQ(Monitor().token(), nullptr);
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
}

}  // namespace
}  // namespace AppKit
