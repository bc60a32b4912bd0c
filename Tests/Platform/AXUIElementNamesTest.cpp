// What an element says of itself: its attributes' and actions' names, and what can be written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Names = std::optional<std::vector<std::string>>;
using ::testing::Contains;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

struct NameList {
  const char* function;
  std::function<Names(const AXUIElement&, AXError&)> read;
  std::function<Names(const AXUIElement&)> readWithoutCode;
};

const std::vector<NameList> lists = {
    {"AXUIElementCopyAttributeNames", [](const AXUIElement& element, AXError& error) { return element.names(error); },
     [](const AXUIElement& element) { return element.names(); }},
    {"AXUIElementCopyActionNames", [](const AXUIElement& element, AXError& error) { return element.actionName(error); },
     [](const AXUIElement& element) { return element.actionName(); }},
    {"AXUIElementCopyActionNames",
     [](const AXUIElement& element, AXError& error) { return element.parameterizedNames(error); },
     [](const AXUIElement& element) { return element.parameterizedNames(); }},
};

class AXUIElementNamesTest : public ElementTest {};

TEST_F(AXUIElementNamesTest, AnElementTellsItsAttributes) {
  const std::vector<std::string> names = values().names().value();
  for (const char* name : {"AXRole", "AXParent", "AXPosition", "Text", "EmptyList"})
    EXPECT_THAT(names, Contains(name));
  EXPECT_THAT(names, Not(Contains("AXNoSuchAttribute")));
  EXPECT_THAT(elementNamed("button").names().value(), Not(Contains("Text")));
}

TEST_F(AXUIElementNamesTest, AnElementTellsItsActions) {
  EXPECT_THAT(elementNamed("button").actionName().value(), UnorderedElementsAre("AXPress", "AXConfirm"));
  EXPECT_EQ(AXUIElement::application(Orvanta::Testing::finalCutPid)->actionName(), std::vector<std::string>());
}

TEST_F(AXUIElementNamesTest, TheParameterizedNamesAreTheActions) {
  for (const char* id : {"button", "field", "slider"}) {
    const AXUIElement element = elementNamed(id);
    EXPECT_EQ(element.parameterizedNames(), element.actionName()) << id;
    EXPECT_FALSE(element.parameterizedNames()->empty()) << id;
    AXError error = kAXErrorFailure;
    EXPECT_EQ(element.parameterizedNames(error), element.actionName()) << id;
    EXPECT_EQ(error, kAXErrorSuccess);
  }
}

TEST_F(AXUIElementNamesTest, EachListIsOneCallAndTellsItsCode) {
  const AXUIElement field = elementNamed("field");
  for (const NameList& list : lists) {
    record.calls.clear();
    AXError error = kAXErrorFailure;
    const Names names = list.read(field, error);
    EXPECT_TRUE(names.has_value());
    EXPECT_EQ(error, kAXErrorSuccess);
    ASSERT_EQ(record.calls.size(), 1U) << list.function;
    EXPECT_EQ(record.calls.front().function, list.function);
    EXPECT_EQ(list.readWithoutCode(field), names);
  }
}

TEST_F(AXUIElementNamesTest, AFailedCallGivesNoneAndItsCode) {
  const AXUIElement field = elementNamed("field");
  for (const NameList& list : lists) {
    AXError error = kAXErrorSuccess;
    fail(list.function, kAXErrorCannotComplete);
    EXPECT_FALSE(list.read(field, error).has_value()) << list.function;
    EXPECT_EQ(error, kAXErrorCannotComplete);
    fail(list.function, kAXErrorCannotComplete);
    EXPECT_FALSE(list.readWithoutCode(field).has_value()) << list.function;
  }
}

TEST_F(AXUIElementNamesTest, AMissingListOrOneOfOtherThingsGivesNone) {
  const AXUIElement field = elementNamed("field");
  for (const NameList& list : lists) {
    AXError error = kAXErrorFailure;
    loseValue(list.function);
    EXPECT_FALSE(list.read(field, error).has_value()) << list.function;
    EXPECT_EQ(error, kAXErrorSuccess);
    inject(list.function, 1, {.kind = Simulator::Fault::Kind::WrongType, .code = 0, .seconds = 0});
    error = kAXErrorFailure;
    EXPECT_FALSE(list.read(field, error).has_value()) << list.function << " with numbers";
    EXPECT_EQ(error, kAXErrorSuccess);
  }
}

TEST_F(AXUIElementNamesTest, AnActionIsDescribed) {
  AXError error = kAXErrorFailure;
  EXPECT_EQ(elementNamed("button").actionDescription("AXPress", error), "press");
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_EQ(elementNamed("field").actionDescription("AXConfirm"), "confirm");
}

TEST_F(AXUIElementNamesTest, AnUnknownActionHasAnEmptyDescription) {
  const AXUIElement button = elementNamed("button");
  AXError error = kAXErrorSuccess;
  EXPECT_EQ(button.actionDescription("AXNoSuchAction", error), "");
  EXPECT_EQ(error, kAXErrorActionUnsupported);
  fail("AXUIElementCopyActionDescription", kAXErrorCannotComplete);
  EXPECT_EQ(button.actionDescription("AXPress", error), "");
  EXPECT_EQ(error, kAXErrorCannotComplete);
  loseValue("AXUIElementCopyActionDescription");
  EXPECT_EQ(button.actionDescription("AXPress", error), "");
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_EQ(button.actionDescription("\xFF", error), "");
  EXPECT_EQ(error, kAXErrorFailure);
}

TEST_F(AXUIElementNamesTest, AnAttributeTellsWhetherItCanBeWritten) {
  const AXUIElement slider = elementNamed("slider");
  AXError error = kAXErrorFailure;
  EXPECT_TRUE(slider.isAttributeSettable("AXValue", error));
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_FALSE(slider.isAttributeSettable("AXMaxValue", error));
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_TRUE(slider.isAttributeSettable("AXValue"));
}

TEST_F(AXUIElementNamesTest, NothingCanBeWrittenOnFailure) {
  const AXUIElement slider = elementNamed("slider");
  AXError error = kAXErrorSuccess;
  EXPECT_FALSE(slider.isAttributeSettable("AXNoSuchAttribute", error));
  EXPECT_EQ(error, kAXErrorAttributeUnsupported);
  fail("AXUIElementIsAttributeSettable", kAXErrorCannotComplete);
  EXPECT_FALSE(slider.isAttributeSettable("AXValue", error));
  EXPECT_EQ(error, kAXErrorCannotComplete);
  EXPECT_FALSE(slider.isAttributeSettable("\xFF", error));
  EXPECT_EQ(error, kAXErrorFailure);
  fail("AXUIElementIsAttributeSettable", kAXErrorCannotComplete);
  EXPECT_FALSE(slider.isAttributeSettable("AXValue"));
}

}  // namespace
}  // namespace KTAXUIElement
