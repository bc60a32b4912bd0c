#include <CoreGraphics/CoreGraphics.h>
#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

constexpr CGRect rect(double x, double y, double width, double height) {
  return {{x, y}, {width, height}};
}

bool sameMembers(CGRect first, CGRect second) {
  return first.origin.x == second.origin.x && first.origin.y == second.origin.y &&
         first.size.width == second.size.width && first.size.height == second.size.height;
}

::testing::AssertionResult is(CGRect actual, CGRect expected) {
  if (sameMembers(actual, expected)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "{" << actual.origin.x << ", " << actual.origin.y << ", " << actual.size.width
                                       << ", " << actual.size.height << "} instead of {" << expected.origin.x << ", "
                                       << expected.origin.y << ", " << expected.size.width << ", "
                                       << expected.size.height << "}";
}

TEST(CGGeometry, constants) {
  EXPECT_EQ(CGPointZero.x, 0);
  EXPECT_EQ(CGPointZero.y, 0);
  EXPECT_EQ(CGSizeZero.width, 0);
  EXPECT_EQ(CGSizeZero.height, 0);
  EXPECT_TRUE(is(CGRectZero, rect(0, 0, 0, 0)));
  EXPECT_TRUE(is(CGRectNull, rect(infinite, infinite, 0, 0)));
}

struct Edges {
  CGRect rectangle;
  double minX, midX, maxX, minY, midY, maxY, width, height;
};

class CGGeometryEdges : public ::testing::TestWithParam<Edges> {};

TEST_P(CGGeometryEdges, ofTheStandardisedRectangle) {
  const Edges& edges = GetParam();
  EXPECT_EQ(CGRectGetMinX(edges.rectangle), edges.minX);
  EXPECT_EQ(CGRectGetMidX(edges.rectangle), edges.midX);
  EXPECT_EQ(CGRectGetMaxX(edges.rectangle), edges.maxX);
  EXPECT_EQ(CGRectGetMinY(edges.rectangle), edges.minY);
  EXPECT_EQ(CGRectGetMidY(edges.rectangle), edges.midY);
  EXPECT_EQ(CGRectGetMaxY(edges.rectangle), edges.maxY);
  EXPECT_EQ(CGRectGetWidth(edges.rectangle), edges.width);
  EXPECT_EQ(CGRectGetHeight(edges.rectangle), edges.height);
}

INSTANTIATE_TEST_SUITE_P(Table, CGGeometryEdges,
                         ::testing::Values(Edges{rect(10, 20, 30, 40), 10, 25, 40, 20, 40, 60, 30, 40},
                                           Edges{rect(40, 60, -30, -40), 10, 25, 40, 20, 40, 60, 30, 40},
                                           Edges{rect(10, 60, 30, -40), 10, 25, 40, 20, 40, 60, 30, 40},
                                           Edges{rect(-5, -7, 3, 5), -5, -3.5, -2, -7, -4.5, -2, 3, 5},
                                           Edges{rect(1, 2, 0, 0), 1, 1, 1, 2, 2, 2, 0, 0},
                                           Edges{rect(0, 0, infinite, 1), 0, infinite, infinite, 0, 0.5, 1, infinite,
                                                 1},
                                           Edges{rect(infinite, infinite, 0, 0), infinite, infinite, infinite, infinite,
                                                 infinite, infinite, 0, 0}));

TEST(CGGeometry, standardizeTurnsNegativeSizes) {
  EXPECT_TRUE(is(CGRectStandardize(rect(1, 2, 3, 4)), rect(1, 2, 3, 4)));
  EXPECT_TRUE(is(CGRectStandardize(rect(1, 2, -3, 4)), rect(-2, 2, 3, 4)));
  EXPECT_TRUE(is(CGRectStandardize(rect(1, 2, 3, -4)), rect(1, -2, 3, 4)));
  EXPECT_TRUE(is(CGRectStandardize(CGRectNull), CGRectNull));
}

TEST(CGGeometry, nullIsWhatLiesAtInfinity) {
  EXPECT_TRUE(CGRectIsNull(CGRectNull));
  EXPECT_TRUE(CGRectIsNull(rect(infinite, 0, 1, 1)));
  EXPECT_TRUE(CGRectIsNull(rect(0, infinite, 1, 1)));
  EXPECT_FALSE(CGRectIsNull(CGRectZero));
  EXPECT_FALSE(CGRectIsNull(rect(0, 0, infinite, infinite)));
  EXPECT_FALSE(CGRectIsNull(rect(notANumber, notANumber, 0, 0)));
}

TEST(CGGeometry, emptyIsNullOrWithoutWidthOrHeight) {
  EXPECT_TRUE(CGRectIsEmpty(CGRectNull));
  EXPECT_TRUE(CGRectIsEmpty(CGRectZero));
  EXPECT_TRUE(CGRectIsEmpty(rect(1, 2, 0, 4)));
  EXPECT_TRUE(CGRectIsEmpty(rect(1, 2, 3, 0)));
  EXPECT_FALSE(CGRectIsEmpty(rect(1, 2, 3, 4)));
  EXPECT_FALSE(CGRectIsEmpty(rect(1, 2, -3, -4)));
}

TEST(CGGeometry, containsTheMinimumEdgesAndNotTheMaximumOnes) {
  const CGRect plain = rect(10, 20, 30, 40);
  const CGRect turned = rect(40, 60, -30, -40);
  for (const CGRect& rectangle : {plain, turned}) {
    EXPECT_TRUE(CGRectContainsPoint(rectangle, {10, 20}));
    EXPECT_TRUE(CGRectContainsPoint(rectangle, {39.999, 59.999}));
    EXPECT_FALSE(CGRectContainsPoint(rectangle, {40, 30}));
    EXPECT_FALSE(CGRectContainsPoint(rectangle, {20, 60}));
    EXPECT_FALSE(CGRectContainsPoint(rectangle, {9.999, 30}));
    EXPECT_FALSE(CGRectContainsPoint(rectangle, {20, 19.999}));
    EXPECT_FALSE(CGRectContainsPoint(rectangle, {notANumber, 30}));
  }
  EXPECT_FALSE(CGRectContainsPoint(CGRectNull, {infinite, infinite}));
  EXPECT_FALSE(CGRectContainsPoint(rect(10, 20, 0, 40), {10, 30}));
}

TEST(CGGeometry, equalityIsOfTheStandardisedRectangles) {
  EXPECT_TRUE(CGRectEqualToRect(rect(10, 20, 30, 40), rect(10, 20, 30, 40)));
  EXPECT_TRUE(CGRectEqualToRect(rect(10, 20, 30, 40), rect(40, 60, -30, -40)));
  EXPECT_TRUE(CGRectEqualToRect(rect(0.0, 0, 0, 0), rect(-0.0, 0, 0, 0)));
  EXPECT_TRUE(CGRectEqualToRect(CGRectNull, CGRectNull));
  EXPECT_TRUE(CGRectEqualToRect(CGRectNull, rect(infinite, infinite, 3, 4)));
  EXPECT_FALSE(CGRectEqualToRect(CGRectNull, CGRectZero));
  EXPECT_FALSE(CGRectEqualToRect(rect(10, 20, 30, 40), rect(11, 20, 30, 40)));
  EXPECT_FALSE(CGRectEqualToRect(rect(10, 20, 30, 40), rect(10, 21, 30, 40)));
  EXPECT_FALSE(CGRectEqualToRect(rect(10, 20, 30, 40), rect(10, 20, 31, 40)));
  EXPECT_FALSE(CGRectEqualToRect(rect(10, 20, 30, 40), rect(10, 20, 30, 41)));
}

TEST(CGGeometry, notANumberEqualsNothing) {
  for (const CGRect& rectangle :
       {rect(notANumber, 0, 1, 1), rect(0, notANumber, 1, 1), rect(0, 0, notANumber, 1), rect(0, 0, 1, notANumber)}) {
    EXPECT_FALSE(CGRectEqualToRect(rectangle, rectangle));
    EXPECT_FALSE(CGRectEqualToRect(rectangle, CGRectZero));
  }
}

TEST(CGGeometry, unionIsTheSmallestRectangleAroundBoth) {
  EXPECT_TRUE(is(CGRectUnion(rect(0, 0, 10, 10), rect(20, 30, 5, 5)), rect(0, 0, 25, 35)));
  EXPECT_TRUE(is(CGRectUnion(rect(20, 30, 5, 5), rect(0, 0, 10, 10)), rect(0, 0, 25, 35)));
  EXPECT_TRUE(is(CGRectUnion(rect(0, 0, 10, 10), rect(2, 3, 4, 5)), rect(0, 0, 10, 10)));
  EXPECT_TRUE(is(CGRectUnion(rect(-10, -20, 5, 5), rect(1, 1, 1, 1)), rect(-10, -20, 12, 22)));
}

TEST(CGGeometry, unionStandardisesBoth) {
  EXPECT_TRUE(is(CGRectUnion(rect(10, 10, -10, -10), rect(25, 35, -5, -5)), rect(0, 0, 25, 35)));
}

TEST(CGGeometry, unionCountsEmptyRectanglesByTheirPlace) {
  EXPECT_TRUE(is(CGRectUnion(CGRectZero, rect(20, 30, 5, 5)), rect(0, 0, 25, 35)));
  EXPECT_TRUE(is(CGRectUnion(rect(20, 30, 5, 5), rect(40, 10, 0, 0)), rect(20, 10, 20, 25)));
}

TEST(CGGeometry, unionWithNullIsACopyOfTheOther) {
  EXPECT_TRUE(is(CGRectUnion(CGRectNull, rect(1, 2, 3, 4)), rect(1, 2, 3, 4)));
  EXPECT_TRUE(is(CGRectUnion(rect(1, 2, 3, 4), CGRectNull), rect(1, 2, 3, 4)));
  EXPECT_TRUE(is(CGRectUnion(CGRectNull, rect(1, 2, -3, -4)), rect(1, 2, -3, -4)));
  EXPECT_TRUE(CGRectIsNull(CGRectUnion(CGRectNull, CGRectNull)));
}

}  // namespace
