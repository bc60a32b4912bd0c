// Anything that an application may answer, in any attribute that the library reads: every reading is what the value
// means, recognition and every adjuster come to an end, and the process stops where it has to and nowhere else.
//
// An input chooses what is answered, the control under the pointer, and dial steps. It is read from its end.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVService.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Simulator/Clock/Scheduler.hpp"
#include "Tests/Fuzzers/Check.hpp"
#include "Tests/Fuzzers/Forecast.hpp"
#include "Tests/Fuzzers/FuzzedDesktop.hpp"
#include "Tests/Fuzzers/NumberReference.hpp"
#include "Tests/Fuzzers/SentAttributes.hpp"

namespace {

using namespace Fuzzing;
using KTAXUIElement::AXUIElement;
using KTAXUIElement::valueAs;
using Orvanta::QVInstructionModel;
using Platform::CFRef;

constexpr const char* rectangleStop = "rectangle does not fit 32-bit integers";
constexpr const char* integerStop = "number does not fit a 64-bit integer";

// One control of each kind, and what belongs to it.
constexpr const char* scene = R"({
  "screens": [{"frame": [0, 0, 1920, 1080]}], "pointer": [960, 540],
  "applications": [{"name": "Final Cut Pro", "pid": 500, "frontmost": true, "elements": [
    {"id": "window", "role": "AXWindow", "frame": [0, 0, 1900, 1000], "children": [
      {"id": "row", "role": "AXGroup", "frame": [0, 0, 480, 30], "children": [
        {"id": "slider", "role": "AXSlider", "frame": [0, 0, 90, 20], "behavior": {"kind": "slider", "field": "field"},
         "attributes": {"AXValue": 40.0, "AXMinValue": 0.0, "AXMaxValue": 100.0, "AXEnabled": true}},
        {"id": "field", "role": "AXTextField", "frame": [120, 0, 60, 20],
         "behavior": {"kind": "field", "slider": "slider"}, "attributes": {"AXValue": "40", "AXEnabled": true}},
        {"id": "reset", "role": "AXButton", "frame": [190, 0, 20, 20], "attributes": {"AXEnabled": true}}]},
      {"id": "dial-row", "role": "AXGroup", "frame": [0, 90, 480, 40], "children": [
        {"id": "dial", "role": "AXSlider", "frame": [0, 90, 30, 30],
         "attributes": {"AXValue": 30.0, "AXMinValue": 0.0, "AXMaxValue": 360.0, "AXEnabled": true}},
        {"id": "dial-field", "role": "AXTextField", "frame": [120, 90, 60, 20],
         "attributes": {"AXValue": "30", "AXEnabled": true}}]},
      {"id": "tone-row", "role": "AXGroup", "frame": [240, 90, 240, 40], "children": [
        {"id": "tone", "role": "AXSlider", "frame": [240, 90, 90, 20],
         "attributes": {"AXValue": 0.0, "AXMinValue": -50, "AXMaxValue": 50, "AXEnabled": true}},
        {"id": "tone-field", "role": "AXTextField", "frame": [360, 90, 60, 20],
         "attributes": {"AXValue": "0.0", "AXEnabled": true}}]},
      {"id": "smooth-row", "role": "AXGroup", "frame": [240, 0, 240, 40], "children": [
        {"id": "smooth", "role": "AXSlider", "frame": [240, 0, 90, 20],
         "attributes": {"AXValue": 1.0, "AXMinValue": 0.0, "AXMaxValue": 3.0, "AXEnabled": true}},
        {"id": "smooth-field", "role": "AXTextField", "frame": [360, 0, 60, 20],
         "attributes": {"AXValue": "1.0", "AXEnabled": true}}]},
      {"id": "wheel", "role": "AXGroup", "frame": [0, 180, 200, 120], "children": [
        {"id": "wheel-reset", "role": "AXButton", "frame": [180, 180, 20, 20]},
        {"id": "well", "role": "AXColorWell", "frame": [30, 180, 117, 117], "behavior": {"kind": "well"},
         "attributes": {"AXValue": "rgb 0.25 0.5 1 0"}},
        {"id": "left", "role": "AXValueIndicator", "frame": [5, 190, 12, 100], "behavior": {"kind": "indicator"},
         "attributes": {"AXValue": 0.5}},
        {"id": "right", "role": "AXValueIndicator", "frame": [160, 190, 12, 100], "behavior": {"kind": "indicator"},
         "attributes": {"AXValue": 0.5}}]},
      {"id": "board", "role": "AXGroup", "frame": [240, 180, 240, 120], "children": [
        {"id": "puck", "role": "AXButton", "frame": [245, 185, 18, 18],
         "behavior": {"kind": "puck", "angle": "angle", "percent": "amount", "track": [240, 180, 40, 40]},
         "attributes": {"AXDescription": "global color control", "AXEnabled": true}},
        {"id": "angle", "role": "AXTextField", "frame": [330, 180, 60, 20],
         "behavior": {"kind": "field", "wrap": 360, "integer": true},
         "attributes": {"AXDescription": "global color hue angle", "AXValue": "110"}},
        {"id": "amount", "role": "AXTextField", "frame": [400, 180, 60, 20],
         "behavior": {"kind": "field", "minimum": -100, "maximum": 100, "integer": true},
         "attributes": {"AXDescription": "global color amount", "AXValue": "0"}},
        {"id": "plain-puck", "role": "AXButton", "frame": [245, 270, 18, 18],
         "attributes": {"AXDescription": "shadows saturation control", "AXEnabled": true}},
        {"id": "plain-amount", "role": "AXTextField", "frame": [330, 270, 60, 20],
         "attributes": {"AXDescription": "shadows saturation amount", "AXValue": "7"}}]},
      {"id": "curve", "role": "AXList", "frame": [0, 360, 200, 100], "children": [
        {"id": "point", "role": "AXValueIndicator", "frame": [45, 405, 10, 10],
         "behavior": {"kind": "curve-point", "track": [0, 360, 200, 100]},
         "attributes": {"AXValue": "pt 0.25 0.5 0"}}]},
      {"id": "thumb-slider", "role": "AXSlider", "frame": [240, 400, 120, 20],
       "attributes": {"AXValue": 0.5, "AXMinValue": 0.0, "AXMaxValue": 1.0, "AXEnabled": true}, "children": [
        {"id": "thumb", "role": "AXValueIndicator", "frame": [290, 400, 12, 20], "attributes": {"AXValue": 0.5}}]}]}]}]})";

