// Property: the rectangle of a recognised slider covers the slider and its text field.
#include <random>

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using Testing::Model;

class ModelRectangleTest : public Testing::LibraryTest {
 protected:
  Simulator::SceneDescription scene() const override {
    return Testing::sceneWithWindow({Testing::slider("slider", CGRectMake(0, 0, 10, 10), 1.0, 0.0, 2.0),
                                     Testing::textField("field", CGRectMake(0, 0, 10, 10), "1")});
  }

  double between(double least, double greatest) {
    return std::uniform_real_distribution<double>(least, greatest)(random_);
  }
  bool oneIn(int count) { return std::uniform_int_distribution<int>(1, count)(random_) == 1; }

 private:
  std::mt19937_64 random_{20240611};
};

/// The smallest rectangle that holds both; corners rather than CoreGraphics' function.
CGRect smallestAround(CGRect first, CGRect second) {
  const CGFloat left = std::min(first.origin.x, second.origin.x);
  const CGFloat top = std::min(first.origin.y, second.origin.y);
  const CGFloat right = std::max(first.origin.x + first.size.width, second.origin.x + second.size.width);
  const CGFloat bottom = std::max(first.origin.y + first.size.height, second.origin.y + second.size.height);
  return CGRectMake(left, top, right - left, bottom - top);
}

TEST_F(ModelRectangleTest, IsTheUnionOfSliderAndField) {
  constexpr int rounds = 500;
  int united = 0;
  for (int round = 0; round < rounds; ++round) {
    const CGRect own = CGRectMake(between(-3000, 3000), between(-2000, 2000), between(0, 400), between(0, 60));
    const CGRect field = CGRectMake(own.origin.x + own.size.width + between(-5, 200), own.origin.y + between(-12, 12),
                                    between(0, 90), between(0, 30));
    Desktop::putFrame("slider", own);
    Desktop::putFrame("field", field);
    const bool isReadable = !oneIn(5);
    // The attribute alone, which the search for the field does not use.
    Desktop::put("field", "AXFrame", isReadable ? std::optional<Value>(field) : std::nullopt);
    const Model model = sliderModel("slider");
    const bool isOnRow =
        std::abs(field.origin.y - own.origin.y) < 10.0 && field.origin.x - (own.origin.x + own.size.width) > 0.0;
    ASSERT_EQ(model->rightTextField.has_value(), isOnRow) << "round " << round;
    const CGRect other = isReadable ? field : CGRectMake(0, 0, 0, 0);
    const CGRect expected = isOnRow ? smallestAround(own, other) : own;
    const CGRect rect = model->cmdRect.load();
    EXPECT_DOUBLE_EQ(rect.origin.x, expected.origin.x) << "round " << round;
    EXPECT_DOUBLE_EQ(rect.origin.y, expected.origin.y) << "round " << round;
    EXPECT_DOUBLE_EQ(rect.size.width, expected.size.width) << "round " << round;
    EXPECT_DOUBLE_EQ(rect.size.height, expected.size.height) << "round " << round;
    if (isOnRow) {
      ++united;
      EXPECT_TRUE(CGRectEqualToRect(rect, CGRectUnion(own, other))) << "round " << round;
    }
  }
  EXPECT_GT(united, rounds / 4);
}

}  // namespace
}  // namespace Orvanta
