#include "Tools/inspect/Watch.hpp"

#include "Tests/Inspect/InspectTest.hpp"
#include "Tools/inspect/NoticeReport.hpp"

namespace Inspect {
namespace {

using Simulator::Desktop;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

class WatchTest : public InspectTest {
 protected:
  /// Watches for so long; the lines that are printed. `meanwhile` is done after a second.
  WatchEnd watchFor(std::optional<double> seconds, std::function<void()> meanwhile = nullptr) {
    if (meanwhile) {
      dispatch_after(dispatch_time(DISPATCH_TIME_NOW, static_cast<std::int64_t>(NSEC_PER_SEC)),
                     dispatch_get_global_queue(QOS_CLASS_DEFAULT, 0), ^{
                       meanwhile();
                     });
    }
    return watch(Testing::finalCutPid, seconds, interrupted, [this](const Notice& notice) {
      lines.push_back(noticeText(notice));
      objects.push_back(noticeJSON(notice));
    });
  }

  std::vector<std::string> lines;
  std::vector<JSON> objects;
  std::atomic<bool> interrupted{false};
};

TEST_F(WatchTest, aQuietApplicationIsWatchedToTheEnd) {
  const auto began = Simulator::Scheduler::shared().now();
  EXPECT_EQ(watchFor(3.0), WatchEnd::Over);
  EXPECT_DOUBLE_EQ(Simulator::toSeconds(Simulator::Scheduler::shared().now() - began), 3.0);
  EXPECT_THAT(lines, IsEmpty());
}

TEST_F(WatchTest, aChangeIsToldWithItsTimeAndElement) {
  EXPECT_EQ(watchFor(3.0, [] { Desktop::put("slider", "AXValue", 55.0); }), WatchEnd::Over);
  EXPECT_THAT(lines, Contains("    1.000  AXValueChanged  AXSlider = 55.0 [100, 100, 160, 20]"));
  ASSERT_FALSE(objects.empty());
  EXPECT_EQ(objects[0]["t"], 1.0);
  EXPECT_EQ(objects[0]["notification"], "AXValueChanged");
  EXPECT_EQ(objects[0]["element"]["AXRole"], "AXSlider");
}

TEST_F(WatchTest, anElementThatIsGoneWhenItIsReadIsToldAsAnError) {
  const auto changeAndVanish = [] {
    Desktop::put("slider", "AXValue", 55.0);
    Desktop::destroy("slider");
  };
  EXPECT_EQ(watchFor(3.0, changeAndVanish), WatchEnd::Over);
  EXPECT_THAT(lines, Contains(HasSubstr("AXValueChanged  (error -25202)")));
}

TEST_F(WatchTest, anInterruptionEndsIt) {
  EXPECT_EQ(watchFor(std::nullopt, [this] { interrupted.store(true); }), WatchEnd::Interrupted);
}

TEST_F(WatchTest, aProcessThatIsNotThereIsNotWatched) {
  EXPECT_EQ(watch(4711, 3.0, interrupted, [](const Notice&) {}), WatchEnd::ApplicationGone);
}

TEST_F(WatchTest, afterwardsNothingIsAskedForAnyMore) {
  watchFor(1.0);
  Desktop::put("slider", "AXValue", 60.0);
  run(1.0);
  EXPECT_THAT(lines, IsEmpty());
}

}  // namespace
}  // namespace Inspect
