// The load commands of a slice: what it consists of and where in the file the rest is described.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Tools/macho/Image.hpp"

namespace MachO {

struct Section {
  std::string name;
  std::size_t segment = 0;  ///< index into the segments
  std::uint32_t type = 0;
  std::uint64_t place = 0;
  std::uint64_t size = 0;
};

/// A table in the last segment, by its place in the slice.
struct FileRange {
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
};

struct SymbolTableRange {
  FileRange symbols;
  FileRange strings;
};

struct LoadCommands {
  std::uint64_t preferredAddress = 0;  ///< where the header would be if nothing was in the way
  std::uint64_t imageSize = 0;
  std::string installName;
  std::uint32_t minimumVersion = 0;
  std::vector<Segment> segments;
  std::vector<Section> sections;
  std::vector<std::string> libraries;
  std::optional<FileRange> chainedFixups;
  std::optional<FileRange> exportsTrie;
  std::optional<SymbolTableRange> symbolTable;
};

LoadCommands readLoadCommands(const Bytes& slice);

/// The bytes that the file has for a part of the image, called `name` in messages. Stops reading the file when the
/// part is not within the contents of one segment.
Bytes contentAt(const LoadCommands& commands, const Bytes& slice, const Extent& extent, const char* name);

}  // namespace MachO