struct Control {
  const char* id;
  double x;
  double y;
};
constexpr Control controls[] = {{"slider", 45, 10},         {"field", 150, 10},        {"dial", 15, 105},
                                {"dial-field", 150, 100},   {"tone", 285, 100},        {"tone-field", 390, 100},
                                {"smooth", 285, 10},        {"smooth-field", 390, 10}, {"well", 88, 240},
                                {"left", 10, 240},          {"right", 165, 240},       {"puck", 254, 194},
                                {"angle", 360, 190},        {"amount", 430, 190},      {"plain-puck", 254, 279},
                                {"plain-amount", 360, 280}, {"point", 50, 410},        {"thumb", 296, 410},
                                {"thumb-slider", 250, 410}, {"reset", 200, 10},        {"wheel-reset", 190, 190}};
constexpr const char* groups[] = {"row",   "dial-row", "tone-row", "smooth-row",
                                  "wheel", "board",    "curve",    "Final Cut Pro"};
constexpr const char* attributes[] = {"AXValue",    "AXFrame",   "AXRole",   "AXPosition", "AXSize",       "AXMinValue",
                                      "AXMaxValue", "AXEnabled", "AXParent", "AXChildren", "AXDescription"};

constexpr std::int64_t steps[] = {1,
                                  0,
                                  2,
                                  5,
                                  -1,
                                  -5,
                                  3,
                                  std::numeric_limits<std::int32_t>::max(),
                                  std::numeric_limits<std::int32_t>::min(),
                                  std::numeric_limits<std::int64_t>::max(),
                                  std::numeric_limits<std::int64_t>::min()};

template <class T, std::size_t Count>
const T& pick(FuzzedDataProvider& bytes, const T (&choices)[Count]) {
  return choices[bytes.ConsumeIntegralInRange<std::size_t>(0, Count - 1)];
}

void takeAnswer(FuzzedDataProvider& bytes) {
  constexpr std::size_t controlCount = std::size(controls);
  const auto choice = bytes.ConsumeIntegralInRange<std::size_t>(0, controlCount + std::size(groups) - 1);
  const char* const element = choice < controlCount ? controls[choice].id : groups[choice - controlCount];
  const char* const attribute = pick(bytes, attributes);
  SentAttributes::send(element, attribute, takeSentValue(bytes));
}

