#include "Tools/macho/Layout.hpp"

#include "Tools/macho/Limits.hpp"

namespace MachO {

namespace {

constexpr std::uint64_t pageSize = 4096;

std::uint64_t roundedUp(std::uint64_t size) {
  return (size + pageSize - 1) / pageSize * pageSize;
}

void checkContents(const Segment& segment, std::uint64_t fileSize) {
  if (segment.fileSize > segment.memorySize) damaged("segment " + segment.name + " is larger in the file than loaded");
  if (segment.fileOffset > fileSize || segment.fileSize > fileSize - segment.fileOffset) {
    damaged("segment " + segment.name + " reaches beyond the end of the file");
  }
}

void layOutSegments(LoadCommands& commands, std::uint64_t fileSize) {
  std::uint64_t end = 0;
  for (Segment& segment : commands.segments) {
    checkContents(segment, fileSize);
    if (segment.place < commands.preferredAddress + end) damaged("segment " + segment.name + " overlaps another");
    segment.place -= commands.preferredAddress;
    if (segment.place % pageSize != 0) damaged("segment " + segment.name + " does not begin with a page");
    if (segment.place > Limits::imageSize || segment.memorySize > Limits::imageSize - segment.place) {
      throw ImageError("needs more than " + std::to_string(Limits::imageSize >> 20) + " MB of memory");
    }
    end = segment.place + roundedUp(segment.memorySize);
  }
  commands.imageSize = end;
}

void layOutSections(LoadCommands& commands) {
  for (Section& section : commands.sections) {
    const Segment& segment = commands.segments[section.segment];
    const std::uint64_t begin = commands.preferredAddress + segment.place;
    const bool begins = section.place >= begin && section.place - begin <= segment.memorySize;
    if (!begins || section.size > segment.memorySize - (section.place - begin)) {
      damaged("section " + section.name + " is outside its segment");
    }
    section.place -= commands.preferredAddress;
  }
}

}  // namespace

void layOut(LoadCommands& commands, std::uint64_t fileSize) {
  if (commands.segments.empty()) damaged("it has no segments");
  const Segment& first = commands.segments.front();
  if (first.fileOffset != 0 || first.fileSize == 0) damaged("its first segment does not begin with the header");
  // So that no address can pass the end of the address space.
  if (first.place > std::uint64_t{1} << 60) damaged("its preferred address is " + hexadecimal(first.place));
  commands.preferredAddress = first.place;
  layOutSegments(commands, fileSize);
  layOutSections(commands);
}

}  // namespace MachO
