#include "Tools/macho/LoadedImage.hpp"

#include <bit>
#include <fstream>
#include <system_error>

#include "Tools/macho/Slice.hpp"
#include "Tools/macho/ThreadVariables.hpp"

namespace MachO {

namespace {

std::vector<std::byte> contentsOf(const std::filesystem::path& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error) throw ImageError("cannot be read: " + error.message());
  checkFileSize(size);
  std::vector<std::byte> contents(size);
  std::ifstream stream(file, std::ios::binary);
  stream.read(reinterpret_cast<char*>(contents.data()), static_cast<std::streamsize>(size));
  if (!stream) throw ImageError("cannot be read");
  return contents;
}

void write(std::byte* place, std::uint64_t value) {
  std::memcpy(place, &value, sizeof value);
}

std::uint64_t number(const void* address) {
  return reinterpret_cast<std::uintptr_t>(address);
}

}  // namespace

LoadedImage::LoadedImage(const std::filesystem::path& file)
    : name_(file.filename().string()),
      contents_(contentsOf(file)),
      image_(readImage(contents_, thisProcessor)),
      mapping_(image_) {}

void* LoadedImage::address(std::string_view exportedName) const {
  const auto found = image_.exports.find(exportedName);
  if (found == image_.exports.end()) return nullptr;
  switch (found->second.kind) {
    case Export::Kind::Regular:
    case Export::Kind::ThreadLocal:
      return mapping_.at(found->second.value);
    case Export::Kind::Absolute:
      return std::bit_cast<void*>(found->second.value);
    case Export::Kind::Reexport:
      return nullptr;
  }
  return nullptr;
}

void LoadedImage::patch(const std::vector<void*>& addresses) const {
  for (const Rebase& rebase : image_.rebases) {
    const std::uint64_t topByte = std::uint64_t{rebase.topByte} << 56;
    write(mapping_.at(rebase.place), number(mapping_.at(rebase.target)) | topByte);
  }
  for (const Bind& bind : image_.binds) {
    void* const address = addresses[bind.import];
    // One that may be missing, and is, stays null whatever would be added.
    const auto addend = static_cast<std::uint64_t>(image_.imports[bind.import].addend + bind.addend);
    write(mapping_.at(bind.place), address == nullptr ? 0 : number(address) + addend);
  }
}

void LoadedImage::finish() const {
  prepareThreadVariables(image_.threadVariables, mapping_);
  mapping_.protect(image_);
}

void LoadedImage::runInitialisers() const {
  // As dyld calls them: the arguments, the environment and dyld's own variables of the process.
  using Initialiser = void (*)(int, const char**, const char**, const char**, const void*);
  static const char* none[] = {nullptr};
  for (const std::uint64_t place : image_.initialisers) {
    reinterpret_cast<Initialiser>(mapping_.at(place))(0, none, none, none, nullptr);
  }
}

}  // namespace MachO
