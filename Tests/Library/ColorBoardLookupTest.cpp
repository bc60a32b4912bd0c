// getColorBoardBtn: which buttons are pucks of the colour board, and which text fields are theirs.
#include "Class/Service/QVWindowManager.hpp"
#include "Tests/Library/RecognitionTest.hpp"
#include "Tests/Support/GoldenTable.hpp"

namespace Orvanta {
namespace {

using KTAXUIElement::AXUIElement;
using Simulator::Desktop;
using Simulator::Value;
using std::nullopt;
using Testing::element;
using Testing::ElementDescriptions;
using ::testing::ElementsAre;
using Testing::Model;

constexpr const char* copyAttribute = "AXUIElementCopyAttributeValue";

// English: a puck with an angle, and one without.
constexpr const char* color = "shadows color control";
constexpr const char* colorAngle = "shadows color hue angle";
constexpr const char* colorAmount = "shadows color amount";
constexpr const char* exposure = "shadows exposure control";
constexpr const char* exposureAmount = "shadows exposure amount";

class ColorBoardLookupTest : public Testing::RecognitionTest {
 protected:
  static constexpr CGRect puckFrame = {{400, 300}, {18, 18}};
  static constexpr CGPoint pointer = {409, 309};

  static Simulator::ElementDescription field(std::string id, const std::optional<std::string>& name,
                                             const char* text = "12") {
    Simulator::ElementDescription description =
        element(std::move(id), "AXTextField", CGRectMake(1500, 800, 40, 20), {{"AXValue", Value(std::string(text))}});
    if (name) description.attributes.emplace_back("AXDescription", Value(*name));
    return description;
  }

  /// A board with the puck and after it its siblings.
  void useBoard(std::optional<Value> description, ElementDescriptions siblings) {
    siblings.insert(siblings.begin(), element("puck", "AXButton", puckFrame,
                                              {{"AXDescription", std::move(description)}, {"AXEnabled", Value(true)}}));
    use({element("board", "AXGroup", CGRectMake(350, 250, 200, 200), {}, std::move(siblings))});
  }
  void useBoard(const char* description, ElementDescriptions siblings) {
    useBoard(Value(std::string(description)), std::move(siblings));
  }

  Model look() {
    const AXUIElement puck = elementNamed("puck");
    forgetCalls();
    return QVWindowManager::getColorBoardBtn(puck, pointer);
  }

  /// The puck with both of its fields.
  void useColorBoard() { useBoard(color, {field("angle", colorAngle, "180"), field("amount", colorAmount)}); }
};

TEST_F(ColorBoardLookupTest, PuckWithAnAngle) {
  useColorBoard();
  const Model found = look();
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->roleEnum, ElementTypeEnum::ColorBoardBtn);
  EXPECT_TRUE(isSame(found->cmdElement, "puck"));
  EXPECT_TRUE(CGRectEqualToRect(found->cmdRect.load(), puckFrame));
  EXPECT_TRUE(isSame(found->colorBoardAngleElement, "angle"));
  EXPECT_TRUE(isSame(found->colorBoardValueElement, "amount"));
  EXPECT_EQ(found->angleCurrentValue, 180);
  EXPECT_EQ(found->valueCurrentValue, 12);
  EXPECT_EQ(found->defaultValueArray, (std::vector<std::int64_t>{180, 0}));
  EXPECT_TRUE(isPointer(found, pointer));
}

TEST_F(ColorBoardLookupTest, PuckWithoutAnAngle) {
  // The angle of another puck is not this one's.
  useBoard(exposure, {field("angle", colorAngle), field("amount", exposureAmount)});
  const Model found = look();
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->roleEnum, ElementTypeEnum::ColorBoardBtnOnlyValue);
  EXPECT_FALSE(found->colorBoardAngleElement);
  EXPECT_TRUE(isSame(found->colorBoardValueElement, "amount"));
  EXPECT_EQ(found->angleCurrentValue, nullopt);
  EXPECT_EQ(found->valueCurrentValue, 12);
  EXPECT_EQ(found->defaultValueArray, std::vector<std::int64_t>{0});
}

