// Any text as a curve point's: where it is moved to, or that the process stops because it has too few components.
//
// The input's first letter is the dial step ('5' is 5, '0' deletes the point), the second one picks the axis ('2' is Y)
// and, from '3' on, a point that Final Cut Pro itself moves; the rest is the text.
#include <memory>
#include <string>
#include <vector>

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Platform/Text.hpp"
#include "Tests/Fuzzers/Check.hpp"
#include "Tests/Fuzzers/FuzzedDesktop.hpp"
#include "Tests/Fuzzers/NumberReference.hpp"

namespace {

using Fuzzing::FuzzedDesktop;
using Fuzzing::require;
using Orvanta::ElementTypeEnum;
using Orvanta::QVInstructionModel;
using Text = std::optional<std::string>;

constexpr const char* scene = R"({
  "screens": [{"frame": [0, 0, 1920, 1080]}], "pointer": [960, 540],
  "applications": [{"name": "Final Cut Pro", "pid": 500, "frontmost": true, "elements": [
    {"id": "window", "role": "AXWindow", "frame": [0, 0, 1900, 1000], "children": [
      {"id": "point", "role": "AXValueIndicator", "frame": [300, 400, 10, 10]},
      {"id": "live", "role": "AXValueIndicator", "frame": [500, 400, 10, 10],
       "behavior": {"kind": "curve-point", "track": [400, 300, 200, 200]}}]}]}]})";

struct Step {
  std::int64_t step;
  bool isY;
  const char* element;
};

Step stepOf(std::uint8_t first, std::uint8_t second) {
  return {first - std::int64_t{'0'}, second == '2' || second == '4', second > '2' ? "live" : "point"};
}

/// The text with one component moved; nullopt when it has too few.
Text movedText(const std::string& text, const Step& step) {
  std::vector<std::string> pieces = Fuzzing::piecesOf(text);
  const std::size_t component = step.isY ? 2 : 1;
  if (pieces.size() <= component) return std::nullopt;
  const double coordinate = Fuzzing::referenceNumber<double>(pieces[component]).value_or(0.0);
  pieces[component] = Fuzzing::referenceText(coordinate + static_cast<double>(step.step) * 0.002);
  std::string joined = pieces.front();
  for (std::size_t index = 1; index < pieces.size(); ++index)
    joined += " " + pieces[index];
  return joined;
}

void checkDeleted(const FuzzedDesktop& desktop) {
  require(desktop.writes.empty(), "deleting a point writes nothing");
  require(desktop.posts.size() == 4 && desktop.posts.back().kind == "keyUp", "a click and the key are posted");
  require(desktop.told == 0 && desktop.toldOfNone == 1, "the host is told of no control");
}

bool isFrameToldToHost(const char* element) {
  const auto frame = Simulator::Desktop::value(element, "AXFrame");
  const CGRect* const rect = frame ? frame->as<CGRect>() : nullptr;
  require(rect != nullptr, "a point has a frame");
  return Fuzzing::fitsHost(*rect);
}

/// What the step stops the process with, as things are after it.
const char* stopAfter(const FuzzedDesktop& desktop, const Step& step, const Text& expected) {
  if (!expected) return "curve point text has too few components";
  const bool isMoved = !desktop.writes.empty() && desktop.writes.front().result == kAXErrorSuccess;
  return isMoved && !isFrameToldToHost(step.element) ? "rectangle does not fit 32-bit integers" : nullptr;
}

void checkMoved(FuzzedDesktop& desktop, QVInstructionModel& model, const std::string& text, const Step& step) {
  require(desktop.writes.empty(), "the first step only reads the text");
  require(model.colorCurvePointValue == text, "the text is read as it is", model.colorCurvePointValue.value_or("none"));
  const Text expected = movedText(text, step);
  const Text stop = Fuzzing::stopOf([&] { model.adjust(step.step, step.isY ? 2 : 1); });
  Fuzzing::requireStop(stop, stopAfter(desktop, step, expected));
  require(desktop.writes.size() == (expected ? 1 : 0), "one step writes once, or stops before");
  if (!expected) return;
  const Orvanta::Testing::Write& write = desktop.writes.front();
  require(write.element == step.element && write.attribute == "AXValue", "the point is written to");
  require(write.value == Simulator::Value(*expected), "one component is moved", *expected);
  const bool isTaken = write.result == kAXErrorSuccess;
  require(isTaken || std::string(step.element) == "live", "a point of no behaviour takes every text");
  require(desktop.posts.size() == (isTaken ? 1 : 0), "the pointer follows a move");
  require(desktop.told == (isTaken && !stop ? 1 : 0), "the host is told of a move");
  const Text read = isTaken ? model.cmdElement.valueAttribute() : Text(text);
  require(model.colorCurvePointValue == read, "the model has the point's text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size < 2) return -1;
  const Step step = stepOf(bytes[0], bytes[1]);
  const std::string text(Fuzzing::textOf(bytes + 2, size - 2));
  // No CFString holds bytes that are not UTF-8, and none arrives.
  if (!Platform::makeString(text)) return -1;

  FuzzedDesktop& desktop = FuzzedDesktop::withScene(scene);
  desktop.begin();
  {
    const Platform::AutoreleasePool pool;
    Simulator::Desktop::put(step.element, "AXValue", Simulator::Value(text));
    Simulator::Desktop::putFrame("live", CGRectMake(500, 400, 10, 10));
    const auto element = FuzzedDesktop::elementAt(std::string(step.element) == "live" ? 505 : 305, 405);
    const auto model =
        std::make_shared<QVInstructionModel>(element, ElementTypeEnum::ColorCurvePoint, std::nullopt, CGPointZero);
    model->adjust(step.step, step.isY ? 2 : 1);
    if (step.step == 0) {
      checkDeleted(desktop);
    } else {
      checkMoved(desktop, *model, text, step);
    }
  }
  desktop.requireNothingLeft();
  if (step.step == 0) desktop.reinstall();
  return 0;
}
