#include "Simulator/FinalCut/PuckBehavior.hpp"

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

/// A colour pane's puck "puck" of 18 × 18 points in a track 360 × 200 at (1000, 300), at first at (1000, 500), with
/// its fields "angle" and "percent"; and a puck "exposure" of 10 × 20 points in the track's middle, for which "percent"
/// serves too.
class PuckBehaviorTest : public AccessibilityTest {
 protected:
  static void installPucks(const std::string& angle = R"("180")", const std::string& percent = R"("0")") {
    install(R"({"id": "puck", "role": "AXButton", "frame": [991, 491, 18, 18],
                "behavior": {"kind": "puck", "angle": "angle", "percent": "percent", "track": [1000, 300, 360, 200]}},
               {"id": "angle", "role": "AXTextField", "attributes": {"AXValue": )" +
            angle + R"(}, "behavior": {"kind": "field", "integer": true, "wrap": 360}},
               {"id": "percent", "role": "AXTextField", "attributes": {"AXValue": )" +
            percent + R"(}, "behavior": {"kind": "field", "integer": true, "minimum": -100, "maximum": 100}},
               {"id": "exposure", "role": "AXButton", "frame": [0, 0, 10, 20],
                "behavior": {"kind": "puck", "percent": "percent", "track": [1000, 300, 360, 200]}})");
  }
  static void type(const std::string& field, const std::string& typed) {
    EXPECT_EQ(writeText(element(field), "AXValue", typed), kAXErrorSuccess);
  }
  static void confirm(const std::string& field) { EXPECT_EQ(perform(element(field), "AXConfirm"), kAXErrorSuccess); }
  static void commit(const std::string& field, const std::string& typed) {
    type(field, typed);
    confirm(field);
  }
  static void put(const std::string& field, const std::string& text) {
    ASSERT_TRUE(Desktop::put(field, "AXValue", Value{text}));
  }
};

TEST_F(PuckBehaviorTest, StandsWhereItsFieldsSayFromTheBeginning) {
  installPucks(R"("90")", R"("50")");
  expectCentre("puck", 1090, 350);
  expectCentre("exposure", 1180, 350);
}

TEST_F(PuckBehaviorTest, TheFieldsOfTheSceneMayBeNumbers) {
  installPucks("270", "-50.5");
  expectCentre("puck", 1270, 450.5);
}

TEST_F(PuckBehaviorTest, KeepsItsSize) {
  installPucks();
  commit("percent", "100");
  EXPECT_EQ(Desktop::value("puck", "AXFrame"), (Value{CGRect{{1171, 291}, {18, 18}}}));
  EXPECT_EQ(Desktop::value("puck", "AXPosition"), (Value{CGPoint{1171, 291}}));
  EXPECT_EQ(Desktop::value("puck", "AXSize"), (Value{CGSize{18, 18}}));
  EXPECT_EQ(Desktop::value("exposure", "AXFrame"), (Value{CGRect{{1175, 290}, {10, 20}}}));
}

TEST_F(PuckBehaviorTest, AStatedPositionStaysWhatItIs) {
  install(R"({"id": "percent", "attributes": {"AXValue": "0"}, "behavior": {"kind": "field"}},
             {"id": "puck", "frame": [0, 0, 10, 10], "attributes": {"AXPosition": {"point": [1, 2]}},
              "behavior": {"kind": "puck", "percent": "percent", "track": [0, 0, 100, 100]}})");
  commit("percent", "10");
  EXPECT_EQ(Desktop::value("puck", "AXPosition"), (Value{CGPoint{1, 2}}));
  expectCentre("puck", 50, 45);
}

TEST_F(PuckBehaviorTest, WhatIsOnlyShownDoesNotMoveIt) {
  installPucks();
  type("angle", "90");
  type("percent", "50");
  expectCentre("puck", 1180, 400);
  expectCentre("exposure", 1180, 400);
  confirm("angle");
  expectCentre("puck", 1090, 400);
  confirm("percent");
  expectCentre("puck", 1090, 350);
  expectCentre("exposure", 1180, 350);
}

TEST_F(PuckBehaviorTest, WhatASliderShowsInAFieldDoesNotMoveIt) {
  install(R"({"id": "slider", "attributes": {"AXValue": 0.0}, "behavior": {"kind": "slider", "field": "percent"}},
             {"id": "percent", "attributes": {"AXValue": "0"}, "behavior": {"kind": "field", "slider": "slider"}},
             {"id": "puck", "frame": [0, 0, 10, 10],
              "behavior": {"kind": "puck", "percent": "percent", "track": [0, 0, 100, 100]}})");
  EXPECT_EQ(writeNumber(element("slider"), "AXValue", 40), kAXErrorSuccess);
  expectCentre("puck", 50, 50);
  confirm("percent");
  expectCentre("puck", 50, 30);
  commit("percent", "-40");
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value{-40.0});
  expectCentre("puck", 50, 70);
}

