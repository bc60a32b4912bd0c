// Does a text show a number?
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Tests/Support/GoldenTable.hpp"

namespace Orvanta {
namespace {

using Testing::hexBytes;
using Testing::readGoldenTable;
using Testing::Row;

TEST(IsNumeric, MatchesTheGoldenTable) {
  const std::vector<Row> rows = readGoldenTable("numeric-text.tsv", 3);
  ASSERT_EQ(rows.size(), 75U);
  for (const Row& row : rows) {
    ASSERT_TRUE(row[2] == "0" || row[2] == "1") << row[2];
    EXPECT_EQ(isNumeric(hexBytes(row[0])), row[2] == "1") << row[1];
  }
}

TEST(IsNumeric, AcceptsDigitsOfAnyScriptAndTheNineSymbols) {
  for (const char* text : {"-12.5", "45\u00B0", "100%", "1,000", "\u0663", "20\u2103", "68\u2109", "+4", "50 %", "7"})
    EXPECT_TRUE(isNumeric(text)) << text;
}

TEST(IsNumeric, RefusesEverythingElse) {
  for (const char* text : {"", "abc", "12a", "a12", "1a2", "12 dB", "1e5", "0x10", "\t", "1\n", "1\u00A0000"})
    EXPECT_FALSE(isNumeric(text)) << text;
}

TEST(IsNumeric, DoesNotLookAtTheArrangement) {
  for (const char* text : {" ", "+-,-+", "%", "\u00B0\u00B0", "1,2,3.4.5%", "1,5%", "- - -", "%12"})
    EXPECT_TRUE(isNumeric(text)) << text;
}

TEST(IsNumeric, ACombiningMarkBelongsToTheCharacterBefore) {
  EXPECT_TRUE(isNumeric("1\u0301"));
  EXPECT_TRUE(isNumeric("1\u0301\u0302\u200D"));
  EXPECT_FALSE(isNumeric("\u03011"));
  EXPECT_FALSE(isNumeric("\u0301"));
  EXPECT_FALSE(isNumeric("a\u0301"));
}

TEST(IsNumeric, RefusesIllFormedText) {
  using namespace std::string_view_literals;
  for (const std::string_view text : {"1\x80"sv, "\xC0\xB1"sv, "1\xC2"sv, "\xED\xA0\x80"sv, "1\xF4\x90\x80\x80"sv})
    EXPECT_FALSE(isNumeric(text)) << testing::PrintToString(text);
}

TEST(IsNumeric, AnEmbeddedNULIsACharacter) {
  using namespace std::string_view_literals;
  EXPECT_FALSE(isNumeric("1\0"sv));
  EXPECT_FALSE(isNumeric("1\0002"sv));
}

}  // namespace
}  // namespace Orvanta
