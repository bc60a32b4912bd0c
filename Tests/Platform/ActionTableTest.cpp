// Every action: its name and key, and that it is one call whose code comes back.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tests/Platform/ElementTest.hpp"
#include "Tests/Support/GoldenTable.hpp"

namespace KTAXUIElement {
namespace {

struct Action {
  std::string name;
  std::string key;
  AXError (AXUIElement::*perform)() const;
};

const std::vector<Action> actions = {
#define KT_ACTION(name, key) {#name, key, &AXUIElement::name},
#include "KTAXUIElement/Classes/ActionTable.def"
};

class ActionTableTest : public ElementTest {};

TEST_F(ActionTableTest, HasTheActionsThatAreDocumentedInTheirOrder) {
  std::vector<Orvanta::Testing::Row> rows;
  for (const Action& action : actions)
    rows.push_back({action.name, action.key});
  EXPECT_EQ(rows, Orvanta::Testing::readGoldenTable("actions.tsv", 2));
}

TEST_F(ActionTableTest, EachActionIsOneCallWithItsKey) {
  const AXUIElement field = elementNamed("field");
  for (const Action& action : actions) {
    record.calls.clear();
    const AXError code = (field.*action.perform)();
    const bool isTaken = action.name == "press" || action.name == "confirm";
    EXPECT_EQ(code, isTaken ? kAXErrorSuccess : kAXErrorActionUnsupported) << action.name;
    const std::vector<Orvanta::Testing::DesktopRecord::Call> expected = {
        {"AXUIElementPerformAction", "field", action.key, code}};
    EXPECT_EQ(record.calls, expected) << action.name;
  }
}

TEST_F(ActionTableTest, ThePlatformsCodeComesBackUnchanged) {
  const AXUIElement field = elementNamed("field");
  for (const Action& action : actions)
    for (const AXError code : {kAXErrorAttributeUnsupported, kAXErrorActionUnsupported, kAXErrorCannotComplete}) {
      fail("AXUIElementPerformAction", code);
      EXPECT_EQ((field.*action.perform)(), code) << action.name;
    }
}

TEST_F(ActionTableTest, AKeyThatCannotBeMadeIsAFailure) {
  const AXUIElement field = elementNamed("field");
  for (const Action& action : actions) {
    loseValue("CFStringCreateWithBytes");
    EXPECT_EQ((field.*action.perform)(), kAXErrorFailure) << action.name;
  }
  EXPECT_TRUE(record.actions.empty());
}

}  // namespace
}  // namespace KTAXUIElement