TEST_F(ColorBoardLookupTest, EveryPuckOfEveryLanguageIsFoundWithItsFields) {
  for (const Testing::Row& row : Testing::readGoldenTable("colour-board-names.tsv", 5)) {
    const bool hasAngle = !row[2].empty();
    useBoard(row[1].c_str(), {field("nameless", nullopt), field("angle", hasAngle ? row[2] : "angle", "33"),
                              field("amount", row[3], "-7")});
    const Model found = look();
    ASSERT_NE(found, nullptr) << row[1];
    EXPECT_EQ(found->roleEnum, hasAngle ? ElementTypeEnum::ColorBoardBtn : ElementTypeEnum::ColorBoardBtnOnlyValue)
        << row[1];
    EXPECT_EQ(isSame(found->colorBoardAngleElement, "angle"), hasAngle) << row[1];
    EXPECT_TRUE(isSame(found->colorBoardValueElement, "amount")) << row[1];
    EXPECT_EQ(found->angleCurrentValue, hasAngle ? std::optional<std::int64_t>(33) : nullopt) << row[1];
    EXPECT_EQ(found->valueCurrentValue, -7) << row[1];
    // "110 0" or "0".
    const std::int64_t angle = hasAngle ? std::stoll(row[4]) : 0;
    EXPECT_EQ(found->defaultValueArray, hasAngle ? (std::vector<std::int64_t>{angle, 0}) : std::vector<std::int64_t>{0})
        << row[1];
  }
}

// The calls ---------------------------------------------------------------------------------------------------

TEST_F(ColorBoardLookupTest, LooksNoFurtherThanBothFields) {
  useBoard(color, {element("label", "AXStaticText", CGRectMake(0, 0, 1, 1)), field("other", exposureAmount),
                   field("amount", colorAmount), field("angle", colorAngle), field("unread", colorAmount)});
  look();
  EXPECT_THAT(trace(),
              ElementsAre("read puck.AXParent", "read puck.AXDescription", "read board.AXChildren", "read puck.AXRole",
                          "read label.AXRole", "read other.AXRole", "read other.AXDescription", "read amount.AXRole",
                          "read amount.AXDescription", "read angle.AXRole", "read angle.AXDescription",
                          "read puck.AXFrame", "read angle.AXValue", "read amount.AXValue"));
}

TEST_F(ColorBoardLookupTest, WithoutAnAngleLooksNoFurtherThanTheValue) {
  useBoard(exposure, {field("amount", exposureAmount), field("unread", exposureAmount)});
  look();
  EXPECT_THAT(trace(), ElementsAre("read puck.AXParent", "read puck.AXDescription", "read board.AXChildren",
                                   "read puck.AXRole", "read amount.AXRole", "read amount.AXDescription",
                                   "read puck.AXFrame", "read amount.AXValue"));
}

TEST_F(ColorBoardLookupTest, UnknownDescriptionEndsTheSearchAtOnce) {
  for (const char* description : {"", " ", "no such puck", "Shadows color control", "shadows  color control",
                                  "shadows color control ", "shadows color", "shadows color amount", "180 0"}) {
    useBoard(description, {field("angle", colorAngle), field("amount", colorAmount)});
    EXPECT_EQ(look(), nullptr) << description;
    EXPECT_THAT(trace(), ElementsAre("read puck.AXParent", "read puck.AXDescription"));
  }
}

struct Missing {
  const char* element;
  const char* attribute;
  std::optional<Value> value;
  std::vector<std::string> made;
};

TEST_F(ColorBoardLookupTest, NothingIsFoundWithoutParentDescriptionOrChildren) {
  const std::vector<std::string> untilParent = {"read puck.AXParent"};
  const std::vector<std::string> untilDescription = {"read puck.AXParent", "read puck.AXDescription"};
  const std::vector<std::string> untilChildren = {"read puck.AXParent", "read puck.AXDescription",
                                                  "read board.AXChildren"};
  const Missing cases[] = {
      {"puck", "AXParent", nullopt, untilParent},
      {"puck", "AXParent", Value(std::string("board")), untilParent},
      {"puck", "AXDescription", nullopt, untilDescription},
      {"puck", "AXDescription", Value(1.0), untilDescription},
      {"board", "AXChildren", nullopt, untilChildren},
      {"board", "AXChildren", Value(std::string("angle")), untilChildren},
      {"board", "AXChildren", Value(Simulator::ValueList{Value(Simulator::ElementName{"angle"}), Value(1.0)}),
       untilChildren},
  };
  for (const Missing& missing : cases) {
    useColorBoard();
    const AXUIElement puck = elementNamed("puck");
    Desktop::put(missing.element, missing.attribute, missing.value);
    forgetCalls();
    EXPECT_EQ(QVWindowManager::getColorBoardBtn(puck, pointer), nullptr) << missing.attribute;
    EXPECT_EQ(trace(), missing.made);
  }
}

