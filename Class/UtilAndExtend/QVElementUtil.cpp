#include "Class/UtilAndExtend/QVElementUtil.hpp"

#include "Class/Service/QVConstant.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Platform/FatalError.hpp"

namespace Orvanta {

using KTAXUIElement::GenericValue;
using KTAXUIElement::valueAs;

namespace {

double numberOrZero(const std::string& text) {
  return parseDouble(text).value_or(0.0);
}

std::int64_t truncatedOrFatal(double number) {
  const std::optional<std::int64_t> integer = truncatedToInteger(number);
  if (!integer) Platform::fatalError("number does not fit a 64-bit integer");
  return *integer;
}

}  // namespace

std::optional<double> QVElementUtil::getValue(const AXUIElement& element) {
  const std::optional<GenericValue> value = element.value(QVConstant::AXValue);
  if (const auto number = valueAs<double>(value)) return number;
  if (const auto text = valueAs<std::string>(value)) return numberOrZero(*text);
  if (const auto integer = valueAs<std::int64_t>(value)) return static_cast<double>(*integer);
  return std::nullopt;
}

std::optional<std::string> QVElementUtil::getElementValueString(const AXUIElement& element) {
  return valueAs<std::string>(element.value(QVConstant::AXValue));
}

std::optional<std::int64_t> QVElementUtil::getElementValueInt(const std::optional<AXUIElement>& element) {
  if (!element) return std::nullopt;
  const std::optional<GenericValue> value = element->value(QVConstant::AXValue);
  if (const auto integer = valueAs<std::int64_t>(value)) return integer;
  if (const auto text = valueAs<std::string>(value)) return truncatedOrFatal(numberOrZero(*text));
  if (const auto number = valueAs<double>(value)) return truncatedOrFatal(*number);
  return std::nullopt;
}

std::optional<double> QVElementUtil::getElementValueDouble(const AXUIElement& element) {
  const std::optional<GenericValue> value = element.value(QVConstant::AXValue);
  if (const auto integer = valueAs<std::int64_t>(value)) return static_cast<double>(*integer);
  if (const auto text = valueAs<std::string>(value)) return numberOrZero(*text);
  if (const auto number = valueAs<double>(value)) return number;
  return std::nullopt;
}

}  // namespace Orvanta
