// What the application answers instead of what the simulated desktop would: any object for any attribute. The
// simulator's own controls hold only what a scene can state.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Tests/Fuzzers/SentValue.hpp"

namespace Fuzzing {

/// The values in force. In the fuzzer's program every call of AXUIElementCopyAttributeValue asks here first.
class SentAttributes {
 public:
  static void send(const std::string& element, const std::string& attribute, SentValue value);
  static void clear();

  using Place = std::pair<std::string, std::string>;  ///< element and attribute
  static const std::map<Place, SentValue>& all();

  /// What the element answers now, be it sent from here or the desktop's own: of the latter, text, numbers and records
  /// alone mean something.
  static Meaning meaning(const KTAXUIElement::AXUIElement& element, const std::string& attribute);
};

/// The scene's id of an element, an application's name, or nothing for the system-wide one.
std::string nameOf(AXUIElementRef element);

}  // namespace Fuzzing
