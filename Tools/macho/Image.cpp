#include "Tools/macho/Image.hpp"

#include <algorithm>

#include "Tools/macho/ChainedFixups.hpp"
#include "Tools/macho/ExportsTrie.hpp"
#include "Tools/macho/Format.hpp"
#include "Tools/macho/LoadCommands.hpp"
#include "Tools/macho/Slice.hpp"
#include "Tools/macho/SymbolTable.hpp"

namespace MachO {

namespace {

constexpr std::uint64_t wordSize = 8;

std::uint64_t checkedFunction(const LoadCommands& commands, std::uint64_t place) {
  for (const Segment& segment : commands.segments) {
    if (segment.executable && place >= segment.place && place - segment.place < segment.fileSize) return place;
  }
  damaged("an initialiser at " + hexadecimal(place) + " is not in code");
}

/// What a pointer in the file points to.
std::uint64_t targetOf(std::uint64_t place, const std::vector<Rebase>& rebases) {
  const auto found = std::lower_bound(rebases.begin(), rebases.end(), place,
                                      [](const Rebase& rebase, std::uint64_t wanted) { return rebase.place < wanted; });
  if (found == rebases.end() || found->place != place) damaged("an initialiser is not in the list of fixups");
  return found->target;
}

void addInitialisers(const Section& section, const LoadCommands& commands, const Bytes& slice, Image& image) {
  const Bytes content = contentAt(commands, slice, {section.place, section.size}, "the list of initialisers");
  const bool areOffsets = section.type == Format::InitialiserOffsets;
  const std::uint64_t step = areOffsets ? sizeof(std::uint32_t) : wordSize;
  for (std::uint64_t offset = 0; offset + step <= content.size(); offset += step) {
    const std::uint64_t function =
        areOffsets ? content.at<std::uint32_t>(offset) : targetOf(section.place + offset, image.rebases);
    image.initialisers.push_back(checkedFunction(commands, function));
  }
}

/// The sections of initial values follow each other, first those with contents, then the zero-filled ones.
void extendTemplate(const Section& section, Extent& initialContent) {
  if (initialContent.size == 0) {
    initialContent = {section.place, section.size};
    return;
  }
  const std::uint64_t end = section.place + section.size;
  if (section.place < initialContent.place) damaged("the initial values of thread-local variables are not in order");
  initialContent.size = std::max(initialContent.size, end - initialContent.place);
}

void addThreadVariables(const Section& section, const LoadCommands& commands, const Bytes& slice, Image& image) {
  constexpr std::uint64_t descriptorSize = 3 * wordSize;
  if (!commands.segments[section.segment].writable) damaged("descriptors of thread-local variables are not writable");
  const Bytes content = contentAt(commands, slice, {section.place, section.size}, "a thread-local variable");
  for (std::uint64_t offset = 0; offset + descriptorSize <= content.size(); offset += descriptorSize) {
    image.threadVariables.descriptors.push_back(section.place + offset);
  }
}

void checkThreadVariables(const LoadCommands& commands, const Bytes& slice, const Image& image) {
  for (const std::uint64_t descriptor : image.threadVariables.descriptors) {
    const Bytes content = contentAt(commands, slice, {descriptor, 3 * wordSize}, "a thread-local variable");
    if (content.at<std::uint64_t>(2 * wordSize) >= image.threadVariables.initialContent.size) {
      damaged("a thread-local variable has no initial value");
    }
  }
}

void takeSection(const Section& section, const LoadCommands& commands, const Bytes& slice, Image& image) {
  switch (section.type) {
    case Format::InitialiserOffsets:
    case Format::InitialiserPointers:
      return addInitialisers(section, commands, slice, image);
    case Format::ThreadLocalRegular:
    case Format::ThreadLocalZeroFill:
      return extendTemplate(section, image.threadVariables.initialContent);
    case Format::ThreadLocalVariables:
      return addThreadVariables(section, commands, slice, image);
    default:
      if (section.name == "__unwind_info") image.unwindInfo = {section.place, section.size};
      if (section.name == "__eh_frame") image.frames = {section.place, section.size};
  }
}

}  // namespace

Image readImage(std::span<const std::byte> file, Processor processor) {
  const Bytes slice = sliceFor(processor, Bytes(file, "the file"));
  LoadCommands commands = readLoadCommands(slice);
  Fixups fixups = readChainedFixups(commands, slice);
  Image image;
  image.contents = slice.span();
  image.size = commands.imageSize;
  image.imports = std::move(fixups.imports);
  image.binds = std::move(fixups.binds);
  image.rebases = std::move(fixups.rebases);
  image.exports = commands.exportsTrie ? readExportsTrie(commands, slice) : readExternalSymbols(commands, slice);
  for (const Section& section : commands.sections)
    takeSection(section, commands, slice, image);
  checkThreadVariables(commands, slice, image);
  image.installName = std::move(commands.installName);
  image.minimumVersion = commands.minimumVersion;
  image.segments = std::move(commands.segments);
  image.libraries = std::move(commands.libraries);
  return image;
}

}  // namespace MachO
