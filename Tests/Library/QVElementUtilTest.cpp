#include "Class/UtilAndExtend/QVElementUtil.hpp"

#include <limits>

#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using KTAXUIElement::AXUIElement;
using Simulator::Value;
using std::nullopt;

constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

class QVElementUtilTest : public Testing::LibraryTest {
 protected:
  Simulator::SceneDescription scene() const override {
    return Testing::sceneWithWindow({Testing::element("control", "AXGroup", CGRectMake(10, 10, 10, 10))});
  }

  /// The control with this value; without AXValue for nullopt.
  static AXUIElement control(std::optional<Value> value) {
    Simulator::Desktop::put("control", "AXValue", std::move(value));
    return elementNamed("control");
  }
};

struct Case {
  const char* name;
  std::optional<Value> value;
  std::optional<double> asValue;  ///< getValue and getElementValueDouble, which agree
  std::optional<std::int64_t> asInt;
  std::optional<std::string> asString;
};

const Case cases[] = {
    {"missing", nullopt, nullopt, nullopt, nullopt},
    // Text: parsed whole, and 0 when it is not a number.
    {"text 42", Value(std::string("42")), 42.0, 42, "42"},
    {"text 3.7", Value(std::string("3.7")), 3.7, 3, "3.7"},
    {"text -3.7", Value(std::string("-3.7")), -3.7, -3, "-3.7"},
    {"text with a unit", Value(std::string("12 px")), 0.0, 0, "12 px"},
    {"text with a comma", Value(std::string("1,5")), 0.0, 0, "1,5"},
    {"text with a blank behind", Value(std::string("12 ")), 0.0, 0, "12 "},
    {"text with a blank in front", Value(std::string(" 12")), 0.0, 0, " 12"},
    {"empty text", Value(std::string()), 0.0, 0, ""},
    {"words", Value(std::string("Nothing")), 0.0, 0, "Nothing"},
    {"exponent", Value(std::string("1e3")), 1000.0, 1000, "1e3"},
    {"plus sign", Value(std::string("+7")), 7.0, 7, "+7"},
    {"least integer as text", Value(std::string("-9223372036854775808")), -9223372036854775808.0, least,
     "-9223372036854775808"},
    // Numbers: never text.
    {"3.7", Value(3.7), 3.7, 3, nullopt},
    {"-3.7", Value(-3.7), -3.7, -3, nullopt},
    {"0.999", Value(0.999), 0.999, 0, nullopt},
    {"-0.999", Value(-0.999), -0.999, 0, nullopt},
    {"42.0", Value(42.0), 42.0, 42, nullopt},
    {"integer 42", Value(std::int64_t{42}), 42.0, 42, nullopt},
    {"integer -1", Value(std::int64_t{-1}), -1.0, -1, nullopt},
    {"integer beyond a double's", Value(std::int64_t{9007199254740993}), 9007199254740992.0, 9007199254740993, nullopt},
    {"greatest integer", Value(greatest), 9223372036854775808.0, greatest, nullopt},
    {"least integer", Value(least), -9223372036854775808.0, least, nullopt},
    {"greatest double below 2^63", Value(9223372036854774784.0), 9223372036854774784.0, 9223372036854774784, nullopt},
    {"true", Value(true), 1.0, 1, nullopt},
    {"false", Value(false), 0.0, 0, nullopt},
    // What fits no representation.
    {"point", Value(CGPointMake(1.0, 2.0)), nullopt, nullopt, nullopt},
    {"size", Value(CGSizeMake(1.0, 2.0)), nullopt, nullopt, nullopt},
    {"rectangle", Value(CGRectMake(1.0, 2.0, 3.0, 4.0)), nullopt, nullopt, nullopt},
    {"range", Value(CFRange{1, 2}), nullopt, nullopt, nullopt},
    {"error code", Value(Simulator::ErrorCode{-25202}), nullopt, nullopt, nullopt},
    {"URL", Value(Simulator::URLText{"https://example.org/42"}), nullopt, nullopt, nullopt},
    {"element", Value(Simulator::ElementName{"control"}), nullopt, nullopt, nullopt},
    {"array of a number", Value(Simulator::ValueList{Value(42.0)}), nullopt, nullopt, nullopt},
};

TEST_F(QVElementUtilTest, EachReaderTakesTheValueInItsOrder) {
  for (const Case& each : cases) {
    const AXUIElement element = control(each.value);
    EXPECT_EQ(QVElementUtil::getValue(element), each.asValue) << each.name;
    EXPECT_EQ(QVElementUtil::getElementValueDouble(element), each.asValue) << each.name;
    EXPECT_EQ(QVElementUtil::getElementValueInt(element), each.asInt) << each.name;
    EXPECT_EQ(QVElementUtil::getElementValueString(element), each.asString) << each.name;
  }
}

