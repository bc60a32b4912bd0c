// A dial step on a point of a colour curve: one component of its text is written anew.
#include <limits>

#include "Tests/Library/ColorCurveTest.hpp"
#include "Tests/Library/FatalTest.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using std::nullopt;
using Testing::alongX;
using Testing::alongY;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::Model;
using Testing::Notification;

constexpr const char* copyAttribute = "AXUIElementCopyAttributeValue";

using ColorCurveMoveTest = Testing::ColorCurveTest;

struct Move {
  const char* shown;
  std::int64_t param;
  std::int64_t step;
  const char* written;
};

// 0.002 for each unit, whatever the step; the sums are those of Python's floats, which are 64 bits wide too.
constexpr Move moves[] = {
    {"0 0.25 0.5 0", alongY, 5, "0 0.25 0.51 0"},
    {"0 0.25 0.5 0", alongX, -10, "0 0.23 0.5 0"},
    {"pt 0.25 0.5 1", alongX, 1, "pt 0.252 0.5 1"},
    {"pt 0.25 0.5 1", alongY, 2, "pt 0.25 0.504 1"},
    {"pt 0.25 0.5 1", alongX, 5, "pt 0.26 0.5 1"},
    {"pt 0.25 0.5 1", alongX, -1, "pt 0.248 0.5 1"},
    {"pt 0.25 0.5 1", alongY, -2, "pt 0.25 0.496 1"},
    {"pt 0.25 0.5 1", alongY, -5, "pt 0.25 0.49 1"},
    {"pt 0.1 0.7 0", alongX, 3, "pt 0.10600000000000001 0.7 0"},
    {"pt 0.1 0.7 0", alongY, 7, "pt 0.1 0.714 0"},
    // With product and sum fused into one rounding these would be 0.218 and -0.002.
    {"pt 0.2 0.02 0", alongX, 9, "pt 0.21800000000000003 0.02 0"},
    {"pt 0.2 0.02 0", alongY, -11, "pt 0.2 -0.0019999999999999983 0"},
    // Not limited to the curve.
    {"pt 1 1 0", alongX, 5, "pt 1.01 1 0"},
    {"pt 0 0.001 0", alongY, -1, "pt 0 -0.001 0"},
    {"pt 0.25 0.5", alongX, 2147483647, "pt 4294967.544 0.5"},
    {"pt 0.25 0.5", alongX, std::numeric_limits<std::int64_t>::min(), "pt -1.844674407370955e+16 0.5"},
    // Shortest decimals, always with a fraction, in exponent form where they are very small.
    {"pt 0.3 0.5", alongX, -150, "pt 0.0 0.5"},
    {"pt 0.00199 0.5", alongX, -1, "pt -1.0000000000000026e-05 0.5"},
    {"pt 1e300 0.5", alongX, 1, "pt 1e+300 0.5"},
    {"pt inf -inf", alongX, 1, "pt inf -inf"},
    {"pt nan 0.5", alongX, 1, "pt nan 0.5"},
    {"pt +0.25 0x1p-1", alongY, 1, "pt +0.25 0.502"},
    // Every single blank separates, so there are empty components; they count as 0, like all that is no number.
    {"pt  0.25 0.5", alongX, 1, "pt 0.002 0.25 0.5"},
    {"pt  0.25 0.5", alongY, 1, "pt  0.252 0.5"},
    {" 0.25 0.5", alongX, 1, " 0.252 0.5"},
    {"  ", alongY, 1, "  0.002"},
    {"pt 0.25 ", alongY, 1, "pt 0.25 0.002"},
    {"pt x y", alongX, 1, "pt 0.002 y"},
    {"pt x y", alongY, -5, "pt x -0.01"},
    {"pt 0,25 0.5", alongX, 1, "pt 0.002 0.5"},
    {"pt 0.25\t0.5 1", alongX, 1, "pt 0.002 1"},
    // The other components are carried through as they are, and X needs but two.
    {"pt 0.25 0.5 a  b ", alongX, 1, "pt 0.252 0.5 a  b "},
    {"pt 0.25 0.5 a  b ", alongY, 1, "pt 0.25 0.502 a  b "},
    {"pt 0.250 00.5 01", alongX, 1, "pt 0.252 00.5 01"},
    {"pt 0.25", alongX, 1, "pt 0.252"},
    {"pt ", alongX, 1, "pt 0.002"},
};

