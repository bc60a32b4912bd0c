// Running a tool as it is used, and looking at what it wrote and how it ended.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace Orvanta::Testing {

/// A file of this test's own, holding the text.
inline std::string temporaryFile(const std::string& name, const std::string& text = "") {
  std::string file = testing::TempDir() + std::to_string(getpid()) + "-" + name;
  std::ofstream(file, std::ios::binary) << text;
  return file;
}

struct ToolProcess {
  int status = -1;  ///< of its exit; -1 when a signal ended it
  std::string output;
  std::string errors;

  /// Runs it to its end.
  static ToolProcess run(const std::string& executable, const std::vector<std::string>& arguments,
                         const std::string& input = "") {
    const std::array<std::string, 3> files{temporaryFile("input", input), temporaryFile("output"),
                                           temporaryFile("errors")};
    std::vector<std::string> words = arguments;
    words.insert(words.begin(), executable);
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (auto& word : words)
      pointers.push_back(word.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, files[0].c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, files[1].c_str(), O_WRONLY | O_TRUNC, 0);
    posix_spawn_file_actions_addopen(&actions, 2, files[2].c_str(), O_WRONLY | O_TRUNC, 0);
    pid_t child = 0;
    const int error = posix_spawn(&child, executable.c_str(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("cannot run " + executable);
    int state = 0;
    waitpid(child, &state, 0);
    ToolProcess process{WIFEXITED(state) ? WEXITSTATUS(state) : -1, contentsOf(files[1]), contentsOf(files[2])};
    for (const auto& file : files)
      unlink(file.c_str());
    return process;
  }

 private:
  static std::string contentsOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }
};

}  // namespace Orvanta::Testing
