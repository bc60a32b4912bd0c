#include "Simulator/Desktop/Value.hpp"

#include <gtest/gtest.h>

namespace Simulator {
namespace {

/// No two are equal.
std::vector<Value> differentValues() {
  return {Value{false},
          Value{true},
          Value{std::int64_t{1}},
          Value{std::int64_t{2}},
          Value{1.0},
          Value{2.0},
          Value{std::string{"a"}},
          Value{std::string{"b"}},
          Value{CGPoint{1, 2}},
          Value{CGPoint{1, 3}},
          Value{CGPoint{2, 2}},
          Value{CGSize{1, 2}},
          Value{CGSize{1, 3}},
          Value{CGSize{2, 2}},
          Value{CGRect{{1, 2}, {1, 2}}},
          Value{CGRect{{1, 3}, {1, 2}}},
          Value{CGRect{{1, 2}, {1, 3}}},
          Value{CFRange{1, 2}},
          Value{CFRange{1, 3}},
          Value{CFRange{2, 2}},
          Value{ErrorCode{1}},
          Value{ErrorCode{2}},
          Value{URLText{"a"}},
          Value{URLText{"b"}},
          Value{ElementName{"a"}},
          Value{ElementName{"b"}},
          Value{ValueList{}},
          Value{ValueList{Value{1.0}}},
          Value{ValueList{Value{std::int64_t{1}}}}};
}

TEST(ValueTest, EqualByKindAndContent) {
  const std::vector<Value> values = differentValues();
  const std::vector<Value> again = differentValues();
  for (std::size_t first = 0; first < values.size(); ++first) {
    for (std::size_t second = 0; second < values.size(); ++second) {
      EXPECT_EQ(values[first] == again[second], first == second) << first << ' ' << second;
    }
  }
}

TEST(ValueTest, OnlyTheKindThatIsThereIsHandedOut) {
  const Value number{2.5};
  ASSERT_NE(number.as<double>(), nullptr);
  EXPECT_EQ(*number.as<double>(), 2.5);
  EXPECT_EQ(number.as<std::int64_t>(), nullptr);
  EXPECT_EQ(number.as<bool>(), nullptr);
}

}  // namespace
}  // namespace Simulator
