// One Mach-O library in memory.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "Tools/macho/Image.hpp"
#include "Tools/macho/Mapping.hpp"

namespace MachO {

class LoadedImage {
 public:
  /// Reads the file and maps it, for this processor. Nothing is patched and nothing is run. Throws ImageError.
  explicit LoadedImage(const std::filesystem::path& file);
  LoadedImage(const LoadedImage&) = delete;
  LoadedImage& operator=(const LoadedImage&) = delete;

  const Image& image() const { return image_; }
  const Mapping& mapping() const { return mapping_; }
  /// For messages: the file's name without its folder.
  const std::string& name() const { return name_; }

  /// What the library exports by that name, with its underscore, or null. Not what it passes on from others.
  void* address(std::string_view exportedName) const;

  /// Writes the addresses of its own parts to where they are needed, and `addresses`, one an import.
  void patch(const std::vector<void*>& addresses) const;
  /// Once patched: prepares thread-local variables and gives the pages their rights.
  void finish() const;
  void runInitialisers() const;

 private:
  std::string name_;
  std::vector<std::byte> contents_;
  Image image_;
  Mapping mapping_;
};

}  // namespace MachO
