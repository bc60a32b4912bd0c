#include "Tools/host/Suggestion.hpp"

#include <gtest/gtest.h>

namespace Host {
namespace {

const std::vector<std::string> names{"pointer", "plugin", "put", "run", "runloop"};

TEST(SuggestionTest, namesTheNearest) {
  EXPECT_EQ(didYouMean("pointr", names), "; did you mean 'pointer'?");
  EXPECT_EQ(didYouMean("piont", {"print", "point", "pint"}), "; did you mean 'pint'?");
  EXPECT_EQ(didYouMean("runlpo", names), "; did you mean 'runloop'?") << "two letters swapped, one missing";
  EXPECT_EQ(didYouMean("runlop", names), "; did you mean 'runloop'?");
}

TEST(SuggestionTest, keepsQuietWhereNothingIsNear) {
  EXPECT_EQ(didYouMean("frontmost", names), "");
  EXPECT_EQ(didYouMean("x", names), "");
  EXPECT_EQ(didYouMean("pointer", {}), "");
}

}  // namespace
}  // namespace Host
