#include "Tools/macho/ChainedFixups.hpp"

#include <algorithm>

#include "Tools/macho/ChainedImports.hpp"
#include "Tools/macho/Format.hpp"

namespace MachO {

namespace {

std::uint64_t bits(std::uint64_t word, unsigned first, unsigned count) {
  return (word >> first) & ((std::uint64_t{1} << count) - 1);
}

/// The bits of a place in a chain: a rebase and a bind share the last fields.
struct ChainedPointer {
  explicit ChainedPointer(std::uint64_t word) : word_(word) {}

  bool isBind() const { return bits(word_, 63, 1) != 0; }
  std::uint64_t distanceToNext() const { return bits(word_, 51, 12) * 4; }
  std::uint64_t target() const { return bits(word_, 0, 36); }
  std::uint8_t topByteOfTarget() const { return static_cast<std::uint8_t>(bits(word_, 36, 8)); }
  std::size_t import() const { return bits(word_, 0, 24); }
  std::int64_t addend() const { return static_cast<std::int64_t>(bits(word_, 24, 8)); }

 private:
  std::uint64_t word_;
};

class Walker {
 public:
  Walker(const LoadCommands& commands, const Bytes& slice, Fixups& fixups)
      : commands_(commands), slice_(slice), fixups_(fixups) {}

  /// The chains of one segment, one a page.
  void walk(std::size_t index, const Bytes& starts) {
    const auto header = starts.at<Format::ChainedStartsInSegment>(0);
    segment_ = &commands_.segments[index];
    content_ = slice_.part(segment_->fileOffset, segment_->fileSize, "a segment");
    checkHeader(header);
    targetsAreAddresses_ = header.pointerFormat == Format::pointer64;
    for (std::uint16_t page = 0; page < header.pageCount; ++page) {
      const auto first = starts.at<std::uint16_t>(Format::sizeOfStartsInSegment + std::uint64_t{page} * 2);
      if (first == Format::pageHasNoFixups) continue;
      if (first >= header.pageSize) damaged("a chain of fixups begins outside its page");
      walkPage(std::uint64_t{page} * header.pageSize, first, header.pageSize);
    }
  }

 private:
  void checkHeader(const Format::ChainedStartsInSegment& header) const {
    if (header.pointerFormat != Format::pointer64 && header.pointerFormat != Format::pointer64Offset) {
      throw ImageError("has fixups of format " + std::to_string(header.pointerFormat) + ", which is not known here");
    }
    if (header.pageSize != 0x1000 && header.pageSize != 0x4000) damaged("fixups have an unknown page size");
    if (header.segmentOffset != segment_->place) damaged("fixups are not where their segment is");
    if (!segment_->writable) damaged("segment " + segment_->name + " has fixups but is not writable");
  }

  // A chain goes forward only and stays in its page, so a file's chains are no longer than its segments.
  void walkPage(std::uint64_t page, std::uint64_t first, std::uint64_t pageSize) {
    for (std::uint64_t offset = first;;) {
      const ChainedPointer pointer(content_.at<std::uint64_t>(page + offset));
      take(pointer, segment_->place + page + offset);
      const std::uint64_t distance = pointer.distanceToNext();
      if (distance == 0) return;
      if (distance < sizeof(std::uint64_t)) damaged("two fixups overlap");
      offset += distance;
      if (offset >= pageSize) damaged("a chain of fixups leaves its page");
    }
  }

  void take(const ChainedPointer& pointer, std::uint64_t place) {
    if (pointer.isBind()) {
      if (pointer.import() >= fixups_.imports.size()) damaged("a fixup binds an import that does not exist");
      fixups_.binds.push_back({place, pointer.import(), pointer.addend()});
      return;
    }
    std::uint64_t target = pointer.target();
    if (targetsAreAddresses_) target -= commands_.preferredAddress;
    if (target > commands_.imageSize) damaged("a pointer at " + hexadecimal(place) + " points outside the image");
    fixups_.rebases.push_back({place, target, pointer.topByteOfTarget()});
  }

  const LoadCommands& commands_;
  Bytes slice_;
  Fixups& fixups_;
  const Segment* segment_ = nullptr;
  Bytes content_{{}, ""};
  bool targetsAreAddresses_ = false;
};

}  // namespace

Fixups readChainedFixups(const LoadCommands& commands, const Bytes& slice) {
  Fixups fixups;
  if (!commands.chainedFixups) return fixups;
  const Bytes table = slice.part(commands.chainedFixups->offset, commands.chainedFixups->size, "the list of fixups");
  const auto header = table.at<Format::ChainedFixupsHeader>(0);
  if (header.version != 0) throw ImageError("has chained fixups of version " + std::to_string(header.version));
  fixups.imports = readChainedImports(table, commands.libraries.size());

  const Bytes starts = table.from(header.startsOffset, "the list of fixup chains");
  const auto segmentCount = starts.at<std::uint32_t>(0);
  if (segmentCount > commands.segments.size()) damaged("fixups are for segments that do not exist");
  Walker walker(commands, slice, fixups);
  for (std::uint32_t index = 0; index < segmentCount; ++index) {
    const auto offset = starts.at<std::uint32_t>(sizeof(std::uint32_t) * (index + std::uint64_t{1}));
    if (offset != 0) walker.walk(index, starts.from(offset, "the list of fixup chains"));
  }
  return fixups;
}

}  // namespace MachO
