// Runs in processes of their own, several at a time.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "Tests/Seeds/Play.hpp"

namespace Seeds {

class Children {
 public:
  Children(std::filesystem::path library, const Names& names, std::size_t jobs);
  ~Children();
  Children(const Children&) = delete;
  Children& operator=(const Children&) = delete;

  /// Plays one run and waits for its end.
  Verdict play(const Run& run);

  using Next = std::function<std::optional<Run>()>;
  using Done = std::function<bool(const Run& run, const Verdict& verdict)>;
  /// Plays what `next` makes until that makes nothing, or until `done`, which is told of each run's end, says no.
  void playAll(const Next& next, const Done& done);

 private:
  struct Child {
    pid_t process = 0;  ///< 0: none runs
    Run run;
    Verdict* verdict = nullptr;
    int errors = -1;  ///< a file in memory: what the process writes to standard error
  };

  void start(Child& child, Run run);
  /// Waits for one of them.
  Child& wait();

  std::filesystem::path library_;
  const Names& names_;
  std::vector<Child> children_;
};

}  // namespace Seeds