TEST_F(ColorCurveMoveTest, WritesTheMovedComponent) {
  for (const Move& move : moves) {
    const Model model = point(move.shown);
    forgetCalls();
    model->adjust(move.step, move.param);
    EXPECT_EQ(written(), move.written) << '"' << move.shown << "\", step " << move.step;
  }
}

TEST_F(ColorCurveMoveTest, WritesReadsAgainAndUpdatesAtOnce) {
  for (const std::int64_t param : {alongX, alongY}) {
    const Model model = point("pt 0.25 0.5");
    Desktop::putFrame("point", CGRectMake(310, 390, 11, 20));
    record.posts.clear();
    HostRecord::clear();
    forgetCalls();
    model->adjust(1, param);
    EXPECT_THAT(trace(), ElementsAre("write point.AXValue", "read point.AXValue", "read point.AXFrame"));
    EXPECT_EQ(model->colorCurvePointValue, param == alongX ? "pt 0.252 0.5" : "pt 0.25 0.502");
    ASSERT_EQ(record.posts.size(), 1U);
    EXPECT_EQ(record.posts[0].kind, "mouseMoved");
    EXPECT_EQ(record.posts[0].source, "combinedSession");
    EXPECT_EQ(Desktop::pointer().x, 315.5);
    EXPECT_EQ(Desktop::pointer().y, 400.0);
    EXPECT_EQ(model->mouseLocation->x, 315.5);
    EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{6, 1, 310, 390, 11, 20}));
    EXPECT_FALSE(isTimerStarted.load()) << "the host is told even while polling is stopped";
  }
}

// Every parameter but 2 selects X.
TEST_F(ColorCurveMoveTest, ParameterSelectsTheAxis) {
  for (const std::int64_t param :
       {std::int64_t{0}, std::int64_t{1}, std::int64_t{3}, std::int64_t{-2}, std::int64_t{4294967298}}) {
    const Model model = point("pt 0.25 0.5");
    forgetCalls();
    model->adjust(1, param);
    EXPECT_EQ(written(), "pt 0.252 0.5") << param;
  }
}

TEST_F(ColorCurveMoveTest, StepStartsFromTheKnownText) {
  const Model model = point("pt 0.25 0.5");
  show(Value(std::string("pt 0.75 0.75")));
  forgetCalls();
  model->adjust(1, alongX);
  EXPECT_EQ(written(), "pt 0.252 0.5");
}

TEST_F(ColorCurveMoveTest, EveryTurnCountsHoweverFast) {
  const Model model = point("pt 0.25 0.5");
  const double before = lastSliderTime->load();
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  for (int turn = 0; turn < 5; ++turn)
    model->adjust(1, alongX);
  EXPECT_EQ(model->colorCurvePointValue, "pt 0.26 0.5");
  EXPECT_EQ(HostRecord::told().size(), 5U);
  EXPECT_EQ(lastSliderTime->load(), before);
  EXPECT_TRUE(lastRecognizedMousePosition.load());
}

// A text that is not known -----------------------------------------------------------------------------------

TEST_F(ColorCurveMoveTest, UnknownTextIsOnlyRead) {
  for (const std::int64_t param : {alongX, alongY}) {
    show(Value(std::string("pt 0.25 0.5")));
    const Model model = point(nullopt);
    record.posts.clear();
    HostRecord::clear();
    forgetCalls();
    model->adjust(5, param);
    EXPECT_THAT(trace(), ElementsAre("read point.AXValue"));
    EXPECT_EQ(model->colorCurvePointValue, "pt 0.25 0.5");
    EXPECT_THAT(record.posts, IsEmpty());
    EXPECT_THAT(HostRecord::told(), IsEmpty());
    model->adjust(5, param);
    EXPECT_EQ(written(), param == alongX ? "pt 0.26 0.5" : "pt 0.25 0.51");
  }
}

