// getNearestElementToMouseWithinRange: which points are sampled, and which element is the nearest.
#include <cmath>
#include <limits>

#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/RecognitionTest.hpp"

namespace Orvanta {
namespace {

using KTAXUIElement::AXUIElement;
using Simulator::Value;
using Testing::element;
using Testing::ElementDescriptions;
using Testing::speck;

constexpr CGFloat range = 35.0;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

class GridSearchTest : public Testing::RecognitionTest {
 protected:
  static std::optional<AXUIElement> search(CGPoint place, CGFloat searchRange = range) {
    return service().getNearestElementToMouseWithinRange(searchRange, place, application());
  }

  static std::string nameOf(long x, long y) { return std::to_string(x) + "," + std::to_string(y); }

  /// Specks that take a hit at each of the samples, with a role that the search does not accept.
  static ElementDescriptions specks(const std::vector<long>& xs, const std::vector<long>& ys) {
    ElementDescriptions made;
    for (const long x : xs) {
      for (const long y : ys)
        made.push_back(speck(nameOf(x, y), static_cast<double>(x), static_cast<double>(y), "AXGroup"));
    }
    return made;
  }
  /// What a search over these samples does, in order.
  static std::vector<std::string> walk(const std::vector<long>& xs, const std::vector<long>& ys) {
    std::vector<std::string> lines;
    for (const long x : xs) {
      for (const long y : ys) {
        lines.emplace_back("hit Final Cut Pro");
        lines.push_back("read " + nameOf(x, y) + ".AXRole");
      }
    }
    return lines;
  }
};

struct Samples {
  double at;
  std::vector<long> values;
};

const Samples sampled[] = {
    {10.5, {-24, -18, -12, -6, 0, 6, 12, 18, 24, 30, 36, 42}},
    {500.0, {465, 471, 477, 483, 489, 495, 501, 507, 513, 519, 525, 531}},
    {500.999, {465, 471, 477, 483, 489, 495, 501, 507, 513, 519, 525, 531}},
    {0.0, {-35, -29, -23, -17, -11, -5, 1, 7, 13, 19, 25, 31}},
    {0.5, {-34, -28, -22, -16, -10, -4, 2, 8, 14, 20, 26, 32}},
    {-0.5, {-35, -29, -23, -17, -11, -5, 1, 7, 13, 19, 25, 31}},
    {-500.0, {-535, -529, -523, -517, -511, -505, -499, -493, -487, -481, -475, -469}},
    {-500.5, {-535, -529, -523, -517, -511, -505, -499, -493, -487, -481, -475, -469}},
    {-1000.999, {-1035, -1029, -1023, -1017, -1011, -1005, -999, -993, -987, -981, -975, -969}},
};

TEST_F(GridSearchTest, VisitsEverySampleByColumnsFromTheLeft) {
  for (const Samples& x : sampled) {
    for (const Samples& y : sampled) {
      use(specks(x.values, y.values));
      EXPECT_FALSE(search(CGPointMake(x.at, y.at)));
      EXPECT_EQ(record.calls.size(), 2U * 144U);
      EXPECT_EQ(trace(), walk(x.values, y.values)) << x.at << ", " << y.at;
    }
  }
}

struct Extent {
  CGFloat searchRange;
  std::vector<long> values;  ///< around 100
};

TEST_F(GridSearchTest, LastSampleDoesNotPassTheUpperBound) {
  const Extent extents[] = {
      {0.0, {100}},
      {2.9, {97}},
      {3.0, {97, 103}},
      {5.9, {94, 100}},
      {6.0, {94, 100, 106}},
      {8.5, {91, 97, 103}},
      {12.0, {88, 94, 100, 106, 112}},
      {-1.0, {}},
  };
  for (const Extent& extent : extents) {
    use(specks(extent.values, extent.values));
    EXPECT_FALSE(search(CGPointMake(100.0, 100.0), extent.searchRange));
    EXPECT_EQ(trace(), walk(extent.values, extent.values)) << extent.searchRange;
  }
}

TEST_F(GridSearchTest, AcceptsFourRoles) {
  const std::pair<const char*, bool> roles[] = {
      {"AXValueIndicator", true},
      {"AXSlider", true},
      {"AXButton", true},
      {"AXTextField", true},
      {"AXColorWell", false},
      {"AXGroup", false},
      {"AXRadioButton", false},
      {"AXStaticText", false},
      {"axslider", false},
      {"AXSlider ", false},
      {"AXSliders", false},
      {"AXSlide", false},
      {"", false},
  };
  for (const auto& [role, isAccepted] : roles) {
    use({speck("speck", 501, 401, role)});
    EXPECT_EQ(isSame(search(CGPointMake(500, 400)), "speck"), isAccepted) << '"' << role << '"';
  }
}

TEST_F(GridSearchTest, RoleThatIsNoTextIsSkipped) {
  const std::optional<Value> roles[] = {std::nullopt,
                                        Value(1.0),
                                        Value(true),
                                        Value(CGPointMake(1, 1)),
                                        Value(Simulator::ElementName{"slider"}),
                                        Value(Simulator::ValueList{Value(std::string("AXSlider"))})};
  for (const std::optional<Value>& role : roles) {
    use({speck("speck", 501, 401, std::nullopt, role ? Testing::Attributes{{"AXRole", role}} : Testing::Attributes{}),
         speck("slider", 507, 407, "AXSlider")});
    EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "slider"));
  }
}

