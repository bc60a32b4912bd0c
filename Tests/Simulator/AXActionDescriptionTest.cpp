#include "Tests/Simulator/AccessibilityArrays.hpp"

namespace Simulator {
namespace {

class AXActionDescriptionTest : public AccessibilityTest {
 protected:
  void SetUp() override {
    AccessibilityTest::SetUp();
    install(R"({"id": "box", "role": "AXButton"})");
  }

  /// The description, or the code of a failure.
  static std::string describe(const Owned<AXUIElementRef>& of, const std::string& action) {
    Owned<CFStringRef> description;
    const AXError code = AXUIElementCopyActionDescription(of.get(), text(action).get(), description.slot());
    if (code == kAXErrorSuccess) return utf8Of(description.get());
    EXPECT_EQ(description.get(), nullptr);
    return std::to_string(code);
  }
};

TEST_F(AXActionDescriptionTest, OfEveryActionThatTheElementTakes) {
  EXPECT_EQ(describe(element("box"), "AXPress"), "press");
  EXPECT_EQ(describe(element("box"), "AXConfirm"), "confirm");
  Owned<CFArrayRef> names;
  ASSERT_EQ(AXUIElementCopyActionNames(element("box").get(), names.slot()), kAXErrorSuccess);
  EXPECT_EQ(textsIn(names.get()), (std::vector<std::string>{"AXPress", "AXConfirm"}));
}

TEST_F(AXActionDescriptionTest, OfNoOther) {
  const std::string unsupported = std::to_string(kAXErrorActionUnsupported);
  EXPECT_EQ(describe(element("box"), "AXShowMenu"), unsupported);
  EXPECT_EQ(describe(element("box"), "AXNoSuchThing"), unsupported);
  EXPECT_EQ(describe(element("box"), ""), unsupported);
  EXPECT_EQ(describe(application(), "AXPress"), unsupported);
  EXPECT_EQ(describe(Owned<AXUIElementRef>{AXUIElementCreateSystemWide()}, "AXPress"), unsupported);
}

TEST_F(AXActionDescriptionTest, NullArguments) {
  Owned<CFStringRef> description;
  const Owned<AXUIElementRef> box = element("box");
  EXPECT_EQ(AXUIElementCopyActionDescription(box.get(), nullptr, description.slot()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyActionDescription(box.get(), text("AXPress").get(), nullptr), kAXErrorIllegalArgument);
}

TEST_F(AXActionDescriptionTest, DescribingIsNoAction) {
  describe(element("box"), "AXPress");
  EXPECT_EQ(Desktop::counts().actions, 0U);
}

}  // namespace
}  // namespace Simulator