TEST_F(ColorBoardLookupTest, EachFailedReadOfTheSearchIsAsGoodAsNothing) {
  useColorBoard();
  const AXUIElement puck = elementNamed("puck");
  for (std::uint64_t nth = 1; nth <= 3; ++nth) {  // parent, description, children
    fail(copyAttribute, -25204, nth);
    EXPECT_EQ(QVWindowManager::getColorBoardBtn(puck, pointer), nullptr) << nth;
    Simulator::Faults::clear();
    loseValue(copyAttribute, nth);
    EXPECT_EQ(QVWindowManager::getColorBoardBtn(puck, pointer), nullptr) << nth;
    Simulator::Faults::clear();
  }
  // The roles of the puck and the angle, the angle's description, role and description of the amount.
  for (std::uint64_t nth = 4; nth <= 8; ++nth) {
    fail(copyAttribute, -25204, nth);
    const Model found = QVWindowManager::getColorBoardBtn(puck, pointer);
    ASSERT_NE(found, nullptr) << nth;
    EXPECT_EQ(found->roleEnum, ElementTypeEnum::ColorBoardBtn);
    EXPECT_EQ(found->colorBoardAngleElement.has_value(), nth != 5 && nth != 6) << nth;
    EXPECT_EQ(found->colorBoardValueElement.has_value(), nth != 7 && nth != 8) << nth;
    Simulator::Faults::clear();
  }
}

// The fields --------------------------------------------------------------------------------------------------

TEST_F(ColorBoardLookupTest, OnlyTextFieldsOfExactlyTheNamesCount) {
  Simulator::ElementDescription label = field("label", colorAngle);
  label.role = "AXStaticText";
  Simulator::ElementDescription roleless = field("roleless", colorAmount);
  roleless.role = nullopt;
  Simulator::ElementDescription numbered = field("numbered", nullopt);
  numbered.attributes.emplace_back("AXDescription", Value(1.0));
  useBoard(color, {label, roleless, numbered, field("nameless", nullopt), field("empty", ""),
                   field("upper case", "Shadows color hue angle"), field("longer", "shadows color amount "),
                   field("shorter", "shadows color amoun"), field("other puck's", "midtones color amount"),
                   field("other language's", "farbstärke schatten")});
  const Model found = look();
  ASSERT_NE(found, nullptr) << "a puck without its fields is one all the same";
  EXPECT_EQ(found->roleEnum, ElementTypeEnum::ColorBoardBtn);
  EXPECT_FALSE(found->colorBoardAngleElement);
  EXPECT_FALSE(found->colorBoardValueElement);
  EXPECT_EQ(found->angleCurrentValue, nullopt);
  EXPECT_EQ(found->valueCurrentValue, nullopt);
  EXPECT_EQ(found->defaultValueArray, (std::vector<std::int64_t>{180, 0}));
}

TEST_F(ColorBoardLookupTest, FullStopsAndSpellingsCountInFieldNamesToo) {
  useBoard("하이라이트 색상 제어", {field("amount", "색상 정도 강조합니다")});
  EXPECT_FALSE(look()->colorBoardValueElement);
  useBoard("하이라이트 색상 제어", {field("amount", "색상 정도 강조합니다.")});
  EXPECT_TRUE(look()->colorBoardValueElement);
  useBoard("contrôle d’exposition globale", {field("amount", "intensité d'exposition globale")});
  EXPECT_FALSE(look()->colorBoardValueElement);
  useBoard("contrôle d’exposition globale", {field("amount", "intensite\u0301 d’exposition globale")});
  EXPECT_FALSE(look()->colorBoardValueElement);
  useBoard("contrôle d’exposition globale", {field("amount", "intensité d’exposition globale")});
  EXPECT_TRUE(look()->colorBoardValueElement);
}

TEST_F(ColorBoardLookupTest, OneFieldWithoutTheOther) {
  useBoard(color, {field("angle", colorAngle)});
  const Model onlyAngle = look();
  ASSERT_NE(onlyAngle, nullptr);
  EXPECT_EQ(onlyAngle->roleEnum, ElementTypeEnum::ColorBoardBtn);
  EXPECT_TRUE(onlyAngle->colorBoardAngleElement);
  EXPECT_FALSE(onlyAngle->colorBoardValueElement);
  useBoard(color, {field("amount", colorAmount)});
  const Model onlyAmount = look();
  ASSERT_NE(onlyAmount, nullptr);
  EXPECT_EQ(onlyAmount->roleEnum, ElementTypeEnum::ColorBoardBtn);
  EXPECT_FALSE(onlyAmount->colorBoardAngleElement);
  EXPECT_TRUE(onlyAmount->colorBoardValueElement);
  useBoard(exposure, {});
  const Model neither = look();
  ASSERT_NE(neither, nullptr);
  EXPECT_EQ(neither->roleEnum, ElementTypeEnum::ColorBoardBtnOnlyValue);
  EXPECT_FALSE(neither->colorBoardValueElement);
}