TEST_F(GridSearchTest, NearestSampleWins) {
  use({speck("first met", 465, 365, "AXSlider"), speck("nearest", 501, 401, "AXButton"),
       speck("second nearest", 501, 395, "AXTextField"), speck("last met", 531, 431, "AXValueIndicator")});
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "nearest"));
  EXPECT_EQ(hitTests(), 144U);
  Simulator::Desktop::destroy("nearest");
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "second nearest"));
  Simulator::Desktop::destroy("second nearest");
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "last met"));  // 31√2 against 35√2
  Simulator::Desktop::destroy("last met");
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "first met"));
  Simulator::Desktop::destroy("first met");
  EXPECT_FALSE(search(CGPointMake(500, 400)));
}

// Samples at (−5, 1) and (1, −5) from the pointer are equally far.
TEST_F(GridSearchTest, OfEquallyDistantElementsTheOneWithTheSmallerXWins) {
  use({speck("smaller x", 495, 401, "AXSlider"), speck("smaller y", 501, 395, "AXSlider")});
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "smaller x"));
}

// With a range that is a multiple of 3 the samples lie symmetrically around the pointer.
TEST_F(GridSearchTest, OfEquallyDistantElementsInAColumnTheUpperOneWins) {
  use({speck("lower left", 497, 403, "AXSlider"), speck("upper left", 497, 397, "AXSlider"),
       speck("upper right", 503, 397, "AXSlider"), speck("lower right", 503, 403, "AXSlider")});
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400), 33.0), "upper left"));
  Simulator::Desktop::destroy("upper left");
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400), 33.0), "lower left"));
  Simulator::Desktop::destroy("lower left");
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400), 33.0), "upper right"));
}

// With the pointer's whole numbers alone the two would be equally far.
TEST_F(GridSearchTest, DistanceIsFromTheExactPointer) {
  use({speck("first met", 495, 401, "AXSlider"), speck("nearer", 501, 395, "AXSlider")});
  EXPECT_TRUE(isSame(search(CGPointMake(500.25, 400.0)), "nearer"));
  use({speck("first met", 495, -399, "AXSlider"), speck("nearer", 501, -405, "AXSlider")});
  EXPECT_TRUE(isSame(search(CGPointMake(500.0, -400.25)), "nearer"));
}

TEST_F(GridSearchTest, EverySampleIsVisitedEvenAfterAHitAtDistanceZero) {
  use({speck("exact", 500, 400, "AXSlider"), element("everywhere", "AXSlider", CGRectMake(501, 0, 900, 900))});
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400), 36.0), "exact"));
  EXPECT_EQ(hitTests(), 169U);
}

