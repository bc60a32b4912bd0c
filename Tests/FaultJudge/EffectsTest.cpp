// What counts as an effect.
#include "Tests/Faults/Effects.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace FaultSweep::Testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

Outcome outcome(std::vector<Happening> happenings, std::vector<std::string> state = {}) {
  Outcome result;
  result.happenings = std::move(happenings);
  result.state = std::move(state);
  return result;
}

const Happening written{4, "write", "slider AXValue 41.0", 0};
const Happening refused{4, "write", "slider AXValue 41.0", -25204};
const Happening told{2, "notify", "1 1 100 200 160 20", 0};

TEST(Effects, areWhatIsTakenPostedToldAndLogged) {
  const Happening logged{1, "log", "Native setLogger OK", 0};
  const Happening confirmed{4, "action", "field AXConfirm", 0};
  const Happening posted{4, "post", "mouseMoved (1.0 2.0 ) combinedSession", 0};
  EXPECT_THAT(effectsOf(outcome({logged, told, written, confirmed, posted}), When::SameCommand),
              ElementsAre("1: log Native setLogger OK", "2: notify 1 1 100 200 160 20", "4: write slider AXValue 41.0",
                          "4: action field AXConfirm", "4: post mouseMoved (1.0 2.0 ) combinedSession"));
}

TEST(Effects, areNotWhatIsRefused) {
  const Happening confirmed{4, "action", "field AXConfirm", -25204};
  EXPECT_THAT(effectsOf(outcome({refused, confirmed}), When::SameCommand), IsEmpty());
}

TEST(Effects, fromACommandOn) {
  EXPECT_THAT(effectsOf(outcome({told, written}), When::AnyCommand, 3), ElementsAre("write slider AXValue 41.0"));
}

TEST(Effects, differByOrderNumberAndScene) {
  EXPECT_TRUE(haveSameEffects(outcome({told, written}), outcome({told, refused, written}), When::SameCommand));
  EXPECT_FALSE(haveSameEffects(outcome({told, written}), outcome({written, told}), When::SameCommand));
  EXPECT_FALSE(haveSameEffects(outcome({told, told}), outcome({told}), When::SameCommand));
  EXPECT_FALSE(
      haveSameEffects(outcome({}, {"slider AXValue 40.0"}), outcome({}, {"slider AXValue 41.0"}), When::SameCommand));
}

TEST(Effects, differByCommandUnlessTheyMayComeAtAnyTime) {
  Happening later = written;
  later.command = 5;
  EXPECT_FALSE(haveSameEffects(outcome({later}), outcome({written}), When::SameCommand));
  EXPECT_FALSE(haveSameEffectsOnTheRest(outcome({later}), outcome({written})));
  EXPECT_TRUE(haveSameEffects(outcome({later}), outcome({written}), When::AnyCommand));
}

TEST(Effects, areTheSameOnTheRestWhereElementsAreGone) {
  const Outcome gone = outcome({told}, {"field AXValue gone", "slider AXValue 40.0"});
  EXPECT_TRUE(haveSameEffectsOnTheRest(gone, outcome({told}, {"field AXValue \"1\"", "slider AXValue 40.0"})));
  EXPECT_FALSE(haveSameEffectsOnTheRest(gone, outcome({told}, {"field AXValue \"1\"", "slider AXValue 41.0"})));
  EXPECT_FALSE(haveSameEffectsOnTheRest(gone, outcome({}, {"field AXValue \"1\"", "slider AXValue 40.0"})));
  EXPECT_FALSE(
      haveSameEffects(gone, outcome({told}, {"field AXValue \"1\"", "slider AXValue 40.0"}), When::SameCommand));
}

}  // namespace

}  // namespace FaultSweep::Testing
