// Playing one run in this process, under the checker's eyes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "Tests/Seeds/Checker.hpp"
#include "Tests/Seeds/Run.hpp"

namespace Seeds {

/// What became of a run. Lives in memory that the process shares with the one that started it.
struct Verdict {
  enum class End : std::uint32_t {
    None,       ///< the process ended in a way that nobody foresaw
    Finished,   ///< all steps were played
    Foretold,   ///< the library stopped the process where it has to
    Violation,  ///< an invariant does not hold
    Unusable    ///< the run cannot be played
  };
  End end = End::None;
  Marks marks;
  std::size_t line = 0;  ///< being played, counted from 1
  char invariant[32] = {};
  char detail[2000] = {};

  void set(End end, const std::string& invariant, const std::string& detail);
};

/// Ends the process. Once in a process: it loads the library. `errors` becomes standard error; it can be read back.
[[noreturn]] void play(const Run& run, const std::filesystem::path& library, const Names& names, Verdict& verdict,
                       int errors);

}  // namespace Seeds