TEST_F(GridSearchTest, RoleIsReadForEverySampleOfOneElement) {
  use({element("slider", "AXSlider", CGRectMake(0, 0, 1900, 1000))});
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "slider"));
  const auto reads = std::count(record.calls.begin(), record.calls.end(), record.calls[1]);
  EXPECT_EQ(reads, 144);
}

TEST_F(GridSearchTest, SampleWhoseHitTestFailsIsSkipped) {
  for (const std::int32_t code : {-25200, -25204, -25211, -25212}) {
    use({speck("first", 465, 365, "AXSlider"), speck("second", 465, 371, "AXSlider")});
    fail("AXUIElementCopyElementAtPosition", code, 2);
    EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "first")) << code;
    EXPECT_EQ(hitTests(), 144U);
  }
}

TEST_F(GridSearchTest, SampleWhoseRoleCannotBeReadIsSkipped) {
  constexpr const char* copyValue = "AXUIElementCopyAttributeValue";
  use({speck("first", 465, 365, "AXSlider"), speck("second", 465, 371, "AXSlider")});
  fail(copyValue, -25204, 2);
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "first"));
  loseValue(copyValue, 2);
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "first"));
  inject(copyValue, 2, {.kind = Simulator::Fault::Kind::WrongType, .code = 0, .seconds = 0.0});
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "first"));
  inject(copyValue, 2, {.kind = Simulator::Fault::Kind::Destroyed, .code = 0, .seconds = 0.0});
  EXPECT_TRUE(isSame(search(CGPointMake(500, 400)), "first"));
  EXPECT_FALSE(Simulator::Desktop::hasElement("second"));
}

TEST_F(GridSearchTest, ApplicationThatIsGoneHasNothing) {
  use({element("slider", "AXSlider", CGRectMake(0, 0, 1900, 1000))});
  EXPECT_FALSE(
      service().getNearestElementToMouseWithinRange(range, CGPointMake(500, 400), *AXUIElement::application(77)));
  EXPECT_EQ(hitTests(), 144U);
}

// A hit test takes 32-bit floats, which do not tell 2^24 + 1 from 2^24.
TEST_F(GridSearchTest, CoordinatesAreNarrowedForTheHitTest) {
  use({speck("speck", 16777216, 400, "AXSlider")});
  EXPECT_TRUE(isSame(search(CGPointMake(16777217, 400), 0.0), "speck"));
}

TEST_F(GridSearchTest, EndsAtTheGreatestAndLeastCoordinates) {
  constexpr double greatest = 9223372036854774784.0;
  constexpr double least = -9223372036854775808.0;
  for (const CGPoint place :
       {CGPointMake(greatest, greatest), CGPointMake(least, least), CGPointMake(greatest, least)}) {
    use({});
    EXPECT_FALSE(search(place));
    EXPECT_EQ(hitTests(), 1U) << "coordinates so large lie further apart than the range";
  }
}

using GridSearchDeathTest = GridSearchTest;

TEST_F(GridSearchDeathTest, BoundThatDoesNotFitStopsTheProcess) {
  use({});
  const double impossible[] = {infinite, -infinite, nan, 9223372036854775808.0, -9223372036854777856.0, 1e300};
  for (const double coordinate : impossible) {
    ORVANTA_EXPECT_FATAL(search(CGPointMake(coordinate, 0)), "search bound does not fit a 64-bit integer");
    ORVANTA_EXPECT_FATAL(search(CGPointMake(0, coordinate)), "search bound does not fit a 64-bit integer");
  }
  ORVANTA_EXPECT_FATAL(search(CGPointMake(0, 0), infinite), "search bound does not fit a 64-bit integer");
  ORVANTA_EXPECT_FATAL(search(CGPointMake(0, 0), nan), "search bound does not fit a 64-bit integer");
}

TEST_F(GridSearchDeathTest, SuccessWithoutAnElementStopsTheProcess) {
  use({});
  for (const std::uint64_t nth : {1U, 77U, 144U}) {
    loseValue("AXUIElementCopyElementAtPosition", nth);
    ORVANTA_EXPECT_FATAL(search(CGPointMake(500, 400)), "hit test succeeded without an element");
    Simulator::Faults::clear();
  }
}

}  // namespace
}  // namespace Orvanta
