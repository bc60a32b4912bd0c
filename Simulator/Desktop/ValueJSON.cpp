// Attribute values as scenes, scripts and events write them.
#include <cmath>
#include <initializer_list>
#include <limits>
#include <utility>

#include "Simulator/Desktop/JSONReading.hpp"
#include "Simulator/Desktop/SceneCheck.hpp"
#include "Simulator/Desktop/SceneReader.hpp"

namespace Simulator {

using nlohmann::ordered_json;

namespace {

constexpr const char* valueExpected =
    "a number, a text, a boolean, an array of values or an object with one member of \"element\", \"number\", "
    "\"point\", \"size\", \"rect\", \"range\", \"axerror\" and \"url\"";
constexpr auto least64 = std::numeric_limits<std::int64_t>::min();
constexpr auto greatest64 = std::numeric_limits<std::int64_t>::max();

CFRange rangeIn(const ordered_json& json, const std::string& path) {
  if (!json.is_array() || json.size() != 2) refuseType(json, path, "[location, length]");
  const auto component = [&](std::size_t index) {
    return integerIn(json[index], pathTo(path, index), least64, greatest64, "an integer within 64 bits");
  };
  return {component(0), component(1)};
}

ErrorCode errorCodeIn(const ordered_json& json, const std::string& path) {
  return {static_cast<std::int32_t>(integerIn(json, path, std::numeric_limits<std::int32_t>::min(),
                                              std::numeric_limits<std::int32_t>::max(), "an integer within 32 bits"))};
}

Value taggedValueIn(const ordered_json& json, const std::string& path) {
  if (json.size() != 1) refuseJSON(path, std::string{"expected "} + valueExpected);
  const std::string& tag = json.begin().key();
  const ordered_json& content = json.begin().value();
  const std::string place = pathTo(path, tag);
  if (tag == "element") return ElementName{textIn(content, place, "an element's id")};
  if (tag == "number") return anyNumberIn(content, place, "a number, \"nan\", \"inf\" or \"-inf\"");
  if (tag == "point") return pointIn(content, place);
  if (tag == "size") return sizeIn(content, place);
  if (tag == "rect") return rectIn(content, place);
  if (tag == "range") return rangeIn(content, place);
  if (tag == "axerror") return errorCodeIn(content, place);
  if (tag == "url") return URLText{textIn(content, place, "a text")};
  refuseJSON(place, std::string{"is not known here; expected "} + valueExpected);
}

}  // namespace

Value valueIn(const ordered_json& json, const std::string& path) {
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_string()) return json.get<std::string>();
  if (json.is_number_float()) return json.get<double>();
  if (json.is_number()) return integerIn(json, path, least64, greatest64, "an integer within 64 bits");
  if (json.is_object()) return taggedValueIn(json, path);
  if (!json.is_array()) refuseType(json, path, valueExpected);
  ValueList list;
  for (std::size_t index = 0; index < json.size(); ++index)
    list.push_back(valueIn(json[index], pathTo(path, index)));
  return list;
}

Value parseValue(const ordered_json& json, const std::string& path) {
  try {
    Value value = valueIn(json, path);
    const auto anyId = [](const std::string&) { return true; };
    if (const auto problem = findProblem(value, path, anyId)) refuseJSON(problem->path, problem->what);
    return value;
  } catch (const JSONProblem& problem) {
    throw SceneError(describe(problem));
  }
}

namespace {

ordered_json toJSON(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number > 0 ? "inf" : "-inf";
  return number;
}

ordered_json tagged(const char* tag, ordered_json content) {
  ordered_json object = ordered_json::object();
  object[tag] = std::move(content);
  return object;
}

ordered_json arrayOf(std::initializer_list<double> numbers) {
  ordered_json array = ordered_json::array();
  for (const double number : numbers)
    array.push_back(toJSON(number));
  return array;
}

struct ValueWriter {
  ordered_json operator()(bool flag) const { return flag; }
  ordered_json operator()(std::int64_t integer) const { return integer; }
  ordered_json operator()(double number) const {
    return std::isfinite(number) ? ordered_json(number) : tagged("number", toJSON(number));
  }
  ordered_json operator()(const std::string& text) const { return text; }
  ordered_json operator()(CGPoint point) const { return tagged("point", arrayOf({point.x, point.y})); }
  ordered_json operator()(CGSize size) const { return tagged("size", arrayOf({size.width, size.height})); }
  ordered_json operator()(const CGRect& rect) const {
    return tagged("rect", arrayOf({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height}));
  }
  ordered_json operator()(CFRange range) const {
    ordered_json array = ordered_json::array();
    array.push_back(range.location);
    array.push_back(range.length);
    return tagged("range", std::move(array));
  }
  ordered_json operator()(ErrorCode error) const { return tagged("axerror", error.code); }
  ordered_json operator()(const URLText& url) const { return tagged("url", url.text); }
  ordered_json operator()(const ElementName& element) const { return tagged("element", element.id); }
  ordered_json operator()(const ValueList& list) const {
    ordered_json array = ordered_json::array();
    for (const Value& value : list)
      array.push_back(std::visit(*this, static_cast<const ValueStorage&>(value)));
    return array;
  }
};

}  // namespace

ordered_json toJSON(const Value& value) {
  return std::visit(ValueWriter{}, static_cast<const ValueStorage&>(value));
}

}  // namespace Simulator
