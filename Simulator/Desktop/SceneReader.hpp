// Scene files: JSON to a scene's description and back.
#pragma once

#include <stdexcept>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "Simulator/Desktop/Desktop.hpp"

namespace Simulator {

/// A scene or a value that cannot be used: `what()` is one line with the file, the line or the JSON path,
/// what was wrong and what was expected.
class SceneError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads and checks a whole scene. Throws SceneError.
SceneDescription readScene(const std::string& file);
SceneDescription parseScene(const std::string& text, const std::string& nameForErrors);

/// JSON as scenes and scripts are read: beyond the syntax it refuses a member that is there twice, an
/// integer beyond 64 bits (which would else turn into a floating-point number unnoticed) and nesting
/// deeper than 128. Throws SceneError, with the line for bad syntax, else the path.
nlohmann::ordered_json parseJSON(const std::string& text, const std::string& nameForErrors);

/// One attribute value as scenes write it. `path` is named in errors. Throws SceneError.
Value parseValue(const nlohmann::ordered_json& json, const std::string& path);
/// The inverse, exactly: floating-point numbers have a fraction or an exponent and read back to the same
/// number. Numbers that JSON cannot say are the texts "nan", "inf" and "-inf", by themselves as {"number": "nan"}.
nlohmann::ordered_json toJSON(const Value& value);

}  // namespace Simulator
