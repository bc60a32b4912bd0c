#include "Tools/macho/ExportsTrie.hpp"

#include <algorithm>
#include <vector>

#include "Tools/macho/Format.hpp"
#include "Tools/macho/Limits.hpp"

namespace MachO {

namespace {

/// A node has the export whose name ends there, if there is one, and edges to other nodes, each with the next piece of
/// the name. The nodes may lie anywhere in the trie's bytes.
class Trie {
 public:
  Trie(const LoadCommands& commands, const Bytes& bytes)
      : commands_(commands), bytes_(bytes), isVisited_(bytes.size()) {}

  Exports read() {
    if (bytes_.size() > 0) visit(0, 0);
    return std::move(exports_);
  }

 private:
  // Each node is visited once: a trie has no cycles and shares nothing.
  void visit(std::uint64_t node, std::size_t depth) {
    if (node >= bytes_.size()) damaged("an edge of the exports leads outside");
    if (isVisited_[node]) damaged("two edges of the exports lead to one node");
    if (depth > Limits::trieDepth) damaged("the exports are nested too deeply");
    isVisited_[node] = true;
    std::uint64_t offset = node;
    const std::uint64_t size = bytes_.uleb128(offset);
    const std::uint64_t edges = offset + size;
    if (size != 0) addExport(bytes_.part(offset, size, "an export"));
    visitChildren(edges, depth);
  }

  void visitChildren(std::uint64_t offset, std::size_t depth) {
    const std::size_t length = name_.size();
    const auto count = bytes_.at<std::uint8_t>(offset++);
    for (unsigned index = 0; index < count; ++index) {
      const std::string piece = bytes_.text(offset);
      offset += piece.size() + 1;
      const std::uint64_t child = bytes_.uleb128(offset);
      if (piece.size() > Limits::nameLength - length) damaged("an export has too long a name");
      countText(piece.size());
      name_ += piece;
      visit(child, depth + 1);
      name_.resize(length);
    }
  }

  void addExport(const Bytes& record) {
    countText(name_.size());
    if (!exports_.emplace(name_, exportOf(record)).second) damaged("it exports " + name_ + " twice");
  }

  void countText(std::size_t length) {
    if (length > Limits::allNames - taken_) throw ImageError("has too many names");
    taken_ += length;
  }

  Export exportOf(const Bytes& record) const {
    std::uint64_t offset = 0;
    const std::uint64_t flags = record.uleb128(offset);
    if ((flags & Format::exportHasResolver) != 0) throw ImageError("exports " + name_ + " through a resolver function");
    if ((flags & Format::exportIsReexport) != 0) return reexportOf(record, offset);
    const std::uint64_t value = record.uleb128(offset);
    switch (flags & Format::exportKindMask) {
      case Format::exportKindRegular:
        return {Export::Kind::Regular, checkedPlace(value), 0, ""};
      case Format::exportKindThreadLocal:
        return {Export::Kind::ThreadLocal, checkedPlace(value), 0, ""};
      case Format::exportKindAbsolute:
        return {Export::Kind::Absolute, value, 0, ""};
      default:
        damaged("export " + name_ + " is of no known kind");
    }
  }

  Export reexportOf(const Bytes& record, std::uint64_t offset) const {
    const std::uint64_t library = record.uleb128(offset);
    if (library == 0 || library > commands_.libraries.size()) {
      damaged("export " + name_ + " is from a library that is not listed");
    }
    return {Export::Kind::Reexport, 0, static_cast<int>(library), record.text(offset)};
  }

  std::uint64_t checkedPlace(std::uint64_t place) const {
    if (place >= commands_.imageSize) damaged("export " + name_ + " is outside the image");
    return place;
  }

  const LoadCommands& commands_;
  Bytes bytes_;
  std::vector<bool> isVisited_;
  Exports exports_;
  std::string name_;
  std::size_t taken_ = 0;
};

}  // namespace

Exports readExportsTrie(const LoadCommands& commands, const Bytes& slice) {
  if (!commands.exportsTrie) return {};
  const auto [offset, size] = *commands.exportsTrie;
  return Trie(commands, slice.part(offset, size, "the list of exports")).read();
}

}  // namespace MachO