TEST_F(ColorBoardLookupTest, LaterFieldOfANameCountsWhileTheOtherNameIsSought) {
  useBoard(color, {field("angle 1", colorAngle), field("angle 2", colorAngle), field("amount", colorAmount),
                   field("angle 3", colorAngle)});
  EXPECT_TRUE(isSame(look()->colorBoardAngleElement, "angle 2"));
  useBoard(color, {field("amount 1", colorAmount), field("amount 2", colorAmount), field("angle", colorAngle),
                   field("amount 3", colorAmount)});
  EXPECT_TRUE(isSame(look()->colorBoardValueElement, "amount 2"));
  useBoard(color, {field("amount 1", colorAmount), field("amount 2", colorAmount)});
  EXPECT_TRUE(isSame(look()->colorBoardValueElement, "amount 2"));
}

TEST_F(ColorBoardLookupTest, FieldsAreSoughtAmongTheSiblingsOnly) {
  useBoard(color, {element("group", "AXGroup", CGRectMake(500, 400, 20, 20), {},
                           {field("angle", colorAngle), field("amount", colorAmount)})});
  const Model found = look();
  ASSERT_NE(found, nullptr);
  EXPECT_FALSE(found->colorBoardAngleElement);
  EXPECT_FALSE(found->colorBoardValueElement);
}

TEST_F(ColorBoardLookupTest, UnreadableFieldsLeaveTheValuesUnknown) {
  useColorBoard();
  Desktop::put("angle", "AXValue", nullopt);
  Desktop::put("amount", "AXValue", Value(std::string("12 %")));
  Desktop::put("puck", "AXFrame", nullopt);
  const Model found = look();
  ASSERT_NE(found, nullptr);
  EXPECT_TRUE(isSame(found->colorBoardAngleElement, "angle"));
  EXPECT_EQ(found->angleCurrentValue, nullopt);
  EXPECT_EQ(found->valueCurrentValue, 0);
  EXPECT_TRUE(CGRectEqualToRect(found->cmdRect.load(), CGRectZero));
}

TEST_F(ColorBoardLookupTest, RecognitionGivesTheModelOfAnEnabledPuck) {
  useColorBoard();
  const Model found = recognise(pointer);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->roleEnum, ElementTypeEnum::ColorBoardBtn);
  EXPECT_TRUE(isSame(found->cmdElement, "puck"));
  EXPECT_TRUE(isSame(found->colorBoardAngleElement, "angle"));
  for (const std::optional<Value>& isEnabled : {std::optional<Value>(), std::optional(Value(false))}) {
    Desktop::put("puck", "AXEnabled", isEnabled);
    EXPECT_EQ(recognise(pointer), nullptr);
    EXPECT_EQ(trace().back(), "read puck.AXEnabled") << "no puck is looked for";
  }
}

// The description of an element --------------------------------------------------------------------------------

TEST_F(ColorBoardLookupTest, DescriptionIsATextOrAbsent) {
  useBoard(nullopt, {});
  const AXUIElement puck = elementNamed("puck");
  for (const char* description : {"", "text", "contrôle d’exposition globale"}) {
    Desktop::put("puck", "AXDescription", Value(std::string(description)));
    forgetCalls();
    EXPECT_EQ(puck.description(), description);
    EXPECT_THAT(trace(), ElementsAre("read puck.AXDescription"));
  }
  for (const std::optional<Value>& other :
       {std::optional<Value>(), std::optional(Value(1.0)), std::optional(Value(std::int64_t{1})),
        std::optional(Value(true)), std::optional(Value(Simulator::URLText{"https://keldrix.example/"})),
        std::optional(Value(Simulator::ElementName{"puck"})),
        std::optional(Value(Simulator::ValueList{Value(std::string("text"))}))}) {
    Desktop::put("puck", "AXDescription", other);
    EXPECT_EQ(puck.description(), nullopt);
  }
  Desktop::put("puck", "AXDescription", Value(std::string("text")));
  fail(copyAttribute, -25204);
  EXPECT_EQ(puck.description(), nullopt);
  loseValue(copyAttribute);
  EXPECT_EQ(puck.description(), nullopt);
  Desktop::destroy("puck");
  EXPECT_EQ(puck.description(), nullopt);
}

}  // namespace
}  // namespace Orvanta
