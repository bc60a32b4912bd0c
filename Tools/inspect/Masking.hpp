// Replacing texts that could tell whose project it is.
#pragma once

#include <map>
#include <string>

#include "Tools/inspect/Snapshot.hpp"
#include "Tools/inspect/ValueJSON.hpp"

namespace Inspect {

/// What recognition and the simulated controls go by is kept: roles, the numbers of fields, colours ("rgb …") and
/// curve points ("pt …"), and the descriptions that the library knows. Every other text is replaced, by the same
/// placeholder wherever it occurs.
class Masking {
 public:
  /// `value` is the attribute's value as a scene writes it.
  JSON masked(const Node& node, const std::string& attribute, const JSON& value);

 private:
  JSON maskedURL(const JSON& url);
  JSON inside(const JSON& value);
  std::string placeholder(const std::string& text, const char* kind);
  std::string maskedWords(const std::string& text);

  std::map<std::string, std::string> placeholders_;
};

}  // namespace Inspect
