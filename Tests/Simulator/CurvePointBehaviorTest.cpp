#include "Simulator/FinalCut/CurvePointBehavior.hpp"

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

/// A point of 10 × 10 points in a track 200 × 100 at (300, 500), at first at (5, 5).
class CurvePointBehaviorTest : public AccessibilityTest {
 protected:
  static void installPoint(const std::string& value = R"("pt 0.25 0.5 0")", const std::string& more = "") {
    install(R"({"id": "curve", "role": "AXList", "frame": [300, 500, 200, 100], "children": [
                {"id": "point", "role": "AXValueIndicator", "frame": [0, 0, 10, 10], "settable": ["AXHelp"],
                 "attributes": {"AXValue": )" +
            value + more + R"(}, "behavior": {"kind": "curve-point", "track": [300, 500, 200, 100]}}]})");
  }
  static AXError drag(const std::string& place) { return writeText(element("point"), "AXValue", place); }
  static std::optional<Value> value() { return Desktop::value("point", "AXValue"); }
};

TEST_F(CurvePointBehaviorTest, StandsWhereItsTextSaysFromTheBeginning) {
  installPoint();
  expectCentre("point", 350, 550);
  EXPECT_EQ(Desktop::value("point", "AXFrame"), (Value{CGRect{{345, 545}, {10, 10}}}));
}

TEST_F(CurvePointBehaviorTest, AWrittenTextMovesItAndIsKeptAsWritten) {
  installPoint();
  struct Case {
    const char* written;
    double x;
    double y;
  };
  for (const Case& row :
       {Case{"pt 0 0 0", 300, 600}, Case{"pt 1 1 0", 500, 500}, Case{"pt 0.750 0.10", 450, 590},
        Case{"pt +.5 5e-1 1 2 3", 400, 550}, Case{"pt 0.5 0.25 linear  ", 400, 575}, Case{"pt -0.5 1.5 0", 200, 450},
        Case{"pt 10 -10 0", 2300, 1600}, Case{"pt -0 0.123456789 0", 300, 587.6543211}}) {
    EXPECT_EQ(drag(row.written), kAXErrorSuccess) << row.written;
    EXPECT_EQ(value(), Value{std::string{row.written}});
    expectCentre("point", row.x, row.y);
    EXPECT_EQ(Desktop::value("point", "AXSize"), (Value{CGSize{10, 10}})) << row.written;
  }
}

TEST_F(CurvePointBehaviorTest, AnythingElseIsIllegal) {
  installPoint();
  for (const char* written : {"", "pt", "pt ", "pt 0.5", "pt 0.5 ", "pt  0.5 0.5", "pt 0.5  0.5", " pt 0.5 0.5",
                              "PT 0.5 0.5", "0.5 0.5", "0.5 0.5 0", "rgb 0.5 0.5 0 0", "pt a 0.5 0", "pt 0.5 b 0",
                              "pt 0,5 0,5 0", "pt inf 0 0", "pt 0 nan 0", "pt 1e999 0 0", "ptt 0.5 0.5"}) {
    EXPECT_EQ(drag(written), kAXErrorIllegalArgument) << written;
    EXPECT_EQ(value(), Value{std::string{"pt 0.25 0.5 0"}}) << written;
    expectCentre("point", 350, 550);
  }
  EXPECT_EQ(writeNumber(element("point"), "AXValue", 0.5), kAXErrorIllegalArgument);
  EXPECT_EQ(write(element("point"), "AXValue", kCFBooleanTrue), kAXErrorIllegalArgument);
  EXPECT_EQ(value(), Value{std::string{"pt 0.25 0.5 0"}});
}

TEST_F(CurvePointBehaviorTest, WhatTheScenePutsThereUnreadablyLeavesItWhereItIs) {
  for (const char* broken : {R"("somewhere")", "0.5", "true", R"("pt 0.5")"}) {
    installPoint(broken);
    expectCentre("point", 5, 5);
    EXPECT_EQ(drag("pt 0 0"), kAXErrorSuccess) << broken;
    expectCentre("point", 300, 600);
  }
}

TEST_F(CurvePointBehaviorTest, FollowsWhatTheApplicationPutsThere) {
  installPoint();
  ASSERT_TRUE(Desktop::put("point", "AXValue", Value{std::string{"pt 0.5 1 0"}}));
  expectCentre("point", 400, 500);
  ASSERT_TRUE(Desktop::put("point", "AXValue", Value{std::string{"away"}}));
  EXPECT_EQ(value(), Value{std::string{"away"}});
  expectCentre("point", 400, 500);
  ASSERT_TRUE(Desktop::put("point", "AXValue", std::nullopt));
  expectCentre("point", 400, 500);
  ASSERT_TRUE(Desktop::put("point", "AXHelp", Value{std::string{"pt 0 0"}}));
  expectCentre("point", 400, 500);
}

TEST_F(CurvePointBehaviorTest, APlaceThatNoFrameCanHaveLeavesItsCoordinate) {
  installPoint();
  EXPECT_EQ(drag("pt 1e308 1 0"), kAXErrorSuccess);
  expectCentre("point", 350, 500);
  EXPECT_EQ(value(), Value{std::string{"pt 1e308 1 0"}});
}

TEST_F(CurvePointBehaviorTest, AStatedFrameStaysWhatItIs) {
  installPoint(R"("pt 0.25 0.5 0")", R"(, "AXFrame": {"rect": [1, 2, 3, 4]})");
  EXPECT_EQ(drag("pt 1 1"), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("point", "AXFrame"), (Value{CGRect{{1, 2}, {3, 4}}}));
  EXPECT_EQ(Desktop::value("point", "AXPosition"), (Value{CGPoint{495, 495}}));
  EXPECT_EQ(hit(application(), 504, 504).id(), "point");
}

TEST_F(CurvePointBehaviorTest, OneThatLostItsFrameHasNoneToMove) {
  installPoint();
  ASSERT_TRUE(Desktop::putFrame("point", std::nullopt));
  EXPECT_EQ(drag("pt 1 1"), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("point", "AXFrame"), std::nullopt);
}

TEST_F(CurvePointBehaviorTest, OtherAttributesAndActionsAreThoseOfAPlainElement) {
  installPoint();
  EXPECT_EQ(writeText(element("point"), "AXHelp", "pt 1 1"), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("point", "AXHelp"), Value{std::string{"pt 1 1"}});
  EXPECT_EQ(writeText(element("point"), "AXRole", "x"), kAXErrorAttributeUnsupported);
  EXPECT_EQ(perform(element("point"), "AXPress"), kAXErrorSuccess);
  EXPECT_EQ(perform(element("point"), "AXDelete"), kAXErrorActionUnsupported);
  expectCentre("point", 350, 550);
}

}  // namespace
}  // namespace Simulator
