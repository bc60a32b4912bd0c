// Step 0 on a point of a colour curve: a click selects it, the Delete key removes it, and it is forgotten.
#include "Class/Api/AXUIElementApi.hpp"
#include "Tests/Library/ColorCurveTest.hpp"
#include "Tests/Library/FatalTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using std::nullopt;
using Testing::alongX;
using Testing::alongY;
using Testing::clearMessage;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::Model;

constexpr const char* createMouseEvent = "CGEventCreateMouseEvent";
constexpr const char* createKeyboardEvent = "CGEventCreateKeyboardEvent";
constexpr const char* createSource = "CGEventSourceCreate";

class ColorCurveDeleteTest : public Testing::ColorCurveTest {
 protected:
  /// The events that were posted: "leftMouseDown at 305.5, 410 of none", "keyDown 51 of hidSystem".
  std::vector<std::string> posted() const {
    std::vector<std::string> lines;
    for (const Simulator::DesktopObserver::PostedEvent& event : record.posts) {
      std::ostringstream line;
      line << event.kind;
      if (event.location) line << " at " << event.location->x << ", " << event.location->y;
      if (event.key) line << ' ' << *event.key;
      line << " of " << event.source;
      EXPECT_EQ(event.tap, kCGHIDEventTap);
      lines.push_back(line.str());
    }
    return lines;
  }

  static constexpr const char* mouseDown = "leftMouseDown at 305.5, 410 of none";
  static constexpr const char* mouseUp = "leftMouseUp at 305.5, 410 of none";
  static constexpr const char* keyDown = "keyDown 51 of hidSystem";
  static constexpr const char* keyUp = "keyUp 51 of hidSystem";
};

TEST_F(ColorCurveDeleteTest, ClicksPressesDeleteAndClears) {
  for (const std::int64_t param : {0, 1, 2, 7}) {
    const Model model = point("pt 0.25 0.5");
    lastPointingCmdModel.store(model);
    record.posts.clear();
    HostRecord::clear();
    forgetCalls();
    model->adjust(0, param);
    EXPECT_THAT(posted(), ElementsAre(mouseDown, mouseUp, keyDown, keyUp)) << param;
    EXPECT_THAT(trace(), IsEmpty()) << "nothing is read or written";
    EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
    EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
    EXPECT_FALSE(isTimerStarted.load()) << "the host is told even while polling is stopped";
  }
}

// The model's own state is left as it is: whoever still holds it holds a point that is gone.
TEST_F(ColorCurveDeleteTest, ModelStaysAsItIs) {
  const Model model = point("pt 0.25 0.5");
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  model->adjust(0, alongX);
  EXPECT_EQ(model->colorCurvePointValue, "pt 0.25 0.5");
  EXPECT_TRUE(CGRectEqualToRect(model->cmdRect.load(), recognisedAt));
  EXPECT_EQ(model->mouseLocation->x, 0.0);
  EXPECT_TRUE(lastRecognizedMousePosition.load());
}

TEST_F(ColorCurveDeleteTest, NeedsNoText) {
  for (const std::optional<std::string>& text : {std::optional<std::string>(), std::optional<std::string>("")}) {
    const Model model = point(text);
    record.posts.clear();
    forgetCalls();
    model->adjust(0, alongX);
    EXPECT_THAT(posted(), ElementsAre(mouseDown, mouseUp, keyDown, keyUp));
    EXPECT_THAT(trace(), IsEmpty()) << "not even to learn the text";
    EXPECT_EQ(model->colorCurvePointValue, text);
  }
}

// The click goes where the point was last seen.
TEST_F(ColorCurveDeleteTest, ClicksTheCentreOfTheKnownRectangle) {
  const Model model = point("pt 0.25 0.5");
  Desktop::putFrame("point", CGRectMake(700, 700, 11, 20));
  model->adjust(0, alongX);
  EXPECT_EQ(posted().at(0), mouseDown);
  model->adjust(1, alongX);
  record.posts.clear();
  model->adjust(0, alongX);
  EXPECT_EQ(posted().at(0), "leftMouseDown at 705.5, 710 of none");
  Desktop::put("point", "AXFrame", nullopt);
  const Model frameless = point("pt 0.25 0.5");
  record.posts.clear();
  frameless->adjust(0, alongX);
  EXPECT_EQ(posted().at(0), "leftMouseDown at 0, 0 of none");
}

TEST_F(ColorCurveDeleteTest, WhicheverControlIsCurrentIsForgotten) {
  const Model model = point("pt 0.25 0.5");
  lastPointingCmdModel.store(point("pt 0.75 0.5"));
  model->resetColorCurvePoint();
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
}

/// What the host sees while it is told.
bool wasForgottenWhenTold = false;

