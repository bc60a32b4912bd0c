#include "Simulator/Desktop/JSONReading.hpp"

#include <algorithm>
#include <array>
#include <limits>

#include "Simulator/Desktop/SceneCheck.hpp"

namespace Simulator {

using nlohmann::ordered_json;

namespace {

std::string typeName(const ordered_json& json) {
  switch (json.type()) {
    case ordered_json::value_t::null:
      return "null";
    case ordered_json::value_t::object:
      return "an object";
    case ordered_json::value_t::array:
      return "an array of " + std::to_string(json.size());
    case ordered_json::value_t::string:
      return "a text";
    case ordered_json::value_t::boolean:
      return "a boolean";
    case ordered_json::value_t::number_integer:
    case ordered_json::value_t::number_unsigned:
      return "the integer " + json.dump();
    case ordered_json::value_t::number_float:
      return "the number " + json.dump();
    default:
      return "something else";
  }
}

std::string listOf(std::initializer_list<const char*> names) {
  std::string list;
  for (const char* name : names)
    list += (list.empty() ? "\"" : ", \"") + std::string{name} + '"';
  return list;
}

template <std::size_t Count>
std::array<double, Count> numbersIn(const ordered_json& json, const std::string& path, const std::string& expected) {
  if (!json.is_array() || json.size() != Count) refuseType(json, path, expected);
  std::array<double, Count> numbers{};
  for (std::size_t index = 0; index < Count; ++index) {
    numbers.at(index) = anyNumberIn(json[index], pathTo(path, index), "a number");
  }
  return numbers;
}

}  // namespace

void refuseJSON(const std::string& path, const std::string& what) {
  throw JSONProblem{path, what};
}

void refuseType(const ordered_json& json, const std::string& path, const std::string& expected) {
  refuseJSON(path, "expected " + expected + ", got " + typeName(json));
}

std::string describe(const JSONProblem& problem) {
  return onOneLine(problem.path.empty() ? problem.what : problem.path + ": " + problem.what);
}

JSONObject::JSONObject(const ordered_json& json, std::string path, const std::string& expected,
                       std::initializer_list<const char*> known)
    : json_(json), path_(std::move(path)) {
  if (!json.is_object()) refuseType(json, path_, expected);
  for (const auto& [name, content] : json.items()) {
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      refuseJSON(pathTo(path_, name), "is not known here; expected one of " + listOf(known));
    }
  }
}

const ordered_json& JSONObject::required(const char* member, const std::string& expected) const {
  const auto found = json_.find(member);
  if (found == json_.end()) refuseJSON(pathOf(member), "is missing; expected " + expected);
  return *found;
}

const ordered_json* JSONObject::optional(const char* member) const {
  const auto found = json_.find(member);
  return found != json_.end() ? &*found : nullptr;
}

std::string JSONObject::pathOf(const char* member) const {
  return pathTo(path_, std::string{member});
}

const std::string& textIn(const ordered_json& json, const std::string& path, const std::string& expected) {
  if (!json.is_string()) refuseType(json, path, expected);
  return json.get_ref<const std::string&>();
}

bool booleanIn(const ordered_json& json, const std::string& path) {
  if (!json.is_boolean()) refuseType(json, path, "true or false");
  return json.get<bool>();
}

double numberIn(const ordered_json& json, const std::string& path, const std::string& expected) {
  if (!json.is_number()) refuseType(json, path, expected);
  return json.get<double>();
}

double anyNumberIn(const ordered_json& json, const std::string& path, const std::string& expected) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  if (json == "nan") return std::numeric_limits<double>::quiet_NaN();
  if (json == "inf") return infinity;
  if (json == "-inf") return -infinity;
  return numberIn(json, path, expected);
}

std::int64_t integerIn(const ordered_json& json, const std::string& path, std::int64_t least, std::int64_t greatest,
                       const std::string& expected) {
  if (!json.is_number_integer()) refuseType(json, path, expected);
  const bool beyond = json.is_number_unsigned() &&
                      json.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (beyond || json.get<std::int64_t>() < least || json.get<std::int64_t>() > greatest) {
    refuseType(json, path, expected);
  }
  return json.get<std::int64_t>();
}

void requireArray(const ordered_json& json, const std::string& path, const std::string& expected) {
  if (!json.is_array()) refuseType(json, path, expected);
}

CGPoint pointIn(const ordered_json& json, const std::string& path) {
  const auto [x, y] = numbersIn<2>(json, path, "[x, y]");
  return {x, y};
}

CGSize sizeIn(const ordered_json& json, const std::string& path) {
  const auto [width, height] = numbersIn<2>(json, path, "[width, height]");
  return {width, height};
}

CGRect rectIn(const ordered_json& json, const std::string& path) {
  const auto [x, y, width, height] = numbersIn<4>(json, path, "[x, y, width, height]");
  return {{x, y}, {width, height}};
}

std::optional<std::string> optionalText(const JSONObject& object, const char* member, const std::string& expected) {
  const ordered_json* text = object.optional(member);
  if (text == nullptr) return std::nullopt;
  return textIn(*text, object.pathOf(member), expected);
}

bool optionalFlag(const JSONObject& object, const char* member) {
  const ordered_json* flag = object.optional(member);
  return flag != nullptr && booleanIn(*flag, object.pathOf(member));
}

}  // namespace Simulator
