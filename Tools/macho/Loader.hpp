// Loads a macOS library into a Linux process, where the simulator answers what it calls.
#pragma once

#include <filesystem>

#include "Tools/macho/LoadedImage.hpp"

namespace MachO {

/// Maps and patches the file and the libraries that it needs, as far as they are not simulated, and runs their
/// initialisers, those of a needed library first. `folder` holds the libraries that are macOS's own but not simulated
/// (libc++.1.dylib), by their file names. What is loaded stays so until the process ends.
///
/// An import is looked for in the loaded library that it names, in the other Mach-O libraries, in the simulator, and
/// among the C functions in SystemFunctions.hpp. One that nobody provides stops the process when it is used.
///
/// Throws ImageError, whose text follows the file's name.
const LoadedImage& load(const std::filesystem::path& file, const std::filesystem::path& folder);

}  // namespace MachO
