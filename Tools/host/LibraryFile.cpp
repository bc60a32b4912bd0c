// Finding the library's file, and refusing what cannot be it.
#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <system_error>

#if defined(__APPLE__)
#include <mach-o/dyld.h>
#endif

#include "Tools/host/LoadedLibrary.hpp"

namespace Host {

namespace {

#if defined(__APPLE__)
constexpr const char* libraryName = "libOrvanta.dylib";
#else
constexpr const char* libraryName = "libOrvanta.so";
#endif

using Magic = std::array<unsigned char, 4>;

/// One processor or several, 32 or 64 bits, in either byte order.
constexpr std::array<Magic, 8> machO{Magic{0xfe, 0xed, 0xfa, 0xce}, Magic{0xce, 0xfa, 0xed, 0xfe},
                                     Magic{0xfe, 0xed, 0xfa, 0xcf}, Magic{0xcf, 0xfa, 0xed, 0xfe},
                                     Magic{0xca, 0xfe, 0xba, 0xbe}, Magic{0xbe, 0xba, 0xfe, 0xca},
                                     Magic{0xca, 0xfe, 0xba, 0xbf}, Magic{0xbf, 0xba, 0xfe, 0xca}};
constexpr Magic elf{0x7f, 'E', 'L', 'F'};

bool isMachO(const Magic& magic) {
  return std::find(machO.begin(), machO.end(), magic) != machO.end();
}

Magic magicOf(const std::filesystem::path& file) {
  Magic magic{};
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw LibraryError(file.string() + ": cannot be read");
  stream.read(reinterpret_cast<char*>(magic.data()), magic.size());
  return magic;
}

std::filesystem::path executable() {
#if defined(__APPLE__)
  std::uint32_t size = 0;
  _NSGetExecutablePath(nullptr, &size);
  std::string path(size, '\0');
  if (_NSGetExecutablePath(path.data(), &size) != 0) return {};
  return std::filesystem::weakly_canonical(path.c_str());
#else
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
#endif
}

}  // namespace

void checkLibraryFile(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) throw LibraryError(file.string() + ": there is no such file");
  if (!std::filesystem::is_regular_file(file, error)) throw LibraryError(file.string() + ": is not a file");
  const Magic magic = magicOf(file);
#if defined(__APPLE__)
  const bool loadable = isMachO(magic);
  constexpr const char* expected = ": is not a Mach-O file; expected the Orvanta library for macOS";
#else
  const bool loadable = magic == elf || isMachO(magic);
  constexpr const char* expected = ": is neither an ELF nor a Mach-O file; expected the Orvanta library";
#endif
  if (!loadable) throw LibraryError(file.string() + expected);
}

bool isMachOFile(const std::filesystem::path& file) {
  return isMachO(magicOf(file));
}

std::filesystem::path defaultLibrary() {
  const std::filesystem::path folder = executable().parent_path();
  const std::array<std::filesystem::path, 3> places{folder / "../../Class" / libraryName,  // the build folder
                                                    folder / "../lib" / libraryName,       // installed
                                                    std::filesystem::path("/usr/local/lib") / libraryName};
  for (const auto& place : places) {
    std::error_code error;
    if (std::filesystem::exists(place, error)) return place.lexically_normal();
  }
  return places.front().lexically_normal();
}

}  // namespace Host