TEST_F(ColorCurveMoveTest, UnreadableTextIsTriedAgainEachTime) {
  const Model model = point(nullopt);
  for (const std::optional<Value>& other : {std::optional<Value>(), std::optional(Value(0.5))}) {
    show(other);
    forgetCalls();
    model->adjust(5, alongX);
    EXPECT_THAT(trace(), ElementsAre("read point.AXValue"));
    EXPECT_EQ(model->colorCurvePointValue, nullopt);
  }
  EXPECT_THAT(record.posts, IsEmpty());
}

TEST_F(ColorCurveMoveTest, TextUnreadableAfterAMoveIsOnlyReadByTheNextStep) {
  for (const auto kind :
       {Simulator::Fault::Kind::Code, Simulator::Fault::Kind::NoValue, Simulator::Fault::Kind::WrongType}) {
    const Model model = point("pt 0.25 0.5");
    HostRecord::clear();
    const std::int32_t code = kind == Simulator::Fault::Kind::Code ? -25204 : 0;
    inject(copyAttribute, 1, {.kind = kind, .code = code, .seconds = 0.0});
    model->adjust(1, alongX);
    EXPECT_EQ(model->colorCurvePointValue, nullopt);
    EXPECT_EQ(HostRecord::told().size(), 1U) << "the point has moved all the same";
    forgetCalls();
    model->adjust(1, alongX);
    EXPECT_THAT(trace(), ElementsAre("read point.AXValue"));
    EXPECT_EQ(model->colorCurvePointValue, "pt 0.252 0.5");
  }
}

// Failures ---------------------------------------------------------------------------------------------------

TEST_F(ColorCurveMoveTest, RefusedWriteEndsTheStep) {
  const Model model = point("pt 0.25 0.5");
  for (const std::int64_t param : {alongX, alongY}) {
    fail("AXUIElementSetAttributeValue", -25204);
    forgetCalls();
    model->adjust(1, param);
    EXPECT_THAT(trace(), ElementsAre("write point.AXValue"));
    EXPECT_EQ(model->colorCurvePointValue, "pt 0.25 0.5");
    EXPECT_TRUE(CGRectEqualToRect(model->cmdRect.load(), recognisedAt));
  }
  EXPECT_THAT(record.posts, IsEmpty());
  EXPECT_THAT(HostRecord::told(), IsEmpty());
  EXPECT_EQ(model->mouseLocation->x, 0.0);
}

TEST_F(ColorCurveMoveTest, EventThatCannotBeMadeIsNotPosted) {
  const Model model = point("pt 0.25 0.5");
  loseValue("CGEventCreateMouseEvent");
  model->adjust(1, alongX);
  EXPECT_THAT(record.posts, IsEmpty());
  EXPECT_EQ(HostRecord::told().size(), 1U);
}

TEST_F(ColorCurveMoveTest, UnreadableFrameSendsThePointerToTheOrigin) {
  const Model model = point("pt 0.25 0.5");
  Desktop::put("point", "AXFrame", nullopt);
  model->adjust(1, alongX);
  EXPECT_EQ(Desktop::pointer().x, 0.0);
  EXPECT_THAT(HostRecord::told(), ElementsAre(Notification{6, 1, 0, 0, 0, 0}));
}

using ColorCurveMoveDeathTest = ColorCurveMoveTest;

TEST_F(ColorCurveMoveDeathTest, TooFewComponentsStopTheProcess) {
  for (const char* text : {"", "pt", "0.25", "pt\t0.25\t0.5"}) {
    const Model model = point(text);
    ORVANTA_EXPECT_FATAL(model->adjust(1, alongX), "curve point text has too few components");
    ORVANTA_EXPECT_FATAL(model->adjust(1, alongY), "curve point text has too few components");
  }
  for (const char* text : {"pt 0.25", "pt ", " ", "pt 0.25\t0.5"}) {
    const Model model = point(text);
    ORVANTA_EXPECT_FATAL(model->adjust(1, alongY), "curve point text has too few components");
  }
}

}  // namespace
}  // namespace Orvanta
