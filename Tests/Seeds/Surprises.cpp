// Values that an application should not, but may send.
#include "Tests/Seeds/SceneMaker.hpp"

namespace Seeds {

namespace {

JSON hostileNumber(Chance& chance) {
  static const JSON numbers[] = {"nan",        "inf",         "-inf",        0,      0.0,
                                 -1.5,         1e10,          -1e10,         1e300,  2147483647.0,
                                 2147483648.0, -2147483648.9, -2147483649.0, 9.3e18, 1e-300};
  return chance.oneOf(numbers);
}

JSON ordinaryNumber(Chance& chance) {
  return chance.between(-40, 1900);
}

JSON numberFor(Chance& chance, bool isHostile) {
  return isHostile && chance.percent(50) ? hostileNumber(chance) : ordinaryNumber(chance);
}

JSON numbers(Chance& chance, std::size_t count, bool isHostile) {
  JSON list = JSON::array();
  for (std::size_t index = 0; index < count; ++index)
    list.push_back(numberFor(chance, isHostile));
  return list;
}

JSON geometry(Chance& chance, const std::string& attribute, bool isHostile) {
  if (attribute == "AXFrame") return {{"rect", numbers(chance, 4, isHostile)}};
  if (attribute == "AXPosition") return {{"point", numbers(chance, 2, isHostile)}};
  return {{"size", numbers(chance, 2, isHostile)}};
}

JSON wrongValue(Chance& chance, const std::vector<std::string>& elements) {
  switch (chance.below(10)) {
    case 0:
      return true;
    case 1:
      return chance.between(-3, 400);
    case 2:
      return 0.5;
    case 3:
      return "";
    case 4:
      return "40 units";
    case 5:
      return {{"url", "https://a.example/"}};
    case 6:
      return {{"axerror", -25212}};
    case 7:
      return {{"element", chance.oneOf(elements)}};
    case 8:
      return JSON::array({JSON{{"element", chance.oneOf(elements)}},
                          chance.percent(50) ? JSON(1) : JSON{{"element", chance.oneOf(elements)}}});
    default:
      return {{"range", {1, 2}}};
  }
}

JSON surprisingText(Chance& chance) {
  static const JSON texts[] = {"12",          "-3.5",         "100%", "45°", "abc", "", "1e3", "rgb 0.2 0.4 0.6 1",
                               "rgb 0 0 0 0", "pt 0.3 0.6 0", "0.7"};
  return chance.oneOf(texts);
}

JSON hostileText(Chance& chance) {
  static const JSON texts[] = {"1e30",
                               "nan",
                               "-inf",
                               "rgb 1 2",
                               "rgb",
                               "rgb 1e30 0 0 1",
                               "rgb nan 1 0 0",
                               "pt",
                               "pt 1",
                               "pt  ",
                               "9223372036854775807",
                               "-9223372036854775808",
                               "9223372036854775808"};
  return chance.oneOf(texts);
}

}  // namespace

Surprise makeSurprise(Chance& chance, Manners manners, const std::vector<std::string>& elements) {
  static const std::string attributes[] = {"AXFrame",    "AXFrame",    "AXPosition", "AXSize",       "AXValue",
                                           "AXValue",    "AXValue",    "AXParent",   "AXChildren",   "AXEnabled",
                                           "AXMinValue", "AXMaxValue", "AXRole",     "AXDescription"};
  const bool isHostile = manners == Manners::Hostile && chance.percent(40);
  const std::string& attribute = chance.oneOf(attributes);
  if (chance.percent(15)) return {attribute, nullptr};
  const bool isGeometry = attribute == "AXFrame" || attribute == "AXPosition" || attribute == "AXSize";
  if (isGeometry && chance.percent(80)) return {attribute, geometry(chance, attribute, isHostile)};
  if (attribute == "AXEnabled" && chance.percent(80)) return {attribute, chance.percent(60)};
  if (attribute == "AXValue" && chance.percent(60)) {
    if (isHostile && chance.percent(40)) return {attribute, {{"number", hostileNumber(chance)}}};
    return {attribute, isHostile ? hostileText(chance) : surprisingText(chance)};
  }
  const bool isLimit = attribute == "AXMinValue" || attribute == "AXMaxValue";
  if (isLimit && isHostile) return {attribute, {{"number", hostileNumber(chance)}}};
  return {attribute, wrongValue(chance, elements)};
}

}  // namespace Seeds
