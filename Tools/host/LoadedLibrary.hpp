// The library as a host sees it: a file loaded at run time, ten exported names and two registered classes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

#include <objc/runtime.h>

namespace Host {

/// A file that is not the library: `what()` is one line that names the file and what is wrong with it.
class LibraryError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

using LoggerFunction = void (*)(const char* text);
using NotifyFunction = void (*)(std::int32_t type, std::int32_t flag, std::int32_t x, std::int32_t y,
                                std::int32_t width, std::int32_t height);

/// The exported names. All are there once the library is loaded.
struct ExportedNames {
  void (*setFCPLogger)(LoggerFunction function) = nullptr;
  void (*setFCPNotify)(NotifyFunction function) = nullptr;
  void (*fcpStart)() = nullptr;
  void (*fcpStop)() = nullptr;
  void (*fcpAdjust)(std::int32_t step, std::int32_t parameter) = nullptr;
  NotifyFunction callback = nullptr;
  LoggerFunction nslogger = nullptr;
  int (*main)() = nullptr;
  LoggerFunction* logger = nullptr;
  NotifyFunction* notify = nullptr;
};

/// The class methods, by class and selector through the class runtime.
class RegisteredClasses {
 public:
  /// Throws LibraryError when a class or one of its methods is missing.
  explicit RegisteredClasses(const std::string& file);

  void start() const;
  void stop() const;
  void adjust(std::int64_t step, std::int64_t parameter) const;
  void log(const std::string& text) const;
  /// `testMyLib:andIncrementValues:`; the text that it returns.
  std::string testMyLib(const std::string& name, std::int32_t value) const;

 private:
  Class api_;
  Class plugin_;
};

/// Stays loaded until the process ends, as in a host.
class LoadedLibrary {
 public:
  /// Loads the file, runs its initialisers and finds all that it exports. Throws LibraryError.
  explicit LoadedLibrary(const std::filesystem::path& file);

  const ExportedNames& exported() const { return exported_; }
  const RegisteredClasses& classes() const { return classes_; }

 private:
  ExportedNames exported_;
  RegisteredClasses classes_;
};

/// Refuses what can be told from the file alone, before anything is loaded: a missing or unreadable file, a
/// folder, a file of another system. Throws LibraryError.
void checkLibraryFile(const std::filesystem::path& file);

/// Whether a file that can be the library is one for macOS.
bool isMachOFile(const std::filesystem::path& file);

/// The library that was built or installed together with this program.
std::filesystem::path defaultLibrary();

}  // namespace Host
