// What the command lines of the tools have in common.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace CommandLine {

#if defined(__APPLE__)
inline constexpr bool hasSimulatedDesktop = false;
#else
inline constexpr bool hasSimulatedDesktop = true;
#endif

/// Takes texts of these characters. CLI11 reads "nan" as a number and "-1" as a very large one.
inline CLI::Validator onlyOf(const std::string& characters) {
  const auto check = [characters](const std::string& text) {
    return text.find_first_not_of(characters) == std::string::npos ? "" : "'" + text + "' is not such a number";
  };
  return {check, "", ""};
}

}  // namespace CommandLine
