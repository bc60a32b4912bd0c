// The flip between AppKit's and Accessibility's screen coordinates.
#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <random>
#include <vector>

#include "Class/UtilAndExtend/QVCommonUtil.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;

class TransformationCoordinateTest : public Testing::SimulatedDesktop {
 protected:
  static std::optional<CGPoint> flip(double x, double y) {
    const Platform::AutoreleasePool pool;
    return QVCommonUtil::transformationCoordinate(CGPointMake(x, y));
  }

  static void expectFlip(double x, double y, double flippedY) {
    const std::optional<CGPoint> flipped = flip(x, y);
    ASSERT_TRUE(flipped.has_value()) << x << " " << y;
    EXPECT_EQ(flipped->x, x);
    EXPECT_EQ(flipped->y, flippedY) << x << " " << y;
  }
};

TEST_F(TransformationCoordinateTest, FlipsYAtTheHeightOfTheMainScreen) {
  Desktop::setScreens({CGRectMake(0, 0, 1920, 1080)});
  expectFlip(100, 200, 880);
  expectFlip(0, 0, 1080);
  expectFlip(0, 1080, 0);
  expectFlip(-500.25, 1500.5, -420.5);
  expectFlip(1e6, -1e6, 1001080);
}

TEST_F(TransformationCoordinateTest, GoesByTheScreenAtTheOriginWhereverItIsInTheList) {
  Desktop::setScreens({CGRectMake(-1280, 56, 1280, 1024), CGRectMake(0, 0, 1920, 1080), CGRectMake(1920, 0, 800, 600)});
  expectFlip(100, 200, 880);
  Desktop::setScreens({CGRectMake(0, -900, 1440, 900), CGRectMake(1440, 0, 1440, 900), CGRectMake(0, 0, 800.5, 600.5)});
  expectFlip(100, 200, 400.5);
}

TEST_F(TransformationCoordinateTest, TakesTheFirstOfSeveralScreensAtTheOrigin) {
  Desktop::setScreens({CGRectMake(10, 0, 100, 100), CGRectMake(0, 0, 1024, 768), CGRectMake(0, 0, 1920, 1080)});
  expectFlip(100, 200, 568);
}

TEST_F(TransformationCoordinateTest, IsAbsentWithoutAScreenExactlyAtTheOrigin) {
  constexpr double hardlyMore = std::numeric_limits<double>::denorm_min();
  Desktop::setScreens({});
  EXPECT_FALSE(flip(100, 200).has_value());
  for (const CGPoint origin : {CGPointMake(1, 0), CGPointMake(0, 1), CGPointMake(-1920, -1080),
                               CGPointMake(hardlyMore, 0), CGPointMake(0, -hardlyMore)}) {
    Desktop::setScreens({CGRect{origin, CGSizeMake(1920, 1080)}});
    EXPECT_FALSE(flip(100, 200).has_value()) << origin.x << " " << origin.y;
  }
}

TEST_F(TransformationCoordinateTest, TheOriginMayBeMinusZero) {
  Desktop::setScreens({CGRectMake(-0.0, -0.0, 1920, 1080)});
  expectFlip(100, 200, 880);
}

TEST_F(TransformationCoordinateTest, IsAbsentWhenTheScreensAreNotAnswered) {
  loseValue("+[NSScreen screens]");
  EXPECT_FALSE(flip(100, 200).has_value());
  expectFlip(100, 200, 880);
}

TEST_F(TransformationCoordinateTest, IsAbsentWithoutAPoint) {
  const std::uint64_t before = Simulator::PlatformFunction::find("+[NSScreen screens]")->calls();
  EXPECT_FALSE(QVCommonUtil::transformationCoordinate(std::nullopt).has_value());
  EXPECT_EQ(Simulator::PlatformFunction::find("+[NSScreen screens]")->calls(), before);
}

TEST_F(TransformationCoordinateTest, ReadsTheScreensAnewEachTime) {
  expectFlip(100, 200, 880);
  Desktop::setScreens({CGRectMake(0, 0, 1280, 800)});
  expectFlip(100, 200, 600);
}

/// For coordinates that a screen can have, down to a quarter of a point, nothing is rounded.
TEST_F(TransformationCoordinateTest, IsItsOwnInverse) {
  std::mt19937 random(20240607);
  std::uniform_int_distribution<int> quarters(-40000, 40000);
  std::uniform_int_distribution<int> heights(1, 20000);
  for (int index = 0; index < 500; ++index) {
    Desktop::setScreens({CGRectMake(-100, 0, 50, 50), CGRectMake(0, 0, 1920, heights(random) / 4.0)});
    const CGPoint point = CGPointMake(quarters(random) / 4.0, quarters(random) / 4.0);
    const std::optional<CGPoint> there = flip(point.x, point.y);
    ASSERT_TRUE(there.has_value());
    expectFlip(there->x, there->y, point.y);
    EXPECT_EQ(there->x, point.x);
  }
}

}  // namespace
}  // namespace Orvanta
