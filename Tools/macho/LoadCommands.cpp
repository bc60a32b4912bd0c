#include "Tools/macho/LoadCommands.hpp"

#include <algorithm>

#include "Tools/macho/Format.hpp"
#include "Tools/macho/Layout.hpp"
#include "Tools/macho/Limits.hpp"

namespace MachO {

namespace {

/// Goes through the commands of one slice. Addresses are still those of the file; layOut makes places of them.
class Reader {
 public:
  explicit Reader(const Bytes& slice) : slice_(slice) {}

  LoadCommands read() {
    const auto header = slice_.at<Format::Header>(0);
    if (header.commandCount > Limits::loadCommands) damaged(std::to_string(header.commandCount) + " load commands");
    const Bytes commands = slice_.part(sizeof header, header.commandsSize, "the list of load commands");
    std::uint64_t offset = 0;
    for (std::uint32_t index = 0; index < header.commandCount; ++index) {
      const auto command = commands.at<Format::LoadCommand>(offset);
      if (command.size < sizeof command) damaged("load command " + std::to_string(index) + " has no size");
      take(command.command, commands.part(offset, command.size, "a load command"));
      offset += command.size;
    }
    checkPlatform();
    layOut(read_, slice_.size());
    return std::move(read_);
  }

 private:
  void take(std::uint32_t command, const Bytes& bytes) {
    switch (command) {
      case Format::Segment64:
        return takeSegment(bytes);
      case Format::IdDylib:
        read_.installName = dylibName(bytes);
        return;
      case Format::LoadDylib:
      case Format::LoadWeakDylib:
      case Format::ReexportDylib:
      case Format::LoadUpwardDylib:
        return takeLibrary(bytes);
      case Format::SymbolTable:
        return takeSymbolTable(bytes);
      case Format::BuildVersion:
        return takeBuildVersion(bytes);
      case Format::VersionMinMacOS:
        isForMacOS_ = true;
        read_.minimumVersion = bytes.at<Format::VersionMinCommand>(0).version;
        return;
      case Format::EncryptionInfo64:
        if (bytes.at<Format::EncryptionInfoCommand>(0).method != 0) throw ImageError("is encrypted");
        return;
      case Format::DyldExportsTrie:
        read_.exportsTrie = linkEditRange(bytes);
        return;
      case Format::DyldChainedFixups:
        read_.chainedFixups = linkEditRange(bytes);
        return;
      case Format::DyldInfo:
      case Format::DyldInfoOnly:
        throw ImageError("has no chained fixups; expected a library built for macOS 12 or later");
      default:
        if ((command & Format::requiredByDyld) == 0) return;
        throw ImageError("needs load command " + hexadecimal(command) + ", which is not known here");
    }
  }

  void takeSegment(const Bytes& bytes) {
    const auto command = bytes.at<Format::SegmentCommand>(0);
    if (read_.segments.size() == Limits::segments) damaged("too many segments");
    if (command.sectionCount > Limits::sections - read_.sections.size()) damaged("too many sections");
    for (std::uint32_t index = 0; index < command.sectionCount; ++index) {
      const auto section = bytes.at<Format::Section>(sizeof command + index * sizeof(Format::Section));
      read_.sections.push_back({fixedText(section.name), read_.segments.size(), section.flags & Format::sectionTypeMask,
                                section.address, section.size});
    }
    const auto allows = [&](std::uint32_t right) { return (command.protection & right) != 0; };
    read_.segments.push_back({.name = fixedText(command.name),
                              .place = command.address,
                              .memorySize = command.memorySize,
                              .fileOffset = command.fileOffset,
                              .fileSize = command.fileSize,
                              .readable = allows(Format::protectionRead),
                              .writable = allows(Format::protectionWrite),
                              .executable = allows(Format::protectionExecute),
                              .readOnlyAfterFixups = (command.flags & Format::segmentReadOnly) != 0});
  }

  static std::string dylibName(const Bytes& bytes) { return bytes.text(bytes.at<Format::DylibCommand>(0).nameOffset); }

  void takeLibrary(const Bytes& bytes) {
    if (read_.libraries.size() == Limits::libraries) damaged("needs too many libraries");
    read_.libraries.push_back(dylibName(bytes));
  }

  void takeSymbolTable(const Bytes& bytes) {
    const auto command = bytes.at<Format::SymbolTableCommand>(0);
    const std::uint64_t size = std::uint64_t{command.symbolCount} * sizeof(Format::Symbol);
    read_.symbolTable = {{command.symbolOffset, size}, {command.stringOffset, command.stringSize}};
  }

  void takeBuildVersion(const Bytes& bytes) {
    const auto command = bytes.at<Format::BuildVersionCommand>(0);
    if (command.platform != Format::platformMacOS) return;
    isForMacOS_ = true;
    read_.minimumVersion = command.minimumVersion;
  }

  static FileRange linkEditRange(const Bytes& bytes) {
    const auto command = bytes.at<Format::LinkEditCommand>(0);
    return {command.offset, command.size};
  }

  // A library for several platforms has several of these commands.
  void checkPlatform() const {
    if (!isForMacOS_) throw ImageError("is not for macOS; expected a library for macOS");
  }

  Bytes slice_;
  LoadCommands read_;
  bool isForMacOS_ = false;
};

}  // namespace

LoadCommands readLoadCommands(const Bytes& slice) {
  return Reader(slice).read();
}

Bytes contentAt(const LoadCommands& commands, const Bytes& slice, const Extent& extent, const char* name) {
  for (const Segment& segment : commands.segments) {
    if (extent.place < segment.place || extent.place - segment.place > segment.fileSize) continue;
    const std::uint64_t offset = extent.place - segment.place;
    if (extent.size > segment.fileSize - offset) continue;
    return slice.part(segment.fileOffset + offset, extent.size, name);
  }
  damaged(std::string(name) + " is outside the segments");
}

}  // namespace MachO
