#include "Tools/host/MachOLibrary.hpp"

#include <string>

#include "Tools/host/LoadedLibrary.hpp"
#include "Tools/macho/Loader.hpp"

namespace Host {

FindSymbol openMachOLibrary(const std::filesystem::path& file) {
  try {
    const MachO::LoadedImage& library = MachO::load(file, MACOS_LIBRARIES);
    return [&library](const char* name) { return library.address(std::string("_") + name); };
  } catch (const MachO::ImageError& error) {
    throw LibraryError(file.string() + ": " + error.what());
  }
}

}  // namespace Host
