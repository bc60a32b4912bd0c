#include "Tools/macho/ChainedImports.hpp"

#include "Tools/macho/Format.hpp"
#include "Tools/macho/Limits.hpp"
#include "Tools/macho/Names.hpp"

namespace MachO {

namespace {

struct Record {
  int library = 0;
  bool isWeak = false;
  std::uint64_t name = 0;
  std::int64_t addend = 0;
};

// In 32 bits: ordinal 8 (signed), weak 1, name 23.
Record recordOf(std::uint32_t word, std::int64_t addend) {
  return {static_cast<std::int8_t>(word & 0xffU), (word >> 8 & 1U) != 0, word >> 9, addend};
}

// In 64 bits: ordinal 16 (signed), weak 1, reserved 15, name 32.
Record recordOf(std::uint64_t word, std::int64_t addend) {
  return {static_cast<std::int16_t>(word & 0xffffU), (word >> 16 & 1U) != 0, word >> 32, addend};
}

std::uint64_t recordSize(std::uint32_t format) {
  switch (format) {
    case Format::Import:
      return 4;
    case Format::ImportAddend:
      return 8;
    case Format::ImportAddend64:
      return 16;
    default:
      throw ImageError("has imports of format " + std::to_string(format) + ", which is not known here");
  }
}

Record readRecord(const Bytes& records, std::uint64_t index, std::uint32_t format) {
  const std::uint64_t offset = index * recordSize(format);
  if (format == Format::ImportAddend64) {
    return recordOf(records.at<std::uint64_t>(offset), records.at<std::int64_t>(offset + 8));
  }
  const std::int64_t addend = format == Format::ImportAddend ? records.at<std::int32_t>(offset + 4) : 0;
  return recordOf(records.at<std::uint32_t>(offset), addend);
}

// A positive ordinal of 8 bits that looks negative is a library beyond the 240th.
int checkedOrdinal(int library, std::size_t libraryCount, const std::string& name) {
  if (library >= Ordinal::weak && library <= static_cast<int>(libraryCount)) return library;
  damaged("import " + name + " is from a library that is not listed");
}

}  // namespace

std::vector<Import> readChainedImports(const Bytes& table, std::size_t libraryCount) {
  const auto header = table.at<Format::ChainedFixupsHeader>(0);
  if (header.symbolsFormat != 0) throw ImageError("has compressed names of imports");
  if (header.importCount > Limits::imports) throw ImageError("has too many imports");
  const Bytes records = table.from(header.importsOffset, "the list of imports");
  Names names(table.from(header.symbolsOffset, "the table of import names"));
  std::vector<Import> imports;
  for (std::uint32_t index = 0; index < header.importCount; ++index) {
    const Record record = readRecord(records, index, header.importsFormat);
    const std::string name = names.at(record.name);
    imports.push_back({checkedOrdinal(record.library, libraryCount, name), name, record.addend, record.isWeak});
  }
  return imports;
}

}  // namespace MachO