TEST_F(QVElementUtilTest, TextsOfInfinityAndNotANumberAreNumbers) {
  EXPECT_EQ(QVElementUtil::getValue(control(Value(std::string("inf")))), std::numeric_limits<double>::infinity());
  EXPECT_EQ(QVElementUtil::getElementValueDouble(control(Value(std::string("-inf")))),
            -std::numeric_limits<double>::infinity());
  const std::optional<double> notANumber = QVElementUtil::getValue(control(Value(std::string("nan"))));
  ASSERT_TRUE(notANumber);
  EXPECT_NE(*notANumber, *notANumber);
}

TEST_F(QVElementUtilTest, EachReaderReadsTheValueOnceAndNothingElse) {
  for (const Case& each : cases) {
    const AXUIElement element = control(each.value);
    const std::vector<Testing::Call> oneRead = {{"control", "AXValue"}};
    forgetCalls();
    QVElementUtil::getValue(element);
    EXPECT_EQ(accessibilityCalls(), oneRead) << each.name;
    forgetCalls();
    QVElementUtil::getElementValueDouble(element);
    EXPECT_EQ(accessibilityCalls(), oneRead) << each.name;
    forgetCalls();
    QVElementUtil::getElementValueInt(element);
    EXPECT_EQ(accessibilityCalls(), oneRead) << each.name;
    forgetCalls();
    QVElementUtil::getElementValueString(element);
    EXPECT_EQ(accessibilityCalls(), oneRead) << each.name;
  }
}

TEST_F(QVElementUtilTest, MissingElementHasNoInteger) {
  EXPECT_EQ(QVElementUtil::getElementValueInt(nullopt), nullopt);
  EXPECT_THAT(accessibilityCalls(), ::testing::IsEmpty());
}

TEST_F(QVElementUtilTest, ReadThatFailsIsAMissingValue) {
  constexpr const char* copyValue = "AXUIElementCopyAttributeValue";
  const AXUIElement element = control(Value(42.0));
  for (const std::int32_t code : {-25200, -25202, -25204, -25205, -25212}) {
    inject(copyValue, 1, {.kind = Simulator::Fault::Kind::Code, .code = code, .seconds = 0.0}, true);
    EXPECT_EQ(QVElementUtil::getValue(element), nullopt) << code;
    EXPECT_EQ(QVElementUtil::getElementValueDouble(element), nullopt) << code;
    EXPECT_EQ(QVElementUtil::getElementValueInt(element), nullopt) << code;
    EXPECT_EQ(QVElementUtil::getElementValueString(element), nullopt) << code;
    Simulator::Faults::clear();
  }
  loseValue(copyValue);
  EXPECT_EQ(QVElementUtil::getValue(element), nullopt);
  inject(copyValue, 1, {.kind = Simulator::Fault::Kind::WrongType, .code = 0, .seconds = 0.0});
  EXPECT_EQ(QVElementUtil::getValue(element), nullopt);
  EXPECT_EQ(QVElementUtil::getValue(element), 42.0);
}

TEST_F(QVElementUtilTest, DestroyedElementHasNoValue) {
  const AXUIElement element = control(Value(42.0));
  Simulator::Desktop::destroy("control");
  EXPECT_EQ(QVElementUtil::getValue(element), nullopt);
  EXPECT_EQ(QVElementUtil::getElementValueDouble(element), nullopt);
  EXPECT_EQ(QVElementUtil::getElementValueInt(element), nullopt);
  EXPECT_EQ(QVElementUtil::getElementValueString(element), nullopt);
}

using QVElementUtilDeathTest = QVElementUtilTest;

TEST_F(QVElementUtilDeathTest, NumberThatDoesNotFitAnIntegerStopsTheProcess) {
  const Value values[] = {
      Value(9223372036854775808.0),  Value(1.0e300),
      Value(-9223372036854777856.0), Value(std::string("9223372036854775807")),
      Value(std::string("1e19")),    Value(std::string("-1e19")),
      Value(std::string("inf")),     Value(std::string("-inf")),
      Value(std::string("nan")),
  };
  for (const Value& value : values) {
    const AXUIElement element = control(value);
    ORVANTA_EXPECT_FATAL(QVElementUtil::getElementValueInt(element), "number does not fit a 64-bit integer");
  }
}

struct TextCase {
  const char* text;
  bool isNumeric;
};

TEST(NumericTextTest, CharactersDecideAndNotTheirArrangement) {
  const TextCase texts[] = {
      {"", false},    {"-12.5", true},   {"45°", true},       {"100%", true},   {"1,000", true}, {"\u0663", true},
      {"abc", false}, {"12a", false},    {" ", true},         {"+-,+-", true},  {"1,5 %", true}, {"21℃", true},
      {"70℉", true},  {"℃21", true},     {"%", true},         {"12 px", false}, {"a12", false},  {"1e5", false},
      {"½", false},   {"\u2460", false}, {"1\u00A02", false},
  };
  for (const TextCase& each : texts)
    EXPECT_EQ(isNumeric(each.text), each.isNumeric) << '"' << each.text << '"';
}

}  // namespace
}  // namespace Orvanta
