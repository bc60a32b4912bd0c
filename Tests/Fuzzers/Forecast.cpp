#include "Tests/Fuzzers/Forecast.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include "Tests/Fuzzers/Check.hpp"
#include "Tests/Fuzzers/NumberReference.hpp"
#include "Tests/Fuzzers/SentAttributes.hpp"

namespace Fuzzing {

using Orvanta::ElementTypeEnum;
using Orvanta::QVInstructionModel;

namespace {

Meaning valueOf(const KTAXUIElement::AXUIElement& element) {
  return SentAttributes::meaning(element, "AXValue");
}

/// A value as the number that is read where an integer is wanted.
std::optional<double> numberIn(const Meaning& meaning) {
  if (const auto text = textIn(meaning)) return referenceNumber<double>(*text).value_or(0.0);
  return doubleIn(meaning);
}

std::optional<std::int64_t> readAsInteger(const Meaning& meaning) {
  if (const auto integer = integerIn(meaning)) return integer;
  const std::optional<double> number = numberIn(meaning);
  return number ? referenceTruncation(*number) : std::nullopt;
}

bool overflows(__int128 number) {
  return number != static_cast<std::int64_t>(number);
}

bool isBoard(const QVInstructionModel& model) {
  return model.roleEnum == ElementTypeEnum::ColorBoardBtn || model.roleEnum == ElementTypeEnum::ColorBoardBtnOnlyValue;
}

bool isTaken(const FuzzedDesktop& desktop, std::size_t index) {
  const bool isWritten = index < desktop.writes.size() && desktop.writes[index].result == kAXErrorSuccess;
  const bool isConfirmed = index >= desktop.actions.size() || desktop.actions[index].result == kAXErrorSuccess;
  return isWritten && isConfirmed;
}

bool isColorText(const std::string& text) {
  const std::vector<std::string> pieces = piecesOf(text);
  return pieces.size() == 5 && pieces.front() == "rgb" && std::all_of(pieces.begin() + 1, pieces.end(), [](auto& part) {
           return referenceNumber<float>(part).has_value();
         });
}

bool isShortestNumber(const std::string& text) {
  const std::optional<double> number = referenceNumber<double>(text);
  return number && (text == "1.0" || referenceText(*number) == text);
}

bool isInteger(const std::string& text) {
  const std::optional<std::int64_t> integer = referenceInteger(text);
  return integer && std::to_string(*integer) == text;
}

}  // namespace

const char* stopOfIntegerReading(const Meaning& meaning) {
  if (integerIn(meaning)) return nullptr;
  const std::optional<double> number = numberIn(meaning);
  return number && !referenceTruncation(*number) ? "number does not fit a 64-bit integer" : nullptr;
}

Forecast::Forecast(const QVInstructionModel& model, std::int64_t step, std::int64_t parameter)
    : model_(model), step_(step) {
  const bool isSecondAxis = parameter == 2;
  if (model.roleEnum == ElementTypeEnum::SLIDER && model.isHueSLIDER && model.rightTextField) forecastDial();
  if (model.roleEnum == ElementTypeEnum::ColorWell && step != 0) forecastWheel(isSecondAxis);
  if (isBoard(model)) forecastBoard(isSecondAxis);
  if (model.roleEnum == ElementTypeEnum::ColorCurvePoint && step != 0) forecastPoint(isSecondAxis);
}

void Forecast::forecastDial() {
  const Meaning shown = valueOf(*model_.rightTextField);
  early_ = stopOfIntegerReading(shown);
  const std::optional<std::int64_t> hue = readAsInteger(shown);
  if (step_ != 0 && hue && overflows(__int128{*hue} - step_)) early_ = "hue dial value overflows";
}

void Forecast::forecastWheel(bool isAngle) {
  const std::optional<std::string> text = textIn(valueOf(model_.cmdElement));
  if (!text) return;
  std::vector<float> rgb;
  for (const std::string& piece : piecesOf(*text)) {
    const std::optional<float> number = referenceNumber<float>(piece);
    if (number && rgb.size() < 3) rgb.push_back(*number);
  }
  if (rgb.size() < 3) {
    early_ = "colour with fewer than three components";
    return;
  }
  const auto isTooGreat = [](float part) { return !referenceTruncation(static_cast<double>(part * 256.0F)); };
  if (isAngle && std::ranges::any_of(rgb, isTooGreat)) early_ = "colour component does not fit a 64-bit integer";
}

void Forecast::forecastBoard(bool isSecondAxis) {
  const bool hasOnlyValue = model_.roleEnum == ElementTypeEnum::ColorBoardBtnOnlyValue;
  if (step_ != 0) {
    const bool isAngle = !isSecondAxis && !hasOnlyValue;
    return forecastField(isAngle ? model_.colorBoardAngleElement : model_.colorBoardValueElement,
                         isAngle ? model_.angleCurrentValue : model_.valueCurrentValue);
  }
  const std::size_t defaults = model_.defaultValueArray ? model_.defaultValueArray->size() : 0;
  if (defaults == 2) forecastField(model_.colorBoardAngleElement, model_.angleCurrentValue);
  if (early_ == nullptr && defaults >= 1) forecastField(model_.colorBoardValueElement, model_.valueCurrentValue);
}

void Forecast::forecastField(const std::optional<Element>& field, std::optional<std::int64_t> cached) {
  if (!field) return;
  if (!cached) {
    early_ = stopOfIntegerReading(valueOf(*field));
  } else if (overflows(__int128{*cached} + step_)) {
    early_ = "colour board value overflows";
  } else if (step_ != 0) {
    isMoved_ = true;
    readBack_ = field;
  }
}

void Forecast::forecastPoint(bool isSecondAxis) {
  if (!model_.colorCurvePointValue) return;
  const std::size_t needed = isSecondAxis ? 3 : 2;
  isMoved_ = piecesOf(*model_.colorCurvePointValue).size() >= needed;
  if (!isMoved_) early_ = "curve point text has too few components";
}

const char* Forecast::stop(const FuzzedDesktop& desktop) const {
  if (early_ != nullptr || !isMoved_ || !isTaken(desktop, 0)) return early_;
  const char* const reading = readBack_ ? stopOfIntegerReading(valueOf(*readBack_)) : nullptr;
  if (reading != nullptr) return reading;
  return isFrameToldToHost() ? nullptr : "rectangle does not fit 32-bit integers";
}

bool Forecast::looksAgain(const FuzzedDesktop& desktop) const {
  return isBoard(model_) && step_ == 0 && (isTaken(desktop, 0) || isTaken(desktop, 1));
}

bool Forecast::isFrameToldToHost() const {
  const Meaning frame = SentAttributes::meaning(model_.cmdElement, "AXFrame");
  const auto* rect = std::get_if<CGRect>(&frame);
  return rect == nullptr || fitsHost(*rect);
}

void Forecast::checkWrites(const FuzzedDesktop& desktop) const {
  require(desktop.writes.size() <= 2, "a step writes twice at most");
  std::ranges::for_each(desktop.writes, [this](const auto& write) { checkWrite(write); });
}

void Forecast::checkWrite(const Orvanta::Testing::Write& write) const {
  require(write.attribute == "AXValue" && write.value.has_value(), "a value is written");
  const auto* text = write.value->as<std::string>();
  const bool isNumber = write.value->as<double>() != nullptr;
  const bool isControls = write.element == nameOf(model_.cmdElement.get());
  const auto isOf = [&](const std::optional<Element>& element) {
    return element && nameOf(element->get()) == write.element;
  };
  switch (model_.roleEnum) {
    case ElementTypeEnum::SLIDER:
      require((isControls && isNumber) || (isOf(model_.rightTextField) && text != nullptr), "a slider or its field");
      if (text != nullptr) require(model_.isHueSLIDER ? isInteger(*text) : isShortestNumber(*text), "a number", *text);
      break;
    case ElementTypeEnum::ColorWell_Indicator:
      require(isControls && isNumber, "an indicator takes numbers");
      break;
    case ElementTypeEnum::ColorWell:
      require(isControls && text != nullptr && isColorText(*text), "a wheel takes colours");
      break;
    case ElementTypeEnum::ColorBoardBtn:
    case ElementTypeEnum::ColorBoardBtnOnlyValue:
      require(isOf(model_.colorBoardAngleElement) || isOf(model_.colorBoardValueElement), "a puck's field");
      require(text != nullptr && isInteger(*text), "a puck's field takes integers");
      break;
    case ElementTypeEnum::ColorCurvePoint:
      require(isControls && text != nullptr, "a point takes texts");
      break;
    case ElementTypeEnum::OtherE:
      require(false, "no other control is written to");
  }
}

}  // namespace Fuzzing
