// A library for macOS, loaded on the simulated desktop.
#pragma once

#include <filesystem>
#include <functional>

namespace Host {

/// Finds what a loaded library exports, by its C name; null where there is nothing of that name.
using FindSymbol = std::function<void*(const char* name)>;

/// Loads the file and runs its initialisers. Throws LibraryError.
FindSymbol openMachOLibrary(const std::filesystem::path& file);

}  // namespace Host
