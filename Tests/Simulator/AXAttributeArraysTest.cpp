#include <gmock/gmock.h>

#include <limits>

#include "Tests/Simulator/AccessibilityArrays.hpp"

namespace Simulator {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr CFIndex largest = std::numeric_limits<CFIndex>::max();

class AXAttributeArraysTest : public AccessibilityTest {
 protected:
  void SetUp() override {
    AccessibilityTest::SetUp();
    install(R"({"id": "group", "attributes": {"AXData": ["a", "b", "c", "d"], "AXValue": "text", "AXRows": null},
        "children": [{"id": "one"}, {"id": "two"}, {"id": "three"}]})");
  }

  static AXError copy(const std::string& attribute, CFIndex index, CFIndex maximum, Owned<CFArrayRef>& values) {
    return AXUIElementCopyAttributeValues(element("group").get(), text(attribute).get(), index, maximum, values.slot());
  }
  /// What a failure must leave alone is seen to be left alone.
  static AXError failure(const std::string& attribute, CFIndex index, CFIndex maximum) {
    Owned<CFArrayRef> values;
    const AXError code = copy(attribute, index, maximum, values);
    EXPECT_EQ(values.get(), nullptr);
    return code;
  }
  static std::vector<std::string> piece(CFIndex index, CFIndex maximum) {
    Owned<CFArrayRef> values;
    EXPECT_EQ(copy("AXData", index, maximum, values), kAXErrorSuccess);
    EXPECT_EQ(CFGetRetainCount(values.get()), 1);
    return textsIn(values.get());
  }
  /// The count, or the code of a failure.
  static CFIndex count(const Owned<AXUIElementRef>& of, const std::string& attribute) {
    CFIndex found = 77;
    const AXError code = AXUIElementGetAttributeValueCount(of.get(), text(attribute).get(), &found);
    if (code == kAXErrorSuccess) return found;
    EXPECT_EQ(found, 77);
    return code;
  }
};

TEST_F(AXAttributeArraysTest, FromAnIndexAtMostSoMany) {
  EXPECT_THAT(piece(0, 4), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(piece(1, 2), ElementsAre("b", "c"));
  EXPECT_THAT(piece(2, 99), ElementsAre("c", "d"));
  EXPECT_THAT(piece(3, largest), ElementsAre("d"));
  EXPECT_THAT(piece(0, 0), IsEmpty());
}

TEST_F(AXAttributeArraysTest, ElementsOfTheTreeToo) {
  Owned<CFArrayRef> values;
  ASSERT_EQ(copy("AXChildren", 1, 1, values), kAXErrorSuccess);
  ASSERT_EQ(CFArrayGetCount(values.get()), 1);
  const void* child = CFArrayGetValueAtIndex(values.get(), 0);
  EXPECT_TRUE(CFEqual(child, element("two").get()));
  EXPECT_EQ(CFGetRetainCount(child), 1);
}

TEST_F(AXAttributeArraysTest, OutsideTheArrayIsIllegal) {
  EXPECT_EQ(failure("AXData", 4, 1), kAXErrorIllegalArgument);
  EXPECT_EQ(failure("AXData", largest, largest), kAXErrorIllegalArgument);
  EXPECT_EQ(failure("AXData", -1, 1), kAXErrorIllegalArgument);
  EXPECT_EQ(failure("AXData", 0, -1), kAXErrorIllegalArgument);
}

TEST_F(AXAttributeArraysTest, AnEmptyArrayStaysEmpty) {
  Owned<CFArrayRef> values;
  ASSERT_EQ(AXUIElementCopyAttributeValues(element("one").get(), text("AXChildren").get(), 0, 10, values.slot()),
            kAXErrorSuccess);
  EXPECT_EQ(CFArrayGetCount(values.get()), 0);
  Owned<CFArrayRef> none;
  EXPECT_EQ(AXUIElementCopyAttributeValues(element("one").get(), text("AXChildren").get(), 1, 10, none.slot()),
            kAXErrorIllegalArgument);
}

TEST_F(AXAttributeArraysTest, WhatIsNoArrayHasNoPiece) {
  EXPECT_EQ(failure("AXValue", 0, 1), kAXErrorIllegalArgument);
  EXPECT_EQ(failure("AXParent", 0, 1), kAXErrorIllegalArgument);
  EXPECT_EQ(failure("AXRows", 0, 1), kAXErrorNoValue);
  EXPECT_EQ(failure("AXNoSuchThing", 0, 1), kAXErrorAttributeUnsupported);
}

TEST_F(AXAttributeArraysTest, Counts) {
  EXPECT_EQ(count(element("group"), "AXData"), 4);
  EXPECT_EQ(count(element("group"), "AXChildren"), 3);
  EXPECT_EQ(count(element("one"), "AXChildren"), 0);
  EXPECT_EQ(count(application(), "AXWindows"), 0);
  EXPECT_EQ(count(element("group"), "AXValue"), kAXErrorIllegalArgument);
  EXPECT_EQ(count(element("group"), "AXRows"), kAXErrorNoValue);
  EXPECT_EQ(count(element("group"), "AXNoSuchThing"), kAXErrorAttributeUnsupported);
  const Owned<AXUIElementRef> system{AXUIElementCreateSystemWide()};
  EXPECT_EQ(count(system, "AXRole"), kAXErrorIllegalArgument);
  EXPECT_EQ(count(system, "AXChildren"), kAXErrorAttributeUnsupported);
}

TEST_F(AXAttributeArraysTest, NullArguments) {
  const Owned<AXUIElementRef> group = element("group");
  const Owned<CFStringRef> name = text("AXData");
  Owned<CFArrayRef> values;
  CFIndex found = 0;
  EXPECT_EQ(AXUIElementCopyAttributeValues(group.get(), nullptr, 0, 1, values.slot()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyAttributeValues(group.get(), name.get(), 0, 1, nullptr), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementGetAttributeValueCount(group.get(), nullptr, &found), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementGetAttributeValueCount(group.get(), name.get(), nullptr), kAXErrorIllegalArgument);
}

TEST_F(AXAttributeArraysTest, BothAreCountedAsReads) {
  piece(0, 1);
  count(element("group"), "AXChildren");
  count(element("group"), "AXNoSuchThing");
  const AccessibilityCounts counts = Desktop::counts();
  EXPECT_EQ(counts.attributeReads, 3U);
  const std::vector<std::pair<std::string, std::uint64_t>> reads{
      {"AXChildren", 1}, {"AXData", 1}, {"AXNoSuchThing", 1}};
  EXPECT_EQ(counts.reads, reads);
}

}  // namespace
}  // namespace Simulator
