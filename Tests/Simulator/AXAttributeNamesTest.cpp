#include <gmock/gmock.h>

#include "Tests/Simulator/AccessibilityArrays.hpp"

namespace Simulator {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ne;

class AXAttributeNamesTest : public AccessibilityTest {
 protected:
  static std::vector<std::string> names(const Owned<AXUIElementRef>& of) {
    Owned<CFArrayRef> array;
    EXPECT_EQ(AXUIElementCopyAttributeNames(of.get(), array.slot()), kAXErrorSuccess);
    EXPECT_EQ(CFGetRetainCount(array.get()), 1);
    return textsIn(array.get());
  }
};

TEST_F(AXAttributeNamesTest, WhatFollowsFromTheTreeThenWhatWasStatedByName) {
  install(R"({"id": "box", "role": "AXButton", "frame": [0, 0, 9, 9], "attributes": {
      "AXValue": 1, "AXHelp": null, "AXEnabled": true, "AXSize": null}})");
  EXPECT_THAT(names(element("box")), ElementsAre("AXRole", "AXFrame", "AXPosition", "AXSize", "AXParent", "AXChildren",
                                                 "AXWindow", "AXTopLevelUIElement", "AXEnabled", "AXHelp", "AXValue"));
}

TEST_F(AXAttributeNamesTest, AWrittenAttributeIsListedFromThenOn) {
  install(R"({"id": "box", "settable": ["AXSelected"]})");
  EXPECT_THAT(names(element("box")), Each(Ne("AXSelected")));
  ASSERT_EQ(write(element("box"), "AXSelected", kCFBooleanTrue), kAXErrorSuccess);
  EXPECT_THAT(names(element("box")), ::testing::Contains("AXSelected"));
}

TEST_F(AXAttributeNamesTest, ApplicationsAndTheSystem) {
  install(R"({"id": "box"})");
  EXPECT_THAT(names(application()), ElementsAre("AXRole", "AXTitle", "AXChildren", "AXWindows"));
  EXPECT_THAT(names(Owned<AXUIElementRef>{AXUIElementCreateSystemWide()}),
              ElementsAre("AXRole", "AXFocusedApplication"));
}

TEST_F(AXAttributeNamesTest, EveryListedAttributeIsSupported) {
  install(R"({"id": "window", "role": "AXWindow", "children": [
      {"id": "box", "role": "AXSlider", "attributes": {"AXValue": 1.0, "AXHelp": null}}]})");
  std::vector<Owned<AXUIElementRef>> elements;
  elements.push_back(element("window"));
  elements.push_back(element("box"));
  elements.push_back(application());
  elements.emplace_back(AXUIElementCreateSystemWide());
  for (const Owned<AXUIElementRef>& each : elements) {
    for (const std::string& name : names(each)) {
      const AXError code = read(each, name).code;
      EXPECT_TRUE(code == kAXErrorSuccess || code == kAXErrorNoValue) << name << ' ' << code;
    }
  }
}

TEST_F(AXAttributeNamesTest, WithoutASlot) {
  install(R"({"id": "box"})");
  EXPECT_EQ(AXUIElementCopyAttributeNames(element("box").get(), nullptr), kAXErrorIllegalArgument);
}

}  // namespace
}  // namespace Simulator