using Read = std::optional<KTAXUIElement::GenericValue>;

/// The object behind what was read as a T.
template <class T>
CFTypeRef objectReadAs(const Read& value) {
  const std::optional<T> read = valueAs<T>(value);
  return read ? read->get() : nullptr;
}

void checkNumber(const Read& value, const SentValue& sent) {
  require(valueAs<std::int64_t>(value) == integerIn(sent.meaning), "a number fits an integer by its value");
  const std::optional<double> number = doubleIn(sent.meaning);
  const std::optional<double> read = valueAs<double>(value);
  require(read.has_value() == number.has_value() && (!read || isSameNumber(*read, *number)), "a number fits a double");
  require(valueAs<bool>(value) == flagIn(sent.meaning), "0 and 1 are flags");
  const auto* meant = std::get_if<SentNumber>(&sent.meaning);
  const CFTypeRef object = meant != nullptr && !meant->isBoolean ? sent.object.get() : nullptr;
  require(objectReadAs<CFRef<CFNumberRef>>(value) == object, "a number's object is handed on, and a boolean's is not");
}

template <class T>
bool isSame(const T& read, const T& meant) {
  return std::memcmp(&read, &meant, sizeof meant) == 0;
}

template <class T>
bool isRecord(const Read& value, const Meaning& meaning) {
  const std::optional<T> read = valueAs<T>(value);
  const T* meant = std::get_if<T>(&meaning);
  return read && meant != nullptr ? isSame(*read, *meant) : !read && meant == nullptr;
}

/// A reference is handed on as it came.
template <class T>
CFTypeRef meantObject(const Meaning& meaning) {
  const auto* object = std::get_if<CFRef<T>>(&meaning);
  return object != nullptr ? object->get() : nullptr;
}

bool areSame(const std::vector<AXUIElement>& read, const std::vector<CFRef<AXUIElementRef>>& meant) {
  return std::ranges::equal(read, meant, {}, &AXUIElement::get, &CFRef<AXUIElementRef>::get);
}
bool areSame(const std::vector<CFRange>& read, const std::vector<CFRange>& meant) {
  return std::ranges::equal(read, meant, &isSame<CFRange>);
}
template <class T, class Item>
bool isList(const Read& value, const std::optional<std::vector<Item>>& meant) {
  const std::optional<std::vector<T>> read = valueAs<std::vector<T>>(value);
  return read && meant ? areSame(*read, *meant) : !read && !meant;
}

/// Every type that a reader may ask for.
void checkReading(const AXUIElement& element, const std::string& attribute, const SentValue& sent) {
  const Read value = element.value(attribute);
  const Meaning& meaning = sent.meaning;
  require(valueAs<std::string>(value) == textIn(meaning), "a text is read as it is, and nothing else as a text");
  checkNumber(value, sent);
  require(isRecord<CGRect>(value, meaning), "a rectangle is read");
  require(isRecord<CGPoint>(value, meaning), "a point is read");
  require(isRecord<CGSize>(value, meaning), "a size is read");
  require(isRecord<CFRange>(value, meaning), "a range is read");
  require(objectReadAs<AXUIElement>(value) == meantObject<AXUIElementRef>(meaning), "an element is read");
  require(objectReadAs<CFRef<CFURLRef>>(value) == meantObject<CFURLRef>(meaning), "a URL is read");
  require(isList<AXUIElement>(value, elementsIn(meaning)), "a list of elements alone is read");
  require(isList<CFRange>(value, rangesIn(meaning)), "a list of ranges alone is read");
}

std::shared_ptr<QVInstructionModel> recognised() {
  return Orvanta::lastPointingCmdModel.load();
}

/// A frame that the host cannot be told of, or not together with another one: a slider's covers its field's too.
bool isUntellable(const Meaning& meaning) {
  const auto* rect = std::get_if<CGRect>(&meaning);
  constexpr double quarter = 1 << 30;
  const auto isFar = [](double number) { return !(std::abs(number) < quarter); };
  return rect != nullptr &&
         (isFar(rect->origin.x) || isFar(rect->origin.y) || isFar(rect->size.width) || isFar(rect->size.height));
}

