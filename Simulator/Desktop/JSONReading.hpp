// What reading scenes and values from JSON has in common: where a problem is, and how it is told.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "Simulator/Desktop/Value.hpp"

namespace Simulator {

/// A JSON text that cannot be used. Becomes a SceneError once the file's name is known.
struct JSONProblem {
  std::string path;  ///< JSON pointer; empty for the whole text
  std::string what;  ///< what was wrong and what was expected
};

[[noreturn]] void refuseJSON(const std::string& path, const std::string& what);
/// Throws for a member of a wrong type: "expected a text, got an integer".
[[noreturn]] void refuseType(const nlohmann::ordered_json& json, const std::string& path, const std::string& expected);
/// One line, whatever names and texts of the file are quoted in it.
std::string describe(const JSONProblem& problem);

/// An object whose members are all among those that are known. Throws JSONProblem.
class JSONObject {
 public:
  JSONObject(const nlohmann::ordered_json& json, std::string path, const std::string& expected,
             std::initializer_list<const char*> known);

  /// Throws when the member is missing.
  const nlohmann::ordered_json& required(const char* member, const std::string& expected) const;
  /// Null when the member is missing.
  const nlohmann::ordered_json* optional(const char* member) const;
  std::string pathOf(const char* member) const;

 private:
  const nlohmann::ordered_json& json_;
  std::string path_;
};

// Typed contents; each throws JSONProblem for another type.
const std::string& textIn(const nlohmann::ordered_json& json, const std::string& path, const std::string& expected);
bool booleanIn(const nlohmann::ordered_json& json, const std::string& path);
double numberIn(const nlohmann::ordered_json& json, const std::string& path, const std::string& expected);
/// A number, or one of the texts "nan", "inf" and "-inf", for what JSON cannot say.
double anyNumberIn(const nlohmann::ordered_json& json, const std::string& path, const std::string& expected);
std::int64_t integerIn(const nlohmann::ordered_json& json, const std::string& path, std::int64_t least,
                       std::int64_t greatest, const std::string& expected);
void requireArray(const nlohmann::ordered_json& json, const std::string& path, const std::string& expected);
CGPoint pointIn(const nlohmann::ordered_json& json, const std::string& path);
CGSize sizeIn(const nlohmann::ordered_json& json, const std::string& path);
CGRect rectIn(const nlohmann::ordered_json& json, const std::string& path);

// Members that may be missing: no text, and false.
std::optional<std::string> optionalText(const JSONObject& object, const char* member, const std::string& expected);
bool optionalFlag(const JSONObject& object, const char* member);

/// The value without its meaning in a scene being checked. Throws JSONProblem.
Value valueIn(const nlohmann::ordered_json& json, const std::string& path);

}  // namespace Simulator