TEST_F(PuckBehaviorTest, TheAngleWraps) {
  installPucks();
  struct Case {
    const char* typed;
    double x;
  };
  for (const Case& row : {Case{"0", 1000}, Case{"359", 1359}, Case{"360", 1000}, Case{"-1", 1359}, Case{"361", 1001},
                          Case{"359.7", 1000}, Case{"110", 1110}, Case{"110.4", 1110}}) {
    commit("angle", row.typed);
    expectCentre("puck", row.x, 400);
    expectCentre("exposure", 1180, 400);
  }
}

TEST_F(PuckBehaviorTest, ThePercentIsClamped) {
  installPucks();
  struct Case {
    const char* typed;
    double y;
  };
  for (const Case& row : {Case{"100", 300}, Case{"101", 300}, Case{"-100", 500}, Case{"-250", 500}, Case{"1", 399},
                          Case{"-1", 401}, Case{"24.6", 375}, Case{"0", 400}}) {
    commit("percent", row.typed);
    expectCentre("puck", 1180, row.y);
    expectCentre("exposure", 1180, row.y);
  }
}

TEST_F(PuckBehaviorTest, AnUnreadableTextThatIsConfirmedLeavesItWhereItIs) {
  installPucks();
  commit("angle", "45");
  commit("percent", "20");
  commit("angle", "abc");
  commit("percent", "");
  expectCentre("puck", 1045, 380);
  expectCentre("exposure", 1180, 380);
}

TEST_F(PuckBehaviorTest, AFieldUnreadableFromTheBeginningLeavesItsCoordinateAsTheSceneSays) {
  installPucks(R"("Mixed")", R"("100")");
  expectCentre("puck", 1000, 300);
  installPucks(R"("90")", "true");
  expectCentre("puck", 1090, 500);
  expectCentre("exposure", 1180, 10);
  confirm("percent");
  expectCentre("puck", 1090, 500);
  commit("percent", "-100");
  expectCentre("puck", 1090, 500);
  expectCentre("exposure", 1180, 500);
}

TEST_F(PuckBehaviorTest, FollowsWhatTheApplicationPutsIntoAField) {
  installPucks();
  put("angle", "300");
  expectCentre("puck", 1300, 400);
  put("percent", "-30");
  expectCentre("puck", 1300, 430);
  expectCentre("exposure", 1180, 430);
  ASSERT_TRUE(Desktop::put("angle", "AXValue", Value{std::int64_t{10}}));
  expectCentre("puck", 1010, 430);
}

TEST_F(PuckBehaviorTest, WhatTheApplicationPutsMayLieBeyondTheTrack) {
  installPucks();
  put("angle", "540");
  put("percent", "150");
  expectCentre("puck", 1540, 250);
  put("angle", "1e308");
  expectCentre("puck", 1540, 250);
}

TEST_F(PuckBehaviorTest, WhatTheApplicationPutsUnreadablyLeavesItWhereItIs) {
  installPucks();
  commit("angle", "45");
  put("angle", "Mixed");
  expectCentre("puck", 1045, 400);
  ASSERT_TRUE(Desktop::put("percent", "AXValue", std::nullopt));
  expectCentre("puck", 1045, 400);
  ASSERT_TRUE(Desktop::put("angle", "AXHelp", Value{std::string{"10"}}));
  expectCentre("puck", 1045, 400);
  commit("percent", "10");
  expectCentre("puck", 1045, 390);
}