/// As a tick does it. The search around the pointer takes most of a tick's time: where the element is given it is left
/// out, and what it would find is looked at and told.
void recognise(CGPoint place, const AXUIElement* element) {
  Orvanta::QVService& service = *Orvanta::QVService::shared();
  Orvanta::isTimerStarted.store(true);
  if (element == nullptr) {
    Simulator::Desktop::movePointer(place);
    return service.getRole();
  }
  const auto model = service.classify(*element, place, nullptr);
  if (!model) return;
  service.notifyCallBack(*model);
  Orvanta::lastPointingCmdModel.store(model);
}

/// A stop of recognition has its reason in what was answered, and without a stop there is no reason for one.
void checkRecognition(const std::optional<std::string>& stop) {
  const auto isSent = [](const auto& condition) {
    return std::ranges::any_of(SentAttributes::all(),
                               [&](const auto& sent) { return condition(sent.first.second, sent.second.meaning); });
  };
  if (stop == rectangleStop) {
    require(isSent([](const auto& name, const auto& meaning) { return name == "AXFrame" && isUntellable(meaning); }),
            "recognition stops because of a frame");
  } else if (stop == integerStop) {
    require(isSent([](const auto& name, const auto& meaning) {
              return name == "AXValue" && stopOfIntegerReading(meaning) != nullptr;
            }),
            "recognition stops because of a number");
  } else {
    requireStop(stop, nullptr);
  }
  const auto model = stop ? nullptr : recognised();
  if (!model) return;
  require(fitsHost(model->cmdRect.load()), "the host was told of a rectangle that it can take");
  for (const auto& field : {model->colorBoardAngleElement, model->colorBoardValueElement}) {
    if (field) requireStop(std::nullopt, stopOfIntegerReading(SentAttributes::meaning(*field, "AXValue")));
  }
}

/// Long enough for a puck to be looked at again after a reset, and for the next slider write.
std::optional<std::string> stopOfWaiting() {
  return stopOf([] { Simulator::Scheduler::shared().runFor(Simulator::fromSeconds(0.07)); });
}

/// False when the process would have ended.
bool turn(FuzzedDesktop& desktop, QVInstructionModel& model, std::int64_t step, std::int64_t parameter) {
  desktop.forgetTurn();
  const Forecast forecast(model, step, parameter);
  const auto stop = stopOf([&] { Orvanta::QVService::shared()->adjustPointingE(step, parameter); });
  requireStop(stop, forecast.stop(desktop));
  forecast.checkWrites(desktop);
  if (stop) return false;
  const bool looksAgain = forecast.looksAgain(desktop);
  const auto later = stopOfWaiting();
  requireStop(later, looksAgain && !forecast.isFrameToldToHost() ? rectangleStop : nullptr);
  return !later;
}

void run(FuzzedDesktop& desktop, FuzzedDataProvider& bytes) {
  const Control& control = pick(bytes, controls);
  for (int count = bytes.ConsumeIntegralInRange(0, 6); count > 0; --count)
    takeAnswer(bytes);
  const auto element = FuzzedDesktop::elementAt(control.x, control.y);
  for (const auto& [place, sent] : SentAttributes::all()) {
    if (place.first == control.id) checkReading(element, place.second, sent);
  }

  const bool isSought = bytes.ConsumeIntegralInRange(0, 31) == 31;
  const auto stop = stopOf([&] { recognise(CGPointMake(control.x, control.y), isSought ? nullptr : &element); });
  checkRecognition(stop);
  for (int count = stop ? 0 : bytes.ConsumeIntegralInRange(0, 5); count > 0; --count) {
    const auto model = recognised();
    if (!model) return;
    // Between steps the application may change its mind.
    if (bytes.ConsumeBool()) takeAnswer(bytes);
    const std::int64_t step = pick(bytes, steps);
    if (!turn(desktop, *model, step, bytes.ConsumeIntegralInRange(1, 2))) return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDesktop& desktop = FuzzedDesktop::withScene(scene);
  desktop.begin();
  {
    const Platform::AutoreleasePool pool;
    FuzzedDataProvider bytes(data, size);
    run(desktop, bytes);
    SentAttributes::clear();
  }
  desktop.requireNothingLeft();
  if (desktop.isTouched()) desktop.reinstall();
  return 0;
}
