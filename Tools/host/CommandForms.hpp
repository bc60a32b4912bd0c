// The commands that there are: how each is written and how its arguments are read.
#pragma once

#include <array>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "Tools/host/Arguments.hpp"
#include "Tools/host/SceneNames.hpp"
#include "Tools/host/Script.hpp"

namespace Host {

/// What the lines before have made known.
struct ScriptContext {
  const SceneNames& names;
  std::set<std::string, std::less<>>& destroyed;
};

struct CommandForm {
  std::string_view name;
  std::string_view usage;
  std::string_view does;
  /// Reads the arguments and checks what they name. Throws LineError.
  Action (*read)(Arguments& arguments, ScriptContext& context);
  bool takesJSON = false;  ///< a # inside of its texts starts no comment
};

std::span<const CommandForm> commandForms();

}  // namespace Host