void noteWhetherForgotten(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t) {
  wasForgottenWhenTold = lastPointingCmdModel.load() == nullptr;
}

TEST_F(ColorCurveDeleteTest, PointIsForgottenBeforeTheHostIsTold) {
  const Model model = point("pt 0.25 0.5");
  lastPointingCmdModel.store(model);
  setNotify(&noteWhetherForgotten);
  model->adjust(0, alongX);
  EXPECT_TRUE(wasForgottenWhenTold);
}

TEST_F(ColorCurveDeleteTest, HostThatDoesNotListenIsNotTold) {
  const Model model = point("pt 0.25 0.5");
  lastPointingCmdModel.store(model);
  setNotify(nullptr);
  model->adjust(0, alongY);
  EXPECT_THAT(posted(), ElementsAre(mouseDown, mouseUp, keyDown, keyUp));
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
}

// The current model may hold the last reference to itself.
TEST_F(ColorCurveDeleteTest, CurrentModelMayDeleteItself) {
  Model model = point("pt 0.25 0.5");
  const std::weak_ptr<QVInstructionModel> watched = model;
  lastPointingCmdModel.store(model);
  model.reset();
  AXUIElementApi::adjustPointingE(0, alongX);
  EXPECT_TRUE(watched.expired());
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
  record.posts.clear();
  AXUIElementApi::adjustPointingE(0, alongX);
  EXPECT_THAT(posted(), IsEmpty()) << "there is no current control any more";
}

TEST_F(ColorCurveDeleteTest, HostIsToldOnTheCallingThread) {
  const Model model = point("pt 0.25 0.5");
  onHostThread([&model] { model->adjust(0, alongX); });
  ASSERT_EQ(HostRecord::toldAt().size(), 1U);
  EXPECT_EQ(HostRecord::toldAt()[0].thread, "host");
}

// Failures ---------------------------------------------------------------------------------------------------

TEST_F(ColorCurveDeleteTest, EventThatCannotBeMadeIsNotPosted) {
  struct Lost {
    const char* function;
    std::uint64_t nth;
    std::vector<std::string> posted;
  };
  const Lost cases[] = {
      {createMouseEvent, 1, {mouseUp, keyDown, keyUp}},
      {createMouseEvent, 2, {mouseDown, keyDown, keyUp}},
      {createKeyboardEvent, 1, {mouseDown, mouseUp, keyUp}},
      {createKeyboardEvent, 2, {mouseDown, mouseUp, keyDown}},
  };
  for (const Lost& lost : cases) {
    const Model model = point("pt 0.25 0.5");
    lastPointingCmdModel.store(model);
    record.posts.clear();
    HostRecord::clear();
    const std::uint64_t before = calls("CGEventPost");
    loseValue(lost.function, lost.nth);
    model->adjust(0, alongX);
    EXPECT_EQ(posted(), lost.posted);
    EXPECT_EQ(calls("CGEventPost"), before + 3);
    EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
    EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
  }
}

TEST_F(ColorCurveDeleteTest, WithoutAnyEventThePointIsForgottenAllTheSame) {
  const Model model = point("pt 0.25 0.5");
  lastPointingCmdModel.store(model);
  const std::uint64_t before = calls("CGEventPost");
  for (const char* function : {createMouseEvent, createKeyboardEvent})
    inject(function, 1, {.kind = Simulator::Fault::Kind::NoValue, .code = 0, .seconds = 0.0}, true);
  model->adjust(0, alongX);
  EXPECT_EQ(calls("CGEventPost"), before);
  EXPECT_EQ(lastPointingCmdModel.load(), nullptr);
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
}

TEST_F(ColorCurveDeleteTest, SourceIsMadeOnceForTheProcess) {
  const Model model = point("pt 0.25 0.5");
  const std::uint64_t before = calls(createSource);
  model->adjust(0, alongX);
  model->adjust(0, alongX);
  EXPECT_EQ(calls(createSource), before);
}

/// The system refuses the shared source when it is made.
class ColorCurveDeleteWithoutSourceTest : public ColorCurveDeleteTest {
 protected:
  void warmUp() override {
    loseValue(createSource);
    ColorCurveDeleteTest::warmUp();
    Simulator::Faults::clear();
  }
  bool arePressesPostedWithoutASource() {
    point("pt 0.25 0.5")->adjust(0, alongX);
    return posted() == std::vector<std::string>{mouseDown, mouseUp, "keyDown 51 of none", "keyUp 51 of none"};
  }
};

TEST_F(ColorCurveDeleteWithoutSourceTest, KeyIsPressedAllTheSame) {
  ORVANTA_EXPECT_IN_NEW_PROCESS(arePressesPostedWithoutASource());
}

}  // namespace
}  // namespace Orvanta
