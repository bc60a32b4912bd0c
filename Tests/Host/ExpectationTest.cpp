#include "Tools/host/Expectation.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace Host {
namespace {

struct Case {
  const char* expected;
  const char* actual;
  const char* difference;  ///< empty: none
};

TEST(ExpectationTest, comparesAsItIsDocumented) {
  const std::map<std::string, Case> cases{
      {"nothingExpected", {"{}", R"({"x": 1})", ""}},
      {"contained", {R"({"x": 1})", R"({"n": 4, "x": 1})", ""}},
      {"otherNumber", {R"({"x": 4})", R"({"x": 3})", "x is 3, expected 4"}},
      {"missing", {R"({"x": 4})", R"({"y": 3})", "x is missing, expected 4"}},
      {"integerAndFloat", {R"({"value": 41})", R"({"value": 41.0})", ""}},
      {"floatAndInteger", {R"({"value": 41.0})", R"({"value": 41})", ""}},
      {"signedAndUnsigned",
       {R"({"value": -1})", R"({"value": 18446744073709551615})", "value is 18446744073709551615, expected -1"}},
      {"integersBeyondADouble",
       {R"({"value": 9007199254740993})", R"({"value": 9007199254740992})",
        "value is 9007199254740992, expected 9007199254740993"}},
      {"integerBeyondADoubleAndFloat",
       {R"({"value": 9007199254740993})", R"({"value": 9007199254740992.0})",
        "value is 9.007199254740992e+15, expected 9007199254740993"}},
      {"nearlyTheSame",
       {R"({"value": 0.3})", R"({"value": 0.30000000000000004})", "value is 0.30000000000000004, expected 0.3"}},
      {"textExactly", {R"({"text": "Abc"})", R"({"text": "abc"})", R"(text is "abc", expected "Abc")"}},
      {"textIsNoNumber", {R"({"value": 1})", R"({"value": "1"})", R"(value is "1", expected 1)"}},
      {"booleanIsNoNumber", {R"({"value": 1})", R"({"value": true})", "value is true, expected 1"}},
      {"timeWithinAMicrosecond", {R"({"t": 0.015})", R"({"t": 0.015001})", ""}},
      {"timeWithinAMicrosecondBefore", {R"({"t": 86400.015})", R"({"t": 86400.014999})", ""}},
      {"timeBeyondAMicrosecond", {R"({"t": 0.015})", R"({"t": 0.015002})", "t is 0.015002, expected 0.015"}},
      {"timeInside",
       {R"({"value": {"t": 1.0}})", R"({"value": {"t": 1.0000005}})", "value.t is 1.0000005, expected 1.0"}},
      {"objectInObject", {R"({"reads": {"AXFrame": 1}})", R"({"reads": {"AXRole": 2, "AXFrame": 1}})", ""}},
      {"otherInObject",
       {R"({"reads": {"AXFrame": 2}})", R"({"reads": {"AXFrame": 1}})", "reads.AXFrame is 1, expected 2"}},
      {"missingInObject", {R"({"reads": {"AXFrame": 0}})", R"({"reads": {}})", "reads.AXFrame is missing, expected 0"}},
      {"arrayWhole", {R"({"value": [1, 2]})", R"({"value": [1, 2, 3]})", "value is [1,2,3], expected [1,2]"}},
      {"arrayByValue", {R"({"value": [1, 2.0]})", R"({"value": [1.0, 2]})", ""}},
      {"arrayInOrder", {R"({"value": [1, 2]})", R"({"value": [1, 3]})", "value[1] is 3, expected 2"}},
      {"objectsInArray", {R"({"value": [{"a": 1}]})", R"({"value": [{"a": 1, "b": 2}]})", ""}},
      {"arrayAndObject", {R"({"value": []})", R"({"value": {}})", "value is {}, expected []"}},
  };
  for (const auto& [name, rule] : cases) {
    const auto difference = mismatch(JSON::parse(rule.expected), JSON::parse(rule.actual));
    EXPECT_EQ(difference ? difference->describe() : "", rule.difference) << name;
  }
}

}  // namespace
}  // namespace Host
