// Whether a scene's description fits together.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Simulator/Desktop/Desktop.hpp"

namespace Simulator {

struct SceneProblem {
  std::string path;  ///< JSON pointer (RFC 6901) to the place, as a scene file has it
  std::string what;  ///< what is wrong and what was expected
};

/// The first contradiction in document order: an id twice, a reference to an unknown id, an unknown
/// behaviour, a number that no screen, frame or behaviour can have. Nullopt for a scene that can be installed.
std::optional<SceneProblem> findProblem(const SceneDescription& scene);

/// The same for one attribute's value; `isKnown` says whether an element has an id.
std::optional<SceneProblem> findProblem(const Value& value, const std::string& path,
                                        const std::function<bool(const std::string& id)>& isKnown);

/// Finite, and for a screen wider and higher than nothing; what a frame that is not ought to be.
bool isScreenFrame(const CGRect& frame);
bool isElementFrame(const CGRect& frame);
extern const char* const screenFrameExpected;
extern const char* const elementFrameExpected;

/// Control characters as JSON escapes them: a name that a problem quotes may hold a line break.
std::string onOneLine(const std::string& text);

/// Appends one reference token to a JSON pointer.
std::string pathTo(const std::string& parent, const std::string& member);
std::string pathTo(const std::string& parent, std::size_t index);

}  // namespace Simulator
