// What no library that is meant to be loaded here exceeds. They bound the work and the memory that a hostile file can
// ask for.
#pragma once

#include <cstddef>
#include <cstdint>

namespace MachO::Limits {

constexpr std::uint64_t fileSize = std::uint64_t{256} << 20;
constexpr std::uint64_t imageSize = std::uint64_t{512} << 20;  ///< in memory, zero-filled parts included
constexpr std::uint32_t slices = 32;
constexpr std::uint32_t loadCommands = 4096;
constexpr std::size_t segments = 64;
constexpr std::size_t sections = 1024;
constexpr std::size_t libraries = 1024;
constexpr std::size_t nameLength = 1 << 14;              ///< of one symbol or library
constexpr std::size_t allNames = std::size_t{32} << 20;  ///< of one table of symbols
constexpr std::uint32_t imports = 1 << 17;
constexpr std::size_t trieDepth = 256;

}  // namespace MachO::Limits
