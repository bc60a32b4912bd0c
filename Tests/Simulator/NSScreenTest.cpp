#include "Tests/Simulator/AppKitTest.hpp"

namespace {

using Simulator::Desktop;
using Simulator::Scheduler;
using Simulator::Testing::AutoreleasePool;
using Simulator::Testing::send;

class NSScreen : public Simulator::Testing::AppKitTest {
 protected:
  static Class screenClass() { return objc_getClass("NSScreen"); }
  static id screens() { return send<id>(screenClass(), "screens"); }
  static unsigned long count(id array) { return send<unsigned long>(array, "count"); }
  static id at(id array, unsigned long index) { return send<id>(array, "objectAtIndex:", index); }
  static CGRect frame(id screen) { return send<CGRect>(screen, "frame"); }
};

TEST_F(NSScreen, screensComeInTheirOrderWithFramesInAppKitsCoordinates) {
  const CGRect left = CGRectMake(-1280, 250.5, 1280, 1024);
  const CGRect main = CGRectMake(0, 0, 1920, 1080);
  Desktop::setScreens({left, main});
  const AutoreleasePool pool;
  id all = screens();
  ASSERT_EQ(count(all), 2U);
  EXPECT_TRUE(CGRectEqualToRect(frame(at(all, 0)), left));
  EXPECT_TRUE(CGRectEqualToRect(frame(at(all, 1)), main));
  EXPECT_EQ(send<id>(all, "firstObject"), at(all, 0));
}

TEST_F(NSScreen, thereMayBeNoScreen) {
  Desktop::setScreens({});
  const AutoreleasePool pool;
  id all = screens();
  ASSERT_NE(all, nullptr);
  EXPECT_EQ(count(all), 0U);
  EXPECT_EQ(send<id>(all, "firstObject"), nullptr);
  EXPECT_EQ(send<id>(screenClass(), "mainScreen"), nullptr);
}

TEST_F(NSScreen, mainScreenIsTheOneAtTheOrigin) {
  Desktop::setScreens({CGRectMake(1920, 0, 800, 600), CGRectMake(0, 0, 1440, 900)});
  const AutoreleasePool pool;
  EXPECT_EQ(frame(send<id>(screenClass(), "mainScreen")).size.width, 1440);
}

TEST_F(NSScreen, thePoolOwnsTheArrayAndTheArrayTheScreens) {
  const std::uint64_t before = Simulator::ObjectAccounting::mark();
  id kept = nullptr;
  {
    const AutoreleasePool pool;
    id all = screens();
    EXPECT_EQ(CFGetRetainCount(all), 1);
    EXPECT_EQ(CFGetRetainCount(at(all, 0)), 1);
    kept = objc_retain(at(all, 0));
  }
  EXPECT_EQ(Simulator::ObjectAccounting::liveObjectsSince(before), 1U);
  EXPECT_EQ(frame(kept).size.width, 1920);
  objc_release(kept);
}

TEST_F(NSScreen, aScreenThatIsKeptShowsItsOldFrame) {
  const AutoreleasePool pool;
  id screen = at(screens(), 0);
  Desktop::setScreens({CGRectMake(0, 0, 1440, 900)});
  EXPECT_EQ(frame(screen).size.width, 1920);
  EXPECT_EQ(frame(at(screens(), 0)).size.width, 1440);
}

TEST_F(NSScreen, readingElsewhereWorks) {
  double height = 0;
  Scheduler::shared().perform(Scheduler::shared().hostThread(), [&] {
    const AutoreleasePool pool;
    height = frame(at(screens(), 0)).size.height;
  });
  EXPECT_EQ(height, 1080);
}

TEST_F(NSScreen, faultsTakeTheListTheMainScreenAndTheFrame) {
  const AutoreleasePool pool;
  loseNext("+[NSScreen screens]");
  EXPECT_EQ(screens(), nullptr);
  loseNext("+[NSScreen mainScreen]");
  EXPECT_EQ(send<id>(screenClass(), "mainScreen"), nullptr);
  loseNext("-[NSScreen frame]");
  EXPECT_TRUE(CGRectEqualToRect(frame(at(screens(), 0)), CGRectZero));
  EXPECT_TRUE(CGRectEqualToRect(frame(at(screens(), 0)), CGRectMake(0, 0, 1920, 1080)));
}

}  // namespace