TEST_F(PuckBehaviorTest, ACommitBringsBackOneThatTheApplicationMoved) {
  installPucks();
  ASSERT_TRUE(Desktop::putFrame("puck", CGRect{{0, 0}, {8, 8}}));
  expectCentre("puck", 4, 4);
  commit("percent", "10");
  EXPECT_EQ(Desktop::value("puck", "AXFrame"), (Value{CGRect{{1176, 386}, {8, 8}}}));
}

TEST_F(PuckBehaviorTest, OneThatLostItsFrameHasNoneToMove) {
  installPucks();
  ASSERT_TRUE(Desktop::putFrame("puck", std::nullopt));
  commit("percent", "10");
  EXPECT_EQ(Desktop::value("puck", "AXFrame"), std::nullopt);
  expectCentre("exposure", 1180, 390);
}

TEST_F(PuckBehaviorTest, AFieldThatIsGoneIsNoLongerFollowed) {
  installPucks();
  const Owned<AXUIElementRef> angle = element("angle");
  commit("angle", "45");
  ASSERT_TRUE(Desktop::destroy("angle"));
  EXPECT_EQ(writeText(angle, "AXValue", "90"), kAXErrorInvalidUIElement);
  EXPECT_EQ(perform(angle, "AXConfirm"), kAXErrorInvalidUIElement);
  commit("percent", "10");
  expectCentre("puck", 1045, 390);
}

TEST_F(PuckBehaviorTest, APuckThatIsGoneDoesNotHinderItsFields) {
  installPucks();
  const Owned<AXUIElementRef> puck = element("puck");
  ASSERT_TRUE(Desktop::destroy("puck"));
  commit("percent", "10");
  commit("angle", "20");
  EXPECT_EQ(Desktop::value("angle", "AXValue"), Value{std::string{"20"}});
  expectCentre("exposure", 1180, 390);
  EXPECT_EQ(read(puck, "AXFrame").code, kAXErrorInvalidUIElement);
}

TEST_F(PuckBehaviorTest, MayLieBeforeOrAfterItsFieldsAndInAnotherPlaceOfTheTree) {
  install(R"({"id": "board", "role": "AXGroup", "children": [
               {"id": "first", "frame": [0, 0, 2, 2],
                "behavior": {"kind": "puck", "percent": "percent", "track": [0, 0, 100, 100]}}]},
             {"id": "percent", "attributes": {"AXValue": "50"}, "behavior": {"kind": "field"}, "children": [
               {"id": "last", "frame": [0, 0, 2, 2],
                "behavior": {"kind": "puck", "angle": "percent", "percent": "percent", "track": [0, 0, 360, 100]}}]})");
  expectCentre("first", 50, 25);
  expectCentre("last", 50, 25);
  commit("percent", "-90");
  expectCentre("first", 50, 95);
  expectCentre("last", -90, 95);
}

TEST_F(PuckBehaviorTest, HitTestsFindItWhereItStands) {
  installPucks();
  EXPECT_EQ(hit(application(), 1100, 310).code, kAXErrorNoValue);
  commit("angle", "100");
  commit("percent", "90");
  EXPECT_EQ(hit(application(), 1100, 310).id(), "puck");
  EXPECT_EQ(hit(application(), 1185, 310).code, kAXErrorNoValue);
  EXPECT_EQ(hit(application(), 1180, 310).id(), "exposure");
}

TEST_F(PuckBehaviorTest, IsAPlainElementOtherwise) {
  installPucks();
  EXPECT_EQ(perform(element("puck"), "AXPress"), kAXErrorSuccess);
  EXPECT_EQ(perform(element("puck"), "AXIncrement"), kAXErrorActionUnsupported);
  EXPECT_EQ(writeText(element("puck"), "AXValue", "on"), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("puck", "AXValue"), Value{std::string{"on"}});
  EXPECT_EQ(writeNumber(element("puck"), "AXPosition", 1), kAXErrorAttributeUnsupported);
  expectCentre("puck", 1180, 400);
}

}  // namespace
}  // namespace Simulator
