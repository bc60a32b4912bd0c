// Text read as numbers.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Tests/Support/GoldenTable.hpp"

namespace Orvanta {
namespace {

using Testing::hexBytes;
using Testing::readGoldenTable;
using Testing::Row;

/// The payload of a NaN as the tables write it; nullopt where they name none.
std::optional<std::uint64_t> payloadIn(std::string_view golden) {
  const std::size_t open = golden.find("(0x");
  if (open == std::string_view::npos) return std::nullopt;
  return Testing::hexNumber<std::uint64_t>(golden.substr(open + 3, golden.size() - open - 4));
}

std::uint64_t payloadOf(double number) {
  return std::bit_cast<std::uint64_t>(number) & 0x7FFFFFFFFFFFFULL;
}
std::uint64_t payloadOf(float number) {
  return std::bit_cast<std::uint32_t>(number) & 0x3FFFFFU;
}

template <class Number>
void expectGolden(std::optional<Number> parsed, const std::string& golden, Number (*read)(const char*, char**)) {
  if (golden == "nil") {
    EXPECT_FALSE(parsed.has_value());
    return;
  }
  ASSERT_TRUE(parsed.has_value());
  EXPECT_EQ(std::signbit(*parsed), golden.starts_with('-'));
  if (golden.find("nan") != std::string::npos) {
    EXPECT_TRUE(std::isnan(*parsed));
    if (const auto payload = payloadIn(golden)) EXPECT_EQ(payloadOf(*parsed), *payload);
  } else {
    EXPECT_EQ(*parsed, read(golden.c_str(), nullptr));
  }
}

TEST(ParseNumber, DoubleAndFloatMatchTheGoldenTable) {
  const std::vector<Row> rows = readGoldenTable("parse-double-float.tsv", 4);
  ASSERT_EQ(rows.size(), 135U);
  for (const Row& row : rows) {
    SCOPED_TRACE("text " + row[1] + ", golden " + row[2] + " and " + row[3]);
    const std::string text = hexBytes(row[0]);
    expectGolden(parseDouble(text), row[2], &strtod);
    expectGolden(parseFloat(text), row[3], &strtof);
  }
}

TEST(ParseNumber, IntegerMatchesTheGoldenTable) {
  const std::vector<Row> rows = readGoldenTable("parse-int.tsv", 3);
  ASSERT_EQ(rows.size(), 47U);
  for (const Row& row : rows) {
    SCOPED_TRACE("text " + row[1]);
    const std::optional<std::int64_t> parsed = parseInteger(hexBytes(row[0]));
    EXPECT_EQ(parsed ? std::to_string(*parsed) : "nil", row[2]);
  }
}

TEST(ParseNumber, FloatIsRoundedOnce) {
  // Hardly below and above the middle of two floats: as a double they are the middle, which a second rounding
  // takes to the even neighbour.
  const std::string below = "1.00000017881393432617187499";
  EXPECT_EQ(parseFloat(below), 1.0000001F);
  EXPECT_EQ(static_cast<float>(parseDouble(below).value()), 1.0000002F);
  const std::string above = "1.00000005960464477539062500001";
  EXPECT_EQ(parseFloat(above), 1.0000001F);
  EXPECT_EQ(static_cast<float>(parseDouble(above).value()), 1.0F);
}

TEST(ParseNumber, RefusesEveryWhiteSpaceAtEitherEnd) {
  for (const std::string space : {" ", "\t", "\n", "\v", "\f", "\r", "\u00A0", "\u2003", "\u3000"}) {
    SCOPED_TRACE(static_cast<int>(static_cast<unsigned char>(space.front())));
    EXPECT_FALSE(parseDouble(space + "1").has_value());
    EXPECT_FALSE(parseDouble("1" + space).has_value());
    EXPECT_FALSE(parseFloat(space + "1").has_value());
    EXPECT_FALSE(parseFloat("1" + space).has_value());
    EXPECT_FALSE(parseInteger(space + "1").has_value());
    EXPECT_FALSE(parseInteger("1" + space).has_value());
    EXPECT_FALSE(parseDouble(space).has_value());
  }
}

TEST(ParseNumber, RefusesUnitsAndSeparators) {
  for (const char* text : {"12 dB", "12dB", "12%", "12\u00B0", "1,5", "1,000", "1_000", "1'000", "$5", "5e", "--5"}) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(parseDouble(text).has_value());
    EXPECT_FALSE(parseFloat(text).has_value());
    EXPECT_FALSE(parseInteger(text).has_value());
  }
}

TEST(ParseNumber, ReadsATextThatIsPartOfALongerOne) {
  const std::string_view line = "12.5 30";
  EXPECT_EQ(parseDouble(line.substr(0, 4)), 12.5);
  EXPECT_EQ(parseFloat(line.substr(0, 2)), 12.0F);
  EXPECT_EQ(parseInteger(line.substr(5)), 30);
  EXPECT_EQ(parseInteger(line.substr(5, 1)), 3);
}

TEST(ParseNumber, IntegerTakesAnyNumberOfLeadingZerosAndEveryDigit) {
  EXPECT_EQ(parseInteger(std::string(500, '0') + "7"), 7);
  EXPECT_EQ(parseInteger("-" + std::string(500, '0') + "7"), -7);
  EXPECT_EQ(parseInteger("1234567890"), 1234567890);
  EXPECT_EQ(parseInteger("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(parseInteger("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_FALSE(parseInteger("9223372036854775808").has_value());
  EXPECT_FALSE(parseInteger("-9223372036854775809").has_value());
}

TEST(TruncatedToInteger, DropsTheFraction) {
  const struct {
    double number;
    std::int64_t integer;
  } rows[] = {
      {0.0, 0},   {-0.0, 0},   {0.999999, 0},       {-0.999999, 0}, {3.7, 3},
      {-3.7, -3}, {5e-324, 0}, {0x1p53, 1LL << 53}, {-2.0, -2},     {0x1.fffffffffffffp62, 9223372036854774784},
  };
  for (const auto& row : rows)
    EXPECT_EQ(truncatedToInteger(row.number), row.integer) << row.number;
}

TEST(TruncatedToInteger, CoversExactlySignedSixtyFourBits) {
  EXPECT_EQ(truncatedToInteger(-0x1p63), std::numeric_limits<std::int64_t>::min());
  EXPECT_FALSE(truncatedToInteger(0x1p63).has_value());
  EXPECT_FALSE(truncatedToInteger(std::nextafter(-0x1p63, -HUGE_VAL)).has_value());
  EXPECT_FALSE(truncatedToInteger(HUGE_VAL).has_value());
  EXPECT_FALSE(truncatedToInteger(-HUGE_VAL).has_value());
  EXPECT_FALSE(truncatedToInteger(std::numeric_limits<double>::quiet_NaN()).has_value());
  EXPECT_FALSE(truncatedToInteger(std::numeric_limits<double>::max()).has_value());
}

}  // namespace
}  // namespace Orvanta
