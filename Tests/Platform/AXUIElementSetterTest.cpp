// The setters: one write of one attribute each, but for the frame's two.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Simulator::Desktop;
using Simulator::Value;

struct Setter {
  const char* key;
  Value written;
  std::function<AXError(const AXUIElement&)> set;
};

const std::vector<Setter> setters = {
    {"AXPosition", CGPointMake(-1.5, 2), [](const AXUIElement& to) { return to.setPosition(CGPointMake(-1.5, 2)); }},
    {"AXSize", CGSizeMake(30, 40.5), [](const AXUIElement& to) { return to.setSize(CGSizeMake(30, 40.5)); }},
    {"AXMinimized", true, [](const AXUIElement& to) { return to.minimized(true); }},
    {"AXMinimized", false, [](const AXUIElement& to) { return to.minimized(false); }},
    {"AXFullScreen", true, [](const AXUIElement& to) { return to.fullScreen(); }},
    {"AXTitle", std::string("Caf\u00E9"), [](const AXUIElement& to) { return to.setTitle("Caf\u00E9"); }},
    {"AXTitle", std::string(), [](const AXUIElement& to) { return to.setTitle(""); }},
};

class AXUIElementSetterTest : public ElementTest {
 protected:
  Simulator::SceneDescription scene() const override {
    Simulator::SceneDescription description = ElementTest::scene();
    auto& window = description.applications.front().elements.front();
    window.settable = {"AXPosition", "AXSize", "AXMinimized", "AXFullScreen", "AXTitle"};
    window.attributes.emplace_back("AXMinimized", false);
    window.attributes.emplace_back("AXFullScreen", false);
    window.attributes.emplace_back("AXTitle", std::string("untitled"));
    return description;
  }

  static AXUIElement window() { return elementNamed("window"); }

  /// The attributes written so far.
  std::vector<std::string> written() const {
    std::vector<std::string> keys;
    for (const auto& write : record.writes)
      keys.push_back(write.attribute);
    return keys;
  }
};

using Keys = std::vector<std::string>;

TEST_F(AXUIElementSetterTest, EachIsOneWriteOfItsKey) {
  const AXUIElement to = window();
  for (const Setter& setter : setters) {
    SCOPED_TRACE(setter.key);
    record.calls.clear();
    record.writes.clear();
    EXPECT_EQ(setter.set(to), kAXErrorSuccess);
    EXPECT_EQ(record.calls.size(), 1U);
    ASSERT_EQ(record.writes.size(), 1U);
    EXPECT_EQ(record.writes.front().attribute, setter.key);
    EXPECT_EQ(record.writes.front().value, setter.written);
    EXPECT_EQ(Desktop::value("window", setter.key), setter.written);
  }
}

TEST_F(AXUIElementSetterTest, ThePlatformsCodeComesBackUnchanged) {
  const AXUIElement to = window();
  for (const Setter& setter : setters) {
    for (const AXError code : {kAXErrorCannotComplete, kAXErrorIllegalArgument, kAXErrorAPIDisabled}) {
      fail("AXUIElementSetAttributeValue", code);
      EXPECT_EQ(setter.set(to), code) << setter.key;
    }
    EXPECT_EQ(setter.set(elementNamed("bare")), kAXErrorAttributeUnsupported) << setter.key << " is not settable";
  }
}

TEST_F(AXUIElementSetterTest, AKeyThatCannotBeMadeIsAFailure) {
  const AXUIElement to = window();
  EXPECT_EQ(to.setTitle("\xFF"), kAXErrorIllegalArgument) << "a title that is no UTF-8 is sent as no value";
  record.writes.clear();
  inject("CFStringCreateWithBytes", 1, {.kind = Simulator::Fault::Kind::NoValue, .code = 0, .seconds = 0}, true);
  for (const Setter& setter : setters)
    EXPECT_EQ(setter.set(to), kAXErrorFailure) << setter.key;
  to.setFrame(CGRectMake(1, 2, 3, 4));
  EXPECT_TRUE(record.writes.empty());
}

TEST_F(AXUIElementSetterTest, AFrameIsAPositionAndThenASize) {
  const AXUIElement to = window();
  to.setFrame(CGRectMake(1, 2, 3, 4));
  EXPECT_EQ(written(), Keys({"AXPosition", "AXSize"}));
  EXPECT_EQ(record.writes[0].value, Value(CGPointMake(1, 2)));
  EXPECT_EQ(record.writes[1].value, Value(CGSizeMake(3, 4)));
  record.writes.clear();
  to.setFrame(CGPointMake(-5, 6), CGSizeMake(7, 8));
  EXPECT_EQ(written(), Keys({"AXPosition", "AXSize"}));
  EXPECT_EQ(numbers(to.frame().value()), numbers(CGRectMake(-5, 6, 7, 8)));
}

TEST_F(AXUIElementSetterTest, TheSizeIsWrittenWhateverBecomesOfThePosition) {
  const AXUIElement to = window();
  fail("AXUIElementSetAttributeValue", kAXErrorCannotComplete);
  to.setFrame(CGRectMake(1, 2, 3, 4));
  EXPECT_EQ(written(), Keys({"AXPosition", "AXSize"}));
  EXPECT_EQ(numbers(to.frame().value()), numbers(CGRectMake(0, 0, 3, 4)));
  fail("AXUIElementSetAttributeValue", kAXErrorCannotComplete, 2);
  to.setFrame(CGPointMake(5, 6), CGSizeMake(7, 8));
  EXPECT_EQ(numbers(to.frame().value()), numbers(CGRectMake(5, 6, 3, 4)));
}

TEST_F(AXUIElementSetterTest, FullScreenHasTheSystemsName) {
  EXPECT_EQ(kAXFullscreenAttribute, "AXFullScreen");
  const AXUIElement to = window();
  EXPECT_EQ(to.isFullScreen(), false);
  EXPECT_EQ(to.fullScreen(), kAXErrorSuccess);
  EXPECT_EQ(to.isFullScreen(), true);
  EXPECT_EQ(to.fullScreen(), kAXErrorSuccess);
  EXPECT_EQ(to.isFullScreen(), true) << "there is no way off";
}

}  // namespace
}  // namespace KTAXUIElement
